// ASF repair on crafted bytes: the header object walk, the new Header
// Object, the packet walk with its successor test, and hostile sizes.
#include "batch_check.h"
#include "core/thread_video_repair.h"

#include <QDir>
#include <QFile>
#include <QUuid>
#include <QtEndian>
#include <QtTest>

using namespace testvideo;

namespace {

// A GUID in ASF byte order, made from its text independently of the engine.
QByteArray guid(const char* text)
{
    QByteArray b = QUuid(QString::fromLatin1(text)).toRfc4122();
    std::reverse(b.begin(), b.begin() + 4);
    std::reverse(b.begin() + 4, b.begin() + 6);
    std::reverse(b.begin() + 6, b.begin() + 8);
    return b;
}
const QByteArray kHeader = guid("75B22630-668E-11CF-A6D9-00AA0062CE6C");
const QByteArray kData = guid("75B22636-668E-11CF-A6D9-00AA0062CE6C");
const QByteArray kFileProps = guid("8CABDCA1-A947-11CF-8EE4-00C00C205365");
const QByteArray kStreamProps = guid("B7DC0791-A9B7-11CF-8EE6-00C00C205365");
const QByteArray kVideo = guid("BC19EFC0-5B4D-11CF-A8FD-00805F5C442B");
const QByteArray kAudio = guid("F8699E40-5B4D-11CF-A8FD-00805F5C442B");
const QByteArray kCodecList = guid("86D15240-311D-11D0-A3A4-00A0C90348F6");
const QByteArray kExtContent = guid("D2D0A440-E307-11D2-97F0-00A0C95EA850");
const QByteArray kContent = guid("75B22633-668E-11CF-A6D9-00AA0062CE6C");
const QByteArray kHeaderExt = guid("5FBF03B5-A92E-11CF-8EE3-00C00C205365");
const QByteArray kHeaderExtReserved = guid("ABD3D211-A9BA-11CF-8EE6-00C00C205365");
const QByteArray kSimpleIndex = guid("33000890-E5B1-11CF-89F4-00A0C90349CB");

template <typename T> QByteArray le(T v)
{
    QByteArray b(int(sizeof(T)), '\0');
    qToLittleEndian(v, b.data());
    return b;
}
quint32 le32(const QByteArray& b, qint64 at) { return qFromLittleEndian<quint32>(b.constData() + at); }
quint64 le64(const QByteArray& b, qint64 at) { return qFromLittleEndian<quint64>(b.constData() + at); }

QByteArray object(const QByteArray& id, const QByteArray& body) { return id + le(quint64(24 + body.size())) + body; }

QByteArray fileProperties(quint32 packetSize)
{
    return object(kFileProps, QByteArray(16, 'F') + le(quint64(123456)) + le(quint64(0)) + le(quint64(99))
                                  + le(quint64(0x1122334455667788))   // Play Duration
                                  + le(quint64(0x0102030405060708)) + le(quint64(3000)) + le(quint32(2))
                                  + le(packetSize) + le(packetSize) + le(quint32(1000000)));
}

QByteArray streamProperties(const QByteArray& type, char mark, int extra = 10)
{
    return object(kStreamProps, type + QByteArray(16, '\0') + le(quint64(0)) + le(quint32(extra)) + le(quint32(0))
                                    + le(quint16(mark == 'a' ? 2 : 1)) + le(quint32(0)) + QByteArray(extra, mark));
}

QByteArray codecList() { return object(kCodecList, QByteArray(16, '\0') + le(quint32(0)) + "codecs"); }
QByteArray extContent(int pad = 0) { return object(kExtContent, le(quint16(0)) + "ext" + QByteArray(pad, 'e')); }
QByteArray content() { return object(kContent, QByteArray(10, '\0') + "desc"); }

QByteArray headerObject(const QList<QByteArray>& objects)
{
    QByteArray body = le(quint32(objects.size())) + QByteArray("\x01\x02", 2);
    for (const QByteArray& o : objects)
        body += o;
    return object(kHeader, body);
}

const QByteArray kDataTail = QByteArray(16, 'I') + le(quint64(77)) + QByteArray("\x01\x01", 2);

// A data packet: error correction 82 00 00, the two flag bytes, padding
// length, send time at byte 7, duration, then filler.
QByteArray packet(quint32 size, quint32 sendTime, char fill)
{
    QByteArray p = QByteArray("\x82\x00\x00\x11\x5d", 5) + le(quint16(0)) + le(sendTime) + le(quint16(40));
    return p + QByteArray(int(size) - p.size(), fill);
}

QByteArray dataObject(const QByteArray& packets) { return kData + le(quint64(50 + packets.size())) + kDataTail + packets; }

QByteArray asfFile(const QList<QByteArray>& headerObjects, const QByteArray& packets, const QByteArray& behind = QByteArray())
{
    return headerObject(headerObjects) + dataObject(packets) + behind;
}
QByteArray minimalFile(quint32 packetSize, const QByteArray& packets, const QByteArray& behind = QByteArray())
{
    return asfFile({fileProperties(packetSize), streamProperties(kVideo, 'v'), codecList()}, packets, behind);
}

struct Obj {
    QByteArray id;
    qint64 pos;
    quint64 size;
};

// The objects of a Header Object; empty when a size disagrees with the bytes.
QList<Obj> headerObjects(const QByteArray& f)
{
    QList<Obj> list;
    if (f.left(16) != kHeader)
        return list;
    const qint64 end = qint64(le64(f, 16));
    qint64 pos = 30;
    while (pos < end) {
        const quint64 size = le64(f, pos + 16);
        if (size < 24 || pos + qint64(size) > end)
            return {};
        list << Obj{f.mid(int(pos), 16), pos, size};
        pos += qint64(size);
    }
    return pos == end ? list : QList<Obj>();
}

} // namespace

