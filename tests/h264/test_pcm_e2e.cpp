// End to end through the batch runner: camera-like H.264 files with
// uncompressed sound (sowt, twos, and lpcm at 96 kHz) whose movie was lost,
// repaired from a sample with the same settings; the same files whole,
// repaired without one; odd samples and files of noise end in a verdict.
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QRandomGenerator>
#include <QtTest>

using namespace testvideo;

namespace {

struct Kind {
    const char* tag;      // the sample entry the muxer gives the sound
    const char* codec;
    int rate;
};

const Kind kKinds[] = {
    {"sowt", "pcm_s16le", 48000},
    {"twos", "pcm_s16be", 48000},
    {"lpcm", "pcm_s24le", 96000},   // the muxer writes lpcm only above 65535 Hz
};

const Kind& KindOf(const QString& tag)
{
    for (const Kind& k : kKinds)
        if (tag == QLatin1String(k.tag))
            return k;
    return kKinds[0];
}

// Eight seconds as a camera records them: access unit delimiters, a key
// frame every 30 frames, 4 Mbit/s. The sample differs only in its picture.
QString Camera(const Kind& k, bool sample)
{
    const QStringList a = {
        QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
        QStringLiteral("testsrc2=size=640x360:rate=25"), QStringLiteral("-f"), QStringLiteral("lavfi"),
        QStringLiteral("-i"), QStringLiteral("sine=frequency=440:sample_rate=%1").arg(k.rate),
        QStringLiteral("-t"), QStringLiteral("8"), QStringLiteral("-vf"),
        QStringLiteral("hue=h=%1").arg(sample ? 90 : 0), QStringLiteral("-c:v"), QStringLiteral("libx264"),
        QStringLiteral("-preset"), QStringLiteral("veryfast"), QStringLiteral("-g"), QStringLiteral("30"),
        QStringLiteral("-b:v"), QStringLiteral("4M"), QStringLiteral("-pix_fmt"), QStringLiteral("yuv420p"),
        QStringLiteral("-x264-params"), QStringLiteral("aud=1"), QStringLiteral("-c:a"),
        QLatin1String(k.codec), QStringLiteral("-ar"), QString::number(k.rate), QStringLiteral("-ac"),
        QStringLiteral("2")};
    return make(QStringLiteral("pcm_camera_%1_%2.mov").arg(QLatin1String(k.tag))
                    .arg(sample ? QStringLiteral("sample") : QStringLiteral("clip")),
                a);
}

QString Probe(const QString& path, const QString& stream, const QString& entries)
{
    QByteArray out;
    run(QStringLiteral("ffprobe"), {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-select_streams"),
                                    stream, QStringLiteral("-show_entries"), entries, QStringLiteral("-of"),
                                    QStringLiteral("csv=p=0"), path},
        &out);
    return QString::fromLatin1(out.trimmed().split('\n').value(0));
}

// MD5 of the first sound stream's samples, as ffmpeg decodes them.
QByteArray SoundMd5(const QString& path)
{
    QByteArray out;
    run(QStringLiteral("ffmpeg"), {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"), path,
                                   QStringLiteral("-map"), QStringLiteral("0:a:0"), QStringLiteral("-f"),
                                   QStringLiteral("md5"), QStringLiteral("-")},
        &out);
    return out.trimmed();
}

double AudioSeconds(const QString& path)
{
    return Probe(path, QStringLiteral("a:0"), QStringLiteral("stream=duration")).toDouble();
}

} // namespace

class TestPcmE2e : public QObject {
    Q_OBJECT
    QString m_dir;

