// End to end: HEVC files whose movie was lost, repaired from a sample; bad
// pairings end in a verdict.
#include "support/test_videos.h"

#include <QDir>
#include <QtTest>

using namespace testvideo;

namespace {

// Eight seconds of 320x240 HEVC at 25 frames per second, a key frame every
// 25 frames, AAC 48 kHz stereo. The sample differs only in its picture.
// pcm: 24-bit PCM at 96 kHz, which the muxer writes as lpcm, in quarter
// second packets, so that video chunks hold several frames as a camera's do;
// and without the encoder's settings message, so that the sample description
// stays as small as a camera's, which the rebuild of large files copies.
QString HevcClip(const QString& suffix, bool sample, bool audio = true, bool pcm = false)
{
    QStringList a = lavfiVideo(8, "320x240", 25);
    if (audio)
        a += pcm ? splitArgs("-f lavfi -i sine=frequency=440:sample_rate=96000:duration=8:samples_per_frame=24000")
                 : lavfiAudio(8, 48000);
    a += splitArgs(QStringLiteral("-vf hue=h=%1 -c:v libx265 -preset ultrafast -x265-params log-level=error:keyint=25%2"
                                  " -tag:v hvc1 -pix_fmt yuv420p").arg(sample ? 90 : 0).arg(pcm ? ":info=0" : ""));
    if (audio)
        a += splitArgs(pcm ? "-c:a pcm_s24le -ac 2" : "-c:a aac -ac 2 -b:a 128k");
    return make(QStringLiteral("hevc_%1%2%3.%4").arg(sample ? "sample" : "clip", audio ? "" : "_mute", pcm ? "_lpcm" : "", suffix), a);
}

} // namespace

class TestHevcE2e : public QObject {
    Q_OBJECT
    QString m_dir;

private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("hevce2e")); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void lostMovieRepairedFromSample_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<bool>("audio");
        QTest::addColumn<bool>("pcm");
        QTest::addColumn<bool>("large");
        QTest::newRow("mp4, movie cut off") << "mp4" << true << false << false;
        QTest::newRow("mov, no sound") << "mov" << false << false << false;
        QTest::newRow("mov lpcm, movie cut off") << "mov" << true << true << false;
        // Above 100 MiB (a free atom of zeros ahead of the media) an lpcm file is
        // indexed in place: the rebuilt file keeps its sound as PCM.
        QTest::newRow("mov lpcm, above 100 MiB: index mode") << "mov" << true << true << true;
    }
    void lostMovieRepairedFromSample()
    {
        QFETCH(QString, suffix);
        QFETCH(bool, audio);
        QFETCH(bool, pcm);
        QFETCH(bool, large);
        const QString clip = HevcClip(suffix, false, audio, pcm);
        const QString sample = HevcClip(suffix, true, audio, pcm);
        QVERIFY(!clip.isEmpty() && !sample.isEmpty());
        QByteArray bytes = readAll(clip);
        cutMoov(bytes);
        if (large) {
            const qint64 mdat = findTopLevelAtom(bytes, "mdat");
            QVERIFY(mdat > 0);
            bytes.insert(int(mdat), qtAtom("free", QByteArray(0x6400000 + 0x10000 - 8, '\0')));
        }
        const int expected = decodedFrames(clip, QStringLiteral("v:0"));

        bool firstPass = true;
        const QString out = repairWithSample(m_dir, QStringLiteral("clip.") + suffix, bytes, sample, &firstPass);
        bytes.clear();
        QVERIFY2(!firstPass, "a file without its movie waits for a sample");
        QVERIFY2(!out.isEmpty(), "the pass with the sample made no file");
        const int frames = decodedFrames(out, QStringLiteral("v:0"));
        qInfo("%s: %d of %d video frames", QTest::currentDataTag(), frames, expected);
        QVERIFY2(frames >= 0.9 * expected, qPrintable(QStringLiteral("%1 of %2").arg(frames).arg(expected)));
        if (large) {
            const QByteArray codec = probeEntries(out, QStringLiteral("a:0"), QStringLiteral("stream=codec_name"));
            QVERIFY2(codec.startsWith("pcm_"), codec.constData());
            QVERIFY(decodedFrames(out, QStringLiteral("a:0")) > 0);
        } else if (audio) {
            // The sound reaches the output as AAC at the source's rate.
            const int audioFrames = decodedFrames(out, QStringLiteral("a:0"));
            const double seconds = audioFrames * 1024.0 / (pcm ? 96000.0 : 48000.0);
            qInfo("%s: %.2f s of sound (%d frames)", QTest::currentDataTag(), seconds, audioFrames);
            QVERIFY(seconds >= 4.0);
        }
    }

    // Samples whose hvcC lies: a verdict. (A sample of another codec: the
    // QuickTime end-to-end test.)
    void badSamplesEndInVerdict_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("VPS count 65535") << 28 << QByteArray::fromHex("ffff");
        QTest::newRow("box size 30") << -4 << QByteArray::fromHex("0000001e");
        QTest::newRow("no arrays") << 26 << QByteArray::fromHex("00");
    }
    void badSamplesEndInVerdict()
    {
        QFETCH(int, offset);
        QFETCH(QByteArray, bytes);
        const QString clip = HevcClip("mov", false), good = HevcClip("mov", true);
        QVERIFY(!clip.isEmpty() && !good.isEmpty());
        QByteArray sampleBytes = readAll(good);
        const int hvcC = sampleBytes.indexOf("hvcC");
        QVERIFY(hvcC > 0);
        sampleBytes.replace(hvcC + offset, bytes.size(), bytes);
        const QString sample = m_dir + "/sample.mov";
        writeAll(sample, sampleBytes);
        QByteArray damaged = readAll(clip);
        cutMoov(damaged);
        bool firstPass = true;
        repairWithSample(m_dir, "clip.mov", damaged, sample, &firstPass);
        QVERIFY(!firstPass);
    }
};

QTEST_GUILESS_MAIN(TestHevcE2e)
#include "test_hevc_e2e.moc"
