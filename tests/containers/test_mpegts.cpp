// MTS repair on hand-made units: the four system templates, the classes of
// packet heads, the rebuild with its system sets, the unit-for-unit copy of a
// stream with an intact start, and streams that hold nothing to copy.
#include "containers/mpegts.h"
#include "core/thread_video_repair.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QtTest>

using namespace testvideo;
using mts::HeadClass;

namespace {

constexpr int kUnit = 192;

QByteArray bytesOf(const mts::Unit& u) { return QByteArray(reinterpret_cast<const char*>(u.data()), int(u.size())); }

// The template as the format tables give it: zero extra header, the packet
// bytes, 0xFF to the end of the unit.
QByteArray expectedTemplate(const char* hex)
{
    QByteArray u = QByteArray(4, '\0') + QByteArray::fromHex(hex);
    return u + QByteArray(kUnit - u.size(), char(0xFF));
}

// A unit with the given head; serial marks it so that it can be found in an
// output. No byte but the sync byte is 0x47, so no false head appears.
QByteArray unit(quint32 head, int serial)
{
    QByteArray u(kUnit, char(0xAA));
    u[0] = char(0x40);
    u[3] = char(serial & 0x3F);
    u[4] = char(head >> 24);
    u[5] = char(head >> 16);
    u[6] = char(head >> 8);
    u[7] = char(head);
    u[8] = char(0x10 + (serial >> 6 & 0x1F));
    u[9] = char(serial & 0x3F);
    return u;
}

// CRC-32 of MPEG-2 sections (polynomial 0x04C11DB7, no reflection). A section
// with its own CRC appended gives 0.
quint32 crcMpeg(const QByteArray& b)
{
    quint32 crc = 0xFFFFFFFFu;
    for (char c : b) {
        crc ^= quint32(uchar(c)) << 24;
        for (int i = 0; i < 8; ++i)
            crc = crc & 0x80000000u ? crc << 1 ^ 0x04C11DB7u : crc << 1;
    }
    return crc;
}

const QByteArray kPat = bytesOf(mts::PatUnit), kPmt = bytesOf(mts::PmtUnit);
const QByteArray kSit = bytesOf(mts::SitUnit), kPcr = bytesOf(mts::PcrUnit);
const QByteArray kTemplates = kPat + kPmt + kSit + kPcr;

} // namespace

class TestMpegTs : public QObject {
    Q_OBJECT
    QString m_dir;

