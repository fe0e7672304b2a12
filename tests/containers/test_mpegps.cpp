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
QByteArray systemHeader(const char* ids) { return hex("000001BB000C") + hex("80C4E104E1FF") + hex(ids) + hex("E02EC0C020"); }
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
        // System header at k + 14 (not k + 12/13): a fresh one is put back behind the first 12 bytes.
        QByteArray out = repair(stream(kPack + systemHeader("E0E0")), &ok);
        QVERIFY(ok);
        QCOMPARE(out.mid(12, 6), hex("000001BB000C"));
        QCOMPARE(out.mid(18, 6), hex("80C4E104E1FF"));
        QCOMPARE(out.mid(24, 6), hex("E0E02EC0C020"));
        QVERIFY(out.contains(kSequence + kGop));
        QCOMPARE(out.count(kSequence), 1);
        // A 13-byte pack header: the system header at k + 13 stays, none is added.
        const QByteArray pack13 = hex("000001BA") + hex("210001000180003F") + char(0x01);
        out = repair(stream(pack13 + systemHeader("C0C0")), &ok);
        QVERIFY(ok);
        QCOMPARE(out.count(hex("000001BB")), 1);
        QCOMPARE(out.mid(13, 4), hex("000001BB"));
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
