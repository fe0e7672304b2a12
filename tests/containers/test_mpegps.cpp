// MPEG program stream repair at unit level: the fixed header block, which
// system headers are kept or put back, and which stream ids fail the file.
#include "containers/mpegps.h"
#include "support/test_videos.h"

#include <QDir>
#include <QtTest>

using namespace testvideo;

namespace {
QByteArray hex(const char* h) { return QByteArray::fromHex(h); }
const QByteArray kPack = hex("000001BA") + hex("4400040004010189C3F8");   // 14-byte MPEG-2 pack header
// A system header of 18 bytes; ids are the stream id of its first entry and the byte behind it.
QByteArray systemHeader(const char* ids) { return hex("000001BB000C") + hex("80C4E104E1FF") + hex(ids) + hex("2EC0C020"); }
const QByteArray kSequence = hex("000001B3") + hex("140F0023") + hex("0003D3A0");   // short form, 12 bytes
const QByteArray kGop = hex("000001B8") + hex("00080000");
QByteArray stream(const QByteArray& head)
{
    QByteArray f = head + kSequence + kGop + hex("000001E0") + QByteArray(4000, char(0x33));
    f += hex("000001C0") + QByteArray(200000, char(0x44));
    return f;
}
} // namespace

class TestMpegPs : public QObject {
    Q_OBJECT
    QString m_dir;

    QByteArray repair(const QByteArray& bytes, bool* ok)
    {
        const QString in = m_dir + "/t.mpg";
        QFile::remove(m_dir + "/Repaired/t.mpg");
        writeAll(in, bytes);
        const BatchResult r = runBatch({QStringLiteral("--quiet"), in}, 60000);
        *ok = r.verdicts().size() == 1 && r.verdicts()[0].value(QStringLiteral("repaired")).toBool();
        return readAll(m_dir + "/Repaired/t.mpg");
    }

private Q_SLOTS:
    void initTestCase() { m_dir = freshDir(QStringLiteral("mpgunit")); }
    void cleanupTestCase() { QDir(m_dir).removeRecursively(); }

    void headerBlock()
    {
        const QByteArray b(reinterpret_cast<const char*>(MpegHeaderBlock), 93);
        QCOMPARE(b.left(9), hex("15FFFFE000000001B2"));
        QCOMPARE(b.mid(9), QByteArray("MPEG stream encoded by UCB Encoder (mpeg_encode) v1.5b on Tue Oct  9 12:23:31 2001\n."));
    }

    void systemHeaderKeptOrPutBack()
    {
        bool ok = false;
        // MPEG-2 pack header of 14 bytes with its system header behind it: both kept as they
        // are, and the stream comes out unchanged.
        QByteArray in = stream(kPack + systemHeader("E0E0"));
        QByteArray out = repair(in, &ok);
        QVERIFY(ok);
        QCOMPARE(out, in);
        // No system header behind the first pack (one stands in a later pack): a fresh one
        // goes in behind the whole 14-byte pack header, with the bounds learnt.
        in = kPack + kSequence + kGop + hex("000001E0") + QByteArray(4000, char(0x33))
           + kPack + systemHeader("E0E0") + hex("000001C0") + QByteArray(200000, char(0x44));
        out = repair(in, &ok);
        QVERIFY(ok);
        QCOMPARE(out.left(14), kPack);
        QCOMPARE(out.mid(14, 6), hex("000001BB000C"));
        QCOMPARE(out.mid(20, 6), hex("80C4E104E1FF"));
        QCOMPARE(out.mid(26, 6), hex("E0E02EC0C020"));
        QCOMPARE(out.mid(32), in.mid(14));
        // MPEG-1 pack header of 12 bytes without a system header: the fresh one follows byte 12.
        const QByteArray pack12 = hex("000001BA") + hex("2100010001800C35");
        in = pack12 + kSequence + kGop + hex("000001E0") + QByteArray(4000, char(0x33))
           + pack12 + systemHeader("C0C0") + hex("000001C0") + QByteArray(200000, char(0x44));
        out = repair(in, &ok);
        QVERIFY(ok);
        QCOMPARE(out.mid(12, 6), hex("000001BB000C"));
        QCOMPARE(out.mid(30), in.mid(12));
        // A 13-byte pack header: the system header at k + 13 stays, none is added.
        const QByteArray pack13 = hex("000001BA") + hex("210001000180003F") + char(0x01);
        out = repair(stream(pack13 + systemHeader("C0C0")), &ok);
        QVERIFY(ok);
        QCOMPARE(out.count(hex("000001BB")), 1);
        QCOMPARE(out.mid(13, 4), hex("000001BB"));
    }

