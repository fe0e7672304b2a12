#pragma once
// Integers to and from bytes, as the tests build and read files: le(v) and
// be(v) give the bytes of v in that order; le32(b, at) and the like read
// them back at a position.
#include <QByteArray>
#include <QtEndian>

namespace testvideo {

template <typename T> QByteArray le(T v)
{
    QByteArray b(int(sizeof(T)), '\0');
    qToLittleEndian(v, b.data());
    return b;
}
template <typename T> QByteArray be(T v)
{
    QByteArray b(int(sizeof(T)), '\0');
    qToBigEndian(v, b.data());
    return b;
}

inline quint16 le16(const QByteArray& b, qint64 at) { return qFromLittleEndian<quint16>(b.constData() + at); }
inline quint32 le32(const QByteArray& b, qint64 at) { return qFromLittleEndian<quint32>(b.constData() + at); }
inline quint64 le64(const QByteArray& b, qint64 at) { return qFromLittleEndian<quint64>(b.constData() + at); }
inline quint16 be16(const QByteArray& b, qint64 at) { return qFromBigEndian<quint16>(b.constData() + at); }
inline quint32 be24(const QByteArray& b, qint64 at) { return quint32(quint8(b[int(at)])) << 16 | be16(b, at + 1); }
inline quint32 be32(const QByteArray& b, qint64 at) { return qFromBigEndian<quint32>(b.constData() + at); }

} // namespace testvideo
