// End to end through the batch runner: camera-like H.264 + AAC files whose
// movie was lost (recording cut off), with holes, cut at half, without sound,
// repaired from a separate sample recorded with the same settings; healthy
// files remuxed on the first pass. The input is never changed.
#include "core/repair_globals.h"
#include "core/thread_video_repair.h"
#include "recovery/h264/overlapped_mux.h"
#include "support/signal_log.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QtTest>

using namespace testvideo;

namespace {

// A ten-second clip as a camera would record it: high profile, a key frame
// every 30 frames, 4 Mbit/s, AAC 48 kHz stereo. The sample differs in its
// picture (the hue) but not in its settings.
QString Camera(const QString& suffix, int rate, bool sample, bool audio = true, bool audioFirst = false)
{
    QStringList a = {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                     QStringLiteral("testsrc2=size=640x360:rate=%1").arg(rate)};
    if (audio)
        a << QStringLiteral("-f") << QStringLiteral("lavfi") << QStringLiteral("-i")
          << QStringLiteral("sine=frequency=440:sample_rate=48000");
    a << QStringLiteral("-t") << QStringLiteral("10") << QStringLiteral("-vf")
      << QStringLiteral("hue=h=%1").arg(sample ? 90 : 0) << QStringLiteral("-c:v") << QStringLiteral("libx264")
      << QStringLiteral("-preset") << QStringLiteral("veryfast") << QStringLiteral("-profile:v")
      << QStringLiteral("high") << QStringLiteral("-g") << QStringLiteral("30") << QStringLiteral("-b:v")
      << QStringLiteral("4M") << QStringLiteral("-pix_fmt") << QStringLiteral("yuv420p");
    if (audio)
        a << QStringLiteral("-c:a") << QStringLiteral("aac") << QStringLiteral("-ac") << QStringLiteral("2")
          << QStringLiteral("-b:a") << QStringLiteral("128k");
    if (audioFirst)
        a << QStringLiteral("-map") << QStringLiteral("1:a") << QStringLiteral("-map") << QStringLiteral("0:v");
    const QString name = QStringLiteral("camera_%1_%2%3%4%5.%6")
                             .arg(rate)
                             .arg(sample ? QStringLiteral("sample") : QStringLiteral("clip"))
                             .arg(audio ? QString() : QStringLiteral("_mute"))
                             .arg(audioFirst ? QStringLiteral("_audiofirst") : QString())
                             .arg(QString())
                             .arg(suffix);
    return make(name, a);
}

// Video packets of a healthy file that lie wholly before position end.
int VideoFramesBefore(const QString& path, qint64 end)
{
    QByteArray out;
    run(QStringLiteral("ffprobe"), {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-select_streams"),
                                    QStringLiteral("v:0"), QStringLiteral("-show_entries"),
                                    QStringLiteral("packet=pos,size"), QStringLiteral("-of"), QStringLiteral("csv=p=0"),
                                    path},
        &out);
    int n = 0;
    for (const QByteArray& line : out.split('\n')) {
        const QList<QByteArray> f = line.split(',');
        if (f.size() >= 2 && f[1].toLongLong() + f[0].toLongLong() <= end)
            ++n;
    }
    return n;
}

} // namespace

