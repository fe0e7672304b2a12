// AVI repair on crafted bytes: the written layout (every size agrees with
// what follows it), the chunk scan rules, the index, and hostile input.
#include "batch_check.h"
#include "core/log_cipher.h"
#include "core/thread_video_repair.h"

#include <QDir>
#include <QFile>
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
    return QByteArray(tag, 4) + le(quint32(payload.size())) + payload + QByteArray(payload.size() & 1, '\0');
}
QByteArray videoChunk(int size) { return chunk("00dc", QByteArray(size, 'v')); }

// A strh payload whose bytes are recognisable by seed.
QByteArray strhPayload(const char* type, int size, int seed)
{
    QByteArray p(type, 4);
    for (int i = 4; i < size; ++i)
        p.append(char(seed + i));
    return p;
}

QByteArray strl(const char* type, int strhSize, const QByteArray& format, const char* behind = "JUNK", int seed = 0x20)
{
    const QByteArray body = QByteArray("strl") + chunk("strh", strhPayload(type, strhSize, seed)) + chunk("strf", format)
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

// Filler behind movi keeps the header in the first tenth and sizes under a quarter.
QByteArray aviFile(const QByteArray& streamLists, const QByteArray& chunks, int total = 16384)
{
    const QByteArray hdrl = QByteArray("hdrl") + chunk("avih", QByteArray(56, '\0')) + streamLists;
    QByteArray f = QByteArray("RIFF") + le(0) + "AVI " + "LIST" + le(quint32(hdrl.size())) + hdrl + "LIST"
                 + le(quint32(chunks.size() + 4)) + "movi" + chunks;
    return f + QByteArray(qMax(0, total - f.size()), 'x');
}

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
        QList<RiffChunk> at(const QByteArray& path) const { return named(chunks, path); }
    };

    void prepare(ThreadVideoRepair& t, const QByteArray& input)
    {
        t.m_file = std::make_unique<MemoryReader>(input);
        g_inputSize = t.m_fileSize = quint64(input.size());
        t.m_workDir = m_dir;
        t.m_fileName = "clip.avi";
        t.m_logPath = m_dir + "/logFile.txt";
        g_sourceFullPath = m_dir + "/source/clip.avi";
        QVERIFY(t.m_logHandle.open(t.m_logPath));
    }

    Result repair(const QByteArray& input, bool hasAudio, const QByteArray* reference = nullptr)
    {
        Result r;
        QFile::remove(m_dir + "/clip.avi");
        g_repairedPaths.clear();
        {
            ThreadVideoRepair t;
            connect(&t, &ThreadVideoRepair::WriteAVIFileStatus, [&r](bool ok, QString name) {
                r.verdicts += name == "clip.avi" ? 1 : 100;
                r.status = ok;
            });
            prepare(t, input);
            if (reference) {
                t.m_refFile = std::make_unique<MemoryReader>(*reference);
                t.m_refFileSize = quint64(reference->size());
                t.m_aviReferenceOpen = true;
                t.RepairAviWithReference(hasAudio);
                if (!t.m_refFile)
                    t.m_aviReferenceOpen = false;
            } else {
                t.RepairAviDirect(hasAudio);
            }
            t.m_logHandle.close();
            r.clean = !t.m_aviReferenceOpen && t.m_aviOffsets.videoFormatRest == 0 && t.m_aviOffsets.audioFormat == 0
                   && ThreadVideoRepair::g_aviVideoChunks + ThreadVideoRepair::g_aviAudioChunks
                              + ThreadVideoRepair::g_aviMoviSize + ThreadVideoRepair::g_aviAudioBytes
                          == 0;
        }
        g_stopRequested = false;   // the thread object sets it when it goes
        r.clean = r.clean && !QFile::exists(m_dir + "/Index.avi");
        r.out = readAll(m_dir + "/clip.avi");
        if (r.out.isEmpty())
            return r;
        r.consistent = walkRiff(r.out, 0, r.out.size(), QByteArray(), r.chunks);
        const QList<RiffChunk> idx = r.at("AVI /idx1"), movi = r.at("AVI /movi/");
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
        m_dir = freshDir("avi-unit");
        g_stopRequested = false;
        g_referencePath.clear();
        g_repairedPaths.clear();
    }
    void cleanup()
    {
        QDir(m_dir).removeRecursively();
        g_stopRequested = false;
    }

    // A 64-byte strh comes out as 56 bytes, field by field.
    void layoutFromA64ByteStreamHeader()
    {
        const QByteArray vfmt = videoFormat(46);
        const QByteArray in = aviFile(strl("vids", 64, vfmt) + strl("auds", 56, audioFormat(), "LIST", 0x40),
                                      videoChunk(100) + chunk("01wb", QByteArray(30, 'a')) + videoChunk(64));
        const Result r = repair(in, true);
        QCOMPARE(r.verdicts, 1);
        QVERIFY(r.status && r.clean && r.consistent);
        QCOMPARE(qint64(le32(r.out, 4)) + 8, qint64(r.out.size()));
        QCOMPARE(g_repairedPaths, QStringList{m_dir + "/clip.avi"});

        const QList<RiffChunk> strh = r.at("AVI /hdrl/strl/strh");
        QCOMPARE(strh.size(), 2);
        QCOMPARE(strh[0].size, 56u);
        QCOMPARE(strh[1].size, 56u);
        const QByteArray src = strhPayload("vids", 64, 0x20), vs = r.out.mid(int(strh[0].pos) + 8, 56);
        QCOMPARE(vs.left(8), src.left(8));                      // fccType, fccHandler
        QCOMPARE(vs.mid(8, 12), QByteArray(12, '\0'));
        QCOMPARE(vs.mid(20, 12), src.mid(20, 12));              // dwScale, dwRate, dwStart
        QCOMPARE(le32(vs, 32), 2u);                             // dwLength: video chunks
        QCOMPARE(vs.mid(36, 8), src.mid(36, 8));
        QCOMPARE(vs.mid(44, 8), QByteArray(8, '\0'));
        QCOMPARE(vs.mid(52, 4), src.mid(52, 4));                // rcFrame right, bottom
        const QByteArray as = r.out.mid(int(strh[1].pos) + 8, 56), asrc = strhPayload("auds", 56, 0x40);
        QCOMPARE(as.left(32), asrc.left(32));
        QCOMPARE(as.mid(36), asrc.mid(36));

        const QList<RiffChunk> strf = r.at("AVI /hdrl/strl/strf"), strn = r.at("AVI /hdrl/strl/strn");
        QCOMPARE(strf.size(), 2);
        QCOMPARE(r.out.mid(int(strf[0].pos) + 8, 46), vfmt);
        QCOMPARE(r.out.mid(int(strf[1].pos) + 8, 18), audioFormat());
        QCOMPARE(strn.size(), 2);
        QCOMPARE(r.out.mid(int(strn[1].pos) + 8, 6), QByteArray("Audio "));

        const qint64 avih = r.at("AVI /hdrl/avih").value(0).pos + 8;
        QCOMPARE(le32(r.out, avih + 16), 2u);                   // dwTotalFrames
        QCOMPARE(le32(r.out, avih + 24), 2u);                   // dwStreams
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
        QVERIFY(r.status && r.consistent);
        QVERIFY(indexMatchesChunks(r));
        QCOMPARE(r.index.size(), 3);
        QCOMPARE(r.index[0].length, 17u);
        QCOMPARE(r.index[1].length, 0u);
        QCOMPARE(r.index[1].offset, 4u + 17 + 9);
        QCOMPARE(r.index[2].length, 20u);
        QCOMPARE(r.out.mid(int(r.moviTag) + 4, 8 + 18), odd);   // payload and pad byte as found
        QVERIFY(r.at("AVI /movi/01wb").isEmpty());
    }

    void keyFrameFlagsAndLogLines()
    {
        QByteArray chunks;
        for (int i = 1; i <= 2050; ++i)
            chunks += videoChunk(4) + (i == 3 ? chunk("01wb", "abcd") : QByteArray());
        ThreadVideoRepair t;
        const QByteArray in = aviFile(QByteArray(), chunks, 40000);
        prepare(t, in);
        t.ScanAviChunks();
        t.m_logHandle.close();
        QCOMPARE(ThreadVideoRepair::g_aviVideoChunks, 2050u);
        QCOMPARE(ThreadVideoRepair::g_aviAudioChunks, 1u);
        QCOMPARE(ThreadVideoRepair::g_aviAudioBytes, 12u);
        QCOMPARE(ThreadVideoRepair::g_aviMoviSize, 4u + 2051 * 12);

        const QByteArray index = readAll(m_dir + "/Index.avi");
        QCOMPARE(index.size(), 2051 * 16);
        QList<int> keys;
        int video = 0;
        for (int e = 0; e < 2051; ++e) {
            const quint32 flags = le32(index, e * 16 + 4);
            if (index.mid(e * 16, 4) == "01wb") {
                QCOMPARE(flags, 0x10u);   // sound is always a key
                continue;
            }
            ++video;
            QVERIFY(flags == 0 || flags == 0x10u);
            if (flags)
                keys << video;
        }
        QCOMPARE(keys, QList<int>({1, 1025, 2049}));

        // One enciphered line per chunk: its position, a blank, its size.
        const QList<QByteArray> lines = readAll(t.m_logPath).split('\n');
        QCOMPARE(lines.size(), 2051 + 1);
        QVERIFY(lines[0].endsWith('\r'));
        QCOMPARE(LogCipher().decryptToString(QString::fromLatin1(lines[0].trimmed())),
                 QString("%1 4\r\n").arg(in.indexOf("00dc")));
    }

    void idx1TextEndsTheScan()
    {
        const QByteArray chunks = videoChunk(10) + "junk idx1 junk" + videoChunk(10) + videoChunk(12);
        const Result r = repair(aviFile(strl("vids", 56, videoFormat()), chunks), false);
        QVERIFY(r.status && r.consistent);
        QCOMPARE(r.index.size(), 1);
    }

    // The last chunk claims 1000 bytes and 300 exist: header, chunk and index all say 300.
    void lastChunkPastTheEnd()
    {
        QByteArray in = aviFile(strl("vids", 56, videoFormat()), videoChunk(40), 6000);
        in += QByteArray("00dc") + le(1000) + QByteArray(300, 'w');
        const Result r = repair(in, false);
        QVERIFY(r.status && r.consistent);
        QVERIFY(indexMatchesChunks(r));
        QCOMPARE(r.index.size(), 2);
        QCOMPARE(r.index[1].length, 300u);
    }

    void formatSizes()
    {
        // An audio strf of size 0 is left out; odd formats keep their pad.
        const Result r0 = repair(aviFile(strl("vids", 56, videoFormat(41)) + strl("auds", 56, QByteArray()),
                                         videoChunk(8) + chunk("01wb", "abc")), true);
        QVERIFY(r0.status && r0.consistent);
        QCOMPARE(r0.at("AVI /hdrl/strl/strf").size(), 1);
        QCOMPARE(r0.at("AVI /hdrl/strl/strf")[0].size, 41u);
        QCOMPARE(r0.at("AVI /hdrl/strl/strn").size(), 2);

        // A video strf under 40 bytes, or one without a known tag behind it,
        // writes nothing and the verdict is false.
        for (const QByteArray& lists : {strl("vids", 56, videoFormat(24)), strl("vids", 56, videoFormat(), "abcd")}) {
            const Result r = repair(aviFile(lists, videoChunk(8)), false);
            QCOMPARE(r.verdicts, 1);
            QVERIFY(!r.status && r.out.isEmpty() && g_repairedPaths.isEmpty());
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
        QVERIFY(r.clean && !r.status && r.out.isEmpty());
        // Damaged without sound, sample with: only the sample's video header.
        r = repair(withoutSound, false, &withSound);
        QVERIFY(r.status && r.consistent);
        QCOMPARE(r.at("AVI /hdrl/strl/").size(), 1);
        QCOMPARE(r.out.mid(int(r.at("AVI /hdrl/strl/strh").value(0).pos) + 12, 4),
                 strhPayload("vids", 56, 0x20).mid(4, 4));
        // Sound in the file but not asked for: one stream.
        r = repair(withSound, false);
        QVERIFY(r.status);
        QCOMPARE(le32(r.out, r.at("AVI /hdrl/avih").value(0).pos + 8 + 24), 1u);
        QCOMPARE(r.index.size(), 2);
    }

    // The work folder is the source's own: the output may not replace it.
    void neverWritesOverTheSource()
    {
        const QByteArray in = aviFile(strl("vids", 56, videoFormat()), videoChunk(8));
        QVERIFY(writeAll(m_dir + "/clip.avi", in));
        ThreadVideoRepair t;
        prepare(t, in);
        g_sourceFullPath = m_dir + "/clip.avi";
        bool status = true;
        connect(&t, &ThreadVideoRepair::WriteAVIFileStatus, [&status](bool ok, QString) { status = ok; });
        t.RepairAviDirect(false);
        QVERIFY(!status);
        QCOMPARE(readAll(g_sourceFullPath), in);
    }

    void stopDuringTheScanLeavesNothing()
    {
        ThreadVideoRepair t;
        prepare(t, aviFile(strl("vids", 56, videoFormat()), videoChunk(8) + videoChunk(8)));
        int verdicts = 0;
        connect(&t, &ThreadVideoRepair::WriteAVIFileStatus, [&verdicts](bool, QString) { ++verdicts; });
        // The scan announces its range first; the stop lands right behind it.
        connect(&t, &ThreadVideoRepair::SetProgressBarRange, [](ulong range) {
            if (range != 500000)
                g_stopRequested = true;
        });
        t.RepairAviDirect(false);
        QCOMPARE(verdicts, 0);
        QCOMPARE(QDir(m_dir).entryList(QDir::Files), QStringList{"logFile.txt"});
        QCOMPARE(ThreadVideoRepair::g_aviMoviSize, 0u);
    }

    void sourceNamedLikeTheScratchIndex()
    {
        ThreadVideoRepair t;
        prepare(t, aviFile(strl("vids", 56, videoFormat()), videoChunk(8) + videoChunk(10)));
        t.m_fileName = "Index.avi";
        t.RepairAviDirect(false);
        t.m_logHandle.close();
        QList<RiffChunk> chunks;
        const QByteArray out = readAll(m_dir + "/Index.avi");
        QVERIFY(walkRiff(out, 0, out.size(), QByteArray(), chunks));
        QCOMPARE(named(chunks, "AVI /movi/00dc").size(), 2);
        QCOMPARE(QDir(m_dir).entryList(QDir::Files).size(), 2);   // the output and logFile.txt
    }

    void hostileInput_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<bool>("hasAudio");
        QTest::newRow("random bytes") << containers::randomBytes(1 << 20, 7) << true;
        QByteArray huge = aviFile(strl("vids", 56, videoFormat()), videoChunk(8));
        huge.replace(huge.indexOf("strf") + 4, 4, le(4000000000u));
        QTest::newRow("strf of 4 billion") << huge << false;
        QByteArray past = aviFile(strl("vids", 56, videoFormat()) + strl("auds", 56, audioFormat()), QByteArray());
        past.replace(past.lastIndexOf("strf") + 4, 4, le(0x7FFFFFF0u));
        for (int i = 0; i < 200; ++i)
            past += QByteArray(i % 2 ? "00dc" : "01wb") + le(0xFFFFFFF0u - quint32(i));
        QTest::newRow("sizes past the end") << past + "strl" << true;
        QTest::newRow("tiny") << QByteArray("strlstrh") << true;
    }
    void hostileInput()
    {
        QFETCH(QByteArray, input);
        QFETCH(bool, hasAudio);
        const Result r = repair(input, hasAudio);
        QCOMPARE(r.verdicts, 1);
        QVERIFY(r.clean && !r.status && r.out.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestAvi)
#include "test_avi.moc"
