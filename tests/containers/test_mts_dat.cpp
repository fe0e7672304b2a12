// MTS, DAT and IMKH camera files: hand-made units, ffmpeg-made streams end
// to end, and the muxer's command lines and failures through fake muxers.
#include "batch_check.h"
#include "containers/mpegts.h"
#include "core/quicktime_route.h"
#include "core/thread_video_repair.h"
#include "support/route_job.h"
#include "support/signal_log.h"

#include <QDir>
#include <QFile>
#include <QtTest>
#include <sys/stat.h>

using namespace testvideo;
using containers::repairedPath;

namespace {

constexpr int kUnit = 192;

QByteArray bytesOf(const mts::Unit& u) { return QByteArray(reinterpret_cast<const char*>(u.data()), int(u.size())); }
const QByteArray kPat = bytesOf(mts::PatUnit), kPmt = bytesOf(mts::PmtUnit);
const QByteArray kSit = bytesOf(mts::SitUnit), kPcr = bytesOf(mts::PcrUnit);
const QByteArray kTemplates = kPat + kPmt + kSit + kPcr;

// A unit with the given head; serial marks it so that it can be found in an
// output. No byte but the sync byte is 0x47, so no false head appears.
QByteArray unit(quint32 head, int serial)
{
    QByteArray u(kUnit, char(0xAA));
    u[0] = char(0x40);
    u[3] = char(serial & 0x3F);
    for (int i = 0; i < 4; ++i)
        u[4 + i] = char(head >> (24 - 8 * i));
    u[8] = char(0x10 + (serial >> 6 & 0x1F));
    u[9] = char(serial & 0x3F);
    return u;
}

// Format names and codecs as ffprobe lists them, such as "h264 aac mov,mp4,...".
QString formatAndCodecs(const QString& path)
{
    QByteArray out;
    run("ffprobe", {"-v", "error", "-show_entries", "format=format_name:stream=codec_name", "-of", "csv=p=0", path}, &out);
    return QString::fromUtf8(out).remove('"').simplified();
}

// Records its arguments (one a line) and folder, and writes "x" to its last argument.
const QByteArray kRecordingMuxer = "printf '%s\\n' \"$@\" > \"$(dirname \"$0\")/args.txt\"\n"
                                   "pwd > \"$(dirname \"$0\")/cwd.txt\"\n"
                                   "for a; do last=$a; done\nprintf x > \"$last\"\n";

} // namespace

class TestMtsDat : public QObject {
    Q_OBJECT
    QString m_dir;
    QString m_savedAppDir = g_appDir;
    QByteArray m_savedPath = qgetenv("PATH");

    struct Run {
        bool done = false, listed = false, exists = false;   // a positive verdict, the output listed, left
        QByteArray out;
    };
    // The MTS route over bytes in memory; the output lands in m_dir.
    Run repairMts(const QByteArray& input)
    {
        RouteRun run(m_dir, "clip.mts", std::make_unique<MemoryReader>(input, 64 * 1024));   // small window: edges get crossed
        run.run();
        const QString out = m_dir + "/clip.mts";
        return Run{run.verdicts == QStringList{"1 clip.mts"}, g_repairedPaths.contains(out), QFile::exists(out), readAll(out)};
    }
    // The DAT route on a file by its path alone (no reader), as the muxer gets it.
    void repairDatByPath(const QString& path, const QString& workDir, const QStringList& runFiles = {})
    {
        RouteRun run(workDir, QFileInfo(path).fileName(), nullptr);
        run.job.inputPath = path;
        run.job.runFiles = &runFiles;
        run.run();
    }

