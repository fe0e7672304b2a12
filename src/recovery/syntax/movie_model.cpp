#include "recovery/syntax/movie_model.h"

#include "recovery/syntax/codec_frames.h"

#include <algorithm>
#include <map>

namespace syntax {
namespace {

constexpr uint32_t C(const char* s) { return ByteReader::fourcc(s); }

// A movie body larger than this is not a movie (tables of a day-long
// recording stay far below it); it keeps hostile sizes from being read.
constexpr uint64_t kMaxMovie = 512ull << 20;
// Entries read from one table of a sample: enough to learn habits from.
constexpr uint64_t kMaxEntries = 1u << 20;

QByteArray ReadBytes(ByteReader& r, uint64_t pos, uint64_t n)
{
    QByteArray b(int(n), '\0');
    r.read(pos, b.data(), size_t(n));
    return b;
}

// The box with the code somewhere inside [from, to), found by its code and
// checked by its size; for codec boxes whose depth differs between layouts
// (a sound entry's wave box, a video entry's extensions).
bool SearchCode(ByteReader& r, uint64_t from, uint64_t to, uint32_t code, Box& found)
{
    for (uint64_t p = from + 4; p + 4 <= to; ++p) {
        if (r.be32(p) != code)
            continue;
        const uint64_t size = r.be32(p - 4);
        if (size < 8 || size > to - (p - 4))
            continue;
        found = {code, p - 4, p + 4, p - 4 + size};
        return true;
    }
    return false;
}

VideoCodec VideoFor(uint32_t f)
{
    if (f == C("avc1") || f == C("avc3"))
        return VideoCodec::H264;
    if (f == C("hvc1") || f == C("hev1"))
        return VideoCodec::Hevc;
    if (f == C("jpeg") || f == C("mjpa") || f == C("AVDJ") || f == C("dmb1"))
        return VideoCodec::Jpeg;
    if (f == C("apch") || f == C("apcn") || f == C("apcs") || f == C("apco") || f == C("ap4h") || f == C("ap4x"))
        return VideoCodec::ProRes;
    if (f == C("mp4v"))
        return VideoCodec::Mpeg4;
    return VideoCodec::None;
}

// Bytes per channel of a PCM format whose description doesn't say it.
uint32_t PcmChannelBytes(uint32_t f, uint32_t bits)
{
    if (f == C("in24"))
        return 3;
    if (f == C("in32") || f == C("fl32"))
        return 4;
    if (f == C("fl64"))
        return 8;
    if (f == C("raw "))
        return 1;
    return bits >= 8 && bits <= 64 ? bits / 8 : 2;
}

bool IsPcm(uint32_t f)
{
    for (const char* c : {"sowt", "twos", "in24", "in32", "fl32", "fl64", "lpcm", "raw ", "NONE"})
        if (f == C(c))
            return true;
    return false;
}

void ReadSampleDescription(ByteReader& r, const Box& stsd, TrackModel& t)
{
    if (stsd.end - stsd.start > 1u << 20)
        return;
    t.stsd = ReadBytes(r, stsd.start, stsd.end - stsd.start);
    const uint64_t entry = stsd.body + 8;
    if (entry + 16 > stsd.end)
        return;
    const uint64_t entryEnd = std::min(stsd.end, entry + std::max<uint32_t>(r.be32(entry), 16));
    t.format = r.be32(entry + 4);
    Box b;
    if (t.kind == TrackKind::Video) {
        t.video = VideoFor(t.format);
        if (t.video == VideoCodec::H264 && SearchCode(r, entry + 8, entryEnd, C("avcC"), b))
            t.codecConfig = ReadBytes(r, b.body, b.end - b.body);
        else if (t.video == VideoCodec::Hevc && SearchCode(r, entry + 8, entryEnd, C("hvcC"), b))
            t.codecConfig = ReadBytes(r, b.body, b.end - b.body);
        else if (t.video == VideoCodec::Mpeg4 && SearchCode(r, entry + 8, entryEnd, C("esds"), b))
            t.codecConfig = ReadBytes(r, b.body, b.end - b.body);
        if ((t.video == VideoCodec::H264 || t.video == VideoCodec::Hevc) && t.codecConfig.isEmpty())
            t.video = VideoCodec::None;   // no parameter sets: the syntax can't be read
        t.twoFields = t.format == C("mjpa");
        if (SearchCode(r, entry + 8, entryEnd, C("fiel"), b) && r.u8(b.body) == 2)
            t.twoFields = true;
        return;
    }
    if (t.kind != TrackKind::Sound)
        return;
    const uint16_t version = r.be16(entry + 16);
    const uint32_t channels = r.be16(entry + 24), bits = r.be16(entry + 26);
    if (t.format == C("mp4a")) {
        if (SearchCode(r, entry + 8, entryEnd, C("esds"), b)) {
            const QByteArray esds = ReadBytes(r, b.body, b.end - b.body);
            t.codecConfig = AudioSpecificConfigFromEsds(reinterpret_cast<const uint8_t*>(esds.constData()),
                                                        size_t(esds.size()));
        }
        if (!t.codecConfig.isEmpty())
            t.sound = SoundCodec::Aac;
        return;
    }
    if (!IsPcm(t.format))
        return;
    uint32_t frameBytes = 0;
    if (version == 1)
        frameBytes = r.be32(entry + 44);          // bytes per frame
    else if (version == 2)
        frameBytes = r.be32(entry + 64);          // constant bytes per audio packet
    if (frameBytes == 0 || frameBytes > 1024)
        frameBytes = std::max<uint32_t>(1, channels) * PcmChannelBytes(t.format, bits);
    t.pcmFrameBytes = frameBytes;
    t.sound = SoundCodec::Pcm;
}

// The most common delta of a time-to-sample table, weighted by its counts.
uint32_t CommonDelta(ByteReader& r, const Box& stts)
{
    const uint64_t n = std::min<uint64_t>(r.be32(stts.body + 4), (stts.end - stts.body - 8) / 8);
    std::map<uint32_t, uint64_t> weight;
    for (uint64_t i = 0; i < std::min(n, kMaxEntries); ++i) {
        const uint64_t at = stts.body + 8 + i * 8;
        if (r.be32(at + 4))
            weight[r.be32(at + 4)] += r.be32(at);
    }
    uint32_t best = 0;
    uint64_t bestWeight = 0;
    for (const auto& [delta, w] : weight)
        if (w > bestWeight)
            best = delta, bestWeight = w;
    return best;
}

// The samples-per-chunk values of a sample-to-chunk table, the value that
// covers most chunks first (at most 16 values).
std::vector<uint32_t> ChunkHabits(ByteReader& r, const Box& stsc)
{
    const uint64_t n = std::min<uint64_t>({r.be32(stsc.body + 4), (stsc.end - stsc.body - 8) / 12, kMaxEntries});
    std::map<uint32_t, uint64_t> chunks;
    for (uint64_t i = 0; i < n; ++i) {
        const uint64_t at = stsc.body + 8 + i * 12;
        const uint32_t first = r.be32(at), count = r.be32(at + 4);
        const uint32_t next = i + 1 < n ? r.be32(at + 12) : first + 1;
        if (count)
            chunks[count] += next > first ? next - first : 1;
    }
    std::vector<std::pair<uint64_t, uint32_t>> byWeight;
    for (const auto& [count, weight] : chunks)
        byWeight.push_back({weight, count});
    std::sort(byWeight.begin(), byWeight.end(), [](auto a, auto b) { return a.first > b.first; });
    std::vector<uint32_t> habits;
    for (size_t i = 0; i < byWeight.size() && i < 16; ++i)
        habits.push_back(byWeight[i].second);
    return habits;
}

void ReadSampleTables(ByteReader& r, const Box& stbl, TrackModel& t)
{
    Box b;
    BoxWalk walk(r, stbl.body, stbl.end);
    uint64_t sizesAt = 0, sizesEnd = 0;
    uint32_t constantSize = 0;
    std::vector<uint64_t> offsets;
    while (walk.next(b)) {
        if (b.code == C("stsd")) {
            ReadSampleDescription(r, b, t);
        } else if (b.code == C("stts")) {
            t.sampleDelta = CommonDelta(r, b);
        } else if (b.code == C("stsz")) {
            constantSize = r.be32(b.body + 4);
            t.sampleCount = r.be32(b.body + 8);
            sizesAt = b.body + 12;
            sizesEnd = b.end;
        } else if (b.code == C("stsc")) {
            t.chunkHabits = ChunkHabits(r, b);
        } else if (b.code == C("stco") || b.code == C("co64")) {
            const uint64_t width = b.code == C("co64") ? 8 : 4;
            t.chunkCount = std::min<uint64_t>(r.be32(b.body + 4), (b.end - b.body - 8) / width);
            for (uint64_t i = 0; i < std::min<uint64_t>(t.chunkCount, 64); ++i) {
                const uint64_t at = b.body + 8 + i * width;
                offsets.push_back(width == 8 ? r.be64(at) : r.be32(at));
            }
        }
    }
    if (constantSize) {
        t.maxSampleSize = constantSize;
        if (t.sound == SoundCodec::Pcm && constantSize <= 1024)
            t.pcmFrameBytes = constantSize;   // what the table counts as one sample
    } else if (sizesAt) {
        const uint64_t n = std::min({t.sampleCount, (sizesEnd - sizesAt) / 4, kMaxEntries});
        for (uint64_t i = 0; i < n; ++i)
            t.maxSampleSize = std::max(t.maxSampleSize, r.be32(sizesAt + i * 4));
    }
    for (uint64_t o : offsets)
        if (o)
            t.firstChunkOffset = std::min(t.firstChunkOffset, o);
}

TrackModel ReadTrack(ByteReader& r, const Box& trak, bool quickTime)
{
    TrackModel t;
    Box b;
    if (FindBox(r, trak.body, trak.end, C("tkhd"), b)) {
        const bool v1 = r.u8(b.body) == 1;
        const uint64_t at = b.body + (v1 ? 88 : 76);
        t.width = r.be32(at);
        t.height = r.be32(at + 4);
    }
    if (FindBox(r, trak.body, trak.end, C("elst"), b) && r.be32(b.body + 4) >= 1) {
        const bool v1 = r.u8(b.body) == 1;
        const int64_t start = v1 ? int64_t(r.be64(b.body + 16)) : int32_t(r.be32(b.body + 12));
        t.editMediaTime = start > 0 ? start : 0;
    }
    Box mdia;
    if (!FindBox(r, trak.body, trak.end, C("mdia"), mdia))
        return t;
    if (FindBox(r, mdia.body, mdia.end, C("mdhd"), b)) {
        const bool v1 = r.u8(b.body) == 1;
        t.timeScale = r.be32(b.body + (v1 ? 20 : 12));
        t.mediaDuration = v1 ? r.be64(b.body + 24) : r.be32(b.body + 16);
        t.language = r.be16(b.body + (v1 ? 32 : 20));
    }
    if (FindBox(r, mdia.body, mdia.end, C("hdlr"), b)) {
        const uint32_t type = r.be32(b.body + 8);
        t.kind = type == C("vide") ? TrackKind::Video : type == C("soun") ? TrackKind::Sound : TrackKind::Other;
        t.handler = quickTime ? C("mhlr") : 0;
    }
    Box stbl;
    if (t.kind != TrackKind::Other && t.timeScale && FindBox(r, mdia.body, mdia.end, C("stbl"), stbl))
        ReadSampleTables(r, stbl, t);
    if (t.sampleDelta == 0 && t.kind == TrackKind::Video)
        t.sampleDelta = std::max<uint32_t>(1, t.timeScale / 25);
    if (t.sampleDelta == 0 && t.kind == TrackKind::Sound)
        t.sampleDelta = t.sound == SoundCodec::Aac ? 1024 : 1;
    return t;
}

// A top-level box other than mdat stands at pos: a known code whose size fits.
bool IsTopLevelBox(ByteReader& r, uint64_t pos)
{
    static const uint32_t codes[] = {C("ftyp"), C("free"), C("skip"), C("wide"), C("moov"), C("uuid"),
                                     C("pnot"), C("PICT"), C("junk"), C("meta"), C("mdat")};
    const uint32_t code = r.be32(pos + 4);
    if (std::find(std::begin(codes), std::end(codes), code) == std::end(codes))
        return false;
    uint64_t size = r.be32(pos);
    if (size == 1)
        size = r.be64(pos + 8);
    return size >= 8 && size <= r.size() - pos;
}

} // namespace

bool BoxWalk::next(Box& box)
{
    if (m_pos + 8 > m_to)
        return false;
    uint64_t size = m_r.be32(m_pos);
    uint64_t header = 8;
    if (size == 1) {
        size = m_r.be64(m_pos + 8);
        header = 16;
    } else if (size == 0) {
        size = m_to - m_pos;
    }
    if (size < header || size > m_to - m_pos)
        return false;
    box = {m_r.be32(m_pos + 4), m_pos, m_pos + header, m_pos + size};
    m_pos += size;
    return true;
}

bool FindBox(ByteReader& r, uint64_t from, uint64_t to, uint32_t code, Box& found)
{
    static const uint32_t containers[] = {C("trak"), C("mdia"), C("minf"), C("stbl"), C("edts"), C("dinf")};
    BoxWalk walk(r, from, to);
    Box b;
    int boxes = 0;
    while (walk.next(b) && ++boxes < 4096) {
        if (b.code == code) {
            found = b;
            return true;
        }
        if (std::find(std::begin(containers), std::end(containers), b.code) != std::end(containers)
            && FindBox(r, b.body, b.end, code, found))
            return true;
    }
    return false;
}

bool LocateMovie(ByteReader& r, uint64_t& body, uint64_t& end)
{
    BoxWalk walk(r, 0, r.size());
    Box b;
    int boxes = 0;
    while (walk.next(b) && ++boxes < 100000) {
        if (b.code == C("moov") && b.end - b.body <= kMaxMovie) {
            body = b.body;
            end = b.end;
            return true;
        }
    }
    // A file whose top-level walk breaks: the first "moov" whose size fits
    // and whose first child is a movie header or a track.
    const size_t block = std::min<size_t>(1u << 20, r.maxView() - 16);
    for (uint64_t pos = 0; pos < r.size(); pos += block) {
        const size_t n = size_t(std::min<uint64_t>(block, r.size() - pos));
        const uint8_t* v = r.view(pos, n + 16);
        for (size_t i = 4; i < n; ++i) {
            if (v[i] != 'm' || ByteReader::loadBe32(v + i) != C("moov"))
                continue;
            const uint64_t at = pos + i;
            const uint64_t size = ByteReader::loadBe32(v + i - 4);
            const uint32_t child = ByteReader::loadBe32(v + i + 8);
            if (size >= 16 && size <= r.size() - (at - 4) && size <= kMaxMovie
                && (child == C("mvhd") || child == C("trak") || child == C("prfl"))) {
                body = at + 4;
                end = at - 4 + size;
                return true;
            }
            v = r.view(pos, n + 16);
        }
    }
    return false;
}

MovieModel ReadMovie(ByteReader& r, uint64_t body, uint64_t end)
{
    MovieModel m;
    if (r.is4cc(4, "ftyp")) {
        const uint32_t size = r.be32(0);
        if (size >= 8 && size <= 256)
            m.ftyp = ReadBytes(r, 0, size);
    }
    const bool quickTime = m.ftyp.size() < 12 || m.ftyp.mid(8, 4) == "qt  ";
    BoxWalk walk(r, body, end);
    Box b;
    int tracks = 0;
    while (walk.next(b) && tracks < 64) {
        if (b.code != C("trak"))
            continue;
        ++tracks;
        m.tracks.push_back(ReadTrack(r, b, quickTime));
        const TrackModel& t = m.tracks.back();
        const int index = int(m.tracks.size()) - 1;
        if (m.videoTrack < 0 && t.video != VideoCodec::None)
            m.videoTrack = index;
        if (m.soundTrack < 0 && t.sound != SoundCodec::None)
            m.soundTrack = index;
    }
    if (m.videoTrack >= 0 && m.soundTrack >= 0)
        m.soundFirst = m.tracks[size_t(m.soundTrack)].firstChunkOffset < m.tracks[size_t(m.videoTrack)].firstChunkOffset;
    return m;
}

bool LearnMovie(ByteReader& r, MovieModel& model)
{
    uint64_t body = 0, end = 0;
    if (!LocateMovie(r, body, end))
        return false;
    model = ReadMovie(r, body, end);
    return model.videoTrack >= 0 || model.soundTrack >= 0;
}

MediaRange LocateMediaData(ByteReader& r)
{
    const uint64_t size = r.size();
    MediaRange range;
    uint64_t pos = 0;
    int boxes = 0;
    while (pos + 8 <= size && ++boxes < 100000) {
        uint64_t boxSize = r.be32(pos);
        const uint32_t code = r.be32(pos + 4);
        uint64_t header = 8;
        if (boxSize == 1) {
            boxSize = r.be64(pos + 8);
            header = 16;
        }
        if (code == C("mdat")) {
            range.begin = pos + header;
            range.end = boxSize >= header && boxSize <= size - pos ? pos + boxSize : size;
            // A size word that was never patched (too short) leaves media
            // behind the box: unless a box follows, the data runs to the end.
            if (range.end < size && !IsTopLevelBox(r, range.end))
                range.end = size;
            return range;
        }
        if (!IsTopLevelBox(r, pos))
            break;
        pos += boxSize;
    }
    // No mdat header where the walk reached: the media data starts there (or
    // behind a readable ftyp) and runs to the end.
    range.begin = pos;
    range.end = size;
    return range;
}

} // namespace syntax
