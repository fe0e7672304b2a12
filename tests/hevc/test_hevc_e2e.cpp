// End to end through the batch runner: HEVC (hvc1) + AAC files whose movie
// was lost, repaired from a separate sample made with the same settings;
// healthy HEVC files remuxed on the first pass; bad pairings end in a
// verdict. The input is never changed.
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QRandomGenerator>
#include <QtTest>

using namespace testvideo;

namespace {

// Eight seconds of 320x240 HEVC at 25 frames per second, a key frame every
// 25 frames, AAC 48 kHz stereo. The sample differs only in its picture.
// pcm: 24-bit PCM at 96 kHz, which the muxer writes as lpcm, in quarter
// second packets, so that video chunks hold several frames as a camera's do.
QString HevcClip(const QString& suffix, bool sample, bool audio = true, bool pcm = false)
{
    QStringList a = lavfiVideo(8, QStringLiteral("320x240"), 25);
    if (audio && pcm)
        a << QStringLiteral("-f") << QStringLiteral("lavfi") << QStringLiteral("-i")
          << QStringLiteral("sine=frequency=440:sample_rate=96000:duration=8:samples_per_frame=24000");
    else if (audio)
        a << lavfiAudio(8, 48000);
    a << QStringLiteral("-vf") << QStringLiteral("hue=h=%1").arg(sample ? 90 : 0) << QStringLiteral("-c:v")
      << QStringLiteral("libx265") << QStringLiteral("-preset") << QStringLiteral("ultrafast")
      << QStringLiteral("-x265-params")
      // Without the encoder's settings message the sample description stays
      // as small as a camera's, which the rebuild of large files copies.
      << (pcm ? QStringLiteral("log-level=error:keyint=25:info=0") : QStringLiteral("log-level=error:keyint=25"))
      << QStringLiteral("-tag:v") << QStringLiteral("hvc1") << QStringLiteral("-pix_fmt")
      << QStringLiteral("yuv420p");
    if (audio && pcm)
        a << QStringLiteral("-c:a") << QStringLiteral("pcm_s24le") << QStringLiteral("-ac") << QStringLiteral("2");
    else if (audio)
        a << QStringLiteral("-c:a") << QStringLiteral("aac") << QStringLiteral("-ac") << QStringLiteral("2")
          << QStringLiteral("-b:a") << QStringLiteral("128k");
    return make(QStringLiteral("hevc_%1%2%3.%4")
                    .arg(sample ? QStringLiteral("sample") : QStringLiteral("clip"),
                         audio ? QString() : QStringLiteral("_mute"), pcm ? QStringLiteral("_lpcm") : QString(),
                         suffix),
                a);
}

} // namespace

