// The HEVC pass's own pieces on crafted input.
#include "core/byte_reader.h"
#include "core/file_writer.h"
#include "core/quicktime_route.h"
#include "recovery/h264/h264_recovery.h"
#include "recovery/h264/nal_sets.h"
#include "recovery/hevc/hevc_tables.h"
#include "support/test_videos.h"

#include <QDir>
#include <QtTest>

using namespace testvideo;

namespace {

// An hvcC array: head (completeness flag and type), unit count, units.
QByteArray NalArray(quint8 head, const QList<QByteArray>& units, int claimedCount = -1)
{
    const int count = claimedCount < 0 ? units.size() : claimedCount;
    QByteArray a = QByteArray(1, char(head)) + char(count >> 8) + char(count);
    for (const QByteArray& u : units)
        a += char(u.size() >> 8) + QByteArray(1, char(u.size())) + u;
    return a;
}

QByteArray HvcC(const QList<QByteArray>& arrays)
{
    QByteArray config(22, '\0');
    config[0] = 1;             // configurationVersion
    config[21] = char(0x0F);   // lengthSizeMinusOne 3
    config += char(arrays.size());
    for (const QByteArray& a : arrays)
        config += a;
    return qtAtom("hvcC", config);
}

const QByteArray kVps = QByteArray::fromHex("40010c01ffff016000000300b0");
const QByteArray kSps = QByteArray::fromHex("420101016000000300b0000003005da0");
const QByteArray kSps2 = QByteArray::fromHex("420101016000000300b0a1000102");   // holds the bytes of an SPS head
const QByteArray kPps = QByteArray::fromHex("4401c172b46240");
const QByteArray kSliceTable(reinterpret_cast<const char*>(HevcSliceStartTable), sizeof HevcSliceStartTable);

} // namespace

