#include "core/log_cipher.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDebug>
#include <QRandomGenerator>

#include <zlib.h>

namespace {
enum : uint8_t { FlagCompressed = 1, FlagChecksum = 2, FlagHash = 4 };
constexpr uint8_t kVersion = 3;
}

struct LogCipher::Packer {
    z_stream stream {};
    bool ready = false;
    ~Packer()
    {
        if (ready)
            deflateEnd(&stream);
    }
};

LogCipher::LogCipher(uint64_t key)
    : m_random(quint32(QDateTime::currentMSecsSinceEpoch() & 0xFFFF))
{
    setKey(key);
}

LogCipher::~LogCipher() = default;

// What qCompress(plain, 9) gives (the length as four big-endian bytes, then
// a zlib stream), from one compressor reset for each line.
QByteArray LogCipher::compress(const QByteArray& plain)
{
    if (plain.isEmpty())
        return QByteArray(4, '\0');
    if (!m_packer) {
        m_packer = std::make_unique<Packer>();
        m_packer->ready = deflateInit(&m_packer->stream, 9) == Z_OK;
    } else if (m_packer->ready) {
        m_packer->ready = deflateReset(&m_packer->stream) == Z_OK;
    }
    if (!m_packer->ready)
        return qCompress(plain, 9);
    z_stream& z = m_packer->stream;
    const uLong bound = deflateBound(&z, uLong(plain.size()));
    QByteArray packed(int(4 + bound), Qt::Uninitialized);
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(plain.constData()));
    z.avail_in = uInt(plain.size());
    z.next_out = reinterpret_cast<Bytef*>(packed.data() + 4);
    z.avail_out = uInt(bound);
    if (deflate(&z, Z_FINISH) != Z_STREAM_END)
        return qCompress(plain, 9);
    packed.resize(int(4 + z.total_out));
    const uint32_t n = uint32_t(plain.size());
    for (int i = 0; i < 4; ++i)
        packed[i] = char(n >> (24 - 8 * i));
    return packed;
}

void LogCipher::setKey(uint64_t key)
{
    m_key = key;
    for (int i = 0; i < 8; ++i)
        m_keyBytes[i] = uint8_t(key >> (8 * i));
}

QString LogCipher::encryptToString(const QString& plain)
{
    return QString::fromLatin1(encryptToByteArray(plain.toUtf8()).toBase64());
}

QByteArray LogCipher::encryptToByteArray(const QByteArray& plain)
{
    if (m_key == 0) {
        qWarning() << "No key set.";
        m_lastError = ErrorNoKeySet;
        return QByteArray();
    }
    QByteArray body = plain;
    uint8_t flags = 0;
    if (m_compression != CompressionNever) {
        const QByteArray packed = compress(body);
        if (m_compression == CompressionAlways || packed.size() < body.size()) {
            body = packed;
            flags |= FlagCompressed;
        }
    }
    QByteArray integrity;
    if (m_protection == ProtectionChecksum) {
        flags |= FlagChecksum;
        const quint16 sum = qChecksum(body.constData(), uint(body.size()));
        integrity.append(char(sum >> 8)).append(char(sum & 0xFF));
    } else if (m_protection == ProtectionHash) {
        flags |= FlagHash;
        integrity = QCryptographicHash::hash(body, QCryptographicHash::Sha1);
    }
    // The random byte hides equal lines from each other; it needs no quality.
    const char salt = char(m_random.bounded(256));
    QByteArray chained = QByteArray(1, salt) + integrity + body;
    uint8_t last = 0;
    for (int i = 0; i < chained.size(); ++i) {
        const uint8_t out = uint8_t(chained[i]) ^ m_keyBytes[i % 8] ^ last;
        chained[i] = char(out);
        last = out;
    }
    chained.prepend(char(flags));
    chained.prepend(char(kVersion));
    m_lastError = NoError;
    return chained;
}

QString LogCipher::decryptToString(const QString& cipherText)
{
    const QByteArray plain = decryptToByteArray(QByteArray::fromBase64(cipherText.toLatin1()));
    return QString::fromUtf8(plain);
}

QByteArray LogCipher::decryptToByteArray(const QByteArray& cipher)
{
    if (m_key == 0) {
        qWarning() << "No key set.";
        m_lastError = ErrorNoKeySet;
        return QByteArray();
    }
    if (cipher.size() < 3)
        return QByteArray();
    if (uint8_t(cipher[0]) != kVersion) {
        qWarning() << "Invalid version or not a cyphertext.";
        m_lastError = ErrorUnknownVersion;
        return QByteArray();
    }
    const uint8_t flags = uint8_t(cipher[1]);
    QByteArray body = cipher.mid(2);
    uint8_t last = 0;
    for (int i = 0; i < body.size(); ++i) {
        const uint8_t c = uint8_t(body[i]);
        body[i] = char(c ^ m_keyBytes[i % 8] ^ last);
        last = c;
    }
    body.remove(0, 1);   // the random byte
    if (flags & FlagChecksum) {
        if (body.size() < 2) {
            m_lastError = ErrorIntegrityFailed;
            return QByteArray();
        }
        const quint16 stored = quint16(uint8_t(body[0]) << 8 | uint8_t(body[1]));
        body.remove(0, 2);
        if (qChecksum(body.constData(), uint(body.size())) != stored) {
            m_lastError = ErrorIntegrityFailed;
            return QByteArray();
        }
    } else if (flags & FlagHash) {
        if (body.size() < 20) {
            m_lastError = ErrorIntegrityFailed;
            return QByteArray();
        }
        const QByteArray stored = body.left(20);
        body.remove(0, 20);
        if (QCryptographicHash::hash(body, QCryptographicHash::Sha1) != stored) {
            m_lastError = ErrorIntegrityFailed;
            return QByteArray();
        }
    }
    if (flags & FlagCompressed)
        body = qUncompress(body);
    m_lastError = NoError;
    return body;
}
