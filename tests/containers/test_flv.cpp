// FLV repair on crafted bytes: which tags the scan takes, the new header and
// onMetaData tag in both forms, the duration, the metadata window, when no
// file is written, and hostile sizes.
#include "batch_check.h"
#include "core/log_cipher.h"
#include "core/thread_video_repair.h"

#include <QDir>
#include <QFile>
#include <QtEndian>
#include <QtTest>
#include <cstring>

using namespace testvideo;

namespace {

template <typename T> QByteArray be(T v)
{
    QByteArray b(int(sizeof(T)), '\0');
    qToBigEndian(v, b.data());
    return b;
}
quint32 readBe32(const QByteArray& b, int at) { return qFromBigEndian<quint32>(b.constData() + at); }
quint32 readBe24(const QByteArray& b, int at) { return readBe32(b, at - 1) & 0xFFFFFF; }

// A tag with its PreviousTagSize; the timestamp's top byte goes to TimestampExtended.
QByteArray tag(int type, quint32 time, const QByteArray& data)
{
    return QByteArray(1, char(type)) + be(quint32(data.size())).mid(1) + be(time).mid(1) + char(time >> 24)
         + QByteArray(3, '\0') + data + be(quint32(data.size() + 11));
}
QByteArray video(quint32 time, char first, int size = 20) { return tag(9, time, first + QByteArray(size - 1, 'v')); }
QByteArray audio(quint32 time, int size = 12) { return tag(8, time, '\x2f' + QByteArray(size - 1, 'a')); }

const QByteArray kFileHeader = QByteArray("FLV\x01\x05\x00\x00\x00\x09", 9) + be(quint32(0));

QByteArray metaTag(const QList<QPair<QByteArray, double>>& entries)
{
    QByteArray d = QByteArray("\x02\x00\x0a", 3) + "onMetaData" + '\x08' + be(quint32(entries.size()));
    for (const auto& e : entries)
        d += be(quint16(e.first.size())) + e.first + '\0' + be(e.second);
    return tag(18, 0, d + QByteArray("\x00\x00\x09", 3));
}

// The new script tag: its DataSize, array count, the value of each key (8
// raw bytes), and the offset where the copied tags begin.
struct Script {
    quint32 dataSize = 0, count = 0, previousSize = 0;
    QMap<QByteArray, QByteArray> values;
    int tagsAt = 0;
};
Script parseScript(const QByteArray& out)
{
    Script s;
    s.dataSize = readBe24(out, 14);
    s.count = readBe32(out, 13 + 11 + 14);
    for (int at = 13 + 11 + 18; at + 2 < out.size();) {
        const int n = qFromBigEndian<quint16>(out.constData() + at);
        if (n == 0)
            break;
        s.values[out.mid(at + 2, n)] = out.mid(at + 3 + n, 8);
        at += 3 + n + 8;
    }
    s.previousSize = readBe32(out, 13 + 11 + int(s.dataSize));
    s.tagsAt = 13 + 11 + int(s.dataSize) + 4;
    return s;
}

// Bytes in memory behind the engine's reader, counting what the reader fetches.
class CountingReader final : public ByteReader {
public:
    CountingReader(QByteArray data, quint64* fetched)
        : ByteReader(quint64(data.size()), 64 * 1024), m_data(std::move(data)), m_fetched(fetched) {}

private:
    size_t fetch(uint64_t pos, uint8_t* dst, size_t n) override
    {
        const size_t k = size_t(std::min<uint64_t>(n, uint64_t(m_data.size()) - pos));
        std::memcpy(dst, m_data.constData() + pos, k);
        *m_fetched += k;
        return k;
    }
    QByteArray m_data;
    quint64* m_fetched;
};

} // namespace

class TestFlv : public QObject {
    Q_OBJECT
    QString m_dir;

    struct Result {
        QStringList verdicts;   // "1 clip.flv" per WriteStatus
        bool written = false;
        QByteArray out;
        QStringList logLines;
    };

