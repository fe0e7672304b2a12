// What the H.264 pass learns from a sample (parameter sets, frame starts,
// rate inputs, sound facts and audio patterns), and how the pass ends on bad
// input: broken chunk tables, broken samples, noise.
#include "core/byte_reader.h"
#include "core/file_writer.h"
#include "core/thread_video_repair.h"
#include "recovery/h264/bit_tools.h"
#include "recovery/h264/h264_recovery.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QtTest>

using namespace testvideo;

namespace {

QString Clip(const QString& name, const QStringList& extra, int rate = 44100)
{
    return make(name, lavfiVideo(2, QStringLiteral("160x120")) + lavfiAudio(2, rate)
                          + QStringList{QStringLiteral("-c:v"), QStringLiteral("libx264"), QStringLiteral("-g"),
                                        QStringLiteral("30"), QStringLiteral("-pix_fmt"), QStringLiteral("yuv420p"),
                                        QStringLiteral("-c:a"), QStringLiteral("aac"), QStringLiteral("-ac"),
                                        QStringLiteral("2")}
                          + extra);
}

// NAL units of an Annex B stream (start codes of three or four bytes).
QList<QByteArray> AnnexBUnits(const QByteArray& s)
{
    QList<QByteArray> out;
    int at = s.indexOf(QByteArray::fromHex("000001"));
    while (at >= 0) {
        const int next = s.indexOf(QByteArray::fromHex("000001"), at + 3);
        QByteArray unit = s.mid(at + 3, next < 0 ? -1 : next - at - 3);
        while (next >= 0 && unit.endsWith('\0'))
            unit.chop(1);
        out << unit;
        at = next;
    }
    return out;
}

quint32 Be32At(const QByteArray& b, qint64 at)
{
    const auto* p = reinterpret_cast<const uchar*>(b.constData()) + at;
    return quint32(p[0]) << 24 | quint32(p[1]) << 16 | quint32(p[2]) << 8 | p[3];
}

void SetBe32(QByteArray& b, qint64 at, quint32 v)
{
    for (int i = 0; i < 4; ++i)
        b[int(at + i)] = char(v >> (24 - 8 * i));
}

struct Learnt {
    QByteArray indexing, video, videoText, audioText;
};

} // namespace

class TestSampleLearning : public QObject {
    Q_OBJECT
    QString m_dir;

    Learnt learn(const QString& sample)
    {
        ThreadVideoRepair t;
        std::unique_ptr<ByteReader> r = FileReader::open(sample);
        [&] { QVERIFY(r); }();
        if (!r)
            return {};
        FileWriter video, indexing, videoText, audioText;
        video.open(m_dir + QStringLiteral("/video.h264"));
        indexing.open(m_dir + QStringLiteral("/Indexing"));
        videoText.open(m_dir + QStringLiteral("/videotext.txt"));
        audioText.open(m_dir + QStringLiteral("/audio.txt"));
        t.WalkSampleMovie(*r, video, indexing, videoText);
        t.WalkSampleSound(*r, audioText);
        for (FileWriter* w : {&video, &indexing, &videoText, &audioText})
            w->close();
        return {readAll(m_dir + QStringLiteral("/Indexing")), readAll(m_dir + QStringLiteral("/video.h264")),
                readAll(m_dir + QStringLiteral("/videotext.txt")), readAll(m_dir + QStringLiteral("/audio.txt"))};
    }

    QList<QJsonObject> batch(const QStringList& args) { return runBatch(QStringList{QStringLiteral("--quiet")} + args).verdicts(); }

    // The first pass on a damaged copy: one or more verdicts, all negative,
    // and the input unchanged.
    void expectNegative(const QByteArray& bytes, const QString& name, const QString& sample = QString())
    {
        const QString in = m_dir + QLatin1Char('/') + name;
        writeAll(in, bytes);
        const QString before = sha256(in);
        QStringList args;
        if (!sample.isEmpty())
            args << QStringLiteral("--reference") << sample;
        const QList<QJsonObject> v = batch(args << in);
        QVERIFY2(!v.isEmpty(), qPrintable(name));
        for (const QJsonObject& o : v)
            QVERIFY2(!o.value("repaired").toBool(), qPrintable(name));
        QCOMPARE(sha256(in), before);
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("learning"));
        g_stopRequested = false;
        g_hasSoundTrak = false;
        g_movieTimescale = g_movieDuration = g_videoSampleCount = 0;
        g_audioSampleRate = g_audioChannels = 0;
        g_averageAudioFrame = 0;
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void parameterSetsMatchTheStream()
    {
        const QString sample = Clip(QStringLiteral("learn.mov"), {});
        QVERIFY(!sample.isEmpty());
        const QString annexB = m_dir + QStringLiteral("/first.h264");
        QCOMPARE(run(QStringLiteral("ffmpeg"), {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"), sample,
                                                QStringLiteral("-map"), QStringLiteral("0:v"), QStringLiteral("-c:v"),
                                                QStringLiteral("copy"), QStringLiteral("-bsf:v"),
                                                QStringLiteral("h264_mp4toannexb"), QStringLiteral("-frames:v"),
                                                QStringLiteral("1"), QStringLiteral("-f"), QStringLiteral("h264"), annexB}),
                 0);
        QByteArray sps, pps;
        for (const QByteArray& u : AnnexBUnits(readAll(annexB))) {
            if (sps.isEmpty() && (u[0] & 0x1F) == 7)
                sps = u;
            if (pps.isEmpty() && (u[0] & 0x1F) == 8)
                pps = u;
        }
        QVERIFY(!sps.isEmpty() && !pps.isEmpty());
        const QByteArray sc = QByteArray::fromHex("00000001");
        const Learnt l = learn(sample);
        QCOMPARE(l.indexing, sc + sps + sc + pps);
        QCOMPARE(l.video, l.indexing);

        // Rate inputs from mvhd and the video stsz: 50 frames in 2 seconds.
        QCOMPARE(g_videoSampleCount, 50u);
        QCOMPARE(ComputeFrameRate(g_videoSampleCount, g_movieDuration, g_movieTimescale), 25);
        // Frame starts: the first chunk's chain (SEI, then the IDR slice)
        // and one record per later chunk, all of them whole records.
        QCOMPARE(l.videoText.size() % 3, 0);
        QVERIFY(l.videoText.startsWith(char(0x06)));
        QVERIFY(l.videoText.indexOf(char(0x65)) > 0);
        // Sound: the rate and channels of the sample, a record per chunk and
        // the fixed record at the end.
        QCOMPARE(g_audioSampleRate, int64_t(44100));
        QCOMPARE(g_audioChannels, int64_t(2));
        QVERIFY(g_averageAudioFrame > 100 && g_averageAudioFrame < 1000);
        QVERIFY(l.audioText.size() > 6);
        QVERIFY(l.audioText.endsWith(QByteArray::fromHex("211A0B")));
    }

