// Matroska repair at unit level: the size reader's length forms, and crafted
// files run through reelwright-batch to check which elements are kept.
#include "containers/matroska.h"
#include "core/byte_reader.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

using namespace testvideo;

namespace {
QByteArray hex(const char* h) { return QByteArray::fromHex(h); }
QByteArray be32(quint32 v) { return QByteArray(1, char(v >> 24)) + char(v >> 16) + char(v >> 8) + char(v); }
// Element with an 8-byte size of the 01 00 00 00 form.
QByteArray element(const char* idHex, const QByteArray& payload)
{
    return hex(idHex) + hex("01000000") + be32(quint32(payload.size())) + payload;
}
QByteArray cluster(int timecode, int payloadBytes, bool withTimecode = true, bool crc = false)
{
    QByteArray p = withTimecode ? hex("E782") + char(timecode >> 8) + char(timecode) : hex("A3");
    if (crc)
        p.prepend(hex("BF84DEADBEEF"));
    while (p.size() < payloadBytes)
        p.append(char(0x5A));
    return element("1F43B675", p);
}
} // namespace

class TestMatroska : public QObject {
    Q_OBJECT
    QString m_dir;

    // A file of Info (with or without Duration), Tracks, the given clusters, Cues, padded past 100000.
    static QByteArray file(const QByteArray& clusters, bool duration = true, int infoPad = 10, bool crc = false)
    {
        QByteArray info = hex("2AD7B183") + char(0x0F) + char(0x42) + char(0x40);
        if (crc)
            info.prepend(hex("BF8412345678"));
        if (duration)
            info += hex("448984") + be32(0x447A0000);
        info += QByteArray(infoPad, char(0x7B));
        QByteArray head = hex("1A45DFA3") + hex("84") + hex("42868101")
                        + hex("18538067") + hex("01FFFFFFFFFFFFFF")
                        + element("1549A966", info)
                        + element("1654AE6B", (crc ? hex("BF8487654321") : QByteArray()) + hex("AE8383810186"));
        QByteArray f = head + clusters + element("1C53BB6B", QByteArray(8, char(0x11)));
        f += QByteArray(120000, '\0');
        return f;
    }
    QByteArray repair(const QByteArray& bytes, bool* ok)
    {
        const QString in = m_dir + "/t.mkv";
        QFile::remove(m_dir + "/Repaired/t.mkv");
        writeAll(in, bytes);
        const BatchResult r = runBatch({QStringLiteral("--quiet"), in}, 60000);
        *ok = r.verdicts().size() == 1 && r.verdicts()[0].value(QStringLiteral("repaired")).toBool();
        return readAll(m_dir + "/Repaired/t.mkv");
    }

private Q_SLOTS:
    void initTestCase() { m_dir = freshDir(QStringLiteral("mkvunit")); }
    void cleanupTestCase() { QDir(m_dir).removeRecursively(); }

    void sizeForms()
    {
        const struct { const char* bytes; int n; quint64 v; } cases[] = {
            {"85", 1, 5}, {"4123", 2, 0x123}, {"201234", 3, 0x1234}, {"10123456", 4, 0x123456},
            {"0801020304", 5, 0x01020304ull}, {"040102030405", 6, 0x0102030405ull},
            {"01000000CAFEBABE", 8, 0xCAFEBABEull}, {"0100000102030405", 8, 0x0000000102030405ull},
            {"00", 8, 0}, {"01FFFFFFFFFFFFFF", 8, 0x00FFFFFFFFFFFFFFull},
        };
        for (const auto& c : cases) {
            MemoryReader r(hex(c.bytes) + QByteArray(8, '\0'));
            const auto got = ReadEbmlSize(r, 0);
            QCOMPARE(got.first, c.n);
            QCOMPARE(quint64(got.second), c.v);
        }
    }

    void layoutAndClusters()
    {
        bool ok = false;
        // The second cluster has no Timecode and is dropped; the third is kept.
        const QByteArray out = repair(file(cluster(0, 200) + cluster(40, 300, false) + cluster(40, 100)), &ok);
        QVERIFY(ok);
        QCOMPARE(out.mid(0, 4), hex("1A45DFA3"));
        QCOMPARE(out.mid(31, 4), QByteArray("webm"));
        QCOMPARE(out.mid(43, 4), hex("18538067"));
        const quint64 segment = (quint8(out[51]) << 24) | (quint8(out[52]) << 16) | (quint8(out[53]) << 8) | quint8(out[54]);
        QCOMPARE(qint64(segment), out.size() - 55);
        QCOMPARE(out.mid(55 + 229, 4), hex("1549A966"));
        // The Tracks Seek holds the position of Tracks in the Segment's data.
        const int tracksAt = (quint8(out[55 + 33]) << 8) | quint8(out[55 + 34]);
        QCOMPARE(out.mid(55 + tracksAt, 4), hex("1654AE6B"));
        QCOMPARE(out.count(hex("1F43B675")), 2);
        QVERIFY(!out.contains(hex("1C53BB6B")));
        // Duration: 10 x 2 clusters - 0 + 40 = 60, as a float.
        QVERIFY(out.contains(hex("448984") + be32(0x42700000)));
    }

    void tracksPositionWraps()
    {
        // An Info payload above 65287 bytes wraps the 16-bit Tracks position.
        bool ok = false;
        const QByteArray out = repair(file(cluster(0, 200), true, 70000), &ok);
        QVERIFY(ok);
        const int tracksAt = (quint8(out[55 + 33]) << 8) | quint8(out[55 + 34]);
        const int infoBytes = 7 + 70000;   // Info payload without the Duration
        QCOMPARE(tracksAt, (infoBytes + 248) & 0xFFFF);
    }

    void refused()
    {
        bool ok = true;
        QVERIFY(repair(file(cluster(0, 200), false), &ok).isEmpty());
        QVERIFY(!ok);
        // A Timecode whose data would run past the cluster has no value: the cluster is
        // dropped, the file still written.
        QByteArray bad = hex("1F43B675") + hex("83") + hex("E782") + char(1);
        const QByteArray out = repair(file(bad + cluster(0, 50)), &ok);
        QVERIFY(ok);
        QCOMPARE(out.count(hex("1F43B675")), 1);
    }

    void checksums()
    {
        // Masters that open with a CRC-32: a Cluster's Timecode behind it still counts, and the
        // cluster is copied with its checksum. The Info's CRC would be stale once the Duration
        // is rewritten, so it is left out; the Tracks, copied unchanged, keeps its own.
        bool ok = false;
        const QByteArray kept = cluster(0, 200, true, true);
        const QByteArray out = repair(file(kept + cluster(40, 300, false, true) + cluster(40, 100, true, true),
                                           true, 10, true), &ok);
        QVERIFY(ok);
        QCOMPARE(out.count(hex("1F43B675")), 2);
        QVERIFY(out.contains(kept));
        QVERIFY(!out.contains(hex("BF8412345678")));
        QVERIFY(out.contains(hex("BF8487654321")));
        const int info = 55 + 229;
        QCOMPARE(out.mid(info + 12, 4), hex("2AD7B183"));
        const int tracksAt = (quint8(out[55 + 33]) << 8) | quint8(out[55 + 34]);
        QCOMPARE(out.mid(55 + tracksAt, 4), hex("1654AE6B"));
        QCOMPARE(qint64(quint8(out[info + 11])), qint64(tracksAt - 229 - 12));
    }
};

QTEST_GUILESS_MAIN(TestMatroska)
#include "test_matroska.moc"
