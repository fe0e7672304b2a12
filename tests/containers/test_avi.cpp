// AVI repair at unit level, on crafted bytes: the header search, the chunk
// scan rules, the written layout (every size agrees with what follows it),
// the index, and hostile input.
#include "core/log_cipher.h"
#include "core/thread_video_repair.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QtEndian>
#include <QtTest>

using namespace testvideo;

namespace {

QByteArray le(quint32 v)
{
    char c[4];
    qToLittleEndian(v, c);
    return QByteArray(c, 4);
}
quint32 le32(const QByteArray& b, qint64 pos) { return qFromLittleEndian<quint32>(b.constData() + pos); }

QByteArray chunk(const char* tag, const QByteArray& payload)
{
    QByteArray c = QByteArray(tag, 4) + le(quint32(payload.size())) + payload;
    if (payload.size() & 1)
        c.append('\0');
    return c;
}

// A strh payload of the given size whose bytes are recognisable by seed.
QByteArray strhPayload(const char* type, int size, int seed)
{
    QByteArray p(type, 4);
    for (int i = 4; i < size; ++i)
        p.append(char(seed + i));
    return p;
}

QByteArray strl(const char* type, int strhSize, const QByteArray& format, const char* behind = "JUNK", int seed = 0x20)
{
    QByteArray body = QByteArray("strl") + chunk("strh", strhPayload(type, strhSize, seed)) + chunk("strf", format)
                    + QByteArray(behind, 4) + le(0);
    return QByteArray("LIST") + le(quint32(body.size())) + body;
}

QByteArray videoFormat(int size = 40)
{
    QByteArray f = le(40) + le(320) + le(240);
    while (f.size() < size)
        f.append(char(0x60 + f.size()));
    return f;
}
QByteArray audioFormat(int size = 18)
{
    QByteArray f;
    for (int i = 0; i < size; ++i)
        f.append(char(0x90 + i));
    return f;
}

// RIFF, hdrl with the stream lists, movi with the chunks, then filler so
// that the header lies in the first tenth and sizes stay under a quarter.
QByteArray aviFile(const QByteArray& streamLists, const QByteArray& chunks, int total = 16384)
{
    const QByteArray hdrl = QByteArray("hdrl") + chunk("avih", QByteArray(56, '\0')) + streamLists;
    QByteArray f = QByteArray("RIFF") + le(0) + "AVI " + "LIST" + le(quint32(hdrl.size())) + hdrl + "LIST"
                 + le(quint32(chunks.size() + 4)) + "movi" + chunks;
    while (f.size() < total)
        f.append('x');
    return f;
}

QByteArray videoChunk(int size, char fill = 'v') { return chunk("00dc", QByteArray(size, fill)); }

struct RiffChunk {
    QByteArray path;   // such as "AVI /hdrl/strl/strh"
    qint64 pos;
    quint32 size;
};

// Walks chunks and lists; false as soon as a size disagrees with the bytes.
bool walkRiff(const QByteArray& f, qint64 pos, qint64 end, const QByteArray& parent, QList<RiffChunk>& out)
{
    while (pos < end) {
        if (pos + 8 > end)
            return false;
        const QByteArray tag = f.mid(int(pos), 4);
        const quint32 size = le32(f, pos + 4);
        const qint64 next = pos + 8 + size + (size & 1);
        if (next > end)
            return false;
        if (tag == "RIFF" || tag == "LIST") {
            const QByteArray path = parent + f.mid(int(pos) + 8, 4) + "/";
            out << RiffChunk{path, pos, size};
            if (!walkRiff(f, pos + 12, pos + 8 + size, path, out))
                return false;
        } else {
            out << RiffChunk{parent + tag, pos, size};
        }
        pos = next;
    }
    return pos == end;
}

QList<RiffChunk> named(const QList<RiffChunk>& all, const QByteArray& path)
{
    QList<RiffChunk> r;
    for (const RiffChunk& c : all)
        if (c.path == path)
            r << c;
    return r;
}

struct IndexEntry {
    QByteArray tag;
    quint32 flags, offset, length;
};

} // namespace

class TestAvi : public QObject {
    Q_OBJECT
    QString m_dir;

    struct Result {
        int verdicts = 0;
        bool status = false;
        QByteArray out;
        QList<RiffChunk> chunks;
        bool consistent = false;
        QList<IndexEntry> index;
        qint64 moviTag = -1;
        bool clean = false;   // state cleared, scratch index gone, reference closed
    };

