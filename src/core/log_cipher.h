#pragma once
// Reversible protection of the lines of logFile.txt.
//
// Encipher: UTF-8 bytes, zlib-compressed when that is shorter (flag 1), a
// 16-bit checksum in front (flag 2), one random byte in front of that, an XOR
// chain over the key bytes and the previous cipher byte, then the version byte
// 3 and the flag byte, all as Base64 text. Decipher also accepts a SHA-1 in
// place of the checksum (flag 4).
#include <QByteArray>
#include <QRandomGenerator>
#include <QString>
#include <cstdint>
#include <memory>

class LogCipher {
public:
    static constexpr uint64_t kEngineKey = 0x7a41e5d09b3c216ULL;

    enum Error { NoError = 0, ErrorNoKeySet = 1, ErrorUnknownVersion = 2, ErrorIntegrityFailed = 3 };
    enum CompressionMode { CompressionAuto, CompressionAlways, CompressionNever };
    enum ProtectionMode { ProtectionNone, ProtectionChecksum, ProtectionHash };

    explicit LogCipher(uint64_t key = kEngineKey);
    ~LogCipher();
    LogCipher(const LogCipher&) = delete;
    LogCipher& operator=(const LogCipher&) = delete;

    void setKey(uint64_t key);
    void setCompressionMode(CompressionMode m) { m_compression = m; }
    void setProtectionMode(ProtectionMode m) { m_protection = m; }

    QString encryptToString(const QString& plain);
    QByteArray encryptToByteArray(const QByteArray& plain);
    QString decryptToString(const QString& cipherText);
    QByteArray decryptToByteArray(const QByteArray& cipher);

    Error lastError() const { return m_lastError; }

private:
    // The compressor, kept from line to line: setting one up costs far more
    // than compressing a line.
    struct Packer;
    QByteArray compress(const QByteArray& plain);

    std::unique_ptr<Packer> m_packer;
    uint64_t m_key = 0;
    uint8_t m_keyBytes[8] = {};
    CompressionMode m_compression = CompressionAuto;
    ProtectionMode m_protection = ProtectionChecksum;
    Error m_lastError = NoError;
    QRandomGenerator m_random;
};
