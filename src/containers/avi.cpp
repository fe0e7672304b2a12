// AVI and DivX repair: a fresh RIFF header built from the stream headers of
// the damaged file (or of a sample), the media chunks that a byte scan of the
// damaged file finds, and a fresh idx1 index. The input is only read.
#include "containers/avi.h"

#include "containers/output_checks.h"
#include "core/code_search.h"
#include "core/log_cipher.h"
#include "core/repair_globals.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cstring>
#include <vector>

namespace {

constexpr uint32_t kStrl = ByteReader::fourcc("strl");
constexpr uint32_t kStrh = ByteReader::fourcc("strh");
constexpr uint32_t kStrf = ByteReader::fourcc("strf");
constexpr uint32_t kVids = ByteReader::fourcc("vids");
constexpr uint32_t kAuds = ByteReader::fourcc("auds");
constexpr uint32_t k00dc = ByteReader::fourcc("00dc");
constexpr uint32_t k00db = ByteReader::fourcc("00db");
constexpr uint32_t k01wb = ByteReader::fourcc("01wb");
constexpr uint32_t kIdx1 = ByteReader::fourcc("idx1");
constexpr uint32_t kIndx = ByteReader::fourcc("indx");
constexpr uint32_t kRiff = ByteReader::fourcc("RIFF");
constexpr uint32_t kAvix = ByteReader::fourcc("AVIX");

// indx, or ix## with a stream number of two digits.
bool IsIndexTag(uint32_t tag)
{
    const auto digit = [](uint32_t c) { return c >= '0' && c <= '9'; };
    return tag == kIndx || ((tag >> 16) == ('i' << 8 | 'x') && digit(tag >> 8 & 0xFF) && digit(tag & 0xFF));
}

// Length of the index chunk at pos (its header included) when its fields
// agree: wLongsPerEntry 4 for a super index, 2 for a standard one, and room
// for the entries in use inside a chunk that ends within the file. Else 1,
// one step on.
uint64_t IndexChunkLength(ByteReader& in, uint64_t pos, uint64_t end, bool super)
{
    const uint32_t size = in.le32(pos + 4);
    const uint64_t entries = in.le32(pos + 12);
    const uint64_t length = 8 + uint64_t(size) + (size & 1);
    const bool agrees = in.le16(pos + 8) == (super ? 4 : 2) && in.u8(pos + 11) == (super ? 0 : 1)
                     && size >= 24 + entries * (super ? 16 : 8) && length <= end - pos;
    return agrees ? length : 1;
}

// Tags that may stand behind a stream format chunk; a match confirms the size
// of the strf in front of it.
constexpr uint32_t kBehindStrf[] = {
    ByteReader::fourcc("LIST"), ByteReader::fourcc("JUNK"), ByteReader::fourcc("strn"),
    ByteReader::fourcc("vprp"), ByteReader::fourcc("IDIT"), ByteReader::fourcc("indx"),
    ByteReader::fourcc("strd"), ByteReader::fourcc("vedt"), ByteReader::fourcc("ISFT"), 0u,
};

constexpr uint32_t kAvihSize = 56;
constexpr uint32_t kStrhSize = 56;          // a 64-byte source strh is written as 56
constexpr uint32_t kBitmapInfoSize = 40;
constexpr uint32_t kKeyFrame = 0x10;        // AVIIF_KEYFRAME
constexpr uint32_t kMaxFormatSize = 1u << 24;
// A media chunk above 1 GiB is not taken: no recorder writes one, and the
// standard index of an output in parts holds sizes in 31 bits.
constexpr uint32_t kMaxChunkSize = 1u << 30;
constexpr size_t kScanBlock = 1u << 20;
constexpr uint64_t kIndexEntry = 16;        // one idx1 entry, as the scan writes it
constexpr uint32_t kIndexHeader = 24;       // the fields of indx and ix## in front of the entries
constexpr uint32_t kSuperEntry = 16;        // qwOffset, dwSize, dwDuration
constexpr uint32_t kStdEntry = 8;           // dwOffset, dwSize
constexpr uint32_t kDmlhSize = 248;
constexpr uint32_t kOdmlList = 8 + 4 + 8 + kDmlhSize;
constexpr uint32_t kNotKeyFrame = 0x80000000u;   // bit 31 of an ix## entry's size

bool AcceptedBehindStrf(uint32_t tag)
{
    return std::find(std::begin(kBehindStrf), std::end(kBehindStrf), tag) != std::end(kBehindStrf);
}

uint64_t Padded(uint32_t size) { return uint64_t(size) + (size & 1); }

// True when one of the eight bytes at p is '0' or 'i', the first bytes of
// the tags the chunk scan looks for (a byte equal to c leaves a zero byte in
// the word xor c, which the borrow of the subtraction marks).
bool MayStartTag(const uint8_t* p)
{
    constexpr uint64_t kOnes = 0x0101010101010101ull, kHighs = 0x8080808080808080ull;
    uint64_t w;
    std::memcpy(&w, p, 8);
    const uint64_t a = w ^ (kOnes * '0'), b = w ^ (kOnes * 'i');
    return (((a - kOnes) & ~a) | ((b - kOnes) & ~b)) & kHighs;
}

// Where the stream header fields lie in the source (32-bit, as in RIFF).
struct AviOffsets {
    uint32_t videoHandler = 0;      // strl + 16: fccHandler
    uint32_t videoRate = 0;         // strl + 32: dwScale, dwRate, dwStart
    uint32_t videoBuffer = 0;       // strl + 48: dwSuggestedBufferSize, dwQuality
    uint32_t videoFrame = 0;        // strl + 64: right and bottom of rcFrame
    uint32_t videoFormatSize = 0;   // size of the video strf
    uint32_t videoFormatStart = 0;  // biSize
    uint32_t videoDimensions = 0;   // biWidth, biHeight
    uint32_t videoFormatRest = 0;   // strf behind biHeight
    uint32_t audioFormatSize = 0;   // size of the audio strf
    uint32_t audioHandler = 0;      // strl + 16: fccHandler .. dwStart (28 bytes)
    uint32_t audioTail = 0;         // strl + 48: dwSuggestedBufferSize .. rcFrame (20 bytes)
    uint32_t audioFormat = 0;       // the WAVEFORMATEX bytes
};

struct HeaderSearch {
    bool videoFormat = false;   // a video strf was found
    bool videoHeader = false;   // and a known tag stands behind it
    bool audioFormat = false;
    bool audioHeader = false;
    AviOffsets at;