class TestH264E2e : public QObject {
    Q_OBJECT
    QString m_dir;


private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("h264e2e")); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void healthyFilesAreRemuxedOnTheFirstPass_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::newRow("mp4") << QStringLiteral("mp4");
        QTest::newRow("mov") << QStringLiteral("mov");
    }
    void healthyFilesAreRemuxedOnTheFirstPass()
    {
        QFETCH(QString, suffix);
        const QString clip = Camera(suffix, 25, false);
        QVERIFY(!clip.isEmpty());
        const QString in = m_dir + QStringLiteral("/healthy.") + suffix;
        QVERIFY(QFile::copy(clip, in));
        const BatchResult r = runBatch({QStringLiteral("--quiet"), in});
        QCOMPARE(r.verdicts().size(), 1);
        QVERIFY(r.verdicts().first().value("repaired").toBool());
        const QString out = m_dir + QStringLiteral("/Repaired/healthy.") + suffix;
        QCOMPARE(decodedVideoFrames(out), decodedVideoFrames(clip));
        QCOMPARE(decodedFrames(out, QStringLiteral("a:0")), decodedFrames(clip, QStringLiteral("a:0")));
    }

    void lostMovieRepairedFromSample_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<int>("rate");
        QTest::addColumn<QString>("damage");
        QTest::addColumn<bool>("audio");
        QTest::addColumn<bool>("audioFirst");
        QTest::addColumn<double>("minShare");
        QTest::newRow("mov 25, movie cut off") << "mov" << 25 << "cut" << true << false << 0.95;
        // The muxer is run from the stream files only after the scan, not
        // through pipes during it.
        QTest::newRow("mov 25, movie cut off, muxed after the scan") << "mov" << 25 << "cut" << true << false << 0.95;
        QTest::newRow("mp4 30, movie cut off") << "mp4" << 30 << "cut" << true << false << 0.95;
        QTest::newRow("mp4 25, movie cut off") << "mp4" << 25 << "cut" << true << false << 0.95;
        QTest::newRow("mov 25, three holes") << "mov" << 25 << "holes" << true << false << 0.90;
        QTest::newRow("mov 30, cut at half") << "mov" << 30 << "half" << true << false << 0.95;
        QTest::newRow("mov 25, no sound") << "mov" << 25 << "cut" << false << false << 0.95;
        QTest::newRow("mp4 25, sample's sound first") << "mp4" << 25 << "cut" << true << true << 0.95;
    }
    void lostMovieRepairedFromSample()
    {
        QFETCH(QString, suffix);
        QFETCH(int, rate);
        QFETCH(QString, damage);
        QFETCH(bool, audio);
        QFETCH(bool, audioFirst);
        QFETCH(double, minShare);
        const QString clip = Camera(suffix, rate, false, audio);
        const QString sample = Camera(suffix, rate, true, audio, audioFirst);
        QVERIFY(!clip.isEmpty() && !sample.isEmpty());

        QByteArray bytes = readAll(clip);
        cutMoov(bytes);
        int expected = decodedVideoFrames(clip);
        if (damage == QLatin1String("holes")) {
            const qint64 mdat = findTopLevelAtom(bytes, "mdat");
            for (double f : {0.25, 0.5, 0.75})
                zeroRange(bytes, mdat + qint64((bytes.size() - mdat) * f), 65536);
        } else if (damage == QLatin1String("half")) {
            cutFrom(bytes, bytes.size() / 2);
            expected = VideoFramesBefore(clip, bytes.size());
        }

        bool firstPass = true;
        const bool afterScan = QByteArray(QTest::currentDataTag()).endsWith("after the scan");
        if (afterScan)
            qputenv(OverlappedMux::kAfterScanVariable, "1");
        const QString out = repairWithSample(m_dir, QStringLiteral("clip.") + suffix, bytes, sample, &firstPass);
        qunsetenv(OverlappedMux::kAfterScanVariable);
        QVERIFY2(!firstPass, "a file without its movie waits for a sample");
        QVERIFY2(!out.isEmpty(), "the pass with the sample made no file");
        const int frames = decodedVideoFrames(out);
        qInfo("%s: %d of %d video frames", QTest::currentDataTag(), frames, expected);
        QVERIFY2(frames >= minShare * expected, qPrintable(QStringLiteral("%1 of %2").arg(frames).arg(expected)));
        if (audio && damage == QLatin1String("cut")) {
            // Sound for at least half the clip's length decodes.
            const int audioFrames = decodedFrames(out, QStringLiteral("a:0"));
            const double seconds = audioFrames * 1024.0 / 48000.0;
            qInfo("%s: %.2f s of sound (%d frames)", QTest::currentDataTag(), seconds, audioFrames);
            QVERIFY(seconds >= 5.0);
        }
    }

    // The muxer's run on the pipes fails (here it refuses them): the file
    // is scanned again into the stream files, the muxer's run from them
    // makes the output, and no scratch file is left behind.
    void failedPipeRunScansAgain()
    {
        const QString clip = Camera(QStringLiteral("mov"), 25, false);
        const QString sample = Camera(QStringLiteral("mov"), 25, true);
        QVERIFY(!clip.isEmpty() && !sample.isEmpty());
        QByteArray bytes = readAll(clip);
        cutMoov(bytes);
        const QString in = m_dir + QStringLiteral("/clip.mov");
        QVERIFY(writeAll(in, bytes));

        const QString savedAppDir = g_appDir;
        g_appDir = fakeMuxer(m_dir + QStringLiteral("/muxer"),
                             "case \"$*\" in *pipe-video*) : > \"$(dirname \"$0\")/refused\"; exit 1;; esac\n"
                             "exec ffmpeg \"$@\"\n");
        g_referenceMode = true;
        g_referencePath = sample;
        ThreadVideoRepair t;
        SignalLog log(t);
        SignalLog::runAndWait(t, {in}, true);
        g_referenceMode = false;
        const QString muxerDir = g_appDir;
        g_appDir = savedAppDir;

        QVERIFY(QFile::exists(muxerDir + QStringLiteral("/refused")));
        QVERIFY2(log.all().contains(QStringLiteral("WriteStatus 1 clip.mov 1")), qPrintable(log.all().join(' ')));
        const int frames = decodedVideoFrames(m_dir + QStringLiteral("/Repaired/clip.mov"));
        QVERIFY2(frames >= 0.95 * decodedVideoFrames(clip), qPrintable(QString::number(frames)));
        QVERIFY(decodedFrames(m_dir + QStringLiteral("/Repaired/clip.mov"), QStringLiteral("a:0")) * 1024 / 48000 >= 5);
        QCOMPARE(QDir(m_dir + QStringLiteral("/Repaired")).entryList(QDir::Files),
                 (QStringList{QStringLiteral("clip.mov"), QStringLiteral("logFile.txt")}));
    }
};

QTEST_GUILESS_MAIN(TestH264E2e)
#include "test_h264_e2e.moc"