    void prepare(ThreadVideoRepair& t, const QByteArray& input)
    {
        t.m_file = std::make_unique<MemoryReader>(input);
        g_inputSize = t.m_fileSize = quint64(input.size());
        t.m_workDir = m_dir;
        t.m_fileName = QStringLiteral("clip.avi");
        t.m_logPath = m_dir + QStringLiteral("/logFile.txt");
        g_sourceFullPath = m_dir + QStringLiteral("/source/clip.avi");
        QVERIFY(t.m_logHandle.open(t.m_logPath));
    }

    Result repair(const QByteArray& input, bool hasAudio, const QByteArray* reference = nullptr)
    {
        Result r;
        QFile::remove(m_dir + QStringLiteral("/clip.avi"));
        g_repairedPaths.clear();
        {
            ThreadVideoRepair t;
            connect(&t, &ThreadVideoRepair::WriteAVIFileStatus, [&r](bool ok, QString name) {
                r.verdicts += name == QLatin1String("clip.avi") ? 1 : 100;
                r.status = ok;
            });
            prepare(t, input);
            if (reference) {
                t.m_refFile = std::make_unique<MemoryReader>(*reference);
                t.m_refFileSize = quint64(reference->size());
                t.m_aviReferenceOpen = true;
                t.RepairAviWithReference(hasAudio);
                if (!t.m_refFile)   // the reference is closed behind the repair
                    t.m_aviReferenceOpen = false;
            } else {
                t.RepairAviDirect(hasAudio);
            }
            t.m_logHandle.close();
            // The record and the counters are cleared behind every route.
            r.clean = !t.m_aviReferenceOpen && t.m_aviOffsets.videoFormatRest == 0
                   && t.m_aviOffsets.audioFormat == 0
                   && ThreadVideoRepair::g_aviVideoChunks + ThreadVideoRepair::g_aviAudioChunks
                              + ThreadVideoRepair::g_aviMoviSize + ThreadVideoRepair::g_aviAudioBytes
                          == 0;
        }
        g_stopRequested = false;   // the thread object sets it when it goes
        r.clean = r.clean && !QFile::exists(m_dir + QStringLiteral("/Index.avi"));
        r.out = readAll(m_dir + QStringLiteral("/clip.avi"));
        if (r.out.isEmpty())
            return r;
        r.consistent = walkRiff(r.out, 0, r.out.size(), QByteArray(), r.chunks);
        const QList<RiffChunk> idx = named(r.chunks, "AVI /idx1");
        const QList<RiffChunk> movi = named(r.chunks, "AVI /movi/");
        if (idx.size() == 1 && movi.size() == 1) {
            r.moviTag = movi[0].pos + 8;
            for (quint32 i = 0; i + 16 <= idx[0].size; i += 16) {
                const qint64 e = idx[0].pos + 8 + i;
                r.index << IndexEntry{r.out.mid(int(e), 4), le32(r.out, e + 4), le32(r.out, e + 8), le32(r.out, e + 12)};
            }
        }
        return r;
    }