class TestAsf : public QObject {
    Q_OBJECT
    QString m_dir;

    struct Result {
        bool found = false, failed = false;
        QByteArray out, data;   // the output, and its Data Object onwards
        quint32 playDurationLow() const { return le32(out, 94); }
    };

    // Walks the header of headerSource, then rewrites from packetSource (the
    // same bytes unless a sample gives the header).
    Result repair(const QByteArray& headerSource, const QByteArray* packetSource = nullptr)
    {
        Result r;
        QFile::remove(m_dir + "/clip.wmv");
        g_repairedPaths.clear();
        g_passFailed = false;
        ThreadVideoRepair t;
        t.m_workDir = m_dir;
        t.m_fileName = "clip.wmv";
        g_sourceFullPath = m_dir + "/source/clip.wmv";
        t.m_file = std::make_unique<MemoryReader>(headerSource, 64 * 1024);
        t.ReadAsfHeaderObjects();
        r.found = t.m_asfHeadersFound;
        if (r.found) {
            t.m_file = std::make_unique<MemoryReader>(packetSource ? *packetSource : headerSource, 64 * 1024);
            t.RewriteAsfFile(m_dir);
            r.out = readAll(m_dir + "/clip.wmv");
            r.data = r.out.mid(r.out.indexOf(kData));
        }
        r.failed = g_passFailed;
        g_passFailed = false;
        return r;
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir("asf-unit");
        g_stopRequested = false;
        g_referencePath.clear();
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void newHeaderTakesTheObjectsInItsOwnOrder_data()
    {
        QTest::addColumn<bool>("audioFirst");
        QTest::newRow("video stream first") << false;
        QTest::newRow("audio stream first") << true;
    }
    void newHeaderTakesTheObjectsInItsOwnOrder()
    {
        QFETCH(bool, audioFirst);
        const QByteArray video = streamProperties(kVideo, 'v'), audio = streamProperties(kAudio, 'a', 18);
        // A second video or audio stream is passed over and dropped from the header.
        const QByteArray video2 = streamProperties(kVideo, 'w'), audio2 = streamProperties(kAudio, 'b', 18);
        QList<QByteArray> objects{content(), fileProperties(256)};
        objects << (audioFirst ? audio : video) << (audioFirst ? audio2 : video2) << (audioFirst ? video : audio)
                << (audioFirst ? video2 : audio2) << extContent() << codecList();
        const QByteArray packets = packet(256, 100, 'a') + packet(256, 140, 'b') + packet(256, 180, 'c');
        const Result r = repair(asfFile(objects, packets, kSimpleIndex + le(quint64(56))));
        QVERIFY(r.found && !r.failed);
        QCOMPARE(g_repairedPaths, QStringList{m_dir + "/clip.wmv"});

        const QList<Obj> objs = headerObjects(r.out);
        QCOMPARE(objs.size(), 7);
        QCOMPARE(le32(r.out, 24), 7u);
        QCOMPARE(r.out.mid(28, 2), QByteArray("\x01\x02", 2));
        const QList<QByteArray> expected{kFileProps, kHeaderExt, kExtContent, kStreamProps, kStreamProps, kCodecList, kContent};
        for (int i = 0; i < objs.size(); ++i)
            QCOMPARE(objs[i].id, expected[i]);
        QCOMPARE(r.out.mid(int(objs[3].pos), video.size()), video);
        QCOMPARE(r.out.mid(int(objs[4].pos), audio.size()), audio);
        QCOMPARE(r.out.mid(int(objs[5].pos), int(objs[5].size)), codecList());
        QCOMPARE(r.out.mid(int(objs[6].pos), int(objs[6].size)), content());
        QCOMPARE(r.out.mid(int(objs[1].pos), 46), kHeaderExt + le(quint64(46)) + kHeaderExtReserved + QByteArray(6, '\0'));

        // File Properties copied whole but for the low half of Play Duration.
        QByteArray props = fileProperties(256);
        QCOMPARE(objs[0].pos, 30);
        QCOMPARE(r.playDurationLow(), 140u * 10000);
        props.replace(64, 4, r.out.mid(94, 4));
        QCOMPARE(r.out.mid(30, props.size()), props);

        // Data Object: the kept tail, then the packets whose successor begins
        // like a packet; the last one, followed by the index object, is not.
        QCOMPARE(r.out.mid(int(objs.last().pos + objs.last().size), 16), kData);
        QCOMPARE(le64(r.data, 16), quint64(512));
        QCOMPARE(r.data.mid(24, 26), kDataTail);
        QCOMPARE(r.data.mid(50), packets.left(512));
    }

    // Rows with objects > 0 say how many the new header holds; its count says 7 all the same.
    void requiredObjectsAndTheOneMiBLimit_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<int>("objects");   // 0: the walk fails
        const QByteArray packets = packet(128, 1, 'p') + packet(128, 2, 'q');
        const QByteArray fp = fileProperties(128), v = streamProperties(kVideo, 'v'), cl = codecList();
        QTest::newRow("all required") << asfFile({fp, v, cl}, packets) << 4;
        QTest::newRow("codec list and stream ahead of File Properties") << asfFile({cl, v, fp}, packets) << 4;
        QTest::newRow("no packets") << asfFile({fp, v, cl}, QByteArray()) << 4;
        // A Data Object met first doesn't end the walk while objects are missing.
        QTest::newRow("data object ahead of the header") << dataObject(QByteArray()) + headerObject({fp, v, cl}) + packets << 4;
        QTest::newRow("no codec list") << asfFile({fp, v}, packets) << 0;
        QTest::newRow("audio only") << asfFile({fp, streamProperties(kAudio, 'a'), cl}, packets) << 0;
        QTest::newRow("no data object") << headerObject({fp, v, cl}) + packets << 0;
        QTest::newRow("header over 1 MiB") << asfFile({fp, v, extContent(0x110000), cl}, packets) << 0;
        QTest::newRow("data object beyond 1 MiB") << asfFile({fp, v, cl, extContent(0x110000)}, packets) << 0;
        QTest::newRow("header just under 1 MiB") << asfFile({fp, v, cl, extContent(0xF0000)}, packets) << 5;
        QTest::newRow("packet size 0") << asfFile({fileProperties(0), v, cl}, packets) << 0;
        QTest::newRow("packet size 4 billion") << asfFile({fileProperties(4000000000u), v, cl}, packets) << 0;
        QByteArray shortProps = fp, hugeCodecs = cl, zeroSize = cl;
        shortProps.replace(16, 8, le(quint64(60)));
        QTest::newRow("File Properties shorter than its fields") << asfFile({shortProps, v, cl}, packets) << 0;
        hugeCodecs.replace(16, 8, le(quint64(1) << 40));
        QTest::newRow("codec list sized past the end") << asfFile({fp, v, hugeCodecs}, packets) << 0;
        zeroSize.replace(16, 8, le(quint64(0)));
        QTest::newRow("codec list of size 0, then a good one") << asfFile({fp, v, zeroSize, cl}, packets) << 4;
        QTest::newRow("random bytes") << containers::randomBytes(300000, 3) << 0;
        QTest::newRow("GUIDs alone at the end") << QByteArray(100, 'x') + kFileProps + kStreamProps + kCodecList + kData << 0;
    }
    void requiredObjectsAndTheOneMiBLimit()
    {
        QFETCH(QByteArray, input);
        QFETCH(int, objects);
        const Result r = repair(input);
        QCOMPARE(r.found, objects > 0);
        if (!objects)
            return;
        QVERIFY(!r.failed);
        QCOMPARE(headerObjects(r.out).size(), objects);
        QCOMPARE(le32(r.out, 24), 7u);
        QCOMPARE(le64(r.data, 16), quint64(r.data.size() - 50));
    }

