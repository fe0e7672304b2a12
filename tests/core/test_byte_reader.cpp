// The cached positioned reader gives exactly what a seek and a read give;
// the writer's range copies give the same bytes whichever way they go.
#include "core/byte_reader.h"
#include "core/file_writer.h"
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
    QByteArray b(n, '\0');
    QRandomGenerator(seed).fillRange(reinterpret_cast<quint32*>(b.data()), n / 4);
    return b;
}

// What a reader must give for n bytes at pos: the data, then zeros.
QByteArray expected(const QByteArray& data, uint64_t pos, size_t n)
{
    QByteArray out(int(n), '\0');
    if (pos < uint64_t(data.size()))
        memcpy(out.data(), data.constData() + pos, size_t(std::min<uint64_t>(n, uint64_t(data.size()) - pos)));
    return out;
}

QByteArray viewBytes(ByteReader& r, uint64_t pos, size_t n)
{
    return QByteArray(reinterpret_cast<const char*>(r.view(pos, n)), int(n));
}

// Bytes in memory with bad sectors, as a failing card gives them: a read that
// starts in a bad range fails, one that reaches it stops short. A sector
// listed in flaky fails only on its first read.
class FailingReader final : public ByteReader {
public:
    FailingReader(QByteArray data, QList<QPair<uint64_t, uint64_t>> bad, size_t window)
        : ByteReader(uint64_t(data.size()), window), m_data(std::move(data)), m_bad(std::move(bad)) {}
    QList<uint64_t> flaky;
    int failures = 0;

private:
    ptrdiff_t fetch(uint64_t pos, uint8_t* dst, size_t n) override
    {
        if (flaky.removeOne(pos) || std::any_of(m_bad.begin(), m_bad.end(), [&](auto b) { return pos >= b.first && pos < b.second; })) {
            ++failures;
            return -1;
        }
        for (const auto& b : m_bad)
            if (b.first > pos)
                n = size_t(std::min<uint64_t>(n, b.first - pos));
        n = size_t(std::min<uint64_t>(n, uint64_t(m_data.size()) - pos));
        memcpy(dst, m_data.constData() + pos, n);
        return ptrdiff_t(n);
    }
    QByteArray m_data;
    QList<QPair<uint64_t, uint64_t>> m_bad;
};
} // namespace

