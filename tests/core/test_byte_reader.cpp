// The cached positioned reader: reads across window borders, past the end
// (zero fill and real-byte counts), the typed helpers, the largest view, and
// equality with a plain seek and read at random places of a random file.
#include "core/byte_reader.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QtTest>

using namespace testvideo;

namespace {

constexpr size_t kSmallWindow = 2 * ByteReader::kAlign;   // the smallest window there is

QByteArray randomBytes(int n, quint32 seed)
{
    QRandomGenerator gen(seed);
    QByteArray b(n, '\0');
    for (int i = 0; i < n; ++i)
        b[i] = char(gen.bounded(256));
    return b;
}

// What a reader must give for n bytes at pos: the data, then zeros.
QByteArray expected(const QByteArray& data, uint64_t pos, size_t n)
{
    QByteArray out(int(n), '\0');
    if (pos < uint64_t(data.size())) {
        const int real = int(std::min<uint64_t>(n, uint64_t(data.size()) - pos));
        memcpy(out.data(), data.constData() + pos, size_t(real));
    }
    return out;
}

QByteArray viewBytes(ByteReader& r, uint64_t pos, size_t n)
{
    return QByteArray(reinterpret_cast<const char*>(r.view(pos, n)), int(n));
}

} // namespace

class TestByteReader : public QObject {
    Q_OBJECT
    QString m_dir;

private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("byte_reader")); }
    void cleanup()
    {
        QDir(m_dir).removeRecursively();
        FileReader::setDefaultWindow(0);
    }

    // Every read that starts or ends near a window border, with sizes that
    // fit a window, span two, and span several.
    void readsAcrossWindowBorders()
    {
        const QByteArray data = randomBytes(10 * int(kSmallWindow) + 123, 7);
        MemoryReader r(data, kSmallWindow);
        QCOMPARE(r.maxView(), kSmallWindow - ByteReader::kAlign);
        for (uint64_t border = 0; border <= uint64_t(data.size()) + kSmallWindow; border += ByteReader::kAlign) {
            for (const int delta : {-9, -4, -3, -1, 0, 1, 3}) {
                if (int64_t(border) + delta < 0)
                    continue;
                const uint64_t pos = border + uint64_t(delta);
                for (const size_t n : {size_t(1), size_t(4), size_t(8), size_t(4097), r.maxView(),
                                       3 * kSmallWindow + 5}) {
                    QByteArray got(int(n), '\x55');
                    const size_t real = r.read(pos, got.data(), n);
                    QCOMPARE(got, expected(data, pos, n));
                    const uint64_t want = pos < uint64_t(data.size()) ? std::min<uint64_t>(n, data.size() - pos) : 0;
                    QCOMPARE(uint64_t(real), want);
                    if (n <= r.maxView())
                        QCOMPARE(viewBytes(r, pos, n), expected(data, pos, n));
                }
            }
        }
    }

    void pastTheEnd()
    {
        const QByteArray data("0123456789");
        MemoryReader r(data, kSmallWindow);
        char buf[16];
        memset(buf, 'x', sizeof buf);
        QCOMPARE(r.read(6, buf, 8), size_t(4));
        QCOMPARE(QByteArray(buf, 8), QByteArray("6789\0\0\0\0", 8));
        QCOMPARE(r.read(10, buf, 4), size_t(0));
        QCOMPARE(r.read(1ull << 40, buf, 4), size_t(0));
        QCOMPARE(QByteArray(buf, 4), QByteArray(4, '\0'));
        // Positions at the top of the 64-bit range read as zeros too.
        memset(buf, 'x', sizeof buf);
        QCOMPARE(r.read(UINT64_MAX - 3, buf, 4), size_t(0));
        QCOMPARE(QByteArray(buf, 4), QByteArray(4, '\0'));
        QCOMPARE(r.be32(UINT64_MAX - 3), 0u);
        // A word that straddles the end keeps its real bytes.
        QCOMPARE(r.be32(8), 0x38390000u);
        QCOMPARE(r.le16(9), uint16_t(0x0039));
        QCOMPARE(r.u8(10), uint8_t(0));
        QVERIFY(!r.ioError());

        MemoryReader empty{QByteArray()};
        QCOMPARE(empty.size(), uint64_t(0));
        QCOMPARE(empty.be64(0), uint64_t(0));
        QCOMPARE(empty.read(0, buf, 16), size_t(0));
    }

    void typedHelpers()
    {
        const QByteArray data("\x01\x02\x03\x04\x05\x06\x07\x08\x09" "moov", 13);
        // A window edge inside every word: place the bytes across it.
        QByteArray shifted = QByteArray(int(ByteReader::kAlign) * 2 - 5, '\0') + data;
        MemoryReader r(shifted, kSmallWindow);
        const uint64_t at = uint64_t(shifted.size() - data.size());
        QCOMPARE(r.u8(at), uint8_t(0x01));
        QCOMPARE(r.be16(at), uint16_t(0x0102));
        QCOMPARE(r.be24(at), 0x010203u);
        QCOMPARE(r.be32(at), 0x01020304u);
        QCOMPARE(r.be64(at), 0x0102030405060708ull);
        QCOMPARE(r.le16(at), uint16_t(0x0201));
        QCOMPARE(r.le32(at), 0x04030201u);
        QCOMPARE(r.le64(at), 0x0807060504030201ull);
        QVERIFY(r.is4cc(at + 9, "moov"));
        QVERIFY(!r.is4cc(at + 8, "moov"));
        QCOMPARE(ByteReader::fourcc("mvhd"), 0x6d766864u);
        // Codes with bytes above 0x7f compare as unsigned bytes.
        QCOMPARE(ByteReader::fourcc("\xa9too"), 0xa9746f6fu);
    }

    // A view of maxView() bytes fits at any alignment; a larger request grows
    // the window instead of handing out a short buffer.
    void maxViewEdge()
    {
        const QByteArray data = randomBytes(6 * int(kSmallWindow), 11);
        MemoryReader r(data, kSmallWindow);
        const size_t m = r.maxView();
        for (const uint64_t pos : {uint64_t(0), uint64_t(1), uint64_t(ByteReader::kAlign - 1),
                                   uint64_t(ByteReader::kAlign), uint64_t(3 * kSmallWindow + 4095),
                                   uint64_t(data.size()) - m, uint64_t(data.size()) - 1})
            QCOMPARE(viewBytes(r, pos, m), expected(data, pos, m));

        const size_t big = m + 1;
        QCOMPARE(viewBytes(r, ByteReader::kAlign - 1, big), expected(data, ByteReader::kAlign - 1, big));
        QVERIFY(r.maxView() >= big);
        const size_t bigger = 3 * kSmallWindow;
        QCOMPARE(viewBytes(r, 4095, bigger), expected(data, 4095, bigger));
        for (const uint64_t pos : {uint64_t(0), uint64_t(5000), uint64_t(data.size()) - 3})
            QCOMPARE(viewBytes(r, pos, 16), expected(data, pos, 16));
    }

    // Random reads of a random file, by the reader and by seek + read.
    void sameAsSeekAndRead_data()
    {
        QTest::addColumn<int>("window");
        QTest::newRow("smallest window") << int(kSmallWindow);
        QTest::newRow("odd window") << int(kSmallWindow + 1000);
        QTest::newRow("default window") << 0;
    }
    void sameAsSeekAndRead()
    {
        QFETCH(int, window);
        const int size = 3 * 1024 * 1024 + 777;
        const QByteArray data = randomBytes(size, 2024);
        const QString path = m_dir + QStringLiteral("/random.bin");
        QVERIFY(writeAll(path, data));
        auto r = FileReader::open(path, size_t(window));
        QVERIFY(r);
        QCOMPARE(r->size(), uint64_t(size));
        QCOMPARE(r->path(), path);
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadOnly));

        QRandomGenerator gen(99);
        for (int i = 0; i < 3000; ++i) {
            const uint64_t pos = gen.bounded(size + 20000);
            const size_t n = i % 10 == 0 ? gen.bounded(40000) : gen.bounded(64) + 1;
            QByteArray want(int(n), '\0');
            qint64 got = 0;
            if (pos < uint64_t(size)) {
                QVERIFY(f.seek(qint64(pos)));
                got = f.read(want.data(), qint64(n));
                QVERIFY(got >= 0);
            }
            QByteArray have(int(n), '\x7f');
            QCOMPARE(uint64_t(r->read(pos, have.data(), n)), uint64_t(got));
            if (have != want)
                QFAIL(qPrintable(QStringLiteral("%1 bytes at %2 differ").arg(n).arg(pos)));
            if (n >= 4)
                QCOMPARE(r->be32(pos), ByteReader::loadBe32(reinterpret_cast<const uint8_t*>(want.constData())));
        }
        QVERIFY(!r->ioError());
    }

    // A walk that looks far ahead now and then (a length read in data that
    // holds no unit) must not refill a whole window per look: the file is
    // fetched about once, and every byte still reads right.
    void farProbesCostLittle()
    {
        const int size = 24 << 20;
        const QByteArray data = randomBytes(size, 31);
        MemoryReader r(data);
        QRandomGenerator gen(5);
        for (uint64_t pos = 0; pos < uint64_t(size); pos += 1024) {
            QCOMPARE(viewBytes(r, pos, 4), expected(data, pos, 4));
            if (pos % (64 << 10) == 0) {
                const uint64_t ahead = pos + 4 + gen.bounded(16u << 20);
                QCOMPARE(viewBytes(r, ahead, 4), expected(data, ahead, 4));
            }
        }
        // 384 looks ahead at a whole window each would fetch 3 GiB.
        QVERIFY2(r.fetchedBytes() < 3 * uint64_t(size),
                 qPrintable(QStringLiteral("fetched %1 bytes of a %2-byte file").arg(r.fetchedBytes()).arg(size)));
    }

    void openRefusesWhatIsNoFile()
    {
        QVERIFY(!FileReader::open(m_dir + QStringLiteral("/missing.mov")));
        QVERIFY(!FileReader::open(m_dir));           // a folder
        QVERIFY(!FileReader::open(QString()));
    }

    // The process-wide window applies to readers opened without one.
    void defaultWindow()
    {
        const QByteArray data = randomBytes(100000, 5);
        const QString path = m_dir + QStringLiteral("/d.bin");
        QVERIFY(writeAll(path, data));
        FileReader::setDefaultWindow(kSmallWindow);
        auto small = FileReader::open(path);
        QVERIFY(small);
        QCOMPARE(small->maxView(), kSmallWindow - ByteReader::kAlign);
        QCOMPARE(viewBytes(*small, 50001, 300), data.mid(50001, 300));
        FileReader::setDefaultWindow(0);
        auto normal = FileReader::open(path);
        QCOMPARE(normal->maxView(), ByteReader::kDefaultWindow - ByteReader::kAlign);
    }
};

QTEST_GUILESS_MAIN(TestByteReader)
#include "test_byte_reader.moc"
