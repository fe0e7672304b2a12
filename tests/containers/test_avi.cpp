// AVI and DivX repair: the written layout, chunk scan and index on crafted
// bytes; end to end on ffmpeg-made clips with MP3, PCM or no sound.
#include "batch_check.h"
#include "containers/avi.h"
#include "core/repair_globals.h"
#include "support/bytes.h"
#include "support/route_job.h"

#include <QDir>
#include <QFile>
#include <QtTest>
#include <functional>

using namespace testvideo;
using containers::repairedPath;

namespace {

QByteArray chunk(const char* tag, const QByteArray& payload)
{
    return QByteArray(tag, 4) + le(quint32(payload.size())) + payload + QByteArray(payload.size() & 1, '\0');
}
QByteArray videoChunk(int size) { return chunk("00dc", QByteArray(size, 'v')); }

// Bytes seed + i for i from `from` to `to`: fields recognisable in an output.
QByteArray counting(int from, int to, int seed)
{
    QByteArray b;
    for (int i = from; i < to; ++i)
        b.append(char(seed + i));
    return b;
}
QByteArray strhPayload(const char* type, int size, int seed) { return QByteArray(type, 4) + counting(4, size, seed); }

QByteArray strl(const char* type, int strhSize, const QByteArray& format, const char* behind = "JUNK", int seed = 0x20)
{
    const QByteArray body = QByteArray("strl") + chunk("strh", strhPayload(type, strhSize, seed)) + chunk("strf", format)
                          + QByteArray(behind, 4) + le(0);
    return QByteArray("LIST") + le(quint32(body.size())) + body;
}

QByteArray videoFormat(int size = 40) { return le(40) + le(320) + le(240) + counting(12, size, 0x60); }
QByteArray audioFormat(int size = 18) { return counting(0, size, 0x90); }

// Filler behind movi keeps the header in the first tenth and sizes under a quarter.
QByteArray aviFile(const QByteArray& streamLists, const QByteArray& chunks, int total = 16384)
{
    const QByteArray hdrl = QByteArray("hdrl") + chunk("avih", QByteArray(56, '\0')) + streamLists;
    QByteArray f = QByteArray("RIFF") + le(0) + "AVI " + "LIST" + le(quint32(hdrl.size())) + hdrl + "LIST"
                 + le(quint32(chunks.size() + 4)) + "movi" + chunks;
    return f + QByteArray(qMax(0, total - f.size()), 'x');
}
const QByteArray kVideoOnly = aviFile(strl("vids", 56, videoFormat()), videoChunk(8) + videoChunk(10));

struct RiffChunk {
    QByteArray path;   // such as "AVI /hdrl/strl/strh"
    qint64 pos;
    quint32 size;
};

// Walks chunks and lists; false as soon as a size disagrees with the bytes.
bool walkRiff(const QByteArray& f, qint64 pos, qint64 end, const QByteArray& parent, QList<RiffChunk>& out)
{
    while (pos < end) {
        const quint32 size = pos + 8 <= end ? le32(f, pos + 4) : 0;
        const qint64 next = pos + 8 + size + (size & 1);
        if (pos + 8 > end || next > end)
            return false;
        const QByteArray tag = f.mid(int(pos), 4);
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

struct IndexEntry {
    QByteArray tag;
    quint32 flags, offset, length;
};

// The stream chunks of an intact file's movi list, where that list's data
// begins, and where its idx1 stands.
QList<RiffChunk> moviChunks(const QByteArray& f, qint64* moviStart, qint64* idx1Pos)
{
    QList<RiffChunk> all, chunks;
    walkRiff(f, 0, f.size(), QByteArray(), all);
    for (const RiffChunk& c : all) {
        if (c.path == "AVI /movi/")
            *moviStart = c.pos + 12;
        else if (c.path == "AVI /idx1")
            *idx1Pos = c.pos;
        else if (c.path.startsWith("AVI /movi/0"))
            chunks << c;
    }
    return chunks;
}

QStringList mpeg4Args(int seconds, const QString& sound)
{
    // Noise keeps frames large, so that a 32 KiB hole touches only a few.
    QStringList args = lavfiVideo(seconds) + (sound.isEmpty() ? QStringList() : lavfiAudio(seconds));
    args << "-vf" << "noise=alls=20:allf=t" << "-c:v" << "mpeg4" << "-vtag" << "XVID" << "-q:v" << "3";
    return args + (sound.isEmpty() ? QStringList{"-an"} : QStringList{"-c:a", sound});
}

// The route's run, with a stop right where the chunk scan sets the bar's
// range to the file's size.
struct AviRun : RouteRun {
    using RouteRun::RouteRun;
    bool stopAtScan = false;
    void setRange(ulong range) override { stop = stop || (stopAtScan && range != 500000); }
};

} // namespace

class TestAvi : public QObject {
    Q_OBJECT
    QString m_dir;

    struct Result {
        QStringList verdicts;
        bool status = false;
        QByteArray out;
        QList<RiffChunk> chunks;
        bool consistent = false;   // every size agrees, every index entry names its chunk
        QList<IndexEntry> index;
        bool noScratch = false;    // the scratch index is gone
        QList<RiffChunk> at(const QByteArray& path) const
        {
            QList<RiffChunk> r;
            for (const RiffChunk& c : chunks)
                if (c.path == path)
                    r << c;
            return r;
        }
    };

    // Repairs input as clip.avi through the route, with sample.avi as the
    // sample when one is given.
    Result repair(const QByteArray& input, const QByteArray& sample = {}, quint64 partLimit = kAviPartLimit,
                  const std::function<void(AviRun&)>& setup = {})
    {
        Result r;
        QFile::remove(m_dir + "/clip.avi");
        g_repairedPaths.clear();
        AviRun run(m_dir, "clip.avi", std::make_unique<MemoryReader>(input));
        if (!sample.isEmpty()) {
            run.job.referencePath = m_dir + "/sample.avi";
            writeAll(run.job.referencePath, sample);
        }
        if (setup)
            setup(run);
        const Verdict v = run.run(*MakeAviRoute(partLimit));
        r.verdicts = run.verdicts;
        r.status = v.outcome == Verdict::Outcome::Repaired && v.aviSignal;
        r.noScratch = !QFile::exists(m_dir + "/Index.avi");
        r.out = readAll(run.job.outputPath());
        r.consistent = !r.out.isEmpty() && walkRiff(r.out, 0, r.out.size(), QByteArray(), r.chunks);
        const QList<RiffChunk> idx = r.at("AVI /idx1"), movi = r.at("AVI /movi/");
        for (quint32 i = 0; idx.size() == 1 && movi.size() == 1 && i + 16 <= idx[0].size; i += 16) {
            const qint64 e = idx[0].pos + 8 + i, chunkAt = movi[0].pos + 8 + le32(r.out, e + 8);
            r.index << IndexEntry{r.out.mid(int(e), 4), le32(r.out, e + 4), le32(r.out, e + 8), le32(r.out, e + 12)};
            r.consistent = r.consistent && r.out.mid(int(chunkAt), 4) == r.index.last().tag
                        && le32(r.out, chunkAt + 4) == r.index.last().length;
        }
        // In parts: every indx entry names an ix## chunk of its size, and
        // every entry of that names a chunk of its stream and size.
        for (const RiffChunk& indx : r.chunks) {
            if (!indx.path.endsWith("/indx"))
                continue;
            const qint64 h = indx.pos + 8;
            const QByteArray id = r.out.mid(int(h) + 8, 4);
            for (quint32 e = 0; e < le32(r.out, h + 4); ++e) {
                const qint64 ix = qint64(le64(r.out, h + 24 + 16 * e));
                r.consistent = r.consistent && ix + 32 <= r.out.size() && r.out.mid(int(ix), 4) == "ix" + id.left(2)
                            && le32(r.out, ix + 4) + 8 == le32(r.out, h + 32 + 16 * e) && r.out.mid(int(ix) + 16, 4) == id;
                const qint64 base = le32(r.out, ix + 20);
                for (quint32 k = 0; r.consistent && k < le32(r.out, ix + 12); ++k) {
                    const qint64 at = base + le32(r.out, ix + 32 + 8 * k);
                    r.consistent = at <= r.out.size() && r.out.mid(int(at) - 8, 2) == id.left(2)
                                && le32(r.out, at - 4) == (le32(r.out, ix + 36 + 8 * k) & 0x7FFFFFFFu);
                }
            }
        }
        return r;
    }

    QHash<QString, QString> m_clips;
    QHash<QString, int> m_intactFrames;   // per clip and stream
    // A clip made on first use ("mp3", "pcm", "only"; with "_sample" a 2-second one).
    QString clip(const QString& key)
    {
        const QString sound = key.startsWith("mp3") ? "libmp3lame" : key.startsWith("pcm") ? "pcm_s16le" : "";
        if (!m_clips.contains(key))
            m_clips[key] = make("xvid_" + key + ".avi", mpeg4Args(key.endsWith("_sample") ? 2 : 8, sound));
        return m_clips[key];
    }

private Q_SLOTS:
    void init() { m_dir = freshDir("avi"); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void layoutFromA64ByteStreamHeader()
    {
        const QByteArray vfmt = videoFormat(46);
        const Result r = repair(aviFile(strl("vids", 64, vfmt) + strl("auds", 56, audioFormat(), "LIST", 0x40),
                                        videoChunk(100) + chunk("01wb", QByteArray(30, 'a')) + videoChunk(64)));
        QCOMPARE(r.verdicts, QStringList{"1 clip.avi"});
        QVERIFY(r.status && r.noScratch && r.consistent);   // the RIFF size too
        QCOMPARE(g_repairedPaths, QStringList{m_dir + "/clip.avi"});

        // 64 bytes in, 56 out: the known fields copied, dwLength counting video chunks.
        const QList<RiffChunk> strh = r.at("AVI /hdrl/strl/strh");
        QCOMPARE(strh.size(), 2);
        const QByteArray src = strhPayload("vids", 64, 0x20), z(12, '\0');
        QCOMPARE(r.out.mid(int(strh[0].pos) + 8, 56),
                 src.left(8) + z + src.mid(20, 12) + le(2) + src.mid(36, 8) + z.left(8) + src.mid(52, 4));
        const QByteArray as = r.out.mid(int(strh[1].pos) + 8, 56), asrc = strhPayload("auds", 56, 0x40);
        QCOMPARE(as.left(32) + as.mid(36), asrc.left(32) + asrc.mid(36));

        const QList<RiffChunk> strf = r.at("AVI /hdrl/strl/strf");
        QCOMPARE(r.out.mid(int(strf[0].pos) + 8, 46), vfmt);
        QCOMPARE(r.out.mid(int(strf[1].pos) + 8, 18), audioFormat());

        const qint64 avih = r.at("AVI /hdrl/avih").value(0).pos + 8;
        QCOMPARE(le32(r.out, avih + 24), 2u);                   // dwStreams
        QCOMPARE(r.out.mid(int(avih) + 32, 8), vfmt.mid(4, 8)); // dwWidth, dwHeight
        QCOMPARE(r.index.size(), 3);
    }

    // What the chunk scan takes, as the output's index lengths; payloads are the input's own.
    void chunkScan_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QList<quint32>>("lengths");
        const QByteArray lists = strl("vids", 56, videoFormat());
        QByteArray odd = chunk("00dc", QByteArray(17, 'o'));
        odd[8 + 17] = char(0xAB);
        QTest::newRow("sizes 2, 16, 18 refused; 17, 0 taken; a quarter of the file refused")
            << aviFile(lists, chunk("00dc", "zz") + chunk("00dc", QByteArray(16, 'p')) + chunk("00db", QByteArray(18, 'q'))
                                  + odd + chunk("00dc", QByteArray()) + "00dc" + le(16384 / 4) + videoChunk(20))
            << QList<quint32>{17, 0, 20};
        QTest::newRow("idx1 in the middle ends the scan")
            << aviFile(lists, videoChunk(10) + "junk idx1 junk" + videoChunk(10) + videoChunk(12)) << QList<quint32>{10};
        // An ix00 whose base offset would read as a chunk of 8; an indx
        // whose reserved words would read as one of 0.
        const QByteArray ix = chunk("ix00", le(0x01000002) + le(1) + "00dc" + le(8) + le(0) + le(0) + le(8) + le(10));
        const QByteArray indx = chunk("indx", le(0x00000004) + le(1) + "00dc" + le(0) + le(0) + le(0) + QByteArray(16, 'i'));
        QTest::newRow("idx1 with RIFF AVIX behind, indx and ix00 passed over")
            << aviFile(lists, indx + videoChunk(10) + ix + chunk("idx1", QByteArray(16, 'x')) + "RIFF" + le(100) + "AVIX"
                                  + "LIST" + le(50) + "movi" + videoChunk(12) + chunk("idx1", "") + videoChunk(14))
            << QList<quint32>{10, 12};
        QTest::newRow("last chunk past the end: header, chunk and index say 300")
            << aviFile(lists, videoChunk(40), 6000) + "00dc" + le(1000) + QByteArray(300, 'w') << QList<quint32>{40, 300};
    }
    void chunkScan()
    {
        QFETCH(QByteArray, input);
        QFETCH(QList<quint32>, lengths);
        const Result r = repair(input);
        QVERIFY(r.status && r.consistent);
        QList<quint32> got;
        for (const IndexEntry& e : r.index)
            got << e.length;
        QCOMPARE(got, lengths);
        for (const RiffChunk& c : r.at("AVI /movi/00dc"))
            QVERIFY(input.contains(r.out.mid(int(c.pos) + 8, int(c.size + (c.size & 1)))));
    }

    // Keyframe flags on video chunks 1, 1025, 2049; sound is always a key.
    void keyFrameFlags()
    {
        QByteArray chunks;
        for (int i = 1; i <= 2050; ++i)
            chunks += videoChunk(4) + (i == 3 ? chunk("01wb", "abcd") : QByteArray());
        const QByteArray in = aviFile(strl("vids", 56, videoFormat()) + strl("auds", 56, audioFormat()), chunks, 40000);
        const Result r = repair(in);
        QVERIFY(r.status && r.consistent);
        QCOMPARE(le32(r.out, r.at("AVI /hdrl/avih").value(0).pos + 8 + 16), 2050u);   // dwTotalFrames
        QCOMPARE(r.index.size(), 2051);
        QList<int> keys;
        int video = 0;
        for (const IndexEntry& e : r.index) {
            const bool sound = e.tag == "01wb";
            video += sound ? 0 : 1;
            QVERIFY(e.flags == 0x10u || (e.flags == 0 && !sound));
            if (e.flags && !sound)
                keys << video;
        }
        QCOMPARE(keys, QList<int>({1, 1025, 2049}));
    }

    void formatSizes()
    {
        // An audio strf of size 0 is left out; odd formats keep their pad.
        const Result r0 = repair(aviFile(strl("vids", 56, videoFormat(41)) + strl("auds", 56, QByteArray()),
                                         videoChunk(8) + chunk("01wb", "abc")));
        QVERIFY(r0.status && r0.consistent);
        QCOMPARE(r0.at("AVI /hdrl/strl/strf").size(), 1);
        QCOMPARE(r0.at("AVI /hdrl/strl/strf")[0].size, 41u);
        QCOMPARE(r0.at("AVI /hdrl/strl/strn").size(), 2);

        // A video strf under 40 bytes, or one without a known tag behind it:
        // nothing written, the verdict is false.
        for (const QByteArray& lists : {strl("vids", 56, videoFormat(24)), strl("vids", 56, videoFormat(), "abcd")}) {
            const Result r = repair(aviFile(lists, videoChunk(8)));
            QCOMPARE(r.verdicts, QStringList{"0 clip.avi"});
            QVERIFY(r.out.isEmpty() && g_repairedPaths.isEmpty());
        }
    }

    // Sound counts when "01wb" stands in the first tenth of the damaged file;
    // the stream headers then come from the sample, when one is given.
    void soundAndSample()
    {
        const QByteArray lists = strl("vids", 56, videoFormat()) + strl("auds", 56, audioFormat());
        const QByteArray withSound = aviFile(lists, videoChunk(8) + chunk("01wb", "abcd"));
        const QByteArray withoutSound = aviFile(strl("vids", 56, videoFormat(), "JUNK", 0x30), videoChunk(8));
        // Damaged with sound, sample without: false, nothing written.
        Result r = repair(withSound, withoutSound);
        QCOMPARE(r.verdicts, QStringList{"0 clip.avi"});
        QVERIFY(r.noScratch && r.out.isEmpty());
        // Damaged without sound, sample with: only the sample's video header.
        r = repair(withoutSound, withSound);
        QVERIFY(r.status && r.consistent);
        QCOMPARE(r.at("AVI /hdrl/strl/").size(), 1);
        QCOMPARE(r.out.mid(int(r.at("AVI /hdrl/strl/strh").value(0).pos) + 12, 4), strhPayload("vids", 56, 0x20).mid(4, 4));
        // Sound only past the first tenth: one stream, the sound chunk indexed.
        r = repair(aviFile(lists, videoChunk(8) + videoChunk(2000) + chunk("01wb", "abcd")));
        QVERIFY(r.status);
        QCOMPARE(le32(r.out, r.at("AVI /hdrl/avih").value(0).pos + 8 + 24), 1u);
        QCOMPARE(r.index.size(), 3);
    }

    // The output never replaces the source, nor the scratch index a source of
    // its name; a stop in the chunk scan leaves only the log.
    void workFolder()
    {
        Result r = repair(kVideoOnly, {}, kAviPartLimit, [](AviRun& run) {
            run.job.inputPath = run.job.outputPath();
            writeAll(run.job.inputPath, kVideoOnly);
        });
        QCOMPARE(r.verdicts, QStringList{"0 clip.avi"});
        QCOMPARE(r.out, kVideoOnly);

        r = repair(kVideoOnly, {}, kAviPartLimit, [](AviRun& run) { run.job.fileName = "Index.avi"; });
        QVERIFY(r.status && r.consistent);
        QCOMPARE(r.at("AVI /movi/00dc").size(), 2);
        QCOMPARE(QDir(m_dir).entryList(QDir::Files), QStringList({"Index.avi", "logFile.txt"}));

        QFile::remove(m_dir + "/Index.avi");
        r = repair(kVideoOnly, {}, kAviPartLimit, [](AviRun& run) { run.stopAtScan = true; });
        QVERIFY(r.verdicts.isEmpty() && r.noScratch);
        QCOMPARE(QDir(m_dir).entryList(QDir::Files), QStringList{"logFile.txt"});
    }

    // Past the part limit: a first RIFF with idx1, then AVIX parts, all indexed
    // by ix## through indx. At the limit itself the file stays one RIFF.
    void partsAtTheLimit()
    {
        const QByteArray in = aviFile(strl("vids", 56, videoFormat()) + strl("auds", 56, audioFormat()),
                                      videoChunk(300) + chunk("01wb", QByteArray(41, 'a')) + videoChunk(301)
                                          + videoChunk(302) + chunk("01wb", QByteArray(40, 'b')));
        const Result whole = repair(in);
        QVERIFY(whole.status && whole.consistent);
        QCOMPARE(repair(in, {}, quint64(whole.out.size())).out, whole.out);
        const Result parts = repair(in, {}, quint64(whole.out.size()) - 1);
        QVERIFY(parts.status && parts.consistent && parts.noScratch);
        QCOMPARE(parts.at("AVI /hdrl/strl/indx").size(), 2);
        QCOMPARE(le32(parts.out, parts.at("AVI /hdrl/odml/dmlh").value(0).pos + 8), 3u);
        // 464 bytes a part: the first holds the header and one chunk; each AVIX
        // part a sound and a video chunk (88 + 58 + 318 bytes, the limit itself).
        const Result small = repair(in, {}, 464);
        QVERIFY(small.status && small.consistent);
        QCOMPARE(small.at("AVIX/").size(), 2);
        QCOMPARE(small.index.size(), 1);   // idx1: the first part's chunks
        QCOMPARE(small.at("AVIX/movi/01wb").size(), 2);
        QCOMPARE(le32(small.out, small.at("AVI /hdrl/avih").value(0).pos + 8 + 16), 1u);   // dwTotalFrames of the first part
    }

    // Parts of 1 MiB from a real clip: every picture and every sound frame
    // decodes as in the original.
    void partsDecodeAsTheOriginal()
    {
        const QString original = clip("mp3");
        const QByteArray bytes = readAll(original);
        QVERIFY(bytes.size() > 3 << 20);
        const Result r = repair(bytes, {}, 1 << 20);
        QVERIFY(r.status && r.consistent);
        QVERIFY(r.at("AVIX/").size() >= 2);
        for (const RiffChunk& c : r.chunks)
            QVERIFY(c.path.count('/') > 1 || c.size < (1 << 20) + 65536);
        const auto hashes = [](const QString& path, const char* stream) {
            QByteArray out;
            run("ffmpeg", {"-v", "error", "-threads", "1", "-i", path, "-map", stream, "-f", "framemd5", "-"}, &out);
            QList<QByteArray> lines;
            for (const QByteArray& line : out.split('\n'))
                if (!line.startsWith('#') && !line.isEmpty())
                    lines << line.mid(line.lastIndexOf(',') + 1);
            return lines;
        };
        QList<QByteArray> want[2];
        for (int s : {0, 1}) {
            want[s] = hashes(original, s ? "0:a:0" : "0:v:0");
            QVERIFY(want[s].size() > 150);
            QCOMPARE(hashes(m_dir + "/clip.avi", s ? "0:a:0" : "0:v:0"), want[s]);
        }
        // Repaired again in one part: the scan goes on behind the first idx1
        // and passes over every index, so nothing is lost or added.
        const Result again = repair(r.out);
        QVERIFY(again.status && again.consistent && again.at("AVIX/").isEmpty());
        QCOMPARE(again.index.size(), r.at("AVI /movi/00dc").size() + r.at("AVIX/movi/00dc").size()
                                         + r.at("AVI /movi/01wb").size() + r.at("AVIX/movi/01wb").size());
        QCOMPARE(hashes(m_dir + "/clip.avi", "0:v:0"), want[0]);
    }

    // Media past 4 GiB (a sparse input whose movi list has a hole at a
    // third): the same output as from the clip itself.
    void mediaPast4GiB()
    {
        const QByteArray bytes = readAll(clip("mp3"));
        qint64 moviStart = -1, idx1Pos = -1;
        const QList<RiffChunk> chunks = moviChunks(bytes, &moviStart, &idx1Pos);
        QVERIFY(chunks.size() > 30);
        const qint64 at = chunks[chunks.size() / 3].pos;
        const QString whole = m_dir + "/whole.avi", sparse = m_dir + "/sparse.avi";
        QVERIFY(writeAll(whole, bytes) && containers::writeSparse(sparse, bytes.left(at), containers::kPast4GiB, bytes.mid(at)));
        const containers::Batch b = containers::repairFiles({whole, sparse});
        QVERIFY2(b.fault.isEmpty(), qPrintable(b.fault));
        QCOMPARE(b.repaired, QList<bool>({true, true}));
        QCOMPARE(readAll(b.outputs.value(1)), readAll(b.outputs.value(0)));
    }

    void endToEnd_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("damage");
        for (const QString in : {"mp3", "pcm", "only"})
            for (const char* d : {"whole", "idx1 cut", "holes", "header zeroed"})
                QTest::newRow(qPrintable(in + ' ' + d)) << in << QString(d);
    }
    // At least 95% of the frames decode, and all but those a hole touches;
    // sound likewise where the input had sound.
    void endToEnd()
    {
        QFETCH(QString, source);
        QFETCH(QString, damage);
        const QString clipPath = clip(source);
        QVERIFY2(!clipPath.isEmpty(), "ffmpeg could not make the clip");
        QByteArray bytes = readAll(clipPath);
        qint64 moviStart = -1, idx1Pos = -1;
        const QList<RiffChunk> chunks = moviChunks(bytes, &moviStart, &idx1Pos);
        QVERIFY(moviStart > 0 && idx1Pos > moviStart && !chunks.isEmpty());

        int touchedVideo = 0, touchedAudio = 0;
        QStringList args;
        if (damage == "idx1 cut") {
            cutFrom(bytes, idx1Pos);
        } else if (damage == "holes") {
            for (int k = 1; k <= 3; ++k) {
                const qint64 at = moviStart + (idx1Pos - moviStart) * k / 4, hole = 32 * 1024;
                zeroRange(bytes, at, hole);
                for (const RiffChunk& c : chunks)
                    if (c.pos < at + hole && c.pos + 8 + c.size > at)
                        ++(c.path.endsWith("dc") ? touchedVideo : touchedAudio);
            }
        } else if (damage == "header zeroed") {
            zeroRange(bytes, 0, 4096);
            args << "--reference" << clip(source + "_sample");
        }
        const QString input = m_dir + "/clip.avi";
        const containers::Batch b = containers::repairBytes(input, bytes, args);
        QVERIFY2(b.fault.isEmpty(), qPrintable(b.fault));
        QCOMPARE(b.signalNames, QStringList{"WriteAVIFileStatus"});
        QVERIFY(b.ok());
        QCOMPARE(b.outputs, QStringList{repairedPath(input)});
        QVERIFY2(containers::figuresFault(b).isEmpty(), qPrintable(containers::figuresFault(b)));

        const bool holes = damage == "holes";
        for (const QString stream : {"v:0", "a:0"}) {
            if (!m_intactFrames.contains(clipPath + stream))
                m_intactFrames[clipPath + stream] = decodedFrames(clipPath, stream);
            const int all = m_intactFrames[clipPath + stream], decoded = decodedFrames(b.outputs[0], stream);
            if (stream == "a:0" && source == "only") {
                QCOMPARE(decoded, -1);
                continue;
            }
            // A damaged MP3 frame can take its neighbour along (bit reservoir).
            const int lost = stream == "v:0" ? touchedVideo : touchedAudio + 3;
            const int wanted = std::max((all * 95 + 99) / 100, holes ? all - lost : 0);
            QVERIFY(all > 150);
            QVERIFY2(decoded >= wanted, qPrintable(QString("%1: %2 of %3 decode, %4 wanted").arg(stream).arg(decoded).arg(all).arg(wanted)));
        }
    }
};

QTEST_GUILESS_MAIN(TestAvi)
#include "test_avi.moc"