    Result repair(const QByteArray& input, quint64* fetched = nullptr)
    {
        Result r;
        g_repairedPaths.clear();
        ThreadVideoRepair t;
        connect(&t, &ThreadVideoRepair::WriteStatus,
                [&r](bool ok, bool, QString name, bool) { r.verdicts << QString("%1 %2").arg(int(ok)).arg(name); });
        if (fetched)
            t.m_file = std::make_unique<CountingReader>(input, fetched);
        else
            t.m_file = std::make_unique<MemoryReader>(input, 64 * 1024);
        g_inputSize = t.m_fileSize = quint64(input.size());
        t.m_workDir = m_dir;
        t.m_fileName = "clip.flv";
        t.m_logPath = m_dir + "/logFile.txt";
        g_sourceFullPath = m_dir + "/source/clip.flv";
        if (!t.m_logHandle.open(t.m_logPath))
            return r;
        t.RepairFlvFile(t.m_fileName);
        r.written = QFile::exists(m_dir + "/clip.flv");
        r.out = readAll(m_dir + "/clip.flv");
        for (const QByteArray& line : readAll(t.m_logPath).split('\n'))
            if (!line.trimmed().isEmpty())
                r.logLines << LogCipher().decryptToString(QString::fromLatin1(line.trimmed()));
        return r;
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir("flv-unit");
        g_stopRequested = false;
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void takesTagsFromTheFirstUsableVideoTag()
    {
        const QList<QPair<QByteArray, double>> meta{{"duration", 99},      {"width", 320},    {"height", 240},
                                                    {"videodatarate", 500}, {"framerate", 25}, {"videocodecid", 7},
                                                    {"audiodatarate", 128}, {"audiocodecid", 10}};
        const QByteArray v2 = video(40, '\x17'), a2 = audio(60), v3 = video(80, '\x27');
        const QByteArray empty = tag(9, 100, QByteArray());                     // DataSize 0
        const QByteArray big = video(0x01000000 + 5040, '\x27', 15000);         // TimestampExtended 1
        // A last tag whose PreviousTagSize (00 00 01 00) is cut after three
        // bytes: zeros past the end would make it agree.
        const QByteArray last = video(6000, '\x27', 245).left(11 + 245 + 3);
        const QByteArray head = kFileHeader + metaTag(meta) + audio(0) + video(0, '\x27') + audio(20);
        const QList<QByteArray> taken{v2, a2, v3, empty, big};

        const Result r = repair(head + v2 + a2 + v3 + empty + big + last);
        QCOMPARE(r.verdicts, QStringList{"1 clip.flv"});
        QCOMPARE(g_repairedPaths, QStringList{m_dir + "/clip.flv"});
        QCOMPARE(r.out.left(13), kFileHeader);
        const Script s = parseScript(r.out);
        QCOMPARE(s.dataSize, 208u);
        QCOMPARE(s.count, 15u);
        QCOMPARE(s.previousSize, 219u);
        QCOMPARE(r.out.mid(13, 11), QByteArray("\x12\x00\x00\xd0", 4) + QByteArray(7, '\0'));
        QCOMPARE(r.out.mid(13 + 11, 13), QByteArray("\x02\x00\x0aonMetaData", 13));
        QCOMPARE(r.out.mid(13 + 11 + 208 - 4, 4), QByteArray("\x00\x00\x00\x09", 4));
        QCOMPARE(s.values.size(), 9);
        // (5040 - 40) / 1000 whole seconds: the extended timestamp byte is not read.
        QCOMPARE(s.values["duration"], be(5.0));
        QCOMPARE(s.values["starttime"], QByteArray(8, '\0'));
        for (int k = 1; k < meta.size(); ++k)
            QCOMPARE(s.values[meta[k].first], be(meta[k].second));

        QStringList expected;
        int at = head.size();
        QByteArray copied;
        for (const QByteArray& t : taken) {
            expected << QString("%1 %2").arg(at).arg(t.size() - 4);
            at += t.size();
            copied += t;
        }
        QCOMPARE(r.out.mid(s.tagsAt), copied);
        QCOMPARE(r.logLines, expected);
    }

    void metadataWindowAndForms_data()
    {
        QTest::addColumn<int>("scriptAt");   // -1: no script tag
        QTest::addColumn<bool>("longForm");
        QTest::newRow("script tag at byte 14999") << 14999 << true;
        QTest::newRow("script tag at byte 15000") << 15000 << false;
        QTest::newRow("no script tag") << -1 << false;
    }
    void metadataWindowAndForms()
    {
        QFETCH(int, scriptAt);
        QFETCH(bool, longForm);
        // A usable video tag sized so that the next tag starts at scriptAt.
        const QByteArray first = kFileHeader + video(0, '\x12', (scriptAt < 0 ? 16000 : scriptAt) - 13 - 15);
        const QByteArray tail = video(2500, '\x22') + audio(2600);
        const Result r = repair(first + (scriptAt < 0 ? QByteArray() : metaTag({{"duration", 1}, {"width", 640}, {"framerate", 30}})) + tail);
        QCOMPARE(r.verdicts.size(), 1);
        const Script s = parseScript(r.out);
        QCOMPARE(s.count, 15u);
        QCOMPARE(s.dataSize, longForm ? 208u : 61u);
        QCOMPARE(s.previousSize, longForm ? 219u : 72u);
        QCOMPARE(s.values.size(), longForm ? 9 : 2);
        QCOMPARE(s.values["duration"], be(2.0));
        if (longForm) {
            QCOMPARE(s.values["width"], be(640.0));
            QCOMPARE(s.values["framerate"], be(30.0));
            QCOMPARE(s.values["height"], QByteArray(8, '\0'));   // not in the old tag
        }
        QCOMPARE(r.out.mid(s.tagsAt), first.mid(13) + tail);
    }

    void durationOfTheTimestamps_data()
    {
        QTest::addColumn<QList<quint32>>("times");
        QTest::addColumn<double>("seconds");
        QTest::newRow("rounded down") << QList<quint32>{1000, 2000, 4999} << 3.0;
        QTest::newRow("low 24 bits only") << QList<quint32>{0x00FFF000, 0x02FFFFFF} << 4.0;
        // A latest timestamp that doesn't exceed the first gives 0.
        QTest::newRow("one tag") << QList<quint32>{7000} << 0.0;
        QTest::newRow("equal") << QList<quint32>{5000, 5000} << 0.0;
        QTest::newRow("latest below first") << QList<quint32>{9000, 12000, 3000} << 0.0;
    }
    void durationOfTheTimestamps()
    {
        QFETCH(QList<quint32>, times);
        QFETCH(double, seconds);
        QByteArray in = kFileHeader;
        for (int i = 0; i < times.size(); ++i)
            in += video(times[i], i == 0 ? '\x12' : '\x22', i == 0 ? 15100 : 30);
        const Result r = repair(in);
        QCOMPARE(r.verdicts.size(), 1);
        QCOMPARE(parseScript(r.out).values["duration"], be(seconds));
    }

    void whenNoFileIsWritten_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<int>("tagsCopied");   // -1: no file, a negative verdict
        QTest::newRow("no video tag") << kFileHeader + audio(0, 16000) + audio(30) << -1;
        QTest::newRow("15000 bytes") << kFileHeader + video(0, '\x12', 15000 - 28) << -1;
        QTest::newRow("15001 bytes") << kFileHeader + video(0, '\x12', 15001 - 28) << 1;
        QTest::newRow("no usable video tag") << kFileHeader + video(0, '\x27', 16000) + audio(10) << 0;
        QTest::newRow("random bytes") << containers::randomBytes(200000, 9) << -1;
        // Sizes past the end, and a PreviousTagSize that disagrees.
        QByteArray past = video(0, '\x17', 16000) + tag(9, 40, QByteArray(100, 'x')).left(60);
        past += QByteArray("\x09\xff\xff\xff", 4) + QByteArray(200, '\x08');
        QByteArray wrong = video(50, '\x27', 40);
        wrong[wrong.size() - 1] = char(wrong.at(wrong.size() - 1) + 1);
        QTest::newRow("sizes past the end") << kFileHeader + past + wrong << 1;
    }
    void whenNoFileIsWritten()
    {
        QFETCH(QByteArray, input);
        QFETCH(int, tagsCopied);
        const Result r = repair(input);
        if (tagsCopied < 0) {
            QVERIFY(!r.written && g_repairedPaths.isEmpty());
            QCOMPARE(r.verdicts, QStringList{"0 clip.flv"});
            return;
        }
        QCOMPARE(r.verdicts, QStringList{"1 clip.flv"});
        QCOMPARE(r.logLines.size(), tagsCopied);
        QCOMPARE(r.out.size(), 13 + 11 + 61 + 4 + (tagsCopied ? 11 + int(readBe24(input, 14)) + 4 : 0));
    }