    void movieOrderAndTrackOrderDontMatter()
    {
        const Learnt atEnd = learn(Clip(QStringLiteral("learn.mov"), {}));
        const Learnt atStart = learn(Clip(QStringLiteral("learn_faststart.mov"), {QStringLiteral("-movflags"), QStringLiteral("faststart")}));
        QCOMPARE(atStart.indexing, atEnd.indexing);
        QCOMPARE(atStart.videoText, atEnd.videoText);
        QCOMPARE(atStart.audioText, atEnd.audioText);

        // Sound track first: the walk runs forward to the video's tables.
        const QString soundFirst = Clip(QStringLiteral("learn_soundfirst.mp4"),
                                        {QStringLiteral("-map"), QStringLiteral("1:a"), QStringLiteral("-map"), QStringLiteral("0:v")});
        const Learnt l = learn(soundFirst);
        QCOMPARE(l.indexing, atEnd.indexing);
        QCOMPARE(g_videoSampleCount, 50u);
        QVERIFY(l.audioText.endsWith(QByteArray::fromHex("211A0B")));
    }

    void brokenChunkTablesWithoutSample()
    {
        const QByteArray clip = readAll(Clip(QStringLiteral("learn.mov"), {}));
        const qint64 stco = clip.indexOf("stco", findTopLevelAtom(clip, "moov"));   // the video track's
        QVERIFY(stco > 0);
        QByteArray pastEnd = clip;
        SetBe32(pastEnd, stco + 12, 0xFFFFFF00u);
        expectNegative(pastEnd, QStringLiteral("past_end.mov"));
        for (quint32 count : {0u, 1u}) {
            QByteArray b = clip;
            SetBe32(b, stco + 8, count);
            expectNegative(b, QStringLiteral("count%1.mov").arg(count));
        }
        // A count of four billion: two entries are read, the muxer decides;
        // the run ends with a verdict either way.
        QByteArray huge = clip;
        SetBe32(huge, stco + 8, 0xFFFFFFF0u);
        const QString in = m_dir + QStringLiteral("/huge.mov");
        writeAll(in, huge);
        QVERIFY(!batch({in}).isEmpty());
    }

    void badSamplesAndNoise()
    {
        const QString clip = Clip(QStringLiteral("learn.mov"), {});
        QByteArray cut = readAll(clip);
        cutMoov(cut);

        // A sample without a movie, a sample of another codec, a sample whose
        // parameter set lengths run past its end.
        QByteArray noMovie = cut;
        writeAll(m_dir + QStringLiteral("/nomovie.mov"), noMovie);
        expectNegative(cut, QStringLiteral("a.mov"), m_dir + QStringLiteral("/nomovie.mov"));

        const QString mjpeg = make(QStringLiteral("learn_mjpeg.mov"), lavfiVideo(2, QStringLiteral("160x120"))
                                   << QStringLiteral("-c:v") << QStringLiteral("mjpeg"));
        const QString in = m_dir + QStringLiteral("/b.mov");
        writeAll(in, cut);
        QVERIFY(!batch({QStringLiteral("--reference"), mjpeg, in}).isEmpty());

        QByteArray badAvcC = readAll(clip);
        const qint64 avcC = badAvcC.indexOf("avcC", findTopLevelAtom(badAvcC, "moov"));
        SetBe32(badAvcC, avcC + 8, Be32At(badAvcC, avcC + 8) | 0xFFFF);   // SPS length 0xFFFF
        const QString badSample = m_dir + QStringLiteral("/badavcc.mov");
        writeAll(badSample, badAvcC);
        writeAll(m_dir + QStringLiteral("/c.mov"), cut);
        QVERIFY(!batch({QStringLiteral("--reference"), badSample, m_dir + QStringLiteral("/c.mov")}).isEmpty());

        // Random bytes: no movie on the first pass, no frame with the sample.
        QByteArray noise(2 << 20, '\0');
        QRandomGenerator gen(7);
        for (int i = 0; i < noise.size(); i += 4)
            SetBe32(noise, i, gen.generate());
        expectNegative(noise, QStringLiteral("noise.mov"));
        expectNegative(noise, QStringLiteral("noise2.mov"), clip);
    }
};

QTEST_GUILESS_MAIN(TestSampleLearning)
#include "test_sample_learning.moc"
