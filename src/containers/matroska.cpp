// Matroska/WebM repair: keeps Info, Tracks and every Cluster that stands where its
// size says, and writes them behind a fresh EBML header, SeekHead and Void.
#include "containers/matroska.h"
#include "containers/audio_frames.h"
#include "core/byte_reader.h"
#include "core/file_writer.h"
#include "core/log_cipher.h"
#include "core/repair_globals.h"
#include "core/route.h"

#include <QFileInfo>
#include <cstring>
#include <vector>

std::pair<int, uint64_t> ReadEbmlSize(ByteReader& in, uint64_t pos)
{
    if (in.be32(pos) == 0x01000000u)
        return {8, in.be32(pos + 4)};
    const uint8_t b = in.u8(pos);
    if (b == 0)
        return {8, 0};
    int bits = 8;
    while (!(b & (1u << (bits - 1))))
        --bits;
    const int n = 9 - bits;
    uint64_t v = b & ~(1u << (bits - 1));
    // Fields of 5 to 8 bytes are read in full, as the format defines them; a size that
    // then exceeds the file is refused by the caller's test of what follows the element.
    for (int i = 1; i < n; ++i)
        v = (v << 8) | in.u8(pos + uint64_t(i));
    return {n, v};
}

namespace {
constexpr uint32_t kSegment = 0x18538067u, kInfo = 0x1549A966u, kTracks = 0x1654AE6Bu,
                   kCluster = 0x1F43B675u, kCues = 0x1C53BB6Bu, kTags = 0x1254C367u;

// End of an element at p with size (n, v), or UINT64_MAX when it can't lie in a file.
uint64_t ElementEnd(uint64_t p, int n, uint64_t v, uint64_t fileSize)
{
    if (v > fileSize)
        return UINT64_MAX;
    return p + 4 + uint64_t(n) + v;
}

// One element inside a master: its ID, where its data starts and where it ends.
struct Child {
    uint32_t id = 0;
    uint64_t data = 0, end = 0;
};

// The element at pos, which must end by limit; false for an ID or size field
// that isn't one, an unknown size, or data past limit.
bool ReadChild(ByteReader& in, uint64_t pos, uint64_t limit, Child& c)
{
    const uint8_t* h = in.peek(pos, 12);
    int idLength = 1;
    while (idLength <= 4 && !(h[0] & (0x80u >> (idLength - 1))))
        ++idLength;
    if (idLength > 4)
        return false;
    c.id = 0;
    for (int i = 0; i < idLength; ++i)
        c.id = c.id << 8 | h[i];
    if (h[idLength] == 0)
        return false;
    const auto [sizeLength, v] = ReadEbmlSize(in, pos + uint64_t(idLength));
    // A size of all ones is one the writer left unknown.
    const bool unknown = v == (uint64_t(1) << (7 * sizeLength)) - 1;
    c.data = pos + uint64_t(idLength + sizeLength);
    if (unknown || c.data > limit || v > limit - c.data)
        return false;
    c.end = c.data + v;
    return true;
}

uint64_t ReadUnsigned(ByteReader& in, const Child& c)
{
    uint64_t v = 0;
    for (uint64_t p = c.data; p < c.end && p < c.data + 8; ++p)
        v = v << 8 | in.u8(p);
    return v;
}

// What the output's blocks come to as a muxer reads them back: the packets
// of the first video track from its first key frame on, and the sum of the
// first sound track's packet durations in timecode ticks, each rounded to a
// tick as the reader rounds it. A sound codec whose frame length the blocks
// don't tell, or a cluster whose children don't parse, leaves the figures
// untold (the output is then read back).
class BlockFigures {
public:
    // Learns the tracks from the Tracks element at [pos, end) and the tick
    // length (0: unknown).
    void learnTracks(ByteReader& in, uint64_t pos, uint64_t end, uint64_t timecodeScale);
    // Adds the blocks of the Cluster element at [pos, end).
    void addCluster(ByteReader& in, uint64_t pos, uint64_t end);
    bool known() const { return m_known; }
    uint64_t videoFrames() const { return m_videoFrames; }
    double soundSeconds() const { return double(m_soundTicks) * double(m_scale) / 1e9; }

private:
    enum class Sound { None, Fixed, Opus, MpegAudio };
    // A SimpleBlock (simple) or the Block of a BlockGroup, with the group's
    // ReferenceBlock (referenced) and BlockDuration.
    void addBlock(ByteReader& in, uint64_t pos, uint64_t end, bool simple, bool referenced, bool hasDuration,
                  uint64_t duration);
    uint64_t ticks(uint64_t samples, uint64_t rate) const
    {
        const uint64_t den = rate * m_scale;
        return den ? (samples * 1000000000u + den / 2) / den : 0;
    }