    struct Run {
        bool done = false;
        bool listed = false;
        bool exists = false;
        QByteArray out;
    };
    // RepairMtsFile over bytes in memory; the output lands in m_dir.
    Run repair(const QByteArray& input)
    {
        ThreadVideoRepair t;
        t.m_file = std::make_unique<MemoryReader>(input, 64 * 1024);   // small window: edges get crossed
        t.m_workDir = m_dir;
        t.m_fileName = QStringLiteral("clip.mts");
        g_sourceFullPath = m_dir + QStringLiteral("/nowhere/clip.mts");
        g_repairedPaths.clear();
        t.m_mtsUnitCount = 5;   // left over from an earlier file
        t.RepairMtsFile();
        Run r;
        const QString out = m_dir + QStringLiteral("/clip.mts");
        r.done = t.m_mtsDone;
        r.listed = g_repairedPaths.contains(out);
        r.exists = QFile::exists(out);
        r.out = readAll(out);
        return r;
    }

private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("mpegts")); g_stopRequested = false; }
    void cleanup()
    {
        QDir(m_dir).removeRecursively();
        g_stopRequested = false;
    }

    void templatesByteForByte()
    {
        QCOMPARE(kPat, expectedTemplate("474000100000B0110000C10000"
                                        "0000E01F0001E100235AAB82"));
        QCOMPARE(kPmt, expectedTemplate("474100100002B0390001C10000F001F00C050448444D56"
                                        "88040FFFFCFC1BF011F00A050848444D56FF1B563F"
                                        "81F100F00C050441432D33810404280500"
                                        "9565B40F"));
        QCOMPARE(kSit, expectedTemplate("47401F10007FF019FFFFC10000F00A6308C0AFC8"
                                        "FFFFFFFFFF00018000AEB43A35"));
        QCOMPARE(kPcr, expectedTemplate("47100120B710000000000000"));
    }

    // The tables must be what a demuxer accepts: valid CRCs, and a PCR
    // adaptation field that fills its packet.
    void templateTablesAreWellFormed()
    {
        for (const QByteArray& u : {kPat, kPmt, kSit}) {
            const int sectionLength = (uchar(u[10]) & 0x0F) << 8 | uchar(u[11]);
            QCOMPARE(crcMpeg(u.mid(9, 3 + sectionLength)), 0u);
            QCOMPARE(uchar(u[8]), uchar(0));   // pointer field
        }
        QCOMPARE(uchar(kPcr[8]), uchar(188 - 5));
        QCOMPARE(uchar(kPcr[7]) & 0x30, 0x20);   // adaptation field only
    }

    void classifyHeads_data()
    {
        QTest::addColumn<quint32>("head");
        QTest::addColumn<int>("cls");
        const int none = int(HeadClass::None), sys = int(HeadClass::System);
        const int media = int(HeadClass::Media), counted = int(HeadClass::MediaCounted);
        QTest::newRow("PAT") << 0x474000FFu << sys;
        QTest::newRow("PMT") << 0x47410010u << sys;
        QTest::newRow("SIT") << 0x47401F10u << sys;
        QTest::newRow("PCR only") << 0x47100120u << sys;
        QTest::newRow("PCR with payload") << 0x47100130u << none;
        QTest::newRow("video") << 0x47101117u << media;
        QTest::newRow("video, priority") << 0x47301130u << media;
        QTest::newRow("video, priority, start") << 0x47701110u << media;
        QTest::newRow("video, start") << 0x47501130u << counted;
        QTest::newRow("audio, priority") << 0x47310012u << media;
        QTest::newRow("audio, priority, start") << 0x47710010u << counted;
        QTest::newRow("audio without priority") << 0x47110010u << none;
        QTest::newRow("audio start without priority") << 0x47510010u << none;
        QTest::newRow("SDT") << 0x47401110u << none;
        QTest::newRow("null packet") << 0x471FFF10u << none;
        QTest::newRow("zeros") << 0u << none;
    }
    void classifyHeads()
    {
        QFETCH(quint32, head);
        QFETCH(int, cls);
        QCOMPARE(int(mts::ClassifyHead(head)), cls);
    }

    // 140 payload starts: a set after every seventh, the SIT in sets 10 and 20 only.
    void rebuildRepeatsSystemSets()
    {
        QByteArray input(4 * kUnit, '\0');   // damaged start
        QByteArray expected = kTemplates;
        for (int i = 1; i <= 140; ++i) {
            const QByteArray u = unit(0x47501110u, i);
            input += u;
            expected += u;
            if (i % 7 == 0)
                expected += kPat + kPmt + (i % 70 == 0 ? kSit : QByteArray()) + kPcr;
        }
        const Run r = repair(input);
        QVERIFY(r.done && r.listed);
        QCOMPARE(r.out.size(), expected.size());
        QVERIFY(r.out == expected);
        QCOMPARE(r.out.count(kSit), 3);
        QCOMPARE(r.out.count(kPcr), 21);
    }

    // System units of the file are dropped, unknown PIDs and junk skipped,
    // and media units copied whole in their order.
    void rebuildKeepsOnlyMedia()
    {
        QByteArray input(4 * kUnit, '\0');
        const QList<quint32> heads{0x47400010u, 0x47410010u, 0x47401F10u, 0x47100120u,   // system
                                   0x47101110u, 0x47301130u, 0x47701110u, 0x47501130u,   // video
                                   0x47310010u, 0x47710010u,                             // audio
                                   0x47110010u, 0x47510010u, 0x471FFF10u, 0x47401110u};  // not recognised
        QByteArray expected = kTemplates;
        int serial = 0;
        for (quint32 h : heads) {
            const QByteArray u = unit(h, ++serial);
            input += u;
            if (mts::ClassifyHead(h) == HeadClass::Media || mts::ClassifyHead(h) == HeadClass::MediaCounted)
                expected += u;
        }
        input += QByteArray(37, char(0x5C));   // junk that shifts the unit grid
        const QByteArray last = unit(0x47101110u, ++serial);
        input += last;
        expected += last;
        const Run r = repair(input);
        QVERIFY(r.done);
        QVERIFY(r.out == expected);
    }

    // A damaged first unit sends even a sound stream down the rebuild, and
    // everything in front of offset 750 (units 0 to 3) is dropped.
    void damagedStartDropsFirstUnits()
    {
        QByteArray input;
        for (int i = 0; i < 12; ++i)
            input += unit(0x47101110u, i);
        input[4] = 0;
        const Run r = repair(input);
        QVERIFY(r.done);
        QVERIFY(r.out == kTemplates + input.mid(4 * kUnit));
    }

    // With PAT first and a PCR unit fourth the stream is copied unit for unit;
    // each unit comes from where its head was found, so a hole or junk costs
    // only what it covers, and a cut last unit is filled up with zeros.
    void intactStartIsCopied()
    {
        QByteArray input = unit(0x47400010u, 0) + unit(0x47410010u, 1) + unit(0x47401F10u, 2) + unit(0x47100120u, 3);
        QList<QByteArray> media;
        for (int i = 4; i < 40; ++i)
            media << unit(i % 5 ? 0x47101110u : 0x47501110u, i);
        for (const QByteArray& u : media)
            input += u;
        QCOMPARE(repair(input).out, input);

        QByteArray damaged = input;
        zeroRange(damaged, 10 * kUnit, kUnit);                // a lost unit
        damaged.insert(21 * kUnit, QByteArray(37, char(0x5C)));  // junk between units
        cutFrom(damaged, damaged.size() - 50);
        const Run r = repair(damaged);
        QVERIFY(r.done);
        QByteArray expected = input;
        expected.remove(10 * kUnit, kUnit);
        expected.replace(expected.size() - 50, 50, QByteArray(50, '\0'));
        QVERIFY(r.out == expected);
    }

    // Nothing to copy: no verdict of success and no output left behind.
    void nothingToCopy_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("100 bytes") << QByteArray(100, char(0x47));
        QByteArray noise(1 << 20, '\0');
        QRandomGenerator(5).fillRange(reinterpret_cast<quint32*>(noise.data()), noise.size() / 4);
        noise.replace(char(0x47), char(0x46));
        QTest::newRow("noise without sync bytes") << noise;
        QByteArray systemOnly;
        for (int i = 0; i < 20; ++i)
            systemOnly += kPat + kPmt + kSit + kPcr;
        QTest::newRow("system units only (intact start)") << systemOnly;
        QTest::newRow("system units only (rebuilt)") << QByteArray(kUnit, '\0') + systemOnly;
    }
    void nothingToCopy()
    {
        QFETCH(QByteArray, input);
        const Run r = repair(input);
        QVERIFY(!r.done && !r.listed && !r.exists);
    }

    void outputNeverReplacesItsInput()
    {
        QByteArray input(4 * kUnit, '\0');
        input += unit(0x47501110u, 1);
        const QString path = m_dir + QStringLiteral("/clip.mts");
        QVERIFY(writeAll(path, input));
        ThreadVideoRepair t;
        t.m_file = ThreadVideoRepair::OpenReadOnly(path);
        t.m_workDir = m_dir;
        t.m_fileName = QStringLiteral("clip.mts");
        g_sourceFullPath = path;
        t.RepairMtsFile();
        QVERIFY(!t.m_mtsDone);
        QCOMPARE(readAll(path), input);
    }
};

QTEST_GUILESS_MAIN(TestMpegTs)
#include "test_mpegts.moc"