    // Every index entry names a chunk of the same tag and size at its offset.
    static bool indexMatchesChunks(const Result& r)
    {
        for (const IndexEntry& e : r.index) {
            const qint64 at = r.moviTag + e.offset;
            if (r.out.mid(int(at), 4) != e.tag || le32(r.out, at + 4) != e.length)
                return false;
        }
        return !r.index.isEmpty();
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("avi-unit"));
        g_stopRequested = false;
        g_referencePath.clear();
        g_repairedPaths.clear();
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void layoutFromA64ByteStreamHeader()
    {
        const QByteArray vfmt = videoFormat(46);
        const QByteArray in = aviFile(strl("vids", 64, vfmt) + strl("auds", 56, audioFormat(), "LIST", 0x40),
                                      videoChunk(100) + chunk("01wb", QByteArray(30, 'a')) + videoChunk(64));
        const Result r = repair(in, true);
        QCOMPARE(r.verdicts, 1);
        QVERIFY(r.status);
        QVERIFY(r.clean);
        QVERIFY(r.consistent);
        QCOMPARE(qint64(le32(r.out, 4)) + 8, qint64(r.out.size()));
        QCOMPARE(g_repairedPaths, QStringList{m_dir + QStringLiteral("/clip.avi")});

        const QList<RiffChunk> strh = named(r.chunks, "AVI /hdrl/strl/strh");
        QCOMPARE(strh.size(), 2);
        QCOMPARE(strh[0].size, 56u);
        QCOMPARE(strh[1].size, 56u);
        const QByteArray src = strhPayload("vids", 64, 0x20);
        const QByteArray vs = r.out.mid(int(strh[0].pos) + 8, 56);
        QCOMPARE(vs.left(8), src.left(8));                      // fccType, fccHandler
        QCOMPARE(vs.mid(8, 12), QByteArray(12, '\0'));
        QCOMPARE(vs.mid(20, 12), src.mid(20, 12));              // dwScale, dwRate, dwStart
        QCOMPARE(le32(vs, 32), 2u);                             // dwLength: video chunks
        QCOMPARE(vs.mid(36, 8), src.mid(36, 8));
        QCOMPARE(vs.mid(44, 8), QByteArray(8, '\0'));
        QCOMPARE(vs.mid(52, 4), src.mid(52, 4));                // rcFrame right, bottom
        const QByteArray as = r.out.mid(int(strh[1].pos) + 8, 56);
        const QByteArray asrc = strhPayload("auds", 56, 0x40);
        QCOMPARE(as.left(32), asrc.left(32));
        QCOMPARE(as.mid(36), asrc.mid(36));

        const QList<RiffChunk> strf = named(r.chunks, "AVI /hdrl/strl/strf");
        QCOMPARE(strf.size(), 2);
        QCOMPARE(r.out.mid(int(strf[0].pos) + 8, 46), vfmt);
        QCOMPARE(r.out.mid(int(strf[1].pos) + 8, 18), audioFormat());
        const QList<RiffChunk> strn = named(r.chunks, "AVI /hdrl/strl/strn");
        QCOMPARE(strn.size(), 2);
        QCOMPARE(r.out.mid(int(strn[1].pos) + 8, 6), QByteArray("Audio "));

        const qint64 avih = named(r.chunks, "AVI /hdrl/avih").value(0).pos + 8;
        QCOMPARE(le32(r.out, avih + 16), 2u);                  // dwTotalFrames
        QCOMPARE(le32(r.out, avih + 24), 2u);                  // dwStreams
        QCOMPARE(r.out.mid(int(avih) + 32, 8), vfmt.mid(4, 8)); // dwWidth, dwHeight

        QCOMPARE(r.index.size(), 3);
        QVERIFY(indexMatchesChunks(r));
        QCOMPARE(r.index[0].offset, 4u);
        QCOMPARE(r.index[1].offset, 4u + 108);
    }

    void chunkSizeRules()
    {
        // 2, 16 and 18 are refused, 17 is taken with its pad byte, 0 is taken,
        // a quarter of the file is refused.
        QByteArray odd = chunk("00dc", QByteArray(17, 'o'));
        odd[8 + 17] = char(0xAB);
        const QByteArray chunks = chunk("00dc", "zz") + chunk("00dc", QByteArray(16, 'p'))
                                + chunk("00db", QByteArray(18, 'q')) + odd + chunk("00dc", QByteArray())
                                + QByteArray("01wb") + le(16384 / 4) + videoChunk(20);
        const Result r = repair(aviFile(strl("vids", 56, videoFormat()), chunks), false);
        QVERIFY(r.status);
        QVERIFY(r.consistent);
        QVERIFY(indexMatchesChunks(r));
        QCOMPARE(r.index.size(), 3);
        QCOMPARE(r.index[0].length, 17u);
        QCOMPARE(r.index[1].length, 0u);
        QCOMPARE(r.index[1].offset, 4u + 17 + 9);               // odd sizes count size + 9
        QCOMPARE(r.index[2].length, 20u);
        const qint64 at = r.moviTag + 4;
        QCOMPARE(r.out.mid(int(at), 8 + 18), odd);              // payload and pad byte as found
        for (const RiffChunk& c : r.chunks)
            QVERIFY(c.path != "AVI /movi/01wb");
    }

