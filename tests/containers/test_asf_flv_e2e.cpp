// ASF/WMV and FLV repair end to end, through reelwright-batch on ffmpeg-made
// clips (WMV2 with WMA2 as .wmv and .asf; Sorenson video with MP3 and H.264
// with AAC as .flv): whole, cut at 70 %, with three holes, and for ASF with the
// header zeroed and a sample given. The output must open and decode nearly all
// frames that the damaged input still holds; the input stays as it was.
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QtEndian>
#include <QtTest>

using namespace testvideo;

namespace {

constexpr int kHole = 32 * 1024;

struct Packet {
    qint64 pos;
    qint64 size;
};

// Packets of the first stream of a kind ("v" or "a") with their file
// positions, as the demuxer reports them.
QList<Packet> packets(const QString& path, const QString& kind)
{
    QByteArray out;
    run(QStringLiteral("ffprobe"),
        {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-select_streams"), kind + QStringLiteral(":0"),
         QStringLiteral("-show_entries"), QStringLiteral("packet=pos,size"), QStringLiteral("-of"),
         QStringLiteral("compact=p=0"), path},
        &out);
    // "size=754|pos=21324": ffprobe picks the order of the fields.
    QList<Packet> list;
    for (const QByteArray& line : out.split('\n')) {
        bool okPos = false, okSize = false;
        Packet p{0, 0};
        for (const QByteArray& field : line.trimmed().split('|')) {
            if (field.startsWith("pos="))
                p.pos = field.mid(4).toLongLong(&okPos);
            else if (field.startsWith("size="))
                p.size = field.mid(5).toLongLong(&okSize);
        }
        if (okPos && okSize)
            list << p;
    }
    return list;
}

// Decoded frames of the first audio stream, or -1 when there is none.
int decodedAudioFrames(const QString& path)
{
    QByteArray out;
    const int rc = run(QStringLiteral("ffprobe"),
                       {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-count_frames"),
                        QStringLiteral("-select_streams"), QStringLiteral("a:0"), QStringLiteral("-show_entries"),
                        QStringLiteral("stream=nb_read_frames"), QStringLiteral("-of"), QStringLiteral("csv=p=0"), path},
                       &out);
    bool ok = false;
    const int n = out.trimmed().toInt(&ok);
    return rc == 0 && ok ? n : -1;
}

struct Range {
    qint64 from, to;   // [from, to)
};

// Packets that still stand whole in the damaged file: before the cut and
// clear of every hole. A packet's bytes reach a little beyond pos + size: an
// ASF payload is spread over data packets of packetSize with their own
// headers, an FLV tag has its 11-byte header and PreviousTagSize.
int remaining(const QList<Packet>& list, qint64 fileSize, const QList<Range>& holes, qint64 packetSize)
{
    int n = 0;
    for (const Packet& p : list) {
        const qint64 end = packetSize ? p.pos + p.size + p.size / 16 + packetSize : p.pos + 11 + p.size + 4;
        bool whole = end <= fileSize;
        for (const Range& h : holes)
            whole = whole && (end <= h.from || p.pos >= h.to);
        n += whole;
    }
    return n;
}

quint64 le64(const QByteArray& b, qint64 at) { return qFromLittleEndian<quint64>(b.constData() + at); }

QStringList clipArgs(int seconds, const QStringList& codecs)
{
    // Noise keeps frames large, so that a 32 KiB hole touches only a few.
    return lavfiVideo(seconds) + lavfiAudio(seconds, 44100)
         + QStringList{QStringLiteral("-vf"), QStringLiteral("noise=alls=12:allf=t")} + codecs;
}

} // namespace

class TestAsfFlvE2e : public QObject {
    Q_OBJECT
    QString m_dir;

    struct Source {
        QString clip, sample;
        qint64 asfPacketSize = 0;   // 0 for FLV
    };
    QHash<QString, Source> m_sources;