    QString clip(const QString& name)
    {
        const QStringList h264{"-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p"};
        if (name == "bdav.mts")
            // As cameras write it: H.264 on PID 0x1011, AC-3 on 0x1100. A
            // short GOP keeps the loss of a damaged start to a few frames.
            return make(name, lavfiVideo(8) + lavfiAudio(8) + h264
                                  + QStringList{"-g", "12", "-c:a", "ac3", "-streamid", "0:0x1011", "-streamid",
                                                "1:0x1100", "-f", "mpegts", "-mpegts_m2ts_mode", "1"});
        if (name == "vcd.dat")
            return make(name, lavfiVideo(4) + lavfiAudio(4) + QStringList{"-target", "ntsc-vcd"});
        return make(name, lavfiVideo(4) + lavfiAudio(4) + h264 + QStringList{"-c:a", "mp2", "-f", "mpeg"});
    }
    QString imkhFile(const QString& name)
    {
        const QString path = m_dir + '/' + name;
        writeAll(path, "IMKH" + QByteArray(36, '\0') + readAll(clip("camera.mpg")));
        return path;
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir("mts-dat");
        g_appDir = binDir() + "/Libmp4";
        g_stopRequested = g_referenceMode = false;
        g_customWorkRoot.clear();
        g_repairedPaths.clear();
    }
    void cleanup()
    {
        QDir(m_dir).removeRecursively();
        g_appDir = m_savedAppDir;
        g_stopRequested = false;
        qputenv("PATH", m_savedPath);
    }

    // As the format tables give them: zero extra header, the packet, 0xFF to the end of the unit.
    void templatesByteForByte()
    {
        const auto expected = [](const char* hex) {
            const QByteArray u = QByteArray(4, '\0') + QByteArray::fromHex(hex);
            return u + QByteArray(kUnit - u.size(), char(0xFF));
        };
        QCOMPARE(kPat, expected("474000100000B0110000C100000000E01F0001E100235AAB82"));
        QCOMPARE(kPmt, expected("474100100002B0390001C10000F001F00C050448444D5688040FFFFCFC1BF011F00A050848444D56FF1B563F"
                                "81F100F00C050441432D338104042805009565B40F"));
        QCOMPARE(kSit, expected("47401F10007FF019FFFFC10000F00A6308C0AFC8FFFFFFFFFF00018000AEB43A35"));
        QCOMPARE(kPcr, expected("47100120B710000000000000"));
    }

    // 140 payload starts between other media units: a system set after every
    // seventh start, the SIT in every tenth set only.
    void rebuildRepeatsSystemSets()
    {
        const quint32 starts[] = {0x47501110u, 0x47710010u};
        const quint32 others[] = {0x47101117u, 0x47301130u, 0x47701110u, 0x47310012u};
        QByteArray input(4 * kUnit, '\0'), expected = kTemplates;   // damaged start
        for (int i = 1; i <= 140; ++i) {
            input += unit(starts[i % 2], i) + unit(others[i % 4], 200 + i);
            expected += unit(starts[i % 2], i);
            if (i % 7 == 0)
                expected += kPat + kPmt + (i % 70 == 0 ? kSit : QByteArray()) + kPcr;
            expected += unit(others[i % 4], 200 + i);
        }
        const Run r = repairMts(input);
        QVERIFY(r.done && r.listed);
        QVERIFY(r.out == expected);
        QCOMPARE(r.out.count(kSit), 3);
    }

    // The rebuild (a damaged first unit) drops the file's system units, other
    // PIDs, junk and the first four units; media units are copied in order.
    void rebuildKeepsOnlyMedia()
    {
        const QList<QPair<quint32, bool>> heads{
            {0x474000FFu, false}, {0x47410010u, false}, {0x47401F10u, false}, {0x47100120u, false},   // PAT, PMT, SIT, PCR
            {0x47100130u, false},                                                                     // PCR with payload
            {0x47101110u, true},  {0x47301130u, true},  {0x47701110u, true},  {0x47501130u, true},    // video
            {0x47310010u, true},  {0x47710010u, true},                                                // sound, priority bit
            {0x47110010u, false}, {0x47510010u, false},                                               // sound without it
            {0x471FFF10u, false}, {0x47401110u, false}};                                              // null packet, SDT
        QByteArray input, expected = kTemplates;
        for (int i = 0; i < 4; ++i)
            input += unit(0x47101110u, 100 + i);
        input[4] = 0;
        int serial = 0;
        for (const auto& h : heads) {
            input += unit(h.first, ++serial);
            expected += h.second ? unit(h.first, serial) : QByteArray();
        }
        input += QByteArray(37, char(0x5C)) + unit(0x47101110u, ++serial);   // junk that shifts the unit grid
        expected += unit(0x47101110u, serial);
        const Run r = repairMts(input);
        QVERIFY(r.done);
        QVERIFY(r.out == expected);
    }

