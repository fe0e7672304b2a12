// MTS, DAT and IMKH camera files end to end: ffmpeg-made BDAV streams (whole,
// start zeroed, with holes) through reelwright-batch; a video CD style .dat
// encoded anew into a .mov; an IMKH file remuxed under its own name; and the
// muxer's command lines, its failures and bad input, through fake muxers.
#include "support/signal_log.h"
#include "support/test_videos.h"

#include "core/thread_video_repair.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QRandomGenerator>
#include <QtTest>

using namespace testvideo;

namespace {

constexpr int kUnit = 192;

QString ffprobeText(const QString& path, const QStringList& args)
{
    QByteArray out;
    if (run(QStringLiteral("ffprobe"), QStringList{QStringLiteral("-v"), QStringLiteral("error")} + args + QStringList{path}, &out) != 0)
        return QString();
    return QString::fromUtf8(out).trimmed();
}

// Decoded frames of the first audio stream, or -1 when there is none.
int decodedAudioFrames(const QString& path)
{
    bool ok = false;
    const int n = ffprobeText(path, {QStringLiteral("-count_frames"), QStringLiteral("-select_streams"), QStringLiteral("a:0"),
                                     QStringLiteral("-show_entries"), QStringLiteral("stream=nb_read_frames"),
                                     QStringLiteral("-of"), QStringLiteral("csv=p=0")})
                      .trimmed().split(QLatin1Char('\n')).value(0).trimmed().toInt(&ok);   // a transport stream lists its program too
    return ok ? n : -1;
}

// "format codec codec...", such as "mov,mp4,m4a,3gp,3g2,mj2 h264 aac".
QString formatAndCodecs(const QString& path)
{
    const QString format = ffprobeText(path, {QStringLiteral("-show_entries"), QStringLiteral("format=format_name"),
                                              QStringLiteral("-of"), QStringLiteral("csv=p=0")});
    const QString codecs = ffprobeText(path, {QStringLiteral("-show_entries"), QStringLiteral("stream=codec_name"),
                                              QStringLiteral("-of"), QStringLiteral("csv=p=0")});
    // csv quotes a field that holds commas, such as "mov,mp4,...".
    return QString(format).remove(QLatin1Char('"')) + QLatin1Char(' ') + codecs.split(QLatin1Char('\n')).join(QLatin1Char(' '));
}

// Records its arguments (one a line) and folder, and writes "x" to its last argument.
const QByteArray kRecordingMuxer = "printf '%s\\n' \"$@\" > \"$(dirname \"$0\")/args.txt\"\n"
                                   "pwd > \"$(dirname \"$0\")/cwd.txt\"\n"
                                   "for a; do last=$a; done\nprintf x > \"$last\"\n";
const QByteArray kFailingMuxer = "echo 'Invalid data found when processing input' >&2\nexit 1\n";
const QByteArray kEmptyMuxer = "for a; do last=$a; done\n: > \"$last\"\nexit 0\n";

} // namespace

class TestMtsDatE2e : public QObject {
    Q_OBJECT
    QString m_dir, m_bdav, m_vcd, m_ps;
    QString m_savedAppDir;
    QByteArray m_savedPath;