    bool complete(bool hasAudio) const
    {
        const bool video = videoFormat && videoHeader;
        return hasAudio ? video && audioFormat && audioHeader : video;
    }
};

// What the chunk scan took. The counts and the movi total are 64-bit, as a
// file past 4 GiB passes 32 bits.
struct ChunkCounts {
    uint64_t video = 0;           // video chunks, empty ones included
    uint64_t videoWithData = 0;   // video chunks with a payload
    uint64_t audio = 0;
    uint64_t audioPayload = 0;    // payload bytes of the audio chunks
    uint64_t moviSize = 4;        // the movi list's contents: its tag and every chunk
    // The first chunk with a payload: where it stands in the input, and its
    // offset from the movi tag in the output.
    uint64_t firstData = 0;
    uint64_t firstDataOffset = 0;
};

// Size of the JUNK chunk (header included) that moves a chunk written at
// outPos to the offset within a page that it has at inPos in the input; 0
// when it stands there already.
uint32_t AlignmentJunk(uint64_t inPos, uint64_t outPos)
{
    uint32_t pad = uint32_t((inPos - outPos) % ByteReader::kAlign);
    if (pad > 0 && pad < 8)
        pad += ByteReader::kAlign;
    return pad;
}

// Seconds of the sound chunks as the stream header times them: dwLength
// units (samples of dwSampleSize bytes, or chunks when that is 0) of
// dwScale / dwRate seconds each. A player reads the same figure; a rate of 0
// times nothing.
double SoundSeconds(const ChunkCounts& counts, ByteReader& headers, const AviOffsets& at)
{
    const uint32_t scale = headers.le32(uint64_t(at.audioHandler) + 16);
    const uint32_t rate = headers.le32(uint64_t(at.audioHandler) + 20);
    const uint32_t sampleSize = headers.le32(uint64_t(at.audioTail) + 8);
    const uint64_t units = sampleSize ? counts.audioPayload / sampleSize : counts.audio;
    return rate ? double(units) * scale / rate : 0;
}

// Size of a strf at pos whose payload and the tag behind it lie inside the
// source, or -1. Sizes past the end or above kMaxFormatSize are not formats.
int64_t FormatSizeAt(ByteReader& src, uint64_t srcSize, uint64_t strfPos, bool& tagAccepted)
{
    tagAccepted = false;
    if (src.be32(strfPos) != kStrf)
        return -1;
    const uint32_t size = src.le32(strfPos + 4);
    if (size > kMaxFormatSize)
        return -1;
    // RIFF pads an odd chunk to an even length: the next tag stands behind the pad.
    const uint64_t tagPos = strfPos + 8 + Padded(size);
    if (tagPos + 4 > srcSize)
        return -1;
    tagAccepted = AcceptedBehindStrf(src.be32(tagPos));
    return size;
}

// Looks at a "strl" at P: "strh" with 56 or 64 bytes, then the strf behind
// it. Fills the offsets of the stream type found. True ends the search.
bool ExamineStreamList(ByteReader& src, uint64_t srcSize, uint64_t p, bool hasAudio, HeaderSearch& found)
{
    if (src.be32(p + 4) != kStrh)
        return false;
    const uint32_t h = src.le32(p + 8);
    if (h != 56 && h != 64)
        return false;
    const uint32_t type = src.be32(p + 12);
    AviOffsets& o = found.at;
    const uint32_t p32 = uint32_t(p);
    bool tagAccepted = false;
    if (type == kVids) {
        const int64_t size = FormatSizeAt(src, srcSize, p + 12 + h, tagAccepted);
        // A video strf shorter than a BITMAPINFOHEADER is not taken: the header
        // written from it would announce bytes that can't be filled.
        if (size >= kBitmapInfoSize) {
            found.videoFormat = true;
            o.videoHandler = p32 + 16;
            o.videoRate = p32 + 32;
            o.videoBuffer = p32 + 48;
            o.videoFrame = p32 + 64;
            o.videoFormatSize = uint32_t(size);
            if (tagAccepted) {
                o.videoFormatStart = p32 + h + 20;
                o.videoDimensions = p32 + h + 24;
                o.videoFormatRest = p32 + h + 32;
                found.videoHeader = true;
            }
        }
        // Without sound the first video stream list ends the search, complete or not.
        return !hasAudio;
    }
    if (type == kAuds && hasAudio) {
        const int64_t size = FormatSizeAt(src, srcSize, p + 12 + h, tagAccepted);
        if (size < 0)
            return false;
        found.audioFormat = true;
        o.audioHandler = p32 + 16;
        o.audioTail = p32 + 48;
        o.audioFormatSize = uint32_t(size);
        if (!tagAccepted)
            return false;
        o.audioFormat = p32 + h + 20;
        found.audioHeader = true;
        return true;
    }
    return false;
}

// Walks the first tenth of the source for stream lists. A later list of the
// same type overwrites what an earlier one filled.
HeaderSearch LocateAviHeaders(ByteReader& src, bool hasAudio, const RepairJob& job)
{
    HeaderSearch found;
    const uint64_t srcSize = src.size();
    // Offsets are recorded in 32 bits, so the search stays below 4 GiB.
    const uint64_t bound = std::min<uint64_t>(srcSize / 10, 0xFFFF0000u);
    for (uint64_t base = 0; base < bound && !job.stopped(); base += kScanBlock) {
        const size_t n = size_t(std::min<uint64_t>(kScanBlock, bound - base));
        const uint8_t* p = src.view(base, n + 3);
        for (size_t i = 0; i < n; ++i) {
            if (ByteReader::loadBe32(p + i) != kStrl)
                continue;
            if (ExamineStreamList(src, srcSize, base + i, hasAudio, found))
                return found;
            p = src.view(base, n + 3);   // the examination may have moved the window
        }
    }
    return found;
}

QString IndexPath(const QString& workDir, const QString& fileName)
{
    // A source named like the scratch index must not share its path.
    const QString name = fileName == QLatin1String("Index.avi") ? QStringLiteral("Index.avi.part")
                                                                  : QStringLiteral("Index.avi");
    return workDir + QLatin1Char('/') + name;
}

uint32_t Clamp32(uint64_t v) { return uint32_t(std::min<uint64_t>(v, 0xFFFFFFFFu)); }

// One RIFF part of an output written in parts: a run of the scan's chunks.
struct AviPart {
    uint64_t firstChunk = 0;
    uint64_t chunks = 0;
    uint64_t videoChunks = 0;
    uint64_t audioChunks = 0;
    uint64_t audioPayload = 0;
    uint64_t dataBytes = 0;    // the chunks with their headers and pad bytes
    uint64_t start = 0;        // position of its "RIFF" in the output
    uint64_t moviStart = 0;    // position of its "movi" tag
};

// Where the chunks go when the output is written in parts. The first part
// carries the header and the idx1 of its own chunks; every part ends its
// movi list with a standard index per stream (ix00, ix01).
struct OpenDmlLayout {
    std::vector<AviPart> parts;
    uint32_t superIndex = 0;   // size of one indx chunk with its header
    uint64_t size = 0;         // of the whole output

