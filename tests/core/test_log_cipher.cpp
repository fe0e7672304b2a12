// LogCipher: round trips with their byte layout, lines a foreign writer would
// produce, and the error codes of the decipher direction.
#include "core/log_cipher.h"
#include "support/bytes.h"

#include <QCryptographicHash>
#include <QtTest>

namespace {
// A cipher line built by the published layout, independently of LogCipher:
// version 3, flags, then salt + integrity + body under the XOR chain, in Base64.
QByteArray handMade(const QByteArray& body, uint8_t flags, const QByteArray& integrity, uint8_t salt)
{
    QByteArray plain = QByteArray(1, char(salt)) + integrity + body;
    uint8_t last = 0;
    for (int i = 0; i < plain.size(); ++i) {
        last = uint8_t(plain[i]) ^ uint8_t(LogCipher::kEngineKey >> (8 * (i % 8))) ^ last;
        plain[i] = char(last);
    }
    return (QByteArray(1, char(3)) + QByteArray(1, char(flags)) + plain).toBase64();
}

QByteArray checksumBe(const QByteArray& b) { return testvideo::be(quint16(qChecksum(b.constData(), uint(b.size())))); }
}

class TestLogCipher : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void roundTrip_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("flags");   // 2: checksum only, 3: compressed and checksummed
        QTest::newRow("index line") << QStringLiteral("AVC(Vide) at = 1234567 Size = 8910") << 2;
        QTest::newRow("empty") << QString() << 2;
        QTest::newRow("non-ascii") << QStringLiteral("Größe at = 1 Size = 2 ✓ 日本") << 2;
        QTest::newRow("long, compresses") << QStringLiteral("AAC(soun) at = 42 Size = 371 ").repeated(200) << 3;
    }
    void roundTrip()
    {
        QFETCH(QString, text);
        QFETCH(int, flags);
        const QString line = LogCipher().encryptToString(text);
        QVERIFY(!line.contains(QLatin1Char('\n')));
        const QByteArray raw = QByteArray::fromBase64(line.toLatin1());
        QCOMPARE(int(uint8_t(raw[0])), 3);
        QCOMPARE(int(uint8_t(raw[1])), flags);
        const int plainSize = text.toUtf8().size();
        if (flags == 2)   // version, flags, random byte, checksum, the text
            QCOMPARE(raw.size(), 5 + plainSize);
        else
            QVERIFY(raw.size() < 100);
        LogCipher d;
        QCOMPARE(d.decryptToString(line), text);
        QCOMPARE(d.lastError(), LogCipher::NoError);
    }

    void deciphersForeignLines()
    {
        const QByteArray text = "Zero(Zero) at = 77 Size = 4096";
        const QByteArray packed = qCompress(text, 9);
        const QByteArray sha = QCryptographicHash::hash(text, QCryptographicHash::Sha1);
        LogCipher d;
        for (const QByteArray& line : {handMade(text, 2, checksumBe(text), 0xA5), handMade(packed, 3, checksumBe(packed), 0),
                                       handMade(text, 4, sha, 0x7F), handMade(text, 0, QByteArray(), 0x11)}) {
            QCOMPARE(d.decryptToByteArray(QByteArray::fromBase64(line)), text);
            QCOMPARE(d.lastError(), LogCipher::NoError);
        }
    }

    void errors()
    {
        LogCipher noKey(0);
        QTest::ignoreMessage(QtWarningMsg, "No key set.");
        QVERIFY(noKey.decryptToString(QStringLiteral("AwIAAAA=")).isEmpty());
        QCOMPARE(noKey.lastError(), LogCipher::ErrorNoKeySet);

        LogCipher d;
        QTest::ignoreMessage(QtWarningMsg, "Invalid version or not a cyphertext.");
        QVERIFY(d.decryptToString(QStringLiteral("FrameWidth = 1920")).isEmpty());
        QCOMPARE(d.lastError(), LogCipher::ErrorUnknownVersion);

        // Shorter than its checksum: version, flags, random byte, one byte.
        const QByteArray cut = QByteArray::fromBase64(handMade("", 2, QByteArray(), 0x10)).left(3) + "\x01";
        QVERIFY(d.decryptToByteArray(cut).isEmpty());
        QCOMPARE(d.lastError(), LogCipher::ErrorIntegrityFailed);

        // One flipped bit in the body fails the checksum.
        QByteArray bad = QByteArray::fromBase64(LogCipher().encryptToString(QStringLiteral("AVC(Vide) at = 5 Size = 6")).toLatin1());
        bad[bad.size() - 1] = char(bad[bad.size() - 1] ^ 0x01);
        QVERIFY(d.decryptToByteArray(bad).isEmpty());
        QCOMPARE(d.lastError(), LogCipher::ErrorIntegrityFailed);

        QVERIFY(d.decryptToByteArray("\x03\x02").isEmpty());   // under three bytes: nothing, quietly
    }
};

QTEST_GUILESS_MAIN(TestLogCipher)
#include "test_log_cipher.moc"