    bool m_known = true;
    uint64_t m_scale = 1000000;   // nanoseconds per tick
    uint64_t m_video = 0, m_audio = 0;   // track numbers; 0 for none
    Sound m_sound = Sound::None;
    uint64_t m_samplesPerFrame = 0, m_rate = 0;
    bool m_keySeen = false;
    uint64_t m_videoFrames = 0, m_soundTicks = 0;
};

void BlockFigures::learnTracks(ByteReader& in, uint64_t pos, uint64_t end, uint64_t timecodeScale)
{
    m_scale = timecodeScale;
    Child tracks, entry;
    m_known = m_known && timecodeScale != 0 && ReadChild(in, pos, end, tracks);
    for (uint64_t p = tracks.data; m_known && p < tracks.end; p = entry.end) {
        if (!ReadChild(in, p, tracks.end, entry)) {
            m_known = false;
            return;
        }
        if (entry.id != 0xAE)
            continue;
        uint64_t number = 0, type = 0, defaultDuration = 0;
        double rate = 0;
        QByteArray codec;
        Child c;
        for (uint64_t q = entry.data; q < entry.end; q = c.end) {
            if (!ReadChild(in, q, entry.end, c)) {
                m_known = false;
                return;
            }
            if (c.id == 0xD7) {
                number = ReadUnsigned(in, c);
            } else if (c.id == 0x83) {
                type = ReadUnsigned(in, c);
            } else if (c.id == 0x86) {
                codec.resize(int(std::min<uint64_t>(c.end - c.data, 64)));
                in.read(c.data, codec.data(), size_t(codec.size()));
            } else if (c.id == 0x23E383) {
                defaultDuration = ReadUnsigned(in, c);
            } else if (c.id == 0xE1) {
                Child a;
                for (uint64_t r = c.data; r < c.end && ReadChild(in, r, c.end, a); r = a.end) {
                    if (a.id != 0xB5)
                        continue;
                    if (a.end - a.data == 4) {
                        const uint32_t bits = in.be32(a.data);
                        float f;
                        std::memcpy(&f, &bits, 4);
                        rate = f;
                    } else if (a.end - a.data == 8) {
                        const uint64_t bits = in.be64(a.data);
                        std::memcpy(&rate, &bits, 8);
                    }
                }
            }
        }
        if (type == 1 && m_video == 0) {
            m_video = number;
        } else if (type == 2 && m_audio == 0) {
            m_audio = number;
            m_rate = rate > 0 && rate < 1e7 ? uint64_t(rate + 0.5) : 0;
            // A default duration would time the packets instead of the
            // codec's frame length; such tracks are read back.
            if (codec.startsWith("A_AAC"))
                m_sound = Sound::Fixed, m_samplesPerFrame = 1024;
            else if (codec == "A_AC3")
                m_sound = Sound::Fixed, m_samplesPerFrame = 1536;
            else if (codec == "A_OPUS")
                m_sound = Sound::Opus, m_rate = 48000;
            else if (codec.startsWith("A_MPEG/L"))
                m_sound = Sound::MpegAudio;
            else
                m_known = false;
            if (defaultDuration || m_rate == 0 || number == 0)
                m_known = false;
        }
    }
}

void BlockFigures::addCluster(ByteReader& in, uint64_t pos, uint64_t end)
{
    Child cluster, c;
    m_known = m_known && ReadChild(in, pos, end, cluster);
    for (uint64_t p = cluster.data; m_known && p < cluster.end; p = c.end) {
        if (!ReadChild(in, p, cluster.end, c)) {
            m_known = false;
            return;
        }
        if (c.id == 0xA3) {
            addBlock(in, c.data, c.end, true, false, false, 0);
        } else if (c.id == 0xA0) {
            uint64_t block = 0, blockEnd = 0, duration = 0;
            bool hasDuration = false, referenced = false;
            Child g;
            for (uint64_t q = c.data; q < c.end; q = g.end) {
                if (!ReadChild(in, q, c.end, g)) {
                    m_known = false;
                    return;
                }
                if (g.id == 0xA1)
                    block = g.data, blockEnd = g.end;
                else if (g.id == 0x9B)
                    hasDuration = true, duration = ReadUnsigned(in, g);
                else if (g.id == 0xFB)
                    referenced = true;
            }
            if (blockEnd)
                addBlock(in, block, blockEnd, false, referenced, hasDuration, duration);
        }
    }
}

// Frames of 48 kHz samples that an Opus packet's first byte names, or 0.
uint64_t OpusSamples(const uint8_t* p, uint64_t length)
{
    if (length == 0)
        return 0;
    const unsigned config = p[0] >> 3;
    static const uint16_t silk[4] = {480, 960, 1920, 2880}, celt[4] = {120, 240, 480, 960};
    const uint64_t frame = config < 12 ? silk[config & 3] : config < 16 ? (config & 1 ? 960 : 480) : celt[config & 3];
    const unsigned code = p[0] & 3;
    if (code == 0)
        return frame;
    if (code < 3)
        return 2 * frame;
    return length < 2 ? 0 : frame * (p[1] & 0x3F);
}

void BlockFigures::addBlock(ByteReader& in, uint64_t pos, uint64_t end, bool simple, bool referenced,
                            bool hasDuration, uint64_t duration)
{
    const uint8_t* h = in.peek(pos, 16);
    int n = 1;
    while (n <= 4 && !(h[0] & (0x80u >> (n - 1))))
        ++n;
    if (n > 4 || end - pos < uint64_t(n) + 3) {
        m_known = false;
        return;
    }
    uint64_t track = h[0] & (0xFFu >> n);
    for (int i = 1; i < n; ++i)
        track = track << 8 | h[i];
    const uint8_t flags = h[n + 2];
    const bool laced = flags & 0x06;
    const uint64_t headerEnd = pos + uint64_t(n) + 3;
    if (laced && headerEnd >= end) {
        m_known = false;
        return;
    }
    const uint64_t frames = laced ? uint64_t(h[n + 3]) + 1 : 1;
    if (track == m_video) {
        // The read-back copies a video stream from its first key frame on.
        if (simple ? (flags & 0x80) : !referenced)
            m_keySeen = true;
        if (m_keySeen)
            m_videoFrames += frames;
        return;
    }
    if (track != m_audio)
        return;
    if (hasDuration || m_sound == Sound::Fixed) {
        // A duration shared by laced frames is split with a remainder the
        // sum can't follow.
        if (hasDuration && laced)
            m_known = false;
        m_soundTicks += hasDuration ? duration : frames * ticks(m_samplesPerFrame, m_rate);
        return;
    }
    AudioFrame mpeg;
    const uint64_t samples = laced ? 0
        : m_sound == Sound::Opus ? OpusSamples(h + n + 3, end - headerEnd)
        : end - headerEnd >= 4 && MpegAudioFrameAt(h + n + 3, mpeg) ? mpeg.samples
                                                                    : 0;
    if (samples == 0)
        m_known = false;
    m_soundTicks += ticks(samples, m_rate);
}

class MatroskaRoute : public Route {
public:
    Verdict repair(RepairJob& job, Reporter& report) override;

private:
    // Logs and keeps every Cluster that stands where its size says, and the
    // Duration that their Timecodes give.
    void scanClusters(RepairJob& job, Reporter& report);
    bool write(RepairJob& job, ByteReader& headerStream);