    static QString repairedPath(const QString& input)
    {
        return QFileInfo(input).absolutePath() + QStringLiteral("/Repaired/") + QFileInfo(input).fileName();
    }

private Q_SLOTS:
    void initTestCase()
    {
        const QStringList wmv{QStringLiteral("-c:v"), QStringLiteral("wmv2"), QStringLiteral("-q:v"), QStringLiteral("5"),
                              QStringLiteral("-c:a"), QStringLiteral("wmav2"), QStringLiteral("-b:a"), QStringLiteral("128k")};
        const QStringList sorenson{QStringLiteral("-c:v"), QStringLiteral("flv1"), QStringLiteral("-q:v"), QStringLiteral("5"),
                                   QStringLiteral("-c:a"), QStringLiteral("libmp3lame"), QStringLiteral("-b:a"),
                                   QStringLiteral("128k")};
        const QStringList h264{QStringLiteral("-c:v"), QStringLiteral("libx264"), QStringLiteral("-preset"),
                               QStringLiteral("ultrafast"), QStringLiteral("-g"), QStringLiteral("25"),
                               QStringLiteral("-pix_fmt"), QStringLiteral("yuv420p"), QStringLiteral("-c:a"),
                               QStringLiteral("aac"), QStringLiteral("-b:a"), QStringLiteral("96k")};
        const auto add = [this](const QString& key, const QString& suffix, const QStringList& codecs) {
            Source s;
            s.clip = make(QStringLiteral("%1.%2").arg(key, suffix), clipArgs(6, codecs));
            s.sample = make(QStringLiteral("%1_sample.%2").arg(key, suffix), clipArgs(2, codecs));
            m_sources[key] = s;
        };
        add(QStringLiteral("wmv"), QStringLiteral("wmv"), wmv);
        add(QStringLiteral("asf"), QStringLiteral("asf"), wmv);
        add(QStringLiteral("flv1"), QStringLiteral("flv"), sorenson);
        add(QStringLiteral("h264"), QStringLiteral("flv"), h264);
        for (auto it = m_sources.begin(); it != m_sources.end(); ++it) {
            QVERIFY2(!it->clip.isEmpty() && !it->sample.isEmpty(), "ffmpeg could not make the clips");
            if (it.key() == QLatin1String("wmv") || it.key() == QLatin1String("asf")) {
                // Maximum Data Packet Size of the File Properties Object.
                const QByteArray head = readAll(it->clip).left(4096);
                const int props = head.indexOf(QByteArray::fromHex("a1dcab8c47a9cf118ee400c00c205365"));
                QVERIFY(props > 0);
                it->asfPacketSize = qFromLittleEndian<quint32>(head.constData() + props + 96);
                QVERIFY(it->asfPacketSize > 0);
            }
        }
    }
    void init() { m_dir = freshDir(QStringLiteral("asf-flv-e2e")); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void repairs_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("damage");
        for (const char* source : {"wmv", "asf", "flv1", "h264"}) {
            QStringList damages{QStringLiteral("whole"), QStringLiteral("cut at 70%"), QStringLiteral("holes")};
            if (source == QLatin1String("wmv") || source == QLatin1String("asf"))
                damages << QStringLiteral("header zeroed");
            for (const QString& d : damages)
                QTest::newRow(qPrintable(QLatin1String(source) + QLatin1Char(' ') + d)) << QString::fromLatin1(source) << d;
        }
    }
    void repairs()
    {
        QFETCH(QString, source);
        QFETCH(QString, damage);
        const Source src = m_sources.value(source);
        QByteArray bytes = readAll(src.clip);
        const bool asf = src.asfPacketSize > 0;

        QList<Range> holes;
        QStringList args;
        if (damage == QLatin1String("cut at 70%")) {
            cutAtFraction(bytes, 0.7);
        } else if (damage == QLatin1String("holes")) {
            for (int k = 1; k <= 3; ++k) {
                const qint64 at = bytes.size() * k / 4;
                zeroRange(bytes, at, kHole);
                holes << Range{at, at + kHole};
            }
        } else if (damage == QLatin1String("header zeroed")) {
            // The Header Object and the head of the Data Object behind it.
            const qint64 headerEnd = qint64(le64(bytes, 16)) + 50;
            QVERIFY(headerEnd > 100 && headerEnd < 65536);
            zeroRange(bytes, 0, headerEnd);
            args << QStringLiteral("--reference") << src.sample;
        }
        const QString input = m_dir + QStringLiteral("/clip.") + QFileInfo(src.clip).suffix();
        QVERIFY(writeAll(input, bytes));
        const QString before = sha256(input);

        const BatchResult r = runBatch(args << QStringLiteral("--quiet") << input, 120000);
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(r.verdicts().size(), 1);
        QCOMPARE(r.verdicts()[0].value(QStringLiteral("signal")).toString(), QStringLiteral("WriteStatus"));
        QVERIFY(r.verdicts()[0].value(QStringLiteral("repaired")).toBool());
        const QString out = repairedPath(input);
        QCOMPARE(r.end().value(QStringLiteral("outputs")).toArray().first().toString(), out);
        QCOMPARE(sha256(input), before);
        QVERIFY(probeOpens(out));

        const int wantedFrames = remaining(packets(src.clip, QStringLiteral("v")), bytes.size(), holes, src.asfPacketSize);
        const int frames = decodedVideoFrames(out);
        QVERIFY(wantedFrames > 50);
        qInfo("%s: %d of %d remaining video frames decode", qPrintable(source + QLatin1Char(' ') + damage), frames,
              wantedFrames);
        QVERIFY2(frames * 10 >= wantedFrames * 9,
                 qPrintable(QStringLiteral("%1 of %2 remaining frames decode").arg(frames).arg(wantedFrames)));

        // Sound as well; a damaged MP3 frame can take its neighbour along.
        const int wantedSound = remaining(packets(src.clip, QStringLiteral("a")), bytes.size(), holes, src.asfPacketSize);
        const int sound = decodedAudioFrames(out);
        qInfo("%s: %d of %d remaining sound frames decode", qPrintable(source + QLatin1Char(' ') + damage), sound,
              wantedSound);
        QVERIFY2(sound * 10 >= wantedSound * 9,
                 qPrintable(QStringLiteral("%1 of %2 remaining sound frames decode").arg(sound).arg(wantedSound)));
        if (asf) {
            // Whole packets behind the new header, and the Data Object's size says how many.
            const QByteArray o = readAll(out);
            const qint64 header = qint64(le64(o, 16));
            QVERIFY(header > 30 && header + 50 <= o.size());
            const qint64 packetBytes = o.size() - header - 50;
            QCOMPARE(qint64(le64(o, header + 16)), packetBytes);
            QCOMPARE(packetBytes % src.asfPacketSize, 0);
        }
    }

    void zeroedHeaderWithoutSampleFails()
    {
        QByteArray bytes = readAll(m_sources.value(QStringLiteral("wmv")).clip);
        zeroRange(bytes, 0, qint64(le64(bytes, 16)) + 50);
        const QString input = m_dir + QStringLiteral("/clip.wmv");
        QVERIFY(writeAll(input, bytes));
        const BatchResult r = runBatch({QStringLiteral("--quiet"), input}, 120000);
        QCOMPARE(r.exitCode, 0);
        QVERIFY(!r.verdicts().isEmpty());
        for (const QJsonObject& v : r.verdicts())
            QVERIFY(!v.value(QStringLiteral("repaired")).toBool());
        QVERIFY(r.end().value(QStringLiteral("outputs")).toArray().isEmpty());
        QVERIFY(!QFile::exists(repairedPath(input)));
    }
};

QTEST_GUILESS_MAIN(TestAsfFlvE2e)
#include "test_asf_flv_e2e.moc"
