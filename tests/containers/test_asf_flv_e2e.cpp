// ASF/WMV and FLV repair end to end, through reelwright-batch on ffmpeg-made
// clips (WMV2 with WMA2 as .wmv and .asf; Sorenson video with MP3 and H.264
// with AAC as .flv): whole, cut at 70 %, with three holes, and for ASF with
// the header zeroed and a sample given. The output must decode nearly all
// frames that the damaged input still holds.
#include "batch_check.h"

#include <QDir>
#include <QtEndian>
#include <QtTest>

using namespace testvideo;
using containers::repairedPath;

namespace {

constexpr int kHole = 32 * 1024;

struct Range {
    qint64 from, to;   // [from, to)
};

// Packets of the first stream of a kind ("v" or "a") that still stand whole
// in the damaged file: before the cut and clear of every hole. A packet's
// bytes reach a little beyond pos + size: an ASF payload is spread over data
// packets with their own headers, an FLV tag has its header and PreviousTagSize.
int remaining(const QString& clip, const QString& kind, qint64 fileSize, const QList<Range>& holes, qint64 asfPacket)
{
    QByteArray out;
    run("ffprobe", {"-v", "error", "-select_streams", kind + ":0", "-show_entries", "packet=pos,size", "-of",
                    "compact=p=0", clip}, &out);
    int n = 0;
    for (const QByteArray& line : out.split('\n')) {
        qint64 pos = -1, size = -1;   // "size=754|pos=21324", in ffprobe's order
        for (const QByteArray& field : line.trimmed().split('|')) {
            if (field.startsWith("pos="))
                pos = field.mid(4).toLongLong();
            else if (field.startsWith("size="))
                size = field.mid(5).toLongLong();
        }
        if (pos < 0 || size < 0)
            continue;
        const qint64 end = asfPacket ? pos + size + size / 16 + asfPacket : pos + 11 + size + 4;
        bool whole = end <= fileSize;
        for (const Range& h : holes)
            whole = whole && (end <= h.from || pos >= h.to);
        n += whole;
    }
    return n;
}

quint64 le64(const QByteArray& b, qint64 at) { return qFromLittleEndian<quint64>(b.constData() + at); }

QStringList clipArgs(int seconds, const QStringList& codecs)
{
    // Noise keeps frames large, so that a 32 KiB hole touches only a few.
    return lavfiVideo(seconds) + lavfiAudio(seconds, 44100) + QStringList{"-vf", "noise=alls=12:allf=t"} + codecs;
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

private Q_SLOTS:
    void initTestCase()
    {
        const QStringList wmv{"-c:v", "wmv2", "-q:v", "5", "-c:a", "wmav2", "-b:a", "128k"};
        const QStringList sorenson{"-c:v", "flv1", "-q:v", "5", "-c:a", "libmp3lame", "-b:a", "128k"};
        const QStringList h264{"-c:v", "libx264", "-preset", "ultrafast", "-g", "25", "-pix_fmt", "yuv420p",
                               "-c:a", "aac", "-b:a", "96k"};
        const QList<std::tuple<QString, QString, QStringList>> kinds{
            {"wmv", "wmv", wmv}, {"asf", "asf", wmv}, {"flv1", "flv", sorenson}, {"h264", "flv", h264}};
        for (const auto& [key, suffix, codecs] : kinds) {
            Source s{make(key + '.' + suffix, clipArgs(6, codecs)), make(key + "_sample." + suffix, clipArgs(2, codecs))};
            QVERIFY2(!s.clip.isEmpty() && !s.sample.isEmpty(), "ffmpeg could not make the clips");
            if (suffix != "flv") {
                // Maximum Data Packet Size of the File Properties Object.
                const QByteArray head = readAll(s.clip).left(4096);
                const int props = head.indexOf(QByteArray::fromHex("a1dcab8c47a9cf118ee400c00c205365"));
                QVERIFY(props > 0);
                s.asfPacketSize = qFromLittleEndian<quint32>(head.constData() + props + 96);
                QVERIFY(s.asfPacketSize > 0);
            }
            m_sources[key] = s;
        }
    }
    void init() { m_dir = freshDir("asf-flv-e2e"); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void repairs_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("damage");
        for (const QString source : {"wmv", "asf", "flv1", "h264"})
            for (const QString damage : {"whole", "cut at 70%", "holes", "header zeroed"})
                if (damage != "header zeroed" || source == "wmv" || source == "asf")
                    QTest::newRow(qPrintable(source + ' ' + damage)) << source << damage;
    }
    void repairs()
    {
        QFETCH(QString, source);
        QFETCH(QString, damage);
        const Source src = m_sources.value(source);
        QByteArray bytes = readAll(src.clip);

        QList<Range> holes;
        QStringList args;
        if (damage == "cut at 70%") {
            cutAtFraction(bytes, 0.7);
        } else if (damage == "holes") {
            for (int k = 1; k <= 3; ++k) {
                const qint64 at = bytes.size() * k / 4;
                zeroRange(bytes, at, kHole);
                holes << Range{at, at + kHole};
            }
        } else if (damage == "header zeroed") {
            // The Header Object and the head of the Data Object behind it.
            const qint64 headerEnd = qint64(le64(bytes, 16)) + 50;
            QVERIFY(headerEnd > 100 && headerEnd < 65536);
            zeroRange(bytes, 0, headerEnd);
            args << "--reference" << src.sample;
        }
        const QString input = m_dir + "/clip." + QFileInfo(src.clip).suffix();
        const containers::Batch b = containers::repairBytes(input, bytes, args);
        QVERIFY2(b.fault.isEmpty(), qPrintable(b.fault));
        QCOMPARE(b.signalNames, QStringList{"WriteStatus"});
        QVERIFY(b.ok());
        const QString out = repairedPath(input);
        QCOMPARE(b.outputs.value(0), out);
        QVERIFY(probeOpens(out));

        // Sound as well; a damaged MP3 frame can take its neighbour along.
        for (const QString kind : {"v", "a"}) {
            const int wanted = remaining(src.clip, kind, bytes.size(), holes, src.asfPacketSize);
            const int decoded = decodedFrames(out, kind + ":0");
            qInfo("%s: %d of %d remaining frames decode", qPrintable(kind), decoded, wanted);
            QVERIFY(wanted > 50);
            QVERIFY(decoded * 10 >= wanted * 9);
        }
        if (src.asfPacketSize) {
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
        QByteArray bytes = readAll(m_sources.value("wmv").clip);
        zeroRange(bytes, 0, qint64(le64(bytes, 16)) + 50);
        const QString input = m_dir + "/clip.wmv";
        const containers::Batch b = containers::repairBytes(input, bytes);
        QVERIFY2(b.fault.isEmpty(), qPrintable(b.fault));
        QVERIFY(!b.repaired.isEmpty() && !b.repaired.contains(true));
        QVERIFY(b.outputs.isEmpty());
        QVERIFY(!QFile::exists(repairedPath(input)));
    }
};

QTEST_GUILESS_MAIN(TestAsfFlvE2e)
#include "test_asf_flv_e2e.moc"