    // A pass that fails says so at once, and the driver gives its verdict
    // behind it: the last verdict is the file's.
    QString output(const BatchResult& r)
    {
        const QList<QJsonObject> v = r.verdicts();
        if (v.isEmpty() || !v.last().value("repaired").toBool())
            return QString();
        const QJsonArray outputs = r.end().value("outputs").toArray();
        return outputs.isEmpty() ? QString() : outputs.first().toString();
    }

private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("pcme2e")); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void clipsCarryTheExpectedSampleEntry_data()
    {
        QTest::addColumn<QString>("kind");
        for (const Kind& k : kKinds)
            QTest::newRow(k.tag) << QString::fromLatin1(k.tag);
    }
    // The muxer's choice of sample entry decides which pass runs; guard it.
    void clipsCarryTheExpectedSampleEntry()
    {
        QFETCH(QString, kind);
        const QString clip = Camera(KindOf(kind), false);
        QVERIFY(!clip.isEmpty());
        QCOMPARE(Probe(clip, QStringLiteral("a:0"), QStringLiteral("stream=codec_tag_string")), kind);
    }

    void lostMovieRepairedFromSample_data() { clipsCarryTheExpectedSampleEntry_data(); }
    void lostMovieRepairedFromSample()
    {
        QFETCH(QString, kind);
        const Kind& k = KindOf(kind);
        const QString clip = Camera(k, false);
        const QString sample = Camera(k, true);
        QVERIFY(!clip.isEmpty() && !sample.isEmpty());
        QByteArray bytes = readAll(clip);
        cutMoov(bytes);
        const QString in = m_dir + QStringLiteral("/clip.mov");
        QVERIFY(writeAll(in, bytes));
        const QString before = sha256(in);

        const BatchResult first = runBatch({QStringLiteral("--quiet"), in});
        QVERIFY2(output(first).isEmpty(), "a file without its movie waits for a sample");
        const BatchResult second = runBatch({QStringLiteral("--quiet"), QStringLiteral("--reference"), sample, in});
        QCOMPARE(sha256(in), before);
        const QString out = output(second);
        QVERIFY2(!out.isEmpty(), "the pass with the sample made no file");

        const int expected = decodedVideoFrames(clip);
        const int frames = decodedVideoFrames(out);
        const double seconds = AudioSeconds(out);
        qInfo("%s, movie cut off: %d of %d video frames, %.2f s of sound", qPrintable(kind), frames, expected,
              seconds);
        QVERIFY2(frames >= 0.9 * expected, qPrintable(QStringLiteral("%1 of %2").arg(frames).arg(expected)));
        QVERIFY2(seconds >= 7.0, qPrintable(QStringLiteral("%1 s of sound").arg(seconds)));
        // The rebuild copies the sound runs as they stand: a run cut a byte
        // too short or too long would shift every sample behind it.
        if (kind != QLatin1String("lpcm"))
            QCOMPARE(SoundMd5(out), SoundMd5(clip));
    }

    void wholeFileRepairedWithoutSample_data() { clipsCarryTheExpectedSampleEntry_data(); }
    void wholeFileRepairedWithoutSample()
    {
        QFETCH(QString, kind);
        const QString clip = Camera(KindOf(kind), false);
        QVERIFY(!clip.isEmpty());
        const QString in = m_dir + QStringLiteral("/whole.mov");
        QVERIFY(QFile::copy(clip, in));
        const QString out = output(runBatch({QStringLiteral("--quiet"), in}));
        QVERIFY2(!out.isEmpty(), "a whole file is repaired on the first pass");
        const int expected = decodedVideoFrames(clip);
        const int frames = decodedVideoFrames(out);
        qInfo("%s, whole: %d of %d video frames", qPrintable(kind), frames, expected);
        QVERIFY(frames >= 0.9 * expected);
        QVERIFY(AudioSeconds(out) >= 7.0);
    }

    // Samples whose sound description names 12 bits and no channels, and a
    // sample whose movie is noise, still lead to a verdict for the file.
    void oddSamplesEndInAVerdict()
    {
        const Kind& k = KindOf(QStringLiteral("lpcm"));
        const QString clip = Camera(k, false);
        const QString sample = Camera(k, true);
        QVERIFY(!clip.isEmpty() && !sample.isEmpty());
        QByteArray bytes = readAll(clip);
        cutMoov(bytes);
        const QString in = m_dir + QStringLiteral("/clip.mov");
        QVERIFY(writeAll(in, bytes));

        QByteArray odd = readAll(sample);
        const int entry = odd.indexOf("lpcm", odd.indexOf("smhd"));
        QVERIFY(entry > 16);
        const int stsd = entry - 16;   // the stsd code stands 16 bytes ahead of the entry's code
        QCOMPARE(odd.mid(stsd, 4), QByteArray("stsd"));
        odd[stsd + 62] = 0;
        odd[stsd + 63] = 0;            // no channels
        odd[stsd + 68] = 0;
        odd[stsd + 69] = 0;
        odd[stsd + 70] = 0;
        odd[stsd + 71] = 12;           // 12 bits
        const QString oddPath = m_dir + QStringLiteral("/odd_sample.mov");
        QVERIFY(writeAll(oddPath, odd));
        const BatchResult r = runBatch({QStringLiteral("--quiet"), QStringLiteral("--reference"), oddPath, in});
        QVERIFY(!r.verdicts().isEmpty());
        QCOMPARE(r.end().value("result").toString(), QStringLiteral("finished"));
        const QString out = output(r);
        if (!out.isEmpty())
            QVERIFY(decodedVideoFrames(out) > 0);

        // The sample's movie overwritten by noise past its first track.
        QByteArray noisy = readAll(sample);
        const int moov = noisy.indexOf("moov");
        QRandomGenerator rng(19);
        for (int i = moov + 200; i < noisy.size(); ++i)
            noisy[i] = char(rng.bounded(256));
        const QString noisyPath = m_dir + QStringLiteral("/noisy_sample.mov");
        QVERIFY(writeAll(noisyPath, noisy));
        const BatchResult n = runBatch({QStringLiteral("--quiet"), QStringLiteral("--reference"), noisyPath, in});
        QVERIFY(!n.verdicts().isEmpty());
        QCOMPARE(n.end().value("result").toString(), QStringLiteral("finished"));
    }

    void noiseEndsInAVerdict_data() { clipsCarryTheExpectedSampleEntry_data(); }
    void noiseEndsInAVerdict()
    {
        QFETCH(QString, kind);
        const QString sample = Camera(KindOf(kind), true);
        QVERIFY(!sample.isEmpty());
        // Noise with a few planted delimiters and zero runs, so that the
        // scanners get past their first-frame search.
        QRandomGenerator rng(uint32_t(qHash(kind)));
        QByteArray noise(3 << 20, '\0');
        for (char& c : noise)
            c = char(rng.bounded(256));
        for (int i = 0; i < 200; ++i) {
            const int at = int(rng.bounded(noise.size() - 600));
            noise.replace(at, 6, QByteArray::fromHex("000000020910"));
            if (i % 10 == 0)
                noise.replace(at + 100, 400, QByteArray(400, '\0'));
        }
        const QString in = m_dir + QStringLiteral("/noise.mov");
        QVERIFY(writeAll(in, noise));
        const BatchResult r = runBatch({QStringLiteral("--quiet"), QStringLiteral("--reference"), sample, in}, 300000);
        QVERIFY(!r.verdicts().isEmpty());
        QCOMPARE(r.end().value("result").toString(), QStringLiteral("finished"));
    }
};

QTEST_GUILESS_MAIN(TestPcmE2e)
#include "test_pcm_e2e.moc"