    void packetSuccessorTest_data()
    {
        QTest::addColumn<QByteArray>("successor");
        QTest::addColumn<int>("packetsTaken");
        QTest::newRow("82 00 00") << QByteArray("\x82\x00\x00", 3) << 2;
        QTest::newRow("82 ff ff") << QByteArray("\x82\xff\xff", 3) << 2;
        QTest::newRow("01") << QByteArray("\x01zz", 3) << 2;
        QTest::newRow("02") << QByteArray("\x02zz", 3) << 2;
        // A packet head with another error correction length is not a successor.
        QTest::newRow("81 00 00") << QByteArray("\x81\x00\x00", 3) << 1;
        QTest::newRow("00") << QByteArray("\x00zz", 3) << 1;
    }
    void packetSuccessorTest()
    {
        QFETCH(QByteArray, successor);
        QFETCH(int, packetsTaken);
        // Two packets, then the byte under test where a third would begin.
        const QByteArray packets = packet(200, 10, 'a') + packet(200, 20, 'b');
        const Result r = repair(minimalFile(200, packets, successor + QByteArray(40, 'z')));
        QVERIFY(r.found);
        QCOMPARE(le64(r.data, 16), quint64(200 * packetsTaken));
        QCOMPARE(r.data.mid(50), packets.left(200 * packetsTaken));
        QCOMPARE(r.playDurationLow(), quint32(10 * packetsTaken) * 10000);
    }

