// What the H.264 pass learns from a sample, and how it takes broken chunk
// tables (broken samples: the QuickTime end-to-end test).
#include "core/byte_reader.h"
#include "core/file_writer.h"
#include "core/quicktime_route.h"
#include "recovery/h264/bit_tools.h"
#include "recovery/h264/h264_recovery.h"
#include "support/test_videos.h"

#include <QDir>
#include <QtTest>

using namespace testvideo;

namespace {

QString Clip(const QString& name, const char* extra = "")
{
    return make(name, lavfiVideo(2, QStringLiteral("160x120")) + lavfiAudio(2, 44100)
                          + splitArgs("-c:v libx264 -g 30 -pix_fmt yuv420p -c:a aac -ac 2") + splitArgs(extra));
}

struct Learnt {
    QByteArray indexing, video, videoText, audioText;
    ChainFacts facts;
};

} // namespace

class TestSampleLearning : public QObject {
    Q_OBJECT
    QString m_dir;

    Learnt learn(const QString& sample)
    {
        QuickTimeRoute t;
        std::unique_ptr<ByteReader> r = FileReader::open(sample);
        [&] { QVERIFY(r); }();
        if (!r)
            return {};
        const QStringList names = {QStringLiteral("/video.h264"), QStringLiteral("/Indexing"),
                                   QStringLiteral("/videotext.txt"), QStringLiteral("/audio.txt")};
        FileWriter w[4];
        for (int i = 0; i < 4; ++i)
            w[i].open(m_dir + names[i]);
        t.WalkSampleMovie(*r, w[0], w[1], w[2]);
        t.WalkSampleSound(*r, w[3]);
        for (FileWriter& f : w)
            f.close();
        return {readAll(m_dir + names[1]), readAll(m_dir + names[0]), readAll(m_dir + names[2]),
                readAll(m_dir + names[3]), t.m_chainFacts};
    }

    QList<QJsonObject> batch(const QStringList& args) { return runBatch(QStringList{QStringLiteral("--quiet")} + args).verdicts(); }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("learning"));
        g_stopRequested = false;
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void parameterSetsMatchTheStream()
    {
        const QString sample = Clip(QStringLiteral("learn.mov"));
        QVERIFY(!sample.isEmpty());
        const QString annexB = m_dir + QStringLiteral("/first.h264");
        QCOMPARE(run(QStringLiteral("ffmpeg"), splitArgs("-v error -i") << sample << splitArgs("-map 0:v -c:v copy -bsf:v "
                                               "h264_mp4toannexb -frames:v 1 -f h264") << annexB), 0);
        // The first SPS and PPS of the stream, without their start codes.
        QByteArray sps, pps;
        const QByteArray stream = readAll(annexB), sc3 = QByteArray::fromHex("000001");
        for (int at = stream.indexOf(sc3); at >= 0;) {
            const int next = stream.indexOf(sc3, at + 3);
            QByteArray u = stream.mid(at + 3, next < 0 ? -1 : next - at - 3);
            while (next >= 0 && u.endsWith('\0'))
                u.chop(1);
            const int type = u.isEmpty() ? 0 : u[0] & 0x1F;
            if (type == 7 && sps.isEmpty())
                sps = u;
            if (type == 8 && pps.isEmpty())
                pps = u;
            at = next;
        }
        QVERIFY(!sps.isEmpty() && !pps.isEmpty());
        const QByteArray sc = QByteArray::fromHex("00000001");
        const Learnt l = learn(sample);
        QCOMPARE(l.indexing, sc + sps + sc + pps);
        QCOMPARE(l.video, l.indexing);

        // Rate inputs from mvhd and the video stsz: 50 frames in 2 seconds.
        const ChainFacts& f = l.facts;
        QCOMPARE(f.videoSampleCount, 50u);
        QCOMPARE(ComputeFrameRate(f.videoSampleCount, f.movieDuration, f.movieTimescale), 25);
        // Frame starts: the first chunk's chain (SEI, then the IDR slice)
        // and one record per later chunk, all of them whole records.
        QCOMPARE(l.videoText.size() % 3, 0);
        QVERIFY(l.videoText.startsWith(char(0x06)));
        QVERIFY(l.videoText.indexOf(char(0x65)) > 0);
        // Sound: the sample's rate and channels, a record per chunk and the
        // fixed record at the end.
        QCOMPARE(f.audioSampleRate, int64_t(44100));
        QCOMPARE(f.audioChannels, int64_t(2));
        QVERIFY(f.averageAudioFrame > 100 && f.averageAudioFrame < 1000);
        QVERIFY(l.audioText.size() > 6);
        QVERIFY(l.audioText.endsWith(QByteArray::fromHex("211A0B")));
    }

    // A sample whose sound track comes first is an end-to-end row.
    void movieAtTheStartTeachesTheSame()
    {
        const Learnt atEnd = learn(Clip(QStringLiteral("learn.mov")));
        const Learnt atStart = learn(Clip(QStringLiteral("learn_faststart.mov"), "-movflags faststart"));
        QVERIFY(!atEnd.indexing.isEmpty() && !atEnd.audioText.isEmpty());
        QCOMPARE(atStart.indexing, atEnd.indexing);
        QCOMPARE(atStart.videoText, atEnd.videoText);
        QCOMPARE(atStart.audioText, atEnd.audioText);
    }

    void brokenChunkTablesWithoutSample()
    {
        // Chunk tables past the end or counting 0, 1 or four billion chunks: the
        // frames are found all the same, the input unchanged.
        const QByteArray clip = readAll(Clip(QStringLiteral("learn.mov")));
        const qint64 stco = clip.indexOf("stco", findTopLevelAtom(clip, "moov"));   // the video track's
        QVERIFY(stco > 0);
        const struct { qint64 at; quint32 value; } damages[] = {
            {stco + 12, 0xFFFFFF00u}, {stco + 8, 0u}, {stco + 8, 1u}, {stco + 8, 0xFFFFFFF0u}};
        for (const auto& d : damages) {
            QByteArray b = clip;
            putBe32(b, d.at, d.value);
            const QString in = m_dir + QStringLiteral("/broken.mov");
            writeAll(in, b);
            const QString before = sha256(in);
            const QList<QJsonObject> v = batch({in});
            QCOMPARE(v.size(), 1);
            QVERIFY2(v.first().value("repaired").toBool(), qPrintable(QString::number(d.value)));
            QCOMPARE(sha256(in), before);
        }
    }
};

QTEST_GUILESS_MAIN(TestSampleLearning)
#include "test_sample_learning.moc"
