// End to end: camera-like H.264 files with AAC or PCM sound whose movie was
// lost, repaired from a sample (other damage: the QuickTime end-to-end test).
#include "core/repair_globals.h"
#include "core/quicktime_route.h"
#include "recovery/h264/overlapped_mux.h"
#include "support/signal_log.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace testvideo;

namespace {

struct Pcm {
    const char* tag;   // the sample entry the muxer gives the sound
    const char* codec;
    int rate;
};
const Pcm kPcm[] = {{"sowt", "pcm_s16le", 48000}, {"twos", "pcm_s16be", 48000},
                    {"lpcm", "pcm_s24le", 96000}};   // the muxer writes lpcm only above 65535 Hz

// A camera clip (see cameraClip) with AAC, or eight seconds at 25 fps with
// uncompressed sound of the kind and access unit delimiters.
QString Camera(const QString& kind, const QString& suffix, int rate, bool sample, bool audio = true,
               bool audioFirst = false)
{
    if (kind == QLatin1String("aac"))
        return cameraClip(sample, rate, suffix, audio, audioFirst);
    const Pcm* pcm = nullptr;
    for (const Pcm& p : kPcm)
        pcm = kind == QLatin1String(p.tag) ? &p : pcm;
    const QString args = QStringLiteral(
        "-f lavfi -i testsrc2=size=640x360:rate=25 -f lavfi -i sine=frequency=440:sample_rate=%1 -t 8 -vf hue=h=%2 "
        "-c:v libx264 -preset veryfast -g 30 -b:v 4M -pix_fmt yuv420p -x264-params aud=1 -c:a %3 -ar %1 -ac 2");
    return make(QStringLiteral("pcm_camera_%1_%2.mov").arg(kind, sample ? QStringLiteral("sample") : QStringLiteral("clip")),
                splitArgs(args.arg(pcm->rate).arg(sample ? 90 : 0).arg(QLatin1String(pcm->codec))));
}

// MD5 of the first sound stream's samples, as ffmpeg decodes them.
QByteArray SoundMd5(const QString& path)
{
    QByteArray out;
    run(QStringLiteral("ffmpeg"), splitArgs(QStringLiteral("-v error -i")) << path << splitArgs(QStringLiteral("-map 0:a:0 -f md5 -")), &out);
    return out.trimmed();
}

double AudioSeconds(const QString& path) { return probeEntries(path, QStringLiteral("a:0"), QStringLiteral("stream=duration")).toDouble(); }

} // namespace