    // Packets behind a hole of odd length are found again; the packet cut by
    // the end of the file is not taken (its successor reads as zeros).
    void packetWalkResynchronisesAndDropsCutPackets()
    {
        const QByteArray p1 = packet(300, 1, 'a'), p2 = packet(300, 2, 'b'), p3 = packet(300, 3, 'c');
        const QByteArray p4 = packet(300, 4, 'd'), p5 = packet(300, 5, 'e');
        const Result r = repair(minimalFile(300, p1 + p2 + QByteArray(77, 'n') + p3 + p4 + p5.left(250)));
        QCOMPARE(r.data.mid(50), p1 + p3 + p4);
        QCOMPARE(le64(r.data, 16), quint64(900));
        QCOMPARE(r.playDurationLow(), 4u * 10000);
    }

    // The header comes from a sample with 160-byte packets; the damaged
    // file's own header (with 100) is zeroed; duration from its packets.
    void packetsUseTheSamplesPacketSize()
    {
        QByteArray packets;
        for (int i = 0; i < 6; ++i)
            packets += packet(160, quint32(100 + i), char('a' + i));
        QByteArray damaged = minimalFile(100, packets, QByteArray(1, '\x82'));
        zeroRange(damaged, 0, damaged.indexOf(kData) + 50);
        const Result r = repair(minimalFile(160, packet(160, 1, 's')), &damaged);
        QVERIFY(r.found);
        QCOMPARE(r.data.mid(50), packets);
        QCOMPARE(r.playDurationLow(), 105u * 10000);
    }

    void unwritableOutputIsAFailure()
    {
        // The output name is a link to a device that refuses every write.
        if (!QFile::exists("/dev/full"))
            QSKIP("no /dev/full");
        QVERIFY(QFile::link("/dev/full", m_dir + "/clip.wmv"));
        ThreadVideoRepair t;
        t.m_workDir = m_dir;
        t.m_fileName = "clip.wmv";
        g_repairedPaths.clear();
        g_passFailed = false;
        QByteArray packets;
        for (int i = 0; i < 2000; ++i)
            packets += packet(512, quint32(i), 'x');
        t.m_file = std::make_unique<MemoryReader>(minimalFile(512, packets, QByteArray(1, '\x82')));
        t.ReadAsfHeaderObjects();
        QVERIFY(t.m_asfHeadersFound);
        t.RewriteAsfFile(m_dir);
        QVERIFY(g_passFailed);
        QVERIFY(g_repairedPaths.isEmpty());
        g_passFailed = false;
        QVERIFY(QFile::exists("/dev/full"));
    }
};

QTEST_GUILESS_MAIN(TestAsf)
#include "test_asf.moc"