    // An intact start is copied unit for unit: a hole or junk costs only what
    // it covers, and a cut last unit is filled up with zeros.
    void intactStartIsCopied()
    {
        QByteArray input = unit(0x47400010u, 0) + unit(0x47410010u, 1) + unit(0x47401F10u, 2) + unit(0x47100120u, 3);
        for (int i = 4; i < 40; ++i)
            input += unit(i % 5 ? 0x47101110u : 0x47501110u, i);
        QCOMPARE(repairMts(input).out, input);

        QByteArray damaged = input, expected = input;
        zeroRange(damaged, 10 * kUnit, kUnit);                     // a lost unit
        damaged.insert(21 * kUnit, QByteArray(37, char(0x5C)));   // junk between units
        cutFrom(damaged, damaged.size() - 50);
        expected.remove(10 * kUnit, kUnit);
        expected.replace(expected.size() - 50, 50, QByteArray(50, '\0'));
        const Run r = repairMts(damaged);
        QVERIFY(r.done);
        QVERIFY(r.out == expected);
    }

    // Nothing to copy: no verdict of success and no output left behind.
    void nothingToCopy_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::newRow("empty") << QByteArray();
        QByteArray systemOnly;
        for (int i = 0; i < 20; ++i)
            systemOnly += kTemplates;
        QTest::newRow("system units only (intact start)") << systemOnly;
        QTest::newRow("system units only (rebuilt)") << QByteArray(kUnit, '\0') + systemOnly;
    }
    void nothingToCopy()
    {
        QFETCH(QByteArray, input);
        const Run r = repairMts(input);
        QVERIFY(!r.done && !r.listed && !r.exists);
    }

    void outputNeverReplacesItsInput()
    {
        const QByteArray input = QByteArray(4 * kUnit, '\0') + unit(0x47501110u, 1);
        const QString path = m_dir + "/clip.mts";
        QVERIFY(writeAll(path, input));
        RouteRun run(m_dir, "clip.mts", FileReader::open(path));
        run.job.inputPath = path;
        run.run();
        QCOMPARE(run.verdicts, QStringList{"0 clip.mts"});
        QCOMPARE(readAll(path), input);
    }

    void bdavStream_data()
    {
        QTest::addColumn<QString>("damage");
        for (const char* d : {"whole", "first four units zeroed", "holes"})
            QTest::newRow(d) << QString(d);
    }
    // At least 90% of the frames that ffmpeg still decodes from the damaged stream.
    void bdavStream()
    {
        QFETCH(QString, damage);
        QByteArray bytes = readAll(clip("bdav.mts"));
        QVERIFY(!bytes.isEmpty() && bytes.size() % kUnit == 0);
        if (damage == "first four units zeroed")
            zeroRange(bytes, 0, 4 * kUnit);
        for (int k = 1; k <= 3 && damage == "holes"; ++k)
            zeroRange(bytes, bytes.size() * k / 4 + 77 * k, 3000);   // off the unit grid
        const QString input = m_dir + "/clip.mts";
        QVERIFY(writeAll(input, bytes));
        const int remaining = decodedVideoFrames(input), remainingSound = decodedFrames(input, "a:0");
        QVERIFY(remaining > 150 && remainingSound > 150);

        const containers::Batch b = containers::repairFiles({input});
        QVERIFY2(b.fault.isEmpty(), qPrintable(b.fault));
        QCOMPARE(b.repaired, QList<bool>{true});
        QCOMPARE(b.outputs, QStringList{repairedPath(input)});
        const QByteArray rebuilt = readAll(b.outputs[0]);
        QCOMPARE(rebuilt.size() % kUnit, 0);
        QCOMPARE(rebuilt.left(kUnit), kPat);   // ffmpeg starts with an SDT: always rebuilt
        QCOMPARE(rebuilt.mid(3 * kUnit, kUnit), kPcr);
        const int decoded = decodedVideoFrames(b.outputs[0]), sound = decodedFrames(b.outputs[0], "a:0");
        QVERIFY2(decoded * 10 >= remaining * 9, qPrintable(QString("%1 of %2 frames").arg(decoded).arg(remaining)));
        QVERIFY2(sound * 10 >= remainingSound * 9, qPrintable(QString("%1 of %2 sound frames").arg(sound).arg(remainingSound)));
        QVERIFY(formatAndCodecs(b.outputs[0]).contains("h264 ac3"));

        // The rebuilt stream has an intact start: a second repair copies it as it is.
        const QString again = m_dir + "/again/clip.mts";
        QVERIFY(QDir().mkpath(m_dir + "/again") && QFile::copy(b.outputs[0], again));
        QCOMPARE(containers::repairFiles({again}).repaired, QList<bool>{true});
        QVERIFY(readAll(repairedPath(again)) == rebuilt);
    }

    // Media past 4 GiB (a sparse input, its hole at a third, off the unit
    // grid): the same output as from the clip itself.
    void mediaPast4GiB()
    {
        const QByteArray bytes = readAll(clip("bdav.mts"));
        const int at = bytes.size() / 3 / kUnit * kUnit;
        const QString whole = m_dir + "/whole.mts", sparse = m_dir + "/sparse.mts";
        QVERIFY(writeAll(whole, bytes) && containers::writeSparse(sparse, bytes.left(at), containers::kPast4GiB, bytes.mid(at)));
        const containers::Batch b = containers::repairFiles({whole, sparse});
        QVERIFY2(b.fault.isEmpty(), qPrintable(b.fault));
        QCOMPARE(b.repaired, QList<bool>({true, true}));
        QCOMPARE(readAll(b.outputs.value(1)), readAll(b.outputs.value(0)));
    }

    void imkhFileRemuxedUnderItsName()
    {
        const QString input = imkhFile("cam.mp4");
        const containers::Batch b = containers::repairFiles({input});
        QVERIFY2(b.fault.isEmpty(), qPrintable(b.fault));
        QCOMPARE(b.repaired, QList<bool>{true});
        QCOMPARE(b.outputs, QStringList{repairedPath(input)});
        QCOMPARE(readAll(b.outputs[0]).left(4), QByteArray("\x1A\x45\xDF\xA3", 4));   // Matroska inside
        QVERIFY(decodedVideoFrames(b.outputs[0]) >= 90);
        QVERIFY(!QFile::exists(repairedPath(input, "1_cam.mp4.mkv")));
    }

    void muxerCommandLines()
    {
        g_appDir = fakeMuxer(m_dir + "/fake-rec", kRecordingMuxer);
        const QString repaired = m_dir + "/Repaired";
        const auto args = [] { return QString::fromUtf8(readAll(g_appDir + "/args.txt")).split('\n', Qt::SkipEmptyParts); };
        QDir().mkpath(repaired);

        const QString dat = m_dir + "/my clip.v2.dat";
        QVERIFY(writeAll(dat, "data"));
        repairDatByPath(dat, repaired);
        QCOMPARE(args(), (QStringList{"-i", dat, "-c:v", "libx264", "-c:a", "aac", "-strict", "experimental", ".partial-my clip.mov"}));
        QCOMPARE(QString::fromUtf8(readAll(g_appDir + "/cwd.txt")).trimmed(), repaired);
        QCOMPARE(readAll(repaired + "/my clip.mov"), QByteArray("x"));

        // A leading dot gives no empty name; a later file of the same stem
        // overwrites, unless that name is another file's of the run.
        const QString lead = m_dir + "/.my clip.dat";
        QVERIFY(writeAll(lead, "data"));
        repairDatByPath(lead, repaired);
        QCOMPARE(args().last(), QString(".partial-my clip.mov"));
        repairDatByPath(lead, repaired, {m_dir + "/my clip.mov", m_dir + "/my clip_2.mov", lead});
        QCOMPARE(args().last(), QString(".partial-my clip_3.mov"));
        QCOMPARE(g_repairedPaths, (QStringList{repaired + "/my clip.mov", repaired + "/my clip.mov", repaired + "/my clip_3.mov"}));
        QuickTimeRoute t;
        t.m_workDir = repaired;

        const QString cam = imkhFile("cam 1.mp4");
        t.m_fileName = "cam 1.mp4";
        t.RemuxCameraFile(cam);
        QVERIFY(!t.m_passFailed);
        QCOMPARE(args(), (QStringList{"-r", "25", "-i", cam, "-map", "0", "-c", "copy", ".partial-1_cam 1.mp4.mkv"}));
        QCOMPARE(readAll(repaired + "/cam 1.mp4"), QByteArray("x"));
        QVERIFY(!QFile::exists(repaired + "/1_cam 1.mp4.mkv"));
        QCOMPARE(g_repairedPaths.last(), repaired + "/cam 1.mp4");
    }

    // A muxer that fails, leaves an empty file or is killed: a negative verdict
    // and no output; what a killed run left goes at the next start.
    void failingMuxer_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("killed while writing") << QByteArray("for a; do last=$a; done\nprintf part > \"$last\"\nkill -9 $$\n");
        QTest::newRow("exits with an error") << QByteArray("echo 'Invalid data found when processing input' >&2\nexit 1\n");
        QTest::newRow("leaves an empty file") << QByteArray("for a; do last=$a; done\n: > \"$last\"\nexit 0\n");
        QTest::newRow("missing") << QByteArray();
    }
    void failingMuxer()
    {
        QFETCH(QByteArray, body);
        g_appDir = body.isEmpty() ? m_dir + "/no-such-folder" : fakeMuxer(m_dir + "/fake-bad", body);
        if (body.isEmpty())
            qputenv("PATH", "/nonexistent");   // no ffmpeg to fall back on
        const QString dat = m_dir + "/x.dat";
        QVERIFY(QFile::copy(clip("vcd.dat"), dat));
        const QString repaired = m_dir + "/Repaired";
        QDir().mkpath(repaired);
        for (const char* stale : {"/.partial-old.mov", "/.syntax-y.mov", "/.rebuild-y.mov", "/kept.mov"})
            writeAll(repaired + stale, "stale");
        QCOMPARE(::mkfifo(QFile::encodeName(repaired + "/pipe-video.h264").constData(), 0600), 0);
        ThreadVideoRepair t;
        SignalLog log(t);
        t.RepairFiles({dat}, QString());
        QCOMPARE(log.matching("WriteStatus"), QStringList{"WriteStatus 0 x.dat 0"});
        QVERIFY(!QFile::exists(repairedPath(dat, "x.mov")));
        QVERIFY(g_repairedPaths.isEmpty());
        QCOMPARE(QDir(repaired).entryList({"*.mov", "*.h264"}, QDir::Files | QDir::Hidden | QDir::System),
                 QStringList{"kept.mov"});

        const QString cam = imkhFile("cam.mp4");
        const QString before = sha256(cam);
        QuickTimeRoute camera;
        camera.m_workDir = repaired;
        camera.m_fileName = "cam.mp4";
        camera.RemuxCameraFile(cam);
        QVERIFY(camera.m_passFailed);
        QCOMPARE(sha256(cam), before);
        QCOMPARE(QDir(m_dir + "/Repaired").entryList({"*.mp4", "*.mkv"}, QDir::Files), QStringList());
        QVERIFY(g_repairedPaths.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestMtsDat)
#include "test_mts_dat.moc"