    void keyFrameFlagsAndLogLines()
    {
        QByteArray chunks;
        for (int i = 1; i <= 2050; ++i) {
            chunks += videoChunk(4);
            if (i == 3)
                chunks += chunk("01wb", "abcd");   // sound is always a key
        }
        ThreadVideoRepair t;
        const QByteArray in = aviFile(QByteArray(), chunks, 40000);
        prepare(t, in);
        t.ScanAviChunks();
        t.m_logHandle.close();
        QCOMPARE(ThreadVideoRepair::g_aviVideoChunks, 2050u);
        QCOMPARE(ThreadVideoRepair::g_aviAudioChunks, 1u);
        QCOMPARE(ThreadVideoRepair::g_aviAudioBytes, 12u);
        QCOMPARE(ThreadVideoRepair::g_aviMoviSize, 4u + 2051 * 12);

        const QByteArray index = readAll(m_dir + QStringLiteral("/Index.avi"));
        QCOMPARE(index.size(), 2051 * 16);
        QList<int> keys;
        int video = 0;
        for (int e = 0; e < 2051; ++e) {
            const QByteArray tag = index.mid(e * 16, 4);
            const quint32 flags = le32(index, e * 16 + 4);
            if (tag == "01wb") {
                QCOMPARE(flags, 0x10u);
                continue;
            }
            ++video;
            if (flags == 0x10u)
                keys << video;
            else
                QCOMPARE(flags, 0u);
        }
        QCOMPARE(keys, QList<int>({1, 1025, 2049}));

        // One enciphered line per chunk: its position, a blank, its size.
        QFile log(t.m_logPath);
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = log.readAll().split('\n');
        LogCipher cipher;
        const qint64 first = in.indexOf("00dc");
        QCOMPARE(cipher.decryptToString(QString::fromLatin1(lines[0].trimmed())),
                 QStringLiteral("%1 4\r\n").arg(first));
        QCOMPARE(lines.size(), 2051 + 1);
        QVERIFY(lines[0].endsWith('\r'));
        QFile::remove(m_dir + QStringLiteral("/Index.avi"));
        g_stopRequested = false;
    }

    void idx1TextEndsTheScan()
    {
        const QByteArray chunks = videoChunk(10) + "junk idx1 junk" + videoChunk(10) + videoChunk(12);
        const Result r = repair(aviFile(strl("vids", 56, videoFormat()), chunks), false);
        QVERIFY(r.status);
        QCOMPARE(r.index.size(), 1);
        QVERIFY(r.consistent);
    }

    void lastChunkPastTheEnd()
    {
        // The last chunk claims 1000 bytes and 300 exist: it is cut to them,
        // and the header, the chunk and the index all say 300.
        QByteArray in = aviFile(strl("vids", 56, videoFormat()), videoChunk(40), 6000);
        in += QByteArray("00dc") + le(1000) + QByteArray(300, 'w');
        const Result r = repair(in, false);
        QVERIFY(r.status);
        QVERIFY(r.consistent);
        QVERIFY(indexMatchesChunks(r));
        QCOMPARE(r.index.size(), 2);
        QCOMPARE(r.index[1].length, 300u);
    }

    void formatSizes()
    {
        // An audio strf of size 0 is left out; odd formats keep their pad.
        const Result r0 = repair(aviFile(strl("vids", 56, videoFormat(41)) + strl("auds", 56, QByteArray()),
                                         videoChunk(8) + chunk("01wb", "abc")),
                                 true);
        QVERIFY(r0.status);
        QVERIFY(r0.consistent);
        QCOMPARE(named(r0.chunks, "AVI /hdrl/strl/strf").size(), 1);
        QCOMPARE(named(r0.chunks, "AVI /hdrl/strl/strf")[0].size, 41u);
        QCOMPARE(named(r0.chunks, "AVI /hdrl/strl/strn").size(), 2);

        // A video strf under 40 bytes or one without a known tag behind it
        // writes nothing, and the verdict is false.
        for (const QByteArray& lists : {strl("vids", 56, videoFormat(24)), strl("vids", 56, videoFormat(), "abcd")}) {
            const Result r = repair(aviFile(lists, videoChunk(8)), false);
            QCOMPARE(r.verdicts, 1);
            QVERIFY(!r.status);
            QVERIFY(r.out.isEmpty());
            QVERIFY(g_repairedPaths.isEmpty());
        }
    }

    void soundAndSample()
    {
        const QByteArray withSound = aviFile(strl("vids", 56, videoFormat()) + strl("auds", 56, audioFormat()),
                                             videoChunk(8) + chunk("01wb", "abcd"));
        const QByteArray withoutSound = aviFile(strl("vids", 56, videoFormat(), "JUNK", 0x30), videoChunk(8));
        // Damaged with sound, sample without: false, nothing written.
        Result r = repair(withSound, true, &withoutSound);
        QCOMPARE(r.verdicts, 1);
        QVERIFY(r.clean);
        QVERIFY(!r.status);
        QVERIFY(r.out.isEmpty());
        // Damaged without sound, sample with: only the sample's video header.
        r = repair(withoutSound, false, &withSound);
        QVERIFY(r.status);
        QVERIFY(r.consistent);
        QCOMPARE(named(r.chunks, "AVI /hdrl/strl/").size(), 1);
        const RiffChunk strh = named(r.chunks, "AVI /hdrl/strl/strh").value(0);
        QCOMPARE(r.out.mid(int(strh.pos) + 12, 4), strhPayload("vids", 56, 0x20).mid(4, 4));
        // Sound in the file, none in the first tenth's search: one stream.
        r = repair(withSound, false);
        QVERIFY(r.status);
        QCOMPARE(le32(r.out, named(r.chunks, "AVI /hdrl/avih").value(0).pos + 8 + 24), 1u);
        QCOMPARE(r.index.size(), 2);
    }