    static QString repairedPath(const QString& input, const QString& name = QString())
    {
        return QFileInfo(input).absolutePath() + QStringLiteral("/Repaired/")
             + (name.isEmpty() ? QFileInfo(input).fileName() : name);
    }
    QString imkhFile(const QString& name)
    {
        const QString path = m_dir + QLatin1Char('/') + name;
        writeAll(path, "IMKH" + QByteArray(36, '\0') + readAll(m_ps));
        return path;
    }

private Q_SLOTS:
    void initTestCase()
    {
        // BDAV as cameras write it: H.264 on PID 0x1011, AC-3 on 0x1100. A
        // short GOP keeps the loss of a damaged start to a few frames.
        QStringList bdav = lavfiVideo(8) + lavfiAudio(8);
        bdav << QStringLiteral("-c:v") << QStringLiteral("libx264") << QStringLiteral("-preset") << QStringLiteral("ultrafast")
             << QStringLiteral("-g") << QStringLiteral("12") << QStringLiteral("-pix_fmt") << QStringLiteral("yuv420p")
             << QStringLiteral("-c:a") << QStringLiteral("ac3") << QStringLiteral("-streamid") << QStringLiteral("0:0x1011")
             << QStringLiteral("-streamid") << QStringLiteral("1:0x1100") << QStringLiteral("-f") << QStringLiteral("mpegts")
             << QStringLiteral("-mpegts_m2ts_mode") << QStringLiteral("1");
        m_bdav = make(QStringLiteral("bdav.mts"), bdav);
        m_vcd = make(QStringLiteral("vcd.dat"), lavfiVideo(4) + lavfiAudio(4) + QStringList{QStringLiteral("-target"), QStringLiteral("ntsc-vcd")});
        QStringList ps = lavfiVideo(4) + lavfiAudio(4);
        ps << QStringLiteral("-c:v") << QStringLiteral("libx264") << QStringLiteral("-preset") << QStringLiteral("ultrafast")
           << QStringLiteral("-pix_fmt") << QStringLiteral("yuv420p") << QStringLiteral("-c:a") << QStringLiteral("mp2")
           << QStringLiteral("-f") << QStringLiteral("mpeg");
        m_ps = make(QStringLiteral("camera.mpg"), ps);
        QVERIFY2(!m_bdav.isEmpty() && !m_vcd.isEmpty() && !m_ps.isEmpty(), "ffmpeg could not make the clips");
        QCOMPARE(QFileInfo(m_bdav).size() % kUnit, 0);
        m_savedAppDir = g_appDir;
        m_savedPath = qgetenv("PATH");
    }
    void init()
    {
        m_dir = freshDir(QStringLiteral("mts-dat"));
        g_appDir = binDir() + QStringLiteral("/Libmp4");
        g_passFailed = false;
        g_stopRequested = false;
        g_customWorkRoot.clear();
        g_referenceMode = false;
        g_repairedPaths.clear();
    }
    void cleanup()
    {
        QDir(m_dir).removeRecursively();
        g_appDir = m_savedAppDir;
        g_passFailed = false;
        qputenv("PATH", m_savedPath);
    }