class TestByteReader : public QObject {
    Q_OBJECT
    QString m_dir;

private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("byte_reader")); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    // Reads and views that start or end near every window border and past the
    // end, with sizes that fit a window, span two, and span several.
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
                for (const size_t n : {size_t(1), size_t(4), size_t(8), size_t(4097), r.maxView(), 3 * kSmallWindow + 5}) {
                    QByteArray got(int(n), '\x55');
                    const size_t real = r.read(pos, got.data(), n);
                    QCOMPARE(got, expected(data, pos, n));
                    QCOMPARE(uint64_t(real), pos < uint64_t(data.size()) ? std::min<uint64_t>(n, data.size() - pos) : 0);
                    if (n <= r.maxView())
                        QCOMPARE(viewBytes(r, pos, n), expected(data, pos, n));
                }
            }
        }
        // A view larger than the window grows it instead of handing out a short buffer.
        for (const size_t n : {r.maxView() + 1, 3 * kSmallWindow})
            QCOMPARE(viewBytes(r, ByteReader::kAlign - 1, n), expected(data, ByteReader::kAlign - 1, n));
        QVERIFY(r.maxView() >= 3 * kSmallWindow);
        QCOMPARE(viewBytes(r, 5000, 16), expected(data, 5000, 16));
    }

    void typedWordsAndTheEnd()
    {
        // A window edge inside every word.
        const QByteArray data = QByteArray(int(ByteReader::kAlign) * 2 - 5, '\0') + QByteArray("\x01\x02\x03\x04\x05\x06\x07\x08\x09" "moov", 13);
        MemoryReader r(data, kSmallWindow);
        const uint64_t at = uint64_t(data.size() - 13);
        QCOMPARE(r.be32(at), 0x01020304u);
        QCOMPARE(r.be64(at), 0x0102030405060708ull);
        QCOMPARE(r.le32(at), 0x04030201u);
        QCOMPARE(r.le64(at), 0x0807060504030201ull);
        QVERIFY(r.is4cc(at + 9, "moov") && !r.is4cc(at + 8, "moov"));
        QCOMPARE(ByteReader::fourcc("\xa9too"), 0xa9746f6fu);   // bytes above 0x7f count unsigned
        // A word that straddles the end keeps its real bytes; positions at the
        // top of the 64-bit range read as zeros.
        QCOMPARE(r.be32(at + 11), 0x6f760000u);
        QCOMPARE(r.le16(at + 12), uint16_t(0x0076));
        char buf[4] = {'x', 'x', 'x', 'x'};
        QCOMPARE(r.read(UINT64_MAX - 3, buf, 4), size_t(0));
        QCOMPARE(QByteArray(buf, 4), QByteArray(4, '\0'));
        QCOMPARE(r.be32(UINT64_MAX - 3), 0u);
        QVERIFY(!r.ioError());
        MemoryReader empty{QByteArray()};
        QCOMPARE(empty.be64(0), uint64_t(0));
        QCOMPARE(empty.read(0, buf, 4), size_t(0));
    }

    // Random reads of a random file, by the reader and by seek + read.
    void sameAsSeekAndRead_data()
    {
        QTest::addColumn<int>("window");
        QTest::addColumn<bool>("sparse");
        QTest::newRow("smallest window") << int(kSmallWindow) << false;
        QTest::newRow("default window") << 0 << false;
        // Holes (served as zeros without a read) at 1 MiB and at the end.
        QTest::newRow("sparse, default window") << 0 << true;
    }
    void sameAsSeekAndRead()
    {
        QFETCH(int, window);
        QFETCH(bool, sparse);
        const int size = 3 * 1024 * 1024 + 777;
        const QString path = m_dir + QStringLiteral("/random.bin");
        QVERIFY(writeAll(path, randomBytes(size, 2024)));
        if (sparse) {
            const QByteArray data = randomBytes(size, 2024);
            QFile s(path);
            QVERIFY(s.open(QIODevice::WriteOnly) && s.write(data.left(1 << 20)) == 1 << 20 && s.seek((2 << 20) + 4096)
                    && s.write(data.mid((2 << 20) + 4096, 700000)) == 700000 && s.resize(size));
        }
        auto r = FileReader::open(path, size_t(window));
        QVERIFY(r);
        QCOMPARE(r->size(), uint64_t(size));
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QRandomGenerator gen(99);
        for (int i = 0; i < 3000; ++i) {
            const uint64_t pos = gen.bounded(size + 20000);
            // Now and then a block large enough to bypass the windows.
            const size_t n = i % 250 == 0 ? ByteReader::kDirectRead + gen.bounded(2u << 20)
                           : i % 10 == 0  ? gen.bounded(40000)
                                          : gen.bounded(64) + 1;
            QByteArray want(int(n), '\0');
            qint64 got = 0;
            if (pos < uint64_t(size)) {
                QVERIFY(f.seek(qint64(pos)));
                QVERIFY((got = f.read(want.data(), qint64(n))) >= 0);
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

    // A walk that now and then looks far ahead must not refill a whole window
    // per look: the file is fetched about once.
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
        // 384 looks that each fetched a whole window would make 3 GiB.
        QVERIFY2(r.fetchedBytes() < 3 * uint64_t(size), qPrintable(QString::number(r.fetchedBytes())));
    }

    // A walk from header to header over payloads of 20 KB with peek(): the
    // bytes are right, across a page border too, and only the pages that
    // hold the headers are fetched.
    void peeksFetchTheirPages()
    {
        const int size = 8 << 20;
        const QByteArray data = randomBytes(size, 11);
        MemoryReader r(data);
        uint64_t looks = 0;
        for (uint64_t pos = 4090; pos < uint64_t(size); pos += 20000, ++looks)
            QCOMPARE(QByteArray(reinterpret_cast<const char*>(r.peek(pos, 12)), 12), expected(data, pos, 12));
        QVERIFY2(r.fetchedBytes() <= looks * 2 * ByteReader::kAlign, qPrintable(QString::number(r.fetchedBytes())));
    }

    // Short searches one behind the other, each allowed to look as far as a
    // window holds (a marker search through pictures of 20 KiB): the bytes
    // come whole and right, and the file is fetched about once.
    void searchesTakeWhatTheWindowHolds()
    {
        const int size = 8 << 20;
        const QByteArray data = randomBytes(size, 7);
        const size_t window = (1u << 20) + 2 * ByteReader::kAlign;
        MemoryReader r(data, window);
        for (uint64_t pos = 0; pos < uint64_t(size); pos += 20000) {
            size_t got = 0;
            const uint8_t* p = r.viewSome(pos, r.maxView(), got);
            QVERIFY(got >= 1 && got <= r.maxView());
            QCOMPARE(QByteArray(reinterpret_cast<const char*>(p), 16), expected(data, pos, 16));
            QCOMPARE(QByteArray(reinterpret_cast<const char*>(p) + got - 1, 1), expected(data, pos + got - 1, 1));
        }
        QVERIFY2(r.fetchedBytes() < 2 * uint64_t(size), qPrintable(QString::number(r.fetchedBytes())));
    }

    void onlyFilesOpen()
    {
        QVERIFY(!FileReader::open(m_dir + QStringLiteral("/missing.mov")));
        QVERIFY(!FileReader::open(m_dir));
    }

    // Bad sectors read as zeros block by block, the bytes around them as they
    // are; ranges are noted once and merged; a flaky sector is read again.
    void unreadableBlocks()
    {
        const QByteArray data = randomBytes(300000, 5);
        FailingReader r(data, {{8192, 8192 + 512}, {12288, 20000}, {299000, 300000}}, kSmallWindow * 4);
        r.flaky = {200704};
        QByteArray want = data;
        want.replace(8192, 4096, QByteArray(4096, '\0'));
        want.replace(12288, 20480 - 12288, QByteArray(20480 - 12288, '\0'));
        want.replace(299000, 1000, QByteArray(1000, '\0'));
        for (uint64_t pos = 0; pos < uint64_t(data.size()); pos += 1000)
            QCOMPARE(viewBytes(r, pos, 1000), want.mid(int(pos), 1000));
        QByteArray direct(int(ByteReader::kDirectRead), '\0');   // a large read bypasses the windows
        QCOMPARE(r.read(0, direct.data(), size_t(direct.size())), size_t(data.size()));
        QVERIFY(direct.left(data.size()) == want);
        QCOMPARE(r.unreadableBytes(), uint64_t(4096 + (20480 - 12288) + 1000));
        QCOMPARE(r.unreadable().size(), size_t(2));   // touching ranges are one
        QCOMPARE(r.unreadable().begin()->second, uint64_t(20480));
        QVERIFY(r.ioError());
    }

    // Ranges copied by the kernel and through the buffer, mixed with buffered
    // writes, a range past the source's end, a patch of bytes the kernel
    // wrote, and a tap: the same file as the same copies from memory.
    void writerCopiesRanges()
    {
        const QByteArray data = randomBytes(300000, 77);
        const QString source = m_dir + QStringLiteral("/src.bin");
        QVERIFY(writeAll(source, data));
        QByteArray tapped;
        auto copies = [&](ByteReader& r, const QString& out, bool tap) {
            FileWriter w;
            QVERIFY(w.open(out));
            if (tap)
                w.setTap([&](const uint8_t* p, size_t n) { tapped.append(reinterpret_cast<const char*>(p), int(n)); });
            w.write("abc", 3);
            w.copyFrom(r, 3, 100000);           // long, alike within a page: from file to file
            w.copyFrom(r, 5, 100000);           // long, elsewhere within a page: through the buffer
            w.copyFrom(r, 7, 100);              // short: through the buffer
            w.copyFrom(r, 260000, 80000);       // past the end: 40000 bytes, then zeros
            w.copyFrom(r, 400000, 50000);       // wholly past the end
            w.patchBe32(1000, 0xA1B2C3D4);      // inside the first long copy
            QVERIFY(w.close());
        };
        MemoryReader memory(data);
        copies(memory, m_dir + QStringLiteral("/m.bin"), false);
        auto file = FileReader::open(source);
        copies(*file, m_dir + QStringLiteral("/f.bin"), false);
        copies(*file, m_dir + QStringLiteral("/t.bin"), true);

        QByteArray want = "abc" + data.mid(3, 100000) + data.mid(5, 100000) + data.mid(7, 100) + data.mid(260000)
                        + QByteArray(40000 + 50000, '\0');
        const QByteArray patch("\xA1\xB2\xC3\xD4", 4);
        const QByteArray fromFile = readAll(m_dir + QStringLiteral("/f.bin"));
        QCOMPARE(fromFile.size(), want.size());
        QCOMPARE(tapped, want);                 // a tap sees bytes before patches
        want.replace(1000, 4, patch);
        QVERIFY(fromFile == want);
        QVERIFY(readAll(m_dir + QStringLiteral("/m.bin")) == want);
        QVERIFY(readAll(m_dir + QStringLiteral("/t.bin")) == want);
        QCOMPARE(readAll(source), data);
    }
};

QTEST_GUILESS_MAIN(TestByteReader)
#include "test_byte_reader.moc"
