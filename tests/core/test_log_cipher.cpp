// LogCipher: round trips, the byte layout a foreign writer would produce, and
// the error codes of the decipher direction.
#include "core/log_cipher.h"

#include <QCryptographicHash>
#include <QtTest>

namespace {
// Builds a cipher line by the published layout, independently of LogCipher.
QByteArray handMade(const QByteArray& body, uint8_t flags, const QByteArray& integrity, uint8_t salt,
                    uint64_t key = LogCipher::kEngineKey)
{
    QByteArray plain = QByteArray(1, char(salt)) + integrity + body;
    uint8_t last = 0;
    for (int i = 0; i < plain.size(); ++i) {
        const uint8_t k = uint8_t(key >> (8 * (i % 8)));
        const uint8_t out = uint8_t(plain[i]) ^ k ^ last;
        plain[i] = char(out);
        last = out;
    }
    return (QByteArray(1, char(3)) + QByteArray(1, char(flags)) + plain).toBase64();
}

QByteArray checksumBe(const QByteArray& b)
{
    const quint16 s = qChecksum(b.constData(), uint(b.size()));
    return QByteArray(1, char(s >> 8)) + QByteArray(1, char(s & 0xFF));
}
}

class TestLogCipher : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void roundTrip_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("index line") << QStringLiteral("AVC(Vide) at = 1234567 Size = 8910");
        QTest::newRow("empty") << QString();
        QTest::newRow("non-ascii") << QStringLiteral("Größe at = 1 Size = 2 ✓ 日本");
        QTest::newRow("long, compresses") << QStringLiteral("AAC(soun) at = 42 Size = 371 ").repeated(200);
    }
    void roundTrip()
    {
        QFETCH(QString, text);
        LogCipher c;
        const QString line = c.encryptToString(text);
        QVERIFY(!line.contains(QLatin1Char('\n')));
        LogCipher d;
        QCOMPARE(d.decryptToString(line), text);
        QCOMPARE(d.lastError(), LogCipher::NoError);
    }

    void layoutOfEngineLines()
    {
        LogCipher c;
        const QByteArray shortLine = QByteArray::fromBase64(c.encryptToString(QStringLiteral("AVC(Vide) at = 1 Size = 2")).toLatin1());
        QCOMPARE(uint8_t(shortLine[0]), uint8_t(3));   // version
        QCOMPARE(uint8_t(shortLine[1]), uint8_t(2));   // checksum, not compressed (it would grow)
        // version + flags + random byte + checksum + the 25 UTF-8 bytes
        QCOMPARE(shortLine.size(), 2 + 1 + 2 + 25);
        const QByteArray longLine = QByteArray::fromBase64(c.encryptToString(QString(500, QLatin1Char('x'))).toLatin1());
        QCOMPARE(uint8_t(longLine[1]), uint8_t(3));    // compressed and checksummed
        QVERIFY(longLine.size() < 100);
    }

    void deciphersForeignLines()
    {
        const QByteArray text = "Zero(Zero) at = 77 Size = 4096";
        LogCipher d;
        QCOMPARE(d.decryptToByteArray(QByteArray::fromBase64(handMade(text, 2, checksumBe(text), 0xA5))), text);
        const QByteArray packed = qCompress(text, 9);
        QCOMPARE(d.decryptToByteArray(QByteArray::fromBase64(handMade(packed, 3, checksumBe(packed), 0x00))), text);
        const QByteArray sha = QCryptographicHash::hash(text, QCryptographicHash::Sha1);
        QCOMPARE(d.decryptToByteArray(QByteArray::fromBase64(handMade(text, 4, sha, 0x7F))), text);
        QCOMPARE(d.decryptToByteArray(QByteArray::fromBase64(handMade(text, 0, QByteArray(), 0x11))), text);
        QCOMPARE(d.lastError(), LogCipher::NoError);
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

        // Under three bytes: nothing, quietly.
        QVERIFY(d.decryptToByteArray("\x03\x02").isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestLogCipher)
#include "test_log_cipher.moc"