    // Between two good tags, an 8, 9 or 18 every 32 bytes whose DataSize
    // (1.5 MiB) points far beyond the reader's window, and inside the file
    // for the first 96 KiB of them: each is tested without fetching the far
    // bytes anew each time.
    void garbageFullOfCandidatesIsReadOnce()
    {
        QByteArray garbage;
        const QByteArray candidates("\x08\x18\x00\x00\x09\x18\x00\x00\x12\x18\x00\x00", 12);
        for (int i = 0; i < (1536 + 96) * 1024 / 96; ++i)
            for (int k = 0; k < 3; ++k)
                garbage += candidates.mid(4 * k, 4) + QByteArray(28, '\0');
        const QByteArray first = video(0, '\x12', 200), second = video(40, '\x22', 200);
        const QByteArray in = kFileHeader + first + garbage + second;
        quint64 fetched = 0;
        const Result r = repair(in, &fetched);
        QCOMPARE(r.verdicts, QStringList{"1 clip.flv"});
        QCOMPARE(r.out.mid(parseScript(r.out).tagsAt), first + second);
        QVERIFY2(fetched < 4 * quint64(in.size()), qPrintable(QString("%1 bytes fetched for %2").arg(fetched).arg(in.size())));
    }

    void unwritableOutputGetsANegativeVerdict()
    {
        if (!QFile::exists("/dev/full"))
            QSKIP("no /dev/full");
        QByteArray in = kFileHeader;
        for (int i = 0; i < 400; ++i)
            in += video(quint32(i * 40), i == 0 ? '\x12' : '\x22', 5000);
        QVERIFY(QFile::link("/dev/full", m_dir + "/clip.flv"));
        QCOMPARE(repair(in).verdicts, QStringList{"0 clip.flv"});
        QVERIFY(g_repairedPaths.isEmpty());
        QVERIFY(QFile::exists("/dev/full"));
    }
};

QTEST_GUILESS_MAIN(TestFlv)
#include "test_flv.moc"