    void bdavStream_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::newRow("whole") << QStringLiteral("whole");
        QTest::newRow("first four units zeroed") << QStringLiteral("start");
        QTest::newRow("holes") << QStringLiteral("holes");
    }
    void bdavStream()
    {
        QFETCH(QString, damage);
        QByteArray bytes = readAll(m_bdav);
        if (damage == QLatin1String("start")) {
            zeroRange(bytes, 0, 4 * kUnit);
        } else if (damage == QLatin1String("holes")) {
            for (int k = 1; k <= 3; ++k)
                zeroRange(bytes, bytes.size() * k / 4 + 77 * k, 3000);   // off the unit grid
        }
        const QString input = m_dir + QStringLiteral("/clip.mts");
        QVERIFY(writeAll(input, bytes));
        const QString before = sha256(input);
        // What ffmpeg itself still decodes from the damaged stream.
        const int remaining = decodedVideoFrames(input);
        const int remainingSound = decodedAudioFrames(input);
        QVERIFY(remaining > 150 && remainingSound > 150);

        const BatchResult r = runBatch({QStringLiteral("--quiet"), input});
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(r.verdicts().size(), 1);
        QVERIFY(r.verdicts()[0].value(QStringLiteral("repaired")).toBool());
        const QString out = repairedPath(input);
        QCOMPARE(r.end().value(QStringLiteral("outputs")).toArray().first().toString(), out);
        QCOMPARE(sha256(input), before);

        const QByteArray rebuilt = readAll(out);
        QCOMPARE(rebuilt.size() % kUnit, 0);
        QCOMPARE(rebuilt.mid(4, 3), QByteArray("\x47\x40\x00", 3));            // fresh PAT first
        QCOMPARE(rebuilt.mid(3 * kUnit + 4, 4), QByteArray("\x47\x10\x01\x20", 4));   // PCR unit fourth
        const int decoded = decodedVideoFrames(out);
        const int sound = decodedAudioFrames(out);
        QVERIFY2(decoded * 10 >= remaining * 9, qPrintable(QStringLiteral("%1 of %2 frames").arg(decoded).arg(remaining)));
        QVERIFY2(sound * 10 >= remainingSound * 9, qPrintable(QStringLiteral("%1 of %2 sound frames").arg(sound).arg(remainingSound)));
        QVERIFY(formatAndCodecs(out).contains(QLatin1String("h264 ac3")));

        // The rebuilt stream has an intact start: a second repair copies it as it is.
        const QString again = m_dir + QStringLiteral("/again/clip.mts");
        QDir().mkpath(QFileInfo(again).absolutePath());
        QVERIFY(QFile::copy(out, again));
        const BatchResult r2 = runBatch({QStringLiteral("--quiet"), again});
        QVERIFY(r2.verdicts().value(0).value(QStringLiteral("repaired")).toBool());
        QVERIFY(readAll(repairedPath(again)) == rebuilt);
    }

    void vcdDatEncodedToMov()
    {
        const QString input = m_dir + QStringLiteral("/a.b.dat");
        QVERIFY(QFile::copy(m_vcd, input));
        const QString before = sha256(input);
        const BatchResult r = runBatch({QStringLiteral("--quiet"), input});
        QCOMPARE(r.verdicts().size(), 1);
        QVERIFY(r.verdicts()[0].value(QStringLiteral("repaired")).toBool());
        const QString out = repairedPath(input, QStringLiteral("a.mov"));
        QCOMPARE(r.end().value(QStringLiteral("outputs")).toArray().first().toString(), out);
        QCOMPARE(sha256(input), before);
        QVERIFY2(formatAndCodecs(out).startsWith(QLatin1String("mov,")), qPrintable(formatAndCodecs(out)));
        QVERIFY(formatAndCodecs(out).contains(QLatin1String("h264 aac")));
        const int source = decodedVideoFrames(m_vcd);
        QVERIFY(source > 90);
        QVERIFY(decodedVideoFrames(out) * 10 >= source * 9);
    }

    // Through the batch runner, once the movie search knows the IMKH mark.
    void imkhFileRemuxedUnderItsName()
    {
        const QString input = imkhFile(QStringLiteral("cam.mp4"));
        const QString before = sha256(input);
        const BatchResult r = runBatch({QStringLiteral("--quiet"), input});
        QCOMPARE(r.verdicts().size(), 1);
        QVERIFY(r.verdicts()[0].value(QStringLiteral("repaired")).toBool());
        const QString out = repairedPath(input);
        QCOMPARE(r.end().value(QStringLiteral("outputs")).toArray().first().toString(), out);
        QCOMPARE(sha256(input), before);
        QCOMPARE(readAll(out).left(4), QByteArray("\x1A\x45\xDF\xA3", 4));   // Matroska inside
        QVERIFY(decodedVideoFrames(out) >= 90);
        QVERIFY(!QFile::exists(repairedPath(input, QStringLiteral("1_cam.mp4.mkv"))));
    }

    void remuxCameraFileDirect()
    {
        const QString input = imkhFile(QStringLiteral("cam.mp4"));
        ThreadVideoRepair t;
        g_workRoot = m_dir;
        t.m_fileName = QStringLiteral("cam.mp4");
        t.RemuxCameraFile(input);
        QVERIFY(!g_passFailed);
        const QString out = repairedPath(input);
        QCOMPARE(g_repairedPaths, QStringList{out});
        QCOMPARE(readAll(out).left(4), QByteArray("\x1A\x45\xDF\xA3", 4));
        QVERIFY(decodedVideoFrames(out) >= 90);
        QCOMPARE(QDir(m_dir + QStringLiteral("/Repaired")).entryList(QDir::Files), QStringList{QStringLiteral("cam.mp4")});
    }

    void muxerCommandLines()
    {
        g_appDir = fakeMuxer(m_dir + QStringLiteral("/fake-rec"), kRecordingMuxer);
        g_workRoot = m_dir;
        const QString repaired = m_dir + QStringLiteral("/Repaired");
        auto args = [&] { return QString::fromUtf8(readAll(g_appDir + QStringLiteral("/args.txt"))).split(QLatin1Char('\n'), Qt::SkipEmptyParts); };
        ThreadVideoRepair t;

        const QString dat = m_dir + QStringLiteral("/my clip.v2.dat");
        QVERIFY(writeAll(dat, "data"));
        t.RepairDatFile(dat);
        QVERIFY(t.m_datDone);
        QCOMPARE(args(), (QStringList{"-i", dat, "-c:v", "libx264", "-c:a", "aac", "-strict", "experimental", "my clip.mov"}));
        QCOMPARE(QString::fromUtf8(readAll(g_appDir + QStringLiteral("/cwd.txt"))).trimmed(), repaired);
        QCOMPARE(readAll(repaired + QStringLiteral("/my clip.mov")), QByteArray("x"));

        // A leading dot gives no empty name; a later file of the same stem overwrites.
        const QString lead = m_dir + QStringLiteral("/.my clip.dat");
        QVERIFY(writeAll(lead, "data"));
        t.RepairDatFile(lead);
        QVERIFY(t.m_datDone);
        QCOMPARE(args().last(), QStringLiteral("my clip.mov"));
        QCOMPARE(g_repairedPaths, (QStringList{repaired + "/my clip.mov", repaired + "/my clip.mov"}));

        const QString cam = imkhFile(QStringLiteral("cam 1.mp4"));
        t.m_fileName = QStringLiteral("cam 1.mp4");
        t.RemuxCameraFile(cam);
        QVERIFY(!g_passFailed);
        QCOMPARE(args(), (QStringList{"-r", "25", "-i", cam, "-map", "0", "-c", "copy", "1_cam 1.mp4.mkv"}));
        QCOMPARE(readAll(repaired + QStringLiteral("/cam 1.mp4")), QByteArray("x"));
        QVERIFY(!QFile::exists(repaired + QStringLiteral("/1_cam 1.mp4.mkv")));
        QCOMPARE(g_repairedPaths.last(), repaired + QStringLiteral("/cam 1.mp4"));
    }

    // A muxer that fails, or leaves an empty file: a negative verdict and no output.
    void failingMuxer_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("exits with an error") << kFailingMuxer;
        QTest::newRow("leaves an empty file") << kEmptyMuxer;
        QTest::newRow("missing") << QByteArray();
    }
    void failingMuxer()
    {
        QFETCH(QByteArray, body);
        g_appDir = body.isEmpty() ? m_dir + QStringLiteral("/no-such-folder")
                                  : fakeMuxer(m_dir + QStringLiteral("/fake-bad"), body);
        if (body.isEmpty())
            qputenv("PATH", QByteArray("/nonexistent"));   // no ffmpeg to fall back on
        const QString dat = m_dir + QStringLiteral("/x.dat");
        QVERIFY(QFile::copy(m_vcd, dat));
        ThreadVideoRepair t;
        SignalLog log(t);
        t.RepairFiles({dat}, QString());
        QCOMPARE(log.matching(QStringLiteral("WriteStatus")), QStringList{QStringLiteral("WriteStatus 0 x.dat 0")});
        QVERIFY(!QFile::exists(repairedPath(dat, QStringLiteral("x.mov"))));
        QVERIFY(g_repairedPaths.isEmpty());

        const QString cam = imkhFile(QStringLiteral("cam.mp4"));
        const QString before = sha256(cam);
        g_workRoot = m_dir;
        t.m_fileName = QStringLiteral("cam.mp4");
        t.RemuxCameraFile(cam);
        QVERIFY(g_passFailed);
        QCOMPARE(sha256(cam), before);
        QCOMPARE(QDir(m_dir + QStringLiteral("/Repaired")).entryList({QStringLiteral("*.mp4"), QStringLiteral("*.mkv")}, QDir::Files),
                 QStringList());
        QVERIFY(g_repairedPaths.isEmpty());
    }

    void badInput()
    {
        QByteArray random(2 << 20, '\0');
        QRandomGenerator(7).fillRange(reinterpret_cast<quint32*>(random.data()), random.size() / 4);
        // The seed's bytes hold no packet head that the MTS scan recognises.
        for (const char* head : {"\x47\x40\x00", "\x47\x41\x00", "\x47\x40\x1F", "\x47\x10\x01", "\x47\x10\x11",
                                 "\x47\x30\x11", "\x47\x70\x11", "\x47\x50\x11", "\x47\x31\x00", "\x47\x71\x00"})
            QVERIFY(!random.contains(QByteArray(head, 3)));
        const QList<QPair<QString, QByteArray>> files{{QStringLiteral("short.mts"), QByteArray(100, char(0x47))},
                                                      {QStringLiteral("random.mts"), random},
                                                      {QStringLiteral("short.dat"), QByteArray(100, char(0x47))},
                                                      {QStringLiteral("random.dat"), random}};
        QStringList inputs, hashes;
        for (const auto& f : files) {
            inputs << m_dir + QLatin1Char('/') + f.first;
            QVERIFY(writeAll(inputs.last(), f.second));
            hashes << sha256(inputs.last());
        }
        const BatchResult r = runBatch(QStringList{QStringLiteral("--quiet")} + inputs, 120000);
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(r.verdicts().size(), 4);
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(r.verdicts()[i].value(QStringLiteral("file")).toString(), files[i].first);
            QVERIFY(!r.verdicts()[i].value(QStringLiteral("repaired")).toBool());
            QCOMPARE(sha256(inputs[i]), hashes[i]);
        }
        QVERIFY(r.end().value(QStringLiteral("outputs")).toArray().isEmpty());
        QCOMPARE(QDir(m_dir + QStringLiteral("/Repaired")).entryList({QStringLiteral("*.mts"), QStringLiteral("*.mov")}, QDir::Files),
                 QStringList());
    }
};

QTEST_GUILESS_MAIN(TestMtsDatE2e)
#include "test_mts_dat_e2e.moc"