    bool hasAudio = false;
    uint32_t StdIndexSize(uint64_t entries) const { return uint32_t(8 + kIndexHeader + kStdEntry * entries); }
    uint64_t IndexBytes(const AviPart& p) const
    {
        return StdIndexSize(p.videoChunks) + (hasAudio ? StdIndexSize(p.audioChunks) : 0);
    }
    uint64_t MoviListSize(const AviPart& p) const { return 4 + p.dataBytes + IndexBytes(p); }
    uint64_t RiffSize(const AviPart& p, uint32_t hdrlSize) const
    {
        const bool first = p.start == 0;
        return 4 + (first ? 8 + uint64_t(hdrlSize) : 0) + 8 + MoviListSize(p)
             + (first ? 8 + kIndexEntry * p.chunks : 0);
    }
};

// Splits the scan's chunks (entries of the index file) into parts of at most
// partLimit bytes each, or of one chunk where a single chunk is larger.
// hdrlSize receives the size of the header list with the indx chunks and
// the odml list added to hdrlWithoutIndx.
OpenDmlLayout PlanParts(ByteReader& index, uint64_t entries, bool hasAudio, uint64_t partLimit,
                        uint32_t hdrlWithoutIndx, uint32_t& hdrlSize)
{
    OpenDmlLayout l;
    l.hasAudio = hasAudio;
    const int streams = hasAudio ? 2 : 1;
    // The header lists every part, so its size depends on their number:
    // plan again with the larger header until the number holds.
    for (uint64_t superEntries = 1;;) {
        l.superIndex = uint32_t(8 + kIndexHeader + kSuperEntry * std::min<uint64_t>(superEntries, 1u << 24));
        hdrlSize = hdrlWithoutIndx + streams * l.superIndex + kOdmlList;
        l.parts.assign(1, AviPart());
        AviPart* part = &l.parts.back();
        uint64_t used = l.RiffSize(*part, hdrlSize) + 8;
        for (uint64_t i = 0; i < entries; ++i) {
            const uint8_t* e = index.view(i * kIndexEntry, kIndexEntry);
            const bool audio = ByteReader::loadBe32(e) == k01wb;
            const uint32_t size = ByteReader::loadLe32(e + 12);
            const uint64_t total = 8 + Padded(size);
            const bool indexed = !audio || hasAudio;
            uint64_t cost = total + (indexed ? kStdEntry : 0) + (part->start == 0 ? kIndexEntry : 0);
            if (part->chunks > 0 && used + cost > partLimit) {
                const uint64_t next = part->start + used;
                l.parts.push_back(AviPart());
                part = &l.parts.back();
                part->start = next;
                part->firstChunk = i;
                used = l.RiffSize(*part, hdrlSize) + 8;
                cost = total + (indexed ? kStdEntry : 0);
            }
            used += cost;
            ++part->chunks;
            part->dataBytes += total;
            if (audio) {
                ++part->audioChunks;
                part->audioPayload += size;
            } else {
                ++part->videoChunks;
            }
        }
        l.size = part->start + used;
        if (l.parts.size() <= superEntries || superEntries >= (1u << 24))
            break;
        superEntries = l.parts.size();
    }
    for (AviPart& p : l.parts)
        p.moviStart = p.start + 12 + (p.start == 0 ? 8 + uint64_t(hdrlSize) : 0) + 8;
    return l;
}

// An ix## chunk: the entries of one stream among the chunks of a part, read
// back from the scan's index. Offsets count from the part's RIFF header and
// point at the payload, behind the chunk header.
void WriteStdIndex(FileWriter& w, ByteReader& index, const AviPart& p, bool audio)
{
    const uint64_t count = audio ? p.audioChunks : p.videoChunks;
    w.fourcc(audio ? "ix01" : "ix00");
    w.le32(uint32_t(kIndexHeader + kStdEntry * count));
    w.le16(2);                     // wLongsPerEntry
    w.u8(0);                       // bIndexSubType
    w.u8(1);                       // bIndexType: AVI_INDEX_OF_CHUNKS
    w.le32(uint32_t(count));       // nEntriesInUse
    w.fourcc(audio ? "01wb" : "00dc");
    w.le64(p.start);               // qwBaseOffset
    w.le32(0);                     // dwReserved
    uint64_t at = p.moviStart + 4;
    for (uint64_t i = p.firstChunk; i < p.firstChunk + p.chunks; ++i) {
        const uint8_t* e = index.view(i * kIndexEntry, kIndexEntry);
        const uint32_t size = ByteReader::loadLe32(e + 12);
        if ((ByteReader::loadBe32(e) == k01wb) == audio) {
            const bool key = audio || (ByteReader::loadLe32(e + 4) & kKeyFrame);
            w.le32(uint32_t(at + 8 - p.start));
            w.le32(size | (key ? 0 : kNotKeyFrame));
        }
        at += 8 + Padded(size);
    }
}

// The indx of one stream: an entry per part, naming its ix## chunk.
void WriteSuperIndex(FileWriter& w, const OpenDmlLayout& l, bool audio, uint32_t sampleSize)
{
    w.fourcc("indx");
    w.le32(l.superIndex - 8);
    w.le16(4);                     // wLongsPerEntry
    w.u8(0);                       // bIndexSubType
    w.u8(0);                       // bIndexType: AVI_INDEX_OF_INDEXES
    w.le32(uint32_t(l.parts.size()));
    w.fourcc(audio ? "01wb" : "00dc");
    w.zeros(12);                   // dwReserved[3]
    for (const AviPart& p : l.parts) {
        const uint64_t videoIndexAt = p.moviStart + 4 + p.dataBytes;
        w.le64(audio ? videoIndexAt + l.StdIndexSize(p.videoChunks) : videoIndexAt);
        w.le32(l.StdIndexSize(audio ? p.audioChunks : p.videoChunks));
        // dwDuration in the stream's units: frames, samples, or chunks.
        w.le32(Clamp32(!audio ? p.videoChunks : sampleSize ? p.audioPayload / sampleSize : p.audioChunks));
    }
}

// One file's repair. The stream headers come from the damaged file, or from
// a sample of the same container when one is given; the media chunks always
// come from the damaged file.
class AviRoute : public Route {
public:
    // partLimit: the largest RIFF of an output before it is written in parts.
    explicit AviRoute(uint64_t partLimit) : m_partLimit(partLimit) {}
    Verdict repair(RepairJob& job, Reporter& report) override;

private:
    // Fills logFile.txt (a line per chunk), the scratch index (an idx1
    // entry per chunk) and m_counts from a byte scan of the damaged file.
    void scanChunks(RepairJob& job, Reporter& report);
    // Writes the output from the header fields found in headers, the chunks
    // of logFile.txt and the scratch index, which it removes. True when the
    // whole file was written. A file whose RIFF would pass m_partLimit is
    // written in parts of about that size: a first RIFF "AVI " with idx1 for
    // its own chunks, then RIFF "AVIX" parts, each part's chunks indexed by
    // ix## chunks that the indx of every stream header lists (the OpenDML
    // extension).
    bool writeFile(RepairJob& job, ByteReader& headers, bool hasAudio);