class TestHevcUnits : public QObject {
    Q_OBJECT
    QString m_dir;

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("hevcunits"));
        g_stopRequested = false;
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void parameterSets_data()
    {
        QTest::addColumn<QByteArray>("box");
        QTest::addColumn<bool>("taken");
        const QByteArray vps = NalArray(0xA0, {kVps}), sps = NalArray(0xA1, {kSps}), pps = NalArray(0xA2, {kPps});
        QTest::newRow("complete arrays") << HvcC({vps, sps, pps}) << true;
        QTest::newRow("VPS 20 00 01") << HvcC({NalArray(0x20, {kVps}), NalArray(0x21, {kSps}), NalArray(0x22, {kPps})})
                                      << true;
        QTest::newRow("two SPS units") << HvcC({vps, NalArray(0xA1, {kSps, kSps2}), pps}) << true;
        QTest::newRow("arrays in another order") << HvcC({pps, vps, sps}) << true;
        QTest::newRow("SEI array between") << HvcC({vps, NalArray(0x27, {QByteArray::fromHex("4e0105")}), sps, pps}) << true;
        QTest::newRow("no PPS") << HvcC({vps, sps}) << false;
        const QByteArray cut = HvcC({vps, sps, pps}).chopped(4);
        QTest::newRow("PPS cut off by the box") << beWords({quint32(cut.size())}) + cut.mid(4) << false;
    }
    // The sets go to Indexing and to the stream, first SPS only; a box that
    // lacks one of them is not taken.
    void parameterSets()
    {
        QFETCH(QByteArray, box);
        QFETCH(bool, taken);
        MemoryReader r(QByteArray(16, 'x') + box + QByteArray(64, '\0'));
        FileWriter video, indexing;
        video.open(m_dir + QStringLiteral("/video.hevc"));
        indexing.open(m_dir + QStringLiteral("/Indexing"));
        QCOMPARE(QuickTimeRoute().CopyHevcParameterSets(r, 16 + 4, video, indexing), taken);
        video.close();
        indexing.close();
        const QByteArray sc = QByteArray::fromHex("00000001");
        QCOMPARE(readAll(m_dir + QStringLiteral("/Indexing")), taken ? sc + kVps + sc + kSps + sc + kPps : QByteArray());
        QCOMPARE(readAll(m_dir + QStringLiteral("/video.hevc")), readAll(m_dir + QStringLiteral("/Indexing")));
    }

    // Which header bytes open a unit in each set: CRA, parameter sets, type 0
    // with 01 behind it, and the second byte's layer and temporal id.
    void headerTests()
    {
        auto test = [](const char* hex, NalStartSet set) {
            const QByteArray b = QByteArray::fromHex(hex);
            return IsNalStartBytes(reinterpret_cast<const uint8_t*>(b.constData()), set);
        };
        QVERIFY(test("000012342a01", NalStartSet::HevcReferenceBytes));
        QVERIFY(!test("000012342a01", NalStartSet::HevcOwnIndexBytes));
        QVERIFY(!test("000012344001", NalStartSet::HevcStreamBytes));
        QVERIFY(test("000012344001", NalStartSet::HevcReferenceBytes));
        QVERIFY(test("000012340001", NalStartSet::HevcStreamBytes) && !test("000012340000", NalStartSet::HevcStreamBytes));
        QVERIFY(test("000012340203", NalStartSet::HevcStreamBytes));
        QVERIFY(!test("000012340268", NalStartSet::HevcReferenceBytes));
        QVERIFY(!test("00001234211a", NalStartSet::HevcStreamBytes));
        QVERIFY(!test("010012340201", NalStartSet::HevcReferenceBytes));
        QVERIFY(test("000000020900", NalStartSet::HevcOwnIndexBytes));
        QVERIFY(test("00001234211a", NalStartSet::StreamBytes));   // the H.264 sets keep no second-byte rule
    }

    // Two chunks of two units each, then one of one unit: the first unit of
    // every chunk and the second where it is a slice, then the whole table.
    void chunkWalk()
    {
        auto unit = [](const char* hex) { const QByteArray u = QByteArray::fromHex(hex); return beWords({quint32(u.size())}) + u; };
        const QByteArray media = unit("2801af00") + unit("0201e100aa") + unit("4e0105ff") + unit("0201e2") + unit("2a01ad0000");
        const QByteArray stco = beWords({0, 3, 16, 16 + 17, 16 + 17 + 15});
        const QByteArray file = QByteArray(16, 'x') + media + qtAtom("stco", stco);
        const qint64 tablePos = 16 + media.size() + 4;
        auto frameStarts = [&](const QByteArray& bytes) {
            MemoryReader r(bytes);
            FileWriter text;
            text.open(m_dir + QStringLiteral("/videotext.txt"));
            QuickTimeRoute().HevcFrameStarts(r, uint64_t(tablePos), false, text);
            text.close();
            return readAll(m_dir + QStringLiteral("/videotext.txt"));
        };
        QCOMPARE(frameStarts(file), QByteArray::fromHex("2801af2801af0201e14e01054e01050201e22a01ad2a01ad") + kSliceTable);

        QByteArray one = file;   // one chunk: the table alone
        one.replace(int(tablePos + 8), 4, beWords({1}));
        QCOMPARE(frameStarts(one), kSliceTable);
    }

    void walkPassesMmpuAndRateDefault()
    {
        const QByteArray file = qtAtom("ftyp", "isom") + qtAtom("mmpu", QByteArray(20, 'm')) + qtAtom("moov", QByteArray(8, '\0'));
        MemoryReader r(file);
        uint64_t pos = 4;
        QVERIFY(WalkToMovie(r, pos, true, nullptr, nullptr, true));
        QCOMPARE(qint64(pos), qint64(file.indexOf("moov")));
        pos = 4;
        QVERIFY(!WalkToMovie(r, pos, true));

        QCOMPARE(ComputeFrameRate(0, 10000, 1000, 25), 25);
        QCOMPARE(ComputeFrameRate(250, 500, 1000, 25), 25);   // under a second
        QCOMPARE(ComputeFrameRate(300, 10000, 1000, 25), 30);
    }
};

QTEST_GUILESS_MAIN(TestHevcUnits)
#include "test_hevc_units.moc"
