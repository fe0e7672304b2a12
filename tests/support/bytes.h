#pragma once
// Numbers as the bytes of a container, for tests that build or read files
// by hand.
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
inline quint32 le32(const QByteArray& b, qint64 at) { return qFromLittleEndian<quint32>(b.constData() + at); }
inline quint64 le64(const QByteArray& b, qint64 at) { return qFromLittleEndian<quint64>(b.constData() + at); }
inline quint32 be32(const QByteArray& b, qint64 at) { return qFromBigEndian<quint32>(b.constData() + at); }

} // namespace testvideo