    const uint64_t m_partLimit;
    ByteReader* m_reference = nullptr;   // the job's sample, when it is of this container
    QString m_indexPath;                       // the scratch index in the work folder
    HeaderSearch m_headers;
    ChunkCounts m_counts;
};

Verdict AviRoute::repair(RepairJob& job, Reporter& report)
{
    // The suffix table sends only AVI and DivX files here; a sample of
    // another container is ignored and the file is repaired on its own.
    if (job.sample && SameRoute(QFileInfo(job.referencePath).suffix(), job.suffix)) {
        m_reference = job.sample;
        report.setValue(m_reference->size() < 0x300000 ? 5000 : 50000);
    }
    report.showFileProgress(job.fileName);
    report.setRange(500000);
    if (!job.input)
        return Verdict::failed().viaAviSignal();
    ByteReader& in = *job.input;
    // Audio if "01wb" stands in the first tenth of the file. The bar shows a
    // fixed 400000 during this search; it is sent once, not per byte.
    report.setValue(400000);
    const bool hasAudio = FindAnyCode(in, 0, in.size() / 10, {k01wb}) >= 0;
    if (job.stopped())
        return Verdict::stopped();
    if (!m_reference) {
        // The repair without a sample sets its bar once more before the search.
        report.setRange(500000);
        report.setValue(400000);
    }
    ByteReader& headers = m_reference ? *m_reference : in;
    m_headers = LocateAviHeaders(headers, hasAudio, job);
    if (job.stopped())
        return Verdict::stopped();
    // Incomplete headers write no file, so the verdict is false even when a
    // video strf was seen: the row then offers a repair with a sample.
    if (!m_headers.complete(hasAudio))
        return Verdict::failed().viaAviSignal();
    m_indexPath = IndexPath(job.workDir, job.fileName);
    scanChunks(job, report);
    if (job.stopped()) {
        QFile::remove(m_indexPath);   // a scan cut short leaves no scratch index
        return Verdict::stopped();
    }
    const bool written = writeFile(job, headers, hasAudio);
    if (job.stopped())
        return Verdict::stopped();
    if (!written)
        return Verdict::failed().viaAviSignal();
    const uint64_t outSize = uint64_t(std::max<qint64>(QFileInfo(job.outputPath()).size(), 0));
    const double seconds = hasAudio ? SoundSeconds(m_counts, headers, m_headers.at) : 0;
    return Verdict::repaired(job.outputPath())
        .withFigures(m_counts.videoWithData, seconds, in.size(), outSize)
        .viaAviSignal();
}

void AviRoute::scanChunks(RepairJob& job, Reporter& report)
{
    ByteReader& in = *job.input;
    const uint64_t end = in.size();
    report.setRange(ulong(end));
    // idx1 offsets count from the "movi" tag. Past 4 GiB they wrap, but only
    // the entries of the first RIFF part are ever written as idx1.
    uint64_t chunkOffset = 4;
    FileWriter index;
    if (!index.open(m_indexPath))
        qWarning() << "Can't create the AVI index in" << job.workDir;
    // Lines this short never gain by compression; not trying spares a
    // deflate per chunk.
    LogCipher cipher;
    cipher.setCompressionMode(LogCipher::CompressionNever);
    uint64_t accepted = 0;       // sum of the sizes taken so far, for the bar
    uint64_t shown = 0;
    bool anyShown = false;
    const uint64_t showStep = std::max<uint64_t>(end / 1000, 1u << 20);

    uint64_t pos = 0;
    bool behindChunk = false;
    while (pos < end && !job.stopped()) {
        // Find the next candidate tag in a block, without a read per byte.
        // Behind a chunk the next header stands within a few bytes: a short
        // look there reads a page instead of the payload in between.
        const size_t n = size_t(std::min<uint64_t>(behindChunk ? 16 : kScanBlock, end - pos));
        const uint8_t* p = behindChunk ? in.peek(pos, n + 8) : in.view(pos, n + 8);
        behindChunk = false;
        size_t i = 0;
        uint32_t tag = 0;
        while (i < n) {
            // Eight bytes at a time past stretches that hold no tag's first byte.
            if (i + 8 <= n && !MayStartTag(p + i)) {
                i += 8;
                continue;
            }
            tag = ByteReader::loadBe32(p + i);
            if (tag == k00dc || tag == k00db || tag == k01wb || tag == kIdx1 || IsIndexTag(tag))
                break;
            ++i;
        }
        if (i == n) {
            pos += n;
            continue;
        }
        pos += i;
        if (tag == kIdx1) {
            // The idx1 of the first part of a file in parts: the media goes on
            // in the RIFF "AVIX" behind it.
            const uint64_t next = pos + 8 + Padded(ByteReader::loadLe32(p + i + 4));
            if (next + 12 <= end && in.be32(next) == kRiff && in.be32(next + 8) == kAvix) {
                pos = next;
                continue;
            }
            break;   // an index, or the text of one, ends the media wherever it stands
        }
        if (tag != k00dc && tag != k00db && tag != k01wb) {
            // An indx or ix## chunk names chunks in its own fields ("00dc"):
            // a whole one is passed over, as none of its bytes is media.
            pos += IndexChunkLength(in, pos, end, tag == kIndx);
            continue;
        }
        uint32_t size = ByteReader::loadLe32(p + i + 4);
        if (size >= end / 4 || size > kMaxChunkSize || size == 2 || size == 16 || size == 18) {
            ++pos;
            continue;
        }
        // A chunk that runs past the end of the file is taken with the bytes
        // that exist: its size shrinks to them, so header and index stay true.
        const uint64_t available = end > pos + 8 ? end - pos - 8 : 0;
        if (size > available)
            size = uint32_t(available);

        if (size > 0 && m_counts.firstDataOffset == 0) {
            m_counts.firstData = pos;
            m_counts.firstDataOffset = chunkOffset;
        }
        job.writeLogLine(cipher, QStringLiteral("%1 %2\r\n").arg(pos).arg(size));
        // The bar moves in steps of a thousandth (at least 1 MiB), not per chunk.
        if (!anyShown || accepted >= shown + showStep) {
            report.setValue(ulong(accepted));
            shown = accepted;
            anyShown = true;
        }
        accepted += size;

        uint32_t flags = 0;
        if (tag == k01wb) {
            flags = kKeyFrame;
        } else {
            ++m_counts.video;
            if (size > 0)
                ++m_counts.videoWithData;
            // Every 1024th video chunk from the first is marked as a key frame.
            if ((m_counts.video & 0x3FF) == 1)
                flags = kKeyFrame;
        }
        index.write(p + i, 4);   // dwChunkId
        index.le32(flags);       // dwFlags
        index.le32(uint32_t(chunkOffset)); // dwChunkOffset
        index.le32(size);        // dwChunkLength

        const uint64_t total = 8 + Padded(size);
        chunkOffset += total;
        m_counts.moviSize += total;
        if (tag == k01wb) {
            ++m_counts.audio;
            m_counts.audioPayload += size;
        }
        // Resume 7 bytes before the end of the payload, as a chunk that ends
        // early still leaves the next header within reach.
        pos += uint64_t(size) + 1;
        behindChunk = true;
    }
    report.setValue(ulong(accepted));
    if (!index.close())
        qWarning() << "Writing the AVI index failed in" << job.workDir;
}

bool AviRoute::writeFile(RepairJob& job, ByteReader& headers, bool hasAudio)
{
    const QString& indexPath = m_indexPath;
    const AviOffsets& o = m_headers.at;
    const uint64_t videoChunks = m_counts.video;
    const uint64_t chunks = m_counts.video + m_counts.audio;
    const uint64_t moviSize = m_counts.moviSize;
    const uint64_t audioChunks = m_counts.audio;
    const uint64_t audioPayload = m_counts.audioPayload;

    const uint32_t f = o.videoFormatSize;
    const uint32_t a = o.audioFormatSize;
    const QString outPath = job.outputPath();
    // Never write over the input or the sample (a work folder can hold them).
    const bool outIsSource = outputcheck::SameFile(outPath, job.inputPath)
                          || (m_reference && outputcheck::SameFile(outPath, job.referencePath));
    // A scan without a single video frame leaves nothing to play: no file is
    // written, so the row can't show "Completed" for an empty movie.
    if (f < kBitmapInfoSize || m_counts.videoWithData == 0 || outIsSource) {
        QFile::remove(indexPath);
        return false;
    }

    // Sizes first. Odd format sizes get their pad byte, and an audio strf of
    // size 0 is left out, so every size below counts exactly what is written.
    uint32_t videoStrl = uint32_t(4 + 8 + kStrhSize + 8 + Padded(f) + 14);
    uint32_t audioStrl = uint32_t(4 + 8 + kStrhSize + (a ? 8 + Padded(a) : 0) + 14);
    uint32_t hdrlSize = 4 + 8 + kAvihSize + 8 + videoStrl + (hasAudio ? 8 + audioStrl : 0);
    const uint64_t indexSize = kIndexEntry * chunks;
    const uint64_t riffLimit = std::min<uint64_t>(m_partLimit, 0xFFFFFFFFu);
    uint64_t riffSize = 4 + 8 + uint64_t(hdrlSize) + 8 + moviSize + 8 + indexSize;
    // A JUNK chunk at the end of hdrl puts the chunks at the same place
    // within a page as in the input, so a run of them is copied by the
    // kernel instead of through memory. Up to 4 KiB of padding pays only on
    // a large movi list, and only in a file of one RIFF: in parts, the
    // headers of the AVIX parts shift the chunks again.
    uint32_t junk = moviSize >= (1u << 20) ? AlignmentJunk(m_counts.firstData, hdrlSize + 28 + m_counts.firstDataOffset) : 0;
    if (riffSize + junk + 8 > riffLimit)
        junk = 0;
    hdrlSize += junk;
    riffSize += junk;

    // A RIFF that would pass the limit (or 32 bits) is written in parts.
    std::unique_ptr<FileReader> index = FileReader::open(indexPath);
    const bool inParts = riffSize + 8 > riffLimit;
    OpenDmlLayout layout;
    if (inParts) {
        if (!index || index->size() != indexSize) {
            qWarning() << "The AVI index in" << job.workDir << "is incomplete.";
            index.reset();
            QFile::remove(indexPath);
            return false;
        }
        const uint32_t hdrlWithoutIndx = hdrlSize;
        layout = PlanParts(*index, chunks, hasAudio, m_partLimit, hdrlWithoutIndx, hdrlSize);
        videoStrl += layout.superIndex;
        audioStrl += layout.superIndex;
    }
    const uint32_t audioSampleSize = hasAudio ? headers.le32(uint64_t(o.audioTail) + 8) : 0;

    FileWriter w;
    if (!w.open(outPath)) {
        qWarning() << "Can't create" << outPath;
        index.reset();
        QFile::remove(indexPath);
        return false;
    }
    *job.outputs << outPath;
    w.fourcc("RIFF");
    w.le32(uint32_t(inParts ? layout.RiffSize(layout.parts[0], hdrlSize) : riffSize));
    w.fourcc("AVI ");
    w.fourcc("LIST");
    w.le32(hdrlSize);
    w.fourcc("hdrl");

    w.fourcc("avih");
    w.le32(kAvihSize);
    w.le32(41666);                 // dwMicroSecPerFrame
    w.le32(3241472);               // dwMaxBytesPerSec
    w.le32(0);                     // dwPaddingGranularity
    w.le32(0x110);                 // dwFlags: AVIF_HASINDEX | AVIF_ISINTERLEAVED
    // dwTotalFrames: those of the first RIFF; dmlh holds the whole count.
    w.le32(Clamp32(inParts ? layout.parts[0].videoChunks : videoChunks));
    w.le32(0);                     // dwInitialFrames
    w.le32(hasAudio ? 2 : 1);      // dwStreams
    w.le32(0x9AB00);               // dwSuggestedBufferSize
    w.copyFrom(headers, o.videoDimensions, 8);   // dwWidth, dwHeight
    w.zeros(16);                   // dwReserved

    w.fourcc("LIST");
    w.le32(videoStrl);
    w.fourcc("strl");
    w.fourcc("strh");
    w.le32(kStrhSize);
    w.fourcc("vids");
    w.copyFrom(headers, o.videoHandler, 4);      // fccHandler
    w.zeros(12);                   // dwFlags, wPriority, wLanguage, dwInitialFrames
    w.copyFrom(headers, o.videoRate, 12);        // dwScale, dwRate, dwStart
    w.le32(Clamp32(videoChunks));  // dwLength
    w.copyFrom(headers, o.videoBuffer, 8);       // dwSuggestedBufferSize, dwQuality
    w.zeros(8);                    // dwSampleSize, rcFrame left and top
    w.copyFrom(headers, o.videoFrame, 4);        // rcFrame right and bottom
    w.fourcc("strf");
    w.le32(f);
    w.copyFrom(headers, o.videoFormatStart, 4);  // biSize
    w.copyFrom(headers, o.videoDimensions, 8);   // biWidth, biHeight
    w.copyFrom(headers, o.videoFormatRest, f - 12);
    w.zeros(f & 1);
    if (inParts)
        WriteSuperIndex(w, layout, false, 0);
    w.fourcc("strn");
    w.le32(6);
    w.write("Video ", 6);

    if (hasAudio) {
        w.fourcc("LIST");
        w.le32(audioStrl);
        w.fourcc("strl");
        w.fourcc("strh");
        w.le32(kStrhSize);
        w.fourcc("auds");
        w.copyFrom(headers, o.audioHandler, 28);  // fccHandler .. dwStart
        // dwLength in the stream's own units, not the byte total with chunk
        // headers: samples of dwSampleSize bytes, or chunks when that is 0.
        w.le32(Clamp32(audioSampleSize ? audioPayload / audioSampleSize : audioChunks));   // dwLength
        w.copyFrom(headers, o.audioTail, 20);     // dwSuggestedBufferSize .. rcFrame
        if (a) {
            w.fourcc("strf");
            w.le32(a);
            w.copyFrom(headers, o.audioFormat, a);
            w.zeros(a & 1);
        }
        if (inParts)
            WriteSuperIndex(w, layout, true, audioSampleSize);
        w.fourcc("strn");
        w.le32(6);
        w.write("Audio ", 6);
    }
    if (junk) {
        w.fourcc("JUNK");
        w.le32(junk - 8);
        w.zeros(junk - 8);
    }
    if (inParts) {
        w.fourcc("LIST");
        w.le32(kOdmlList - 8);
        w.fourcc("odml");
        w.fourcc("dmlh");
        w.le32(kDmlhSize);
        w.le32(Clamp32(videoChunks));   // dwTotalFrames of the whole file
        w.zeros(kDmlhSize - 4);
    }

    w.fourcc("LIST");
    w.le32(uint32_t(inParts ? layout.MoviListSize(layout.parts[0]) : moviSize));
    w.fourcc("movi");
    const uint64_t moviStart = w.pos() - 4;
    bool complete = moviStart - 28 == hdrlSize;

    // The chunks, in scan order, from the lines of logFile.txt: up to `count`
    // of them; returns how many were copied.
    job.log->close();
    QFile log(job.logPath);
    const bool logOpen = log.open(QIODevice::ReadOnly | QIODevice::Text);
    if (!logOpen)
        qWarning() << "Can't read" << job.logPath;
    LogCipher cipher;
    ByteReader& in = *job.input;
    // A chunk whose recorded size is its own is copied whole, and chunks
    // that follow each other in the input as one range (one copyFrom).
    const auto copyChunks = [&](uint64_t count) {
        uint64_t copied = 0, runStart = 0, runEnd = 0;
        while (logOpen && copied < count && !log.atEnd() && !job.stopped()) {
            const QByteArray line = log.readLine().trimmed();
            const QStringList parts = cipher.decryptToString(QString::fromLatin1(line)).trimmed().split(QLatin1Char(' '));
            bool posOk = false, sizeOk = false;
            const uint64_t pos = parts.value(0).toULongLong(&posOk);
            const uint32_t size = parts.value(1).toUInt(&sizeOk);
            if (parts.size() != 2 || !posOk || !sizeOk)
                continue;
            ++copied;
            const bool whole = ByteReader::loadLe32(in.peek(pos + 4, 4)) == size;
            if (whole && pos == runEnd && runEnd > runStart) {
                runEnd += 8 + Padded(size);
                continue;
            }
            w.copyFrom(in, runStart, runEnd - runStart);
            runStart = runEnd = pos;
            if (whole) {
                runEnd = pos + 8 + Padded(size);
                continue;
            }
            w.copyFrom(in, pos, 4);            // tag
            w.le32(size);                      // size as recorded by the scan
            w.copyFrom(in, pos + 8, Padded(size));   // payload and its pad byte
        }
        w.copyFrom(in, runStart, runEnd - runStart);
        return copied;
    };

    if (!inParts) {
        complete = complete && copyChunks(UINT64_MAX) == chunks && w.pos() - moviStart == moviSize;
        // The index entries, as the scan wrote them.
        if (index) {
            w.fourcc("idx1");
            w.le32(uint32_t(indexSize));
            w.copyFrom(*index, 0, indexSize);
            complete = complete && index->size() == indexSize;
        } else {
            complete = false;
        }
        complete = complete && w.pos() - 8 == riffSize;
    } else {
        for (const AviPart& p : layout.parts) {
            if (job.stopped())
                break;
            if (p.start > 0) {
                complete = complete && w.pos() == p.start;
                w.fourcc("RIFF");
                w.le32(uint32_t(layout.RiffSize(p, hdrlSize)));
                w.fourcc("AVIX");
                w.fourcc("LIST");
                w.le32(uint32_t(layout.MoviListSize(p)));
                w.fourcc("movi");
            }
            complete = complete && w.pos() == p.moviStart + 4 && copyChunks(p.chunks) == p.chunks;
            WriteStdIndex(w, *index, p, false);
            if (hasAudio)
                WriteStdIndex(w, *index, p, true);
            if (p.start == 0) {
                // idx1 of the first part's chunks: the scan's first entries.
                const uint64_t n = kIndexEntry * p.chunks;
                w.fourcc("idx1");
                w.le32(uint32_t(n));
                w.copyFrom(*index, 0, n);
            }
        }
        complete = complete && w.pos() == layout.size;
    }
    log.close();
    index.reset();
    QFile::remove(indexPath);
    const bool ok = w.close();
    if (job.stopped())
        return false;   // the driver removes the short file; a stop sends no verdict
    if (!ok || !complete) {
        qWarning() << "The rebuilt file" << outPath << "is incomplete; it is removed.";
        QFile::remove(outPath);
        job.outputs->removeAll(outPath);
        return false;
    }
    return true;
}

} // namespace

std::unique_ptr<Route> MakeAviRoute(uint64_t partLimit) { return std::make_unique<AviRoute>(partLimit); }

std::unique_ptr<Route> MakeAviRoute() { return MakeAviRoute(kAviPartLimit); }