    void neverWritesOverTheSource()
    {
        const QByteArray in = aviFile(strl("vids", 56, videoFormat()), videoChunk(8));
        QVERIFY(writeAll(m_dir + QStringLiteral("/clip.avi"), in));
        ThreadVideoRepair t;
        prepare(t, in);
        g_sourceFullPath = m_dir + QStringLiteral("/clip.avi");
        bool status = true;
        connect(&t, &ThreadVideoRepair::WriteAVIFileStatus, [&status](bool ok, QString) { status = ok; });
        t.RepairAviDirect(false);
        QVERIFY(!status);
        QCOMPARE(readAll(g_sourceFullPath), in);
        g_stopRequested = false;
    }

    void stopDuringTheScanLeavesNothing()
    {
        const QByteArray in = aviFile(strl("vids", 56, videoFormat()), videoChunk(8) + videoChunk(8));
        ThreadVideoRepair t;
        prepare(t, in);
        int verdicts = 0;
        connect(&t, &ThreadVideoRepair::WriteAVIFileStatus, [&verdicts](bool, QString) { ++verdicts; });
        // The scan announces its range first; the stop lands right behind it.
        connect(&t, &ThreadVideoRepair::SetProgressBarRange, [](ulong range) {
            if (range != 500000)
                g_stopRequested = true;
        });
        t.RepairAviDirect(false);
        QCOMPARE(verdicts, 0);
        QCOMPARE(QDir(m_dir).entryList(QDir::Files), QStringList{QStringLiteral("logFile.txt")});
        QCOMPARE(ThreadVideoRepair::g_aviMoviSize, 0u);
        g_stopRequested = false;
    }

    void sourceNamedLikeTheScratchIndex()
    {
        const QByteArray in = aviFile(strl("vids", 56, videoFormat()), videoChunk(8) + videoChunk(10));
        ThreadVideoRepair t;
        prepare(t, in);
        t.m_fileName = QStringLiteral("Index.avi");
        t.RepairAviDirect(false);
        t.m_logHandle.close();
        QList<RiffChunk> chunks;
        const QByteArray out = readAll(m_dir + QStringLiteral("/Index.avi"));
        QVERIFY(walkRiff(out, 0, out.size(), QByteArray(), chunks));
        QCOMPARE(named(chunks, "AVI /movi/00dc").size(), 2);
        QCOMPARE(QDir(m_dir).entryList(QDir::Files).size(), 2);   // the output and logFile.txt
        g_stopRequested = false;
    }

    void hostileInput_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<bool>("hasAudio");
        QRandomGenerator rng(7);
        QByteArray random(1 << 20, '\0');
        rng.fillRange(reinterpret_cast<quint32*>(random.data()), random.size() / 4);
        QTest::newRow("random bytes") << random << true;

        QByteArray huge = aviFile(strl("vids", 56, videoFormat()), videoChunk(8));
        const int strf = huge.indexOf("strf");
        huge.replace(strf + 4, 4, le(4000000000u));
        QTest::newRow("strf of 4 billion") << huge << false;

        QByteArray past = aviFile(strl("vids", 56, videoFormat()) + strl("auds", 56, audioFormat()), QByteArray());
        past.replace(past.lastIndexOf("strf") + 4, 4, le(0x7FFFFFF0u));
        for (int i = 0; i < 200; ++i)
            past += QByteArray(i % 2 ? "00dc" : "01wb") + le(0xFFFFFFF0u - quint32(i));
        past += "strl";
        QTest::newRow("sizes past the end") << past << true;
        QTest::newRow("tiny") << QByteArray("strlstrh") << true;
    }
    void hostileInput()
    {
        QFETCH(QByteArray, input);
        QFETCH(bool, hasAudio);
        const Result r = repair(input, hasAudio);
        QCOMPARE(r.verdicts, 1);
        QVERIFY(r.clean);
        QVERIFY(!r.status);
        QVERIFY(r.out.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestAvi)
#include "test_avi.moc"