class TestHevcE2e : public QObject {
    Q_OBJECT
    QString m_dir;


private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("hevce2e")); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void healthyFilesAreRemuxedWithoutSample_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<bool>("pcm");
        QTest::newRow("mp4") << QStringLiteral("mp4") << false;
        QTest::newRow("mov") << QStringLiteral("mov") << false;
        QTest::newRow("mov, lpcm") << QStringLiteral("mov") << true;
    }
    void healthyFilesAreRemuxedWithoutSample()
    {
        QFETCH(QString, suffix);
        QFETCH(bool, pcm);
        const QString clip = HevcClip(suffix, false, true, pcm);
        QVERIFY(!clip.isEmpty());
        const QString in = m_dir + QStringLiteral("/healthy.") + suffix;
        QVERIFY(QFile::copy(clip, in));
        const BatchResult r = runBatch({QStringLiteral("--quiet"), in});
        QCOMPARE(r.verdicts().size(), 1);
        QVERIFY(r.verdicts().first().value("repaired").toBool());
        const QString out = m_dir + QStringLiteral("/Repaired/healthy.") + suffix;
        QCOMPARE(decodedFrames(out, QStringLiteral("v:0")), decodedFrames(clip, QStringLiteral("v:0")));
        if (!pcm)
            QCOMPARE(decodedFrames(out, QStringLiteral("a:0")), decodedFrames(clip, QStringLiteral("a:0")));
        else
            QVERIFY(decodedFrames(out, QStringLiteral("a:0")) > 0);
    }

    void lostMovieRepairedFromSample_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<bool>("audio");
        QTest::addColumn<bool>("pcm");
        QTest::newRow("mp4, movie cut off") << QStringLiteral("mp4") << true << false;
        QTest::newRow("mov, movie cut off") << QStringLiteral("mov") << true << false;
        QTest::newRow("mov, no sound") << QStringLiteral("mov") << false << false;
        QTest::newRow("mov lpcm, movie cut off") << QStringLiteral("mov") << true << true;
    }
    void lostMovieRepairedFromSample()
    {
        QFETCH(QString, suffix);
        QFETCH(bool, audio);
        QFETCH(bool, pcm);
        const QString clip = HevcClip(suffix, false, audio, pcm);
        const QString sample = HevcClip(suffix, true, audio, pcm);
        QVERIFY(!clip.isEmpty() && !sample.isEmpty());
        QByteArray bytes = readAll(clip);
        cutMoov(bytes);
        const int expected = decodedFrames(clip, QStringLiteral("v:0"));

        bool firstPass = true;
        const QString out = repairWithSample(m_dir, QStringLiteral("clip.") + suffix, bytes, sample, &firstPass);
        QVERIFY2(!firstPass, "a file without its movie waits for a sample");
        QVERIFY2(!out.isEmpty(), "the pass with the sample made no file");
        const int frames = decodedFrames(out, QStringLiteral("v:0"));
        qInfo("%s: %d of %d video frames", QTest::currentDataTag(), frames, expected);
        QVERIFY2(frames >= 0.9 * expected, qPrintable(QStringLiteral("%1 of %2").arg(frames).arg(expected)));
        if (audio) {
            // The sound reaches the output as AAC at the source's rate.
            const int audioFrames = decodedFrames(out, QStringLiteral("a:0"));
            const double seconds = audioFrames * 1024.0 / (pcm ? 96000.0 : 48000.0);
            qInfo("%s: %.2f s of sound (%d frames)", QTest::currentDataTag(), seconds, audioFrames);
            QVERIFY(seconds >= 4.0);
        }
    }

    // Above 100 MiB an lpcm file is indexed in place, not cut into streams:
    // the rebuilt file keeps its sound as PCM. The size comes from a free
    // atom of zeros ahead of the media data, which the scan passes by size.
    void largeLpcmFileIsIndexedInPlace()
    {
        const QString clip = HevcClip(QStringLiteral("mov"), false, true, true);
        const QString sample = HevcClip(QStringLiteral("mov"), true, true, true);
        QVERIFY(!clip.isEmpty() && !sample.isEmpty());
        QByteArray bytes = readAll(clip);
        cutMoov(bytes);
        const qint64 mdat = findTopLevelAtom(bytes, "mdat");
        QVERIFY(mdat > 0);
        const int padding = 0x6400000 + 0x10000;
        QByteArray free(padding, '\0');
        free[0] = char(padding >> 24);
        free[1] = char(padding >> 16);
        free[2] = char(padding >> 8);
        free.replace(4, 4, "free");
        bytes.insert(int(mdat), free);

        bool firstPass = true;
        const QString out = repairWithSample(m_dir, QStringLiteral("large.mov"), bytes, sample, &firstPass);
        bytes.clear();
        QVERIFY(!firstPass);
        QVERIFY2(!out.isEmpty(), "the pass with the sample made no file");
        const int frames = decodedFrames(out, QStringLiteral("v:0"));
        const int expected = decodedFrames(clip, QStringLiteral("v:0"));
        qInfo("index mode: %d of %d video frames", frames, expected);
        QVERIFY2(frames >= 0.9 * expected, qPrintable(QStringLiteral("%1 of %2").arg(frames).arg(expected)));
        QByteArray codec;
        run(QStringLiteral("ffprobe"), {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-select_streams"),
                                        QStringLiteral("a:0"), QStringLiteral("-show_entries"),
                                        QStringLiteral("stream=codec_name"), QStringLiteral("-of"),
                                        QStringLiteral("csv=p=0"), out},
            &codec);
        QVERIFY2(codec.trimmed().startsWith("pcm_"), codec.constData());
        QVERIFY(decodedFrames(out, QStringLiteral("a:0")) > 0);
    }

    // A healthy file whose first video chunk opens with a CRA unit (type 21)
    // is refused without a sample: its own index isn't trusted.
    void ownIndexOpeningWithTypeTwentyOneIsRefused()
    {
        const QString clip = HevcClip(QStringLiteral("mp4"), false);
        QVERIFY(!clip.isEmpty());
        QByteArray bytes = readAll(clip);
        const qint64 mdat = findTopLevelAtom(bytes, "mdat");
        QVERIFY(mdat > 0);
        QCOMPARE(bytes.at(int(mdat + 8)), '\0');
        bytes[int(mdat + 8 + 4)] = char(0x2A);   // first unit of the first chunk
        const QString in = m_dir + QStringLiteral("/cra.mp4");
        writeAll(in, bytes);
        const BatchResult r = runBatch({QStringLiteral("--quiet"), in});
        QVERIFY(!r.verdicts().isEmpty());
        for (const QJsonObject& v : r.verdicts())
            QVERIFY(!v.value("repaired").toBool());
    }

    // Samples whose hvcC lies: unit counts past the box, a box cut short.
    // The pass goes on with what it learnt and ends in a verdict.
    void brokenHvcCInSampleEndsInVerdict_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("VPS count 65535") << 28 << QByteArray::fromHex("ffff");
        QTest::newRow("box size 30") << -4 << QByteArray::fromHex("0000001e");
        QTest::newRow("no arrays") << 26 << QByteArray::fromHex("00");
    }
    void brokenHvcCInSampleEndsInVerdict()
    {
        QFETCH(int, offset);
        QFETCH(QByteArray, bytes);
        const QString clip = HevcClip(QStringLiteral("mov"), false);
        const QString good = HevcClip(QStringLiteral("mov"), true);
        QVERIFY(!clip.isEmpty() && !good.isEmpty());
        QByteArray sampleBytes = readAll(good);
        const int hvcC = sampleBytes.indexOf("hvcC");
        QVERIFY(hvcC > 0);
        sampleBytes.replace(hvcC + offset, bytes.size(), bytes);
        const QString sample = m_dir + QStringLiteral("/broken_sample.mov");
        writeAll(sample, sampleBytes);
        QByteArray damaged = readAll(clip);
        cutMoov(damaged);
        bool firstPass = true;
        repairWithSample(m_dir, QStringLiteral("clip.mov"), damaged, sample, &firstPass);
        QVERIFY(!firstPass);
    }

    // Healthy files and samples with noise written over their movie: each
    // run ends in verdicts, whatever the tables now say.
    void noiseInTheMovieEndsInVerdicts()
    {
        const QString clip = HevcClip(QStringLiteral("mp4"), false);
        const QString good = HevcClip(QStringLiteral("mp4"), true);
        QVERIFY(!clip.isEmpty() && !good.isEmpty());
        const QByteArray clipBytes = readAll(clip);
        const QByteArray sampleBytes = readAll(good);
        QRandomGenerator rng(9);
        for (int round = 0; round < 6; ++round) {
            auto spoil = [&](QByteArray b) {
                const int moov = int(findTopLevelAtom(b, "moov"));
                for (int i = 0; i < 40; ++i)
                    b[moov + 8 + int(rng.bounded(b.size() - moov - 8))] = char(rng.bounded(256));
                return b;
            };
            const QString sample = m_dir + QStringLiteral("/noisy_sample.mp4");
            writeAll(sample, spoil(sampleBytes));
            const QString in = m_dir + QStringLiteral("/noisy.mp4");
            writeAll(in, spoil(clipBytes));
            QVERIFY(!runBatch({QStringLiteral("--quiet"), in}).verdicts().isEmpty());
            QByteArray cut = clipBytes;
            cutMoov(cut);
            bool firstPass = true;
            repairWithSample(m_dir, QStringLiteral("cut.mp4"), cut, sample, &firstPass);
        }
    }

    // An HEVC sample for a damaged H.264 file: the passes follow the sample,
    // find nothing they can use, and end in a verdict.
    void hevcSampleForH264FileEndsInVerdict()
    {
        const QString clip = h264Aac(QStringLiteral("mp4"));
        const QString sample = HevcClip(QStringLiteral("mp4"), true);
        QVERIFY(!clip.isEmpty() && !sample.isEmpty());
        QByteArray bytes = readAll(clip);
        cutMoov(bytes);
        bool firstPass = true;
        repairWithSample(m_dir, QStringLiteral("h264.mp4"), bytes, sample, &firstPass);
        QVERIFY(!firstPass);
    }
};

QTEST_GUILESS_MAIN(TestHevcE2e)
#include "test_hevc_e2e.moc"