class TestH264E2e : public QObject {
    Q_OBJECT
    QString m_dir;

private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("h264e2e")); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void lostMovieRepairedFromSample_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<int>("rate");
        QTest::addColumn<bool>("audio");
        QTest::addColumn<bool>("audioFirst");
        QTest::addColumn<double>("minShare");
        QTest::newRow("mov 25, movie cut off") << "aac" << "mov" << 25 << true << false << 0.95;
        // The muxer runs from the stream files after the scan, not through
        // pipes during it.
        QTest::newRow("mov 25, movie cut off, muxed after the scan") << "aac" << "mov" << 25 << true << false << 0.95;
        QTest::newRow("mp4 30, movie cut off") << "aac" << "mp4" << 30 << true << false << 0.95;
        QTest::newRow("mov 25, no sound") << "aac" << "mov" << 25 << false << false << 0.95;
        QTest::newRow("mp4 25, sample's sound first") << "aac" << "mp4" << 25 << true << true << 0.95;
        for (const Pcm& p : kPcm)
            QTest::newRow(qPrintable(QStringLiteral("%1, movie cut off").arg(QLatin1String(p.tag))))
                << p.tag << "mov" << 25 << true << false << 0.90;
    }
    void lostMovieRepairedFromSample()
    {
        QFETCH(QString, kind);
        QFETCH(QString, suffix);
        QFETCH(int, rate);
        QFETCH(bool, audio);
        QFETCH(bool, audioFirst);
        QFETCH(double, minShare);
        const bool aac = kind == QLatin1String("aac");
        const QString clip = Camera(kind, suffix, rate, false, audio);
        const QString sample = Camera(kind, suffix, rate, true, audio, audioFirst);
        QVERIFY(!clip.isEmpty() && !sample.isEmpty());
        // The muxer's choice of sample entry decides which pass runs.
        if (!aac)
            QCOMPARE(probeEntries(clip, QStringLiteral("a:0"), QStringLiteral("stream=codec_tag_string")), kind.toLatin1());

        QByteArray bytes = readAll(clip);
        cutMoov(bytes);
        const int expected = decodedVideoFrames(clip);

        bool firstPass = true;
        if (QByteArray(QTest::currentDataTag()).endsWith("after the scan"))
            qputenv(OverlappedMux::kAfterScanVariable, "1");
        const QString out = repairWithSample(m_dir, QStringLiteral("clip.") + suffix, bytes, sample, &firstPass);
        qunsetenv(OverlappedMux::kAfterScanVariable);
        QVERIFY2(!firstPass, "a file without its movie waits for a sample");
        QVERIFY2(!out.isEmpty(), "the pass with the sample made no file");
        const int frames = decodedVideoFrames(out);
        qInfo("%s: %d of %d video frames", QTest::currentDataTag(), frames, expected);
        QVERIFY2(frames >= minShare * expected, qPrintable(QStringLiteral("%1 of %2").arg(frames).arg(expected)));
        if (!aac) {
            const double seconds = AudioSeconds(out);
            qInfo("%s: %.2f s of sound", QTest::currentDataTag(), seconds);
            QVERIFY2(seconds >= 7.0, qPrintable(QStringLiteral("%1 s of sound").arg(seconds)));
            // The rebuild copies the sound runs as they stand: a run cut a
            // byte too short or too long would shift every sample behind it.
            if (kind != QLatin1String("lpcm"))
                QCOMPARE(SoundMd5(out), SoundMd5(clip));
        } else if (audio) {
            // Sound for at least half the clip's length decodes.
            const int audioFrames = decodedFrames(out, QStringLiteral("a:0"));
            const double seconds = audioFrames * 1024.0 / 48000.0;
            qInfo("%s: %.2f s of sound (%d frames)", QTest::currentDataTag(), seconds, audioFrames);
            QVERIFY(seconds >= 5.0);
        }
    }

    // A sample of 12 bits and no channels: a verdict, and any output decodes.
    void oddPcmSampleEndsInAVerdict()
    {
        QByteArray bytes = readAll(Camera(QStringLiteral("lpcm"), QStringLiteral("mov"), 25, false));
        QByteArray sample = readAll(Camera(QStringLiteral("lpcm"), QStringLiteral("mov"), 25, true));
        QVERIFY(!bytes.isEmpty() && !sample.isEmpty());
        cutMoov(bytes);
        const int stsd = sample.indexOf("lpcm", sample.indexOf("smhd")) - 16;   // the entry's code is 16 bytes behind stsd's
        QCOMPARE(sample.mid(stsd, 4), QByteArray("stsd"));
        sample.replace(stsd + 62, 2, QByteArray(2, '\0'));             // no channels
        sample.replace(stsd + 68, 4, QByteArray::fromHex("0000000C"));   // 12 bits
        const QString in = m_dir + QStringLiteral("/clip.mov"), samplePath = m_dir + QStringLiteral("/sample.mov");
        QVERIFY(writeAll(in, bytes) && writeAll(samplePath, sample));
        const BatchResult r = runBatch({QStringLiteral("--quiet"), QStringLiteral("--reference"), samplePath, in}, 300000);
        QVERIFY(!r.verdicts().isEmpty());
        QCOMPARE(r.end().value("result").toString(), QStringLiteral("finished"));
        if (!r.output().isEmpty())
            QVERIFY(decodedVideoFrames(r.output()) > 0);
    }
};

QTEST_GUILESS_MAIN(TestH264E2e)
#include "test_h264_e2e.moc"