    void sequenceHeaderReplaced()
    {
        // MPEG-2 video packets: a sequence header, its extension and a group of pictures at the
        // head of a packet whose 16-bit length covers them, then packs of audio.
        const QByteArray ext = hex("000001B5") + hex("148A00010000");
        auto packet = [](const QByteArray& payload) {
            const QByteArray body = hex("818000") + payload;
            return hex("000001E0") + char(body.size() >> 8) + char(body.size()) + body;
        };
        const QByteArray picture = hex("00000100") + QByteArray(300, char(0x33));
        QByteArray tail;
        for (int i = 0; i < 100; ++i)
            tail += kPack + hex("000001C007FA") + QByteArray(2042, char(0x44));
        const QString sample = m_dir + "/sample.mpg";
        QVERIFY(writeAll(sample, kPack + systemHeader("E0E0") + packet(kSequence + ext + kGop + picture) + tail));

        // The old header and its extension make way for the learnt ones: nothing changes.
        const QByteArray whole = kPack + systemHeader("E0E0") + packet(kSequence + ext + kGop + picture) + tail;
        bool ok = false;
        QCOMPARE(repair(whole, &ok), whole);
        QVERIFY(ok);

        // Damaged: the first pack's header lost its extension (12 bytes where 22 were). The
        // sample's header and extension go in and the packet grows by 10 bytes, so its end
        // still meets the next pack header.
        const QByteArray damaged = kPack + systemHeader("E0E0") + packet(kSequence + kGop + picture) + tail;
        const QString in = m_dir + "/t.mpg";
        QFile::remove(m_dir + "/Repaired/t.mpg");
        QVERIFY(writeAll(in, damaged));
        const BatchResult r = runBatch({QStringLiteral("--quiet"), QStringLiteral("--reference"), sample, in}, 60000);
        QCOMPARE(r.verdicts().size(), 1);
        QVERIFY(r.verdicts()[0].value(QStringLiteral("repaired")).toBool());
        const QByteArray out = readAll(m_dir + "/Repaired/t.mpg");
        QCOMPARE(out.size(), damaged.size() + 10);
        const int pes = out.indexOf(hex("000001E0"));
        QVERIFY(pes > 0);
        const int length = (quint8(out[pes + 4]) << 8) | quint8(out[pes + 5]);
        QCOMPARE(out.mid(pes + 6 + length, 4), hex("000001BA"));
        QVERIFY(out.contains(kSequence + ext + kGop + picture));
        QCOMPARE(out.count(hex("000001B3")), 1);
    }

    void failures()
    {
        bool ok = true;
        QVERIFY(repair(stream(kPack + systemHeader("BDE0")), &ok).isEmpty());
        QVERIFY(!ok);
        // No group of pictures: negative verdict and no output.
        QByteArray noGop = stream(kPack + systemHeader("E0E0"));
        noGop.replace(kGop, hex("000001B200000000"));   // user data instead
        QVERIFY(repair(noGop, &ok).isEmpty());
        QVERIFY(!ok);
    }
};

QTEST_GUILESS_MAIN(TestMpegPs)
#include "test_mpegps.moc"