    // Where Info (around its Duration) and Tracks lie in the header stream.
    uint64_t m_infoHeadPos = 0, m_infoHeadSize = 0, m_infoTailPos = 0, m_infoTailSize = 0;
    uint64_t m_tracksPos = 0, m_tracksSize = 0;
    uint64_t m_segmentSize = 0;
    uint32_t m_duration = 0;                                // Timecode units
    std::vector<std::pair<uint64_t, uint64_t>> m_clusters;  // position, total length
    uint64_t m_timecodeScale = 1000000;   // 0 when Info's children don't parse
    BlockFigures m_figures;
};

// Info's TimecodeScale, 1000000 when it has none; 0 when its children don't parse.
uint64_t TimecodeScale(ByteReader& in, uint64_t pos, uint64_t end)
{
    uint64_t scale = 1000000;
    Child c;
    for (uint64_t p = pos; p < end; p = c.end) {
        if (!ReadChild(in, p, end, c))
            return 0;
        if (c.id == 0x2AD7B1)
            scale = ReadUnsigned(in, c);
    }
    return scale;
}

// Info and Tracks come from the sample when one is given, else from the file;
// the Clusters always come from the file.
Verdict MatroskaRoute::repair(RepairJob& job, Reporter& report)
{
    report.showFileProgress(job.fileName);
    ByteReader* sample = job.sample;
    if (sample) {
        report.showFileProgress(QFileInfo(job.referencePath).fileName());
        report.setRange(sample->size() < 0x300000 ? 5000 : 50000);
    }
    if (!job.input)
        return Verdict::failed().viaAviSignal();
    ByteReader& headerStream = sample ? *sample : *job.input;
    bool infoFound = false, tracksFound = false;
    {
        ByteReader& in = headerStream;
        const uint64_t size = in.size();
        uint64_t budget = 100000;
        uint64_t width = 0;
        uint64_t p = 0;
        while (budget != 0 && budget <= size && !(infoFound && tracksFound) && !job.stopped()) {
            const uint32_t id = in.be32(p);
            if (id == kInfo || id == kTracks) {
                const bool refused = m_tracksPos >= 3 && in.be24(m_tracksPos - 3) == 0x53AB84u;
                if (!refused) {
                    const auto [n, v] = ReadEbmlSize(in, p + 4);
                    const uint64_t e = ElementEnd(p, n, v, size);
                    const uint32_t next = e == UINT64_MAX ? 0xFFFFFFFFu : in.be32(e);
                    const bool nextOk = e != UINT64_MAX && e <= size &&
                        (next == kSegment || next == kTracks || next == kCluster || next == kInfo ||
                         next == 0 || (next >> 24) == 0xEC ||
                         (id == kTracks && (next == kCues || next == kTags)));
                    if (nextOk && id == kInfo) {
                        const uint64_t start = p + 4 + uint64_t(n);
                        m_timecodeScale = TimecodeScale(in, start, e);
                        for (uint64_t h = start; h + 1 < e && !job.stopped(); ++h) {
                            if (in.u8(h) != 0x44 || in.u8(h + 1) != 0x89)
                                continue;
                            infoFound = true;
                            const uint8_t w = in.u8(h + 2);
                            if (w == 0x84) width = 4;
                            else if (w == 0x88) width = 8;
                            // A CRC-32 leading the payload would no longer match once the
                            // Duration is rewritten, so the head starts behind it.
                            const uint64_t headStart =
                                (in.be16(start) == 0xBF84u && start + 6 <= h) ? start + 6 : start;
                            m_infoHeadPos = headStart;
                            m_infoHeadSize = h - headStart;
                            m_infoTailPos = h + 3 + width;
                            m_infoTailSize = e > m_infoTailPos ? e - m_infoTailPos : 0;
                            m_segmentSize += m_infoHeadSize + m_infoTailSize + 19;
                            const uint64_t d = h - p;
                            budget = budget > d ? budget - d : 0;
                            p = h;
                            break;
                        }
                    } else if (nextOk && id == kTracks) {
                        tracksFound = true;
                        m_tracksPos = p;
                        m_tracksSize = 4 + uint64_t(n) + v;
                        m_segmentSize += m_tracksSize;
                    }
                }
            }
            ++p;
            if (budget) --budget;
        }
    }
    if (!infoFound || !tracksFound)
        return Verdict::failedUnlessStopped(job).viaAviSignal();
    m_figures.learnTracks(headerStream, m_tracksPos, m_tracksPos + m_tracksSize, m_timecodeScale);
    scanClusters(job, report);
    if (job.stopped())
        return Verdict::stopped();
    const bool written = write(job, headerStream);
    if (job.stopped())
        return Verdict::stopped();
    if (!written)
        return Verdict::failed().viaAviSignal();
    const Verdict v = Verdict::repaired(job.outputPath()).viaAviSignal();
    if (!m_figures.known())
        return v;
    const uint64_t outSize = uint64_t(std::max<qint64>(QFileInfo(job.outputPath()).size(), 0));
    return v.withFigures(m_figures.videoFrames(), m_figures.soundSeconds(), job.input->size(), outSize);
}

void MatroskaRoute::scanClusters(RepairJob& job, Reporter& report)
{
    ByteReader& in = *job.input;
    const uint64_t size = in.size();
    report.setRange(ulong(size));
    LogCipher cipher;
    uint32_t count = 0, firstTc = 0, lastTc = 0;
    uint64_t done = 0;
    constexpr uint64_t kBlock = 1u << 20;
    uint64_t pos = 0;
    bool behindCluster = false;
    while (pos + 4 <= size && !job.stopped()) {
        // Behind a cluster the next one starts within a few bytes: a short
        // look there reads a page instead of a block of the cluster after it.
        const uint64_t n = std::min(behindCluster ? 16 : kBlock, size - pos);
        const uint8_t* v = behindCluster ? in.peek(pos, size_t(n) + 3) : in.view(pos, size_t(n) + 3);
        behindCluster = false;
        uint64_t hit = UINT64_MAX;
        for (uint64_t i = 0; i < n; ++i) {
            if (v[i] == 0x1F && v[i + 1] == 0x43 && v[i + 2] == 0xB6 && v[i + 3] == 0x75) {
                hit = pos + i;
                break;
            }
        }
        if (hit == UINT64_MAX) {
            pos += n;
            continue;
        }
        pos = hit + 1;
        const uint32_t seek = in.be24(hit + 4);
        if (seek == 0x53AC82u || seek == 0x53AC83u)
            continue;
        const auto [sn, sv] = ReadEbmlSize(in, hit + 4);
        const uint64_t e = ElementEnd(hit, sn, sv, size);
        if (e == UINT64_MAX || e > size)
            continue;
        const uint32_t next = in.be32(e);
        if ((next >> 24) != 0xEC && next != kCluster && next != kCues)
            continue;
        // The Timecode must be the first child; a CRC-32 element (BF 84 and four bytes),
        // which muxers that checksum their masters put first, may stand ahead of it.
        uint64_t child = hit + 4 + uint64_t(sn);
        if (in.be16(child) == 0xBF84u)
            child += 6;
        if (in.u8(child) != 0xE7)
            continue;
        const auto [tn, tw] = ReadEbmlSize(in, child + 1);
        const uint64_t tcPos = child + 1 + uint64_t(tn);
        // A Timecode whose data runs past the Cluster (or the file) has no value:
        // such a Cluster is refused, like one without a Timecode.
        if (tw == 0 || tw > 4 || tcPos + tw > e)
            continue;
        uint32_t tc = 0;
        for (uint64_t i = 0; i < tw; ++i)
            tc = (tc << 8) | in.u8(tcPos + i);
        if (count == 0) firstTc = tc;
        lastTc = tc;
        const uint64_t total = 4 + uint64_t(sn) + sv;
        job.writeLogLine(cipher, QStringLiteral("%1 %2").arg(hit).arg(total));
        m_clusters.emplace_back(hit, total);
        m_segmentSize += total;
        report.setValue(ulong(done));
        done += total;
        ++count;
        pos = hit + sv + 1;
        behindCluster = true;
    }
    m_duration = uint32_t(10u * count - firstTc + lastTc);
}

// Bytes of the Void element that moves what follows from outPos to the place
// within a page it has at inPos (0 when it stands there already). A Void is
// at least two bytes; one with a two-byte size takes up to 4099.
uint64_t AlignmentVoid(uint64_t inPos, uint64_t outPos)
{
    uint64_t pad = (inPos - outPos) % ByteReader::kAlign;
    if (pad == 1)
        pad += ByteReader::kAlign;
    return pad;
}

void WriteVoid(FileWriter& out, uint64_t bytes)
{
    if (bytes == 0)
        return;
    out.u8(0xEC);
    if (bytes <= 128) {
        out.u8(uint8_t(0x80 | (bytes - 2)));
        out.zeros(bytes - 2);
    } else {
        out.be16(uint16_t(0x4000 | (bytes - 3)));
        out.zeros(bytes - 3);
    }
}

bool MatroskaRoute::write(RepairJob& job, ByteReader& headerStream)
{
    m_segmentSize += 229;
    // Behind Tracks, a Void puts the first Cluster at the same place within a
    // page as in the input, so that runs of clusters are copied by the kernel
    // instead of through memory. Only a large output pays the padding.
    uint64_t clusterBytes = 0;
    for (const auto& c : m_clusters)
        clusterBytes += c.second;
    const uint64_t headerEnd = 43 + 12 + 229 + 12 + m_infoHeadSize + 7 + m_infoTailSize + m_tracksSize;
    const uint64_t pad = clusterBytes >= (1u << 20) ? AlignmentVoid(m_clusters.front().first, headerEnd) : 0;
    m_segmentSize += pad;
    const QString path = job.outputPath();
    job.outputs->append(path);
    FileWriter out;
    if (!out.open(path))
        return false;
    static const uint8_t ebml[43] = {0x1A, 0x45, 0xDF, 0xA3, 0x01, 0, 0, 0, 0, 0, 0, 0x1F,
        0x42, 0x86, 0x81, 0x01, 0x42, 0xF7, 0x81, 0x01, 0x42, 0xF2, 0x81, 0x04, 0x42, 0xF3, 0x81, 0x08,
        0x42, 0x82, 0x84, 'w', 'e', 'b', 'm', 0x42, 0x87, 0x81, 0x02, 0x42, 0x85, 0x81, 0x02};
    out.write(ebml, sizeof ebml);
    out.be32(kSegment);
    // An eight-byte size field: 0x01, then the size in seven bytes.
    out.be32(0x01000000u | uint32_t(m_segmentSize >> 32 & 0xFFFFFF));
    out.be32(uint32_t(m_segmentSize));
    static const uint8_t seekHead[33] = {0x11, 0x4D, 0x9B, 0x74, 0x40, 0x1D, 0x4D, 0xBB, 0x8B,
        0x53, 0xAB, 0x84, 0x15, 0x49, 0xA9, 0x66, 0x53, 0xAC, 0x81, 0xE5, 0x4D, 0xBB, 0x8C,
        0x53, 0xAB, 0x84, 0x16, 0x54, 0xAE, 0x6B, 0x53, 0xAC, 0x82};
    out.write(seekHead, sizeof seekHead);
    const uint16_t tracksAt = uint16_t(m_infoHeadSize + m_infoTailSize + 248);
    out.u8(uint8_t(tracksAt >> 8));
    out.u8(uint8_t(tracksAt));
    uint8_t voidEl[194] = {0xEC, 0x01, 0, 0, 0, 0, 0, 0, 0xB9};
    out.write(voidEl, sizeof voidEl);
    out.be32(kInfo);
    out.be32(0x01000000u);
    out.be32(uint32_t(m_infoHeadSize + m_infoTailSize + 7));
    out.copyFrom(headerStream, m_infoHeadPos, m_infoHeadSize);
    float d = float(m_duration);
    uint32_t bits;
    std::memcpy(&bits, &d, 4);
    out.u8(0x44); out.u8(0x89); out.u8(0x84);
    out.be32(bits);
    if (m_infoTailSize)
        out.copyFrom(headerStream, m_infoTailPos, m_infoTailSize);
    out.copyFrom(headerStream, m_tracksPos, m_tracksSize);
    WriteVoid(out, pad);
    job.log->close();
    // The cluster list is kept in memory as it was logged; copying from it spares
    // a decipher pass over logFile.txt. Clusters that follow each other in the
    // input are copied as one run.
    uint64_t runStart = 0, runEnd = 0;
    for (const auto& c : m_clusters) {
        if (job.stopped())
            break;
        m_figures.addCluster(*job.input, c.first, c.first + c.second);
        if (c.first != runEnd) {
            out.copyFrom(*job.input, runStart, runEnd - runStart);
            runStart = c.first;
        }
        runEnd = c.first + c.second;
    }
    if (!job.stopped())
        out.copyFrom(*job.input, runStart, runEnd - runStart);
    return out.close();
}

} // namespace

std::unique_ptr<Route> MakeMatroskaRoute() { return std::make_unique<MatroskaRoute>(); }
