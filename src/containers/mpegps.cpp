// MPEG-1/2 repair: puts back the system header and the sequence header ahead of
// the first group of pictures and copies the rest of the stream unchanged.
#include "containers/audio_frames.h"
#include "core/byte_reader.h"
#include "core/code_search.h"
#include "core/file_writer.h"
#include "core/repair_globals.h"
#include "core/route.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <vector>

namespace {

// 93 bytes written behind a sequence start code and the picture size of a bare
// video stream: rate and aspect, a zero byte, a user data start code and its text.
const uint8_t kMpegHeaderBlock[93] = {
    0x15, 0xFF, 0xFF, 0xE0, 0x00, 0x00, 0x00, 0x01, 0xB2,
    'M', 'P', 'E', 'G', ' ', 's', 't', 'r', 'e', 'a', 'm', ' ', 'e', 'n', 'c', 'o', 'd', 'e', 'd', ' ',
    'b', 'y', ' ', 'U', 'C', 'B', ' ', 'E', 'n', 'c', 'o', 'd', 'e', 'r', ' ', '(', 'm', 'p', 'e', 'g',
    '_', 'e', 'n', 'c', 'o', 'd', 'e', ')', ' ', 'v', '1', '.', '5', 'b', ' ', 'o', 'n', ' ', 'T', 'u',
    'e', ' ', 'O', 'c', 't', ' ', ' ', '9', ' ', '1', '2', ':', '2', '3', ':', '3', '1', ' ', '2', '0',
    '0', '1', '\n', '.'};

constexpr uint32_t kPack = 0x000001BAu, kSystem = 0x000001BBu, kSequence = 0x000001B3u,
                   kGop = 0x000001B8u, kUser = 0x000001B2u, kExtension = 0x000001B5u;
constexpr uint64_t kSequenceRunMax = 256;
constexpr size_t kFigureWindow = 1u << 20;

// The route's searches end with its job's stop request.
int64_t FindCode(ByteReader& in, uint64_t from, uint64_t limit, std::initializer_list<uint32_t> codes,
                 const RepairJob& job)
{
    return FindAnyCode(in, from, limit, codes, job.stop);
}

// Copies length bytes at start of from to the end of to, a block at a time,
// so that a stop is seen between blocks.
void CopyRange(ByteReader& from, FileWriter& to, uint64_t length, uint64_t start, const RepairJob& job)
{
    constexpr uint64_t kBlock = 1u << 20;
    for (uint64_t done = 0; done < length && !job.stopped();) {
        const uint64_t n = std::min(kBlock, length - done);
        to.copyFrom(from, start + done, n);
        done += n;
    }
}

// Bytes of the pack header at k. An MPEG-1 pack header ('0010' in the top bits of
// byte 4) is 12 bytes; an MPEG-2 one ('01') is 14 plus up to 7 stuffing bytes. Copying
// only 12 bytes of an MPEG-2 pack would cut its SCR extension and mux rate apart.
uint64_t PackHeaderLength(ByteReader& in, uint64_t k)
{
    if ((in.u8(k + 4) & 0xC0) == 0x40)
        return 14 + (in.u8(k + 13) & 7);
    return 12;
}

// Length of the extension units (00 00 01 B5 ...) that stand at pos, each running to the
// next start code prefix, within at most room bytes. An MPEG-2 sequence header must be
// followed by its sequence extension, or decoders fall back to MPEG-1 and fail the slices.
uint64_t ExtensionRun(ByteReader& in, uint64_t pos, uint64_t room)
{
    uint64_t len = 0;
    while (in.be32(pos + len) == kExtension) {
        uint64_t next = len + 4;
        while (next + 3 <= room && in.be24(pos + next) != 1)
            ++next;
        if (next + 3 > room)
            break;
        len = next;
    }
    return len;
}

// Start of the old sequence header ahead of the group of pictures at g: walking back from g
// over extension and user data units only, the sequence start code met. g when there is none
// within 400 bytes (or behind from); then the old header, if any, stays in the copied part.
uint64_t OldSequenceStart(ByteReader& in, uint64_t from, uint64_t g)
{
    const uint64_t floor = g > from + 400 ? g - 400 : from;
    uint64_t pos = g;
    while (pos > floor) {
        uint64_t q = pos - 1;
        while (q > floor && in.be24(q) != 1)
            --q;
        if (in.be24(q) != 1 || q + 4 > pos)
            return g;
        const uint8_t code = in.u8(q + 3);
        if (code == 0xB3)
            return q;
        if (code != 0xB5 && code != 0xB2)
            return g;
        pos = q;
    }
    return g;
}

// Position of the length field of the packet that holds g, found by walking the pack and
// packet chain from pos by their own lengths; -1 when the chain breaks before g.
int64_t PacketLengthField(ByteReader& in, uint64_t pos, uint64_t g, const RepairJob& job)
{
    while (pos < g && !job.stopped()) {
        if (in.be24(pos) != 1)
            return -1;
        const uint8_t code = in.u8(pos + 3);
        if (code == 0xBA) {
            pos += PackHeaderLength(in, pos);
        } else if (code >= 0xBB) {
            const uint64_t end = pos + 6 + in.be16(pos + 4);
            if (g < end)
                return int64_t(pos + 4);
            pos = end;
        } else {
            return -1;
        }
    }
    return -1;
}
// What a muxer's stream copy reads back from the output: the pictures of the
// first video stream, from its first I picture on, and the seconds of the
// frames of the first sound stream, each rounded to a tick of 90 kHz. The
// video is searched for start codes where it lies, with the few bytes behind
// each packet's payload kept to meet the next one; the sound, a small share,
// is gathered and walked frame by frame. What the walk can't follow (a break
// in the chain of packets, field pictures, sound other than MPEG audio or
// AC-3, a frame cut off) leaves the figures untold.
class StreamFigures {
public:
    // Walks the packs and packets of a program stream.
    void walkProgramStream(ByteReader& in, const RepairJob& job);
    // Takes the whole of in as one video stream.
    void walkVideoStream(ByteReader& in, const RepairJob& job);
    bool known() const { return m_known && m_sequenceSeen; }
    uint64_t videoFrames() const { return m_videoFrames; }
    double soundSeconds() const { return double(m_soundTicks) / 90000; }

private:
    enum class Sound { Unset, Mpeg, Ac3 };
    // Bytes a start code is read with (00 00 01, the code, three more), and
    // those of the longest sound header read.
    static constexpr size_t kCodeBytes = 7, kHeaderBytes = 8, kStage = 1u << 19;
    void addVideo(const uint8_t* p, size_t n);
    // The codes that start in the first starts bytes at b (which must hold
    // kCodeBytes - 1 more).
    void scanCodes(const uint8_t* b, size_t starts);
    void finishVideo();
    void addSound(const uint8_t* p, size_t n);
    void walkSound(bool last);

    bool m_known = true, m_sequenceSeen = false, m_keySeen = false;
    int m_videoId = -1, m_soundId = -1;   // stream id, and for private stream 1 the substream id in the low byte
    Sound m_sound = Sound::Unset;
    // The video bytes not yet searched as the start of a code: the last few
    // of the payloads so far.
    uint8_t m_carry[64 + kCodeBytes] = {};
    size_t m_carryLength = 0;
    std::vector<uint8_t> m_soundBytes;
    uint64_t m_soundSkip = 0;   // bytes of a frame still to come in the next payload
    uint64_t m_videoFrames = 0, m_soundTicks = 0;
};

void StreamFigures::scanCodes(const uint8_t* b, size_t starts)
{
    for (size_t at = NextStartCode(b, 0, starts); at < starts; at = NextStartCode(b, at + 3, starts)) {
        const uint8_t* c = b + at;
        if (c[3] == 0x00) {
            // A picture: a stream copy starts at the first I picture.
            if (((c[5] >> 3) & 7) == 1)
                m_keySeen = true;
            if (m_keySeen)
                ++m_videoFrames;
        } else if (c[3] == 0xB3) {
            m_sequenceSeen = true;
        } else if (c[3] == 0xB5 && (c[4] >> 4) == 8 && (c[6] & 3) != 3) {
            m_known = false;   // a field picture: two make one packet
        }
    }
}

void StreamFigures::addVideo(const uint8_t* p, size_t n)
{
    const size_t keep = kCodeBytes - 1;
    if (m_carryLength + n < sizeof m_carry) {
        // A short payload joins the carried bytes; they are searched once
        // they hold more than the last few.
        std::memcpy(m_carry + m_carryLength, p, n);
        m_carryLength += n;
        if (m_carryLength > 64) {
            scanCodes(m_carry, m_carryLength - keep);
            std::memmove(m_carry, m_carry + m_carryLength - keep, keep);
            m_carryLength = keep;
        }
        return;
    }
    // The carried bytes, with the head of this payload behind them, then the
    // payload in place; its last few are carried on.
    uint8_t join[sizeof m_carry + kCodeBytes];
    std::memcpy(join, m_carry, m_carryLength);
    std::memcpy(join + m_carryLength, p, keep);
    scanCodes(join, m_carryLength);
    scanCodes(p, n - keep);
    std::memcpy(m_carry, p + n - keep, keep);
    m_carryLength = keep;
}

void StreamFigures::finishVideo()
{
    std::memset(m_carry + m_carryLength, 0, kCodeBytes);
    scanCodes(m_carry, m_carryLength);
    m_carryLength = 0;
}

void StreamFigures::addSound(const uint8_t* p, size_t n)
{
    const size_t skip = size_t(std::min<uint64_t>(m_soundSkip, n));
    m_soundSkip -= skip;
    m_soundBytes.insert(m_soundBytes.end(), p + skip, p + n);
    if (m_soundBytes.size() >= kStage)
        walkSound(false);
}

void StreamFigures::walkSound(bool last)
{
    const size_t size = m_soundBytes.size();
    const uint8_t* b = m_soundBytes.data();
    size_t pos = 0;
    while (m_known && (last ? pos < size : pos + kHeaderBytes <= size)) {
        AudioFrame f;
        const bool frame = size - pos >= kHeaderBytes
            && (m_sound == Sound::Mpeg ? MpegAudioFrameAt(b + pos, f) : Ac3FrameAt(b + pos, f));
        if (!frame || f.bytes < kHeaderBytes) {
            m_known = false;
            break;
        }
        m_soundTicks += (uint64_t(f.samples) * 90000 + f.rate / 2) / f.rate;
        pos += f.bytes;
    }
    if (pos >= size) {
        m_soundSkip = pos - size;
        m_soundBytes.clear();
    } else {
        m_soundBytes.erase(m_soundBytes.begin(), m_soundBytes.begin() + ptrdiff_t(pos));
    }
    if (last && m_soundSkip)
        m_known = false;   // the last frame is cut off
}

void StreamFigures::walkProgramStream(ByteReader& in, const RepairJob& job)
{
    uint64_t pos = 0;
    const uint64_t size = in.size();
    for (uint32_t packets = 0; m_known && pos < size; ++packets) {
        if (packets % 4096 == 0 && job.stopped())
            break;
        const uint8_t* h = in.view(pos, 16);
        const uint32_t code = ByteReader::loadBe32(h);
        if (code == kPack) {
            pos += (h[4] & 0xC0) == 0x40 ? 14 + (h[13] & 7) : 12;
            continue;
        }
        if (code == 0x000001B9u) {
            pos += 4;
            continue;
        }
        const uint64_t length = uint64_t(h[4]) << 8 | h[5];
        if (code < 0x000001BBu || code > 0x000001FFu || pos + 6 + length > size) {
            // Zeros to the end stop the muxer's reading as they stop this walk.
            m_known = NextNonZero(in, pos, size) == size;
            break;
        }
        const uint8_t id = h[3];
        const bool video = id >= 0xE0 && id <= 0xEF, mpegSound = id >= 0xC0 && id <= 0xDF;
        const uint8_t* p = in.view(pos + 6, size_t(length));
        const uint8_t* end = p + length;
        pos += 6 + length;
        if (!video && !mpegSound && id != 0xBD)
            continue;
        if (length >= 3 && (p[0] & 0xC0) == 0x80) {
            p += 3 + p[2];
        } else {
            // The MPEG-1 packet header: stuffing, the buffer size, the time stamps.
            while (p < end && *p == 0xFF)
                ++p;
            if (p < end && (*p & 0xC0) == 0x40)
                p += 2;
            if (p < end)
                p += (*p & 0xF0) == 0x20 ? 5 : (*p & 0xF0) == 0x30 ? 10 : *p == 0x0F ? 1 : length + 1;
        }
        int stream = id;
        if (id == 0xBD && p < end) {
            const uint8_t sub = *p;
            // Sound substreams: AC-3, DTS, LPCM and their high-definition kin;
            // subpictures and the rest are neither video nor sound.
            if (!((sub >= 0x80 && sub <= 0x8F) || (sub >= 0xA0 && sub <= 0xAF) || (sub >= 0xC0 && sub <= 0xCF)))
                continue;
            stream = id << 8 | sub;
            p += 4;   // substream id, frame count, first access unit
        }
        if (p > end) {
            m_known = false;
            break;
        }
        if (video) {
            if (m_videoId < 0)
                m_videoId = stream;
            if (stream == m_videoId)
                addVideo(p, size_t(end - p));
            continue;
        }
        if (m_soundId < 0) {
            m_soundId = stream;
            m_sound = mpegSound ? Sound::Mpeg : stream >= 0xBD80 && stream <= 0xBD87 ? Sound::Ac3 : Sound::Unset;
            if (m_sound == Sound::Unset)
                m_known = false;
        }
        if (stream == m_soundId)
            addSound(p, size_t(end - p));
    }
    if (job.stopped())
        m_known = false;
    if (!m_known)
        return;
    finishVideo();
    if (m_sound != Sound::Unset)
        walkSound(true);
}

void StreamFigures::walkVideoStream(ByteReader& in, const RepairJob& job)
{
    const uint64_t size = in.size();
    for (uint64_t pos = 0; pos < size && !job.stopped();) {
        const size_t n = size_t(std::min<uint64_t>(kStage, size - pos));
        addVideo(in.view(pos, n), n);
        pos += n;
    }
    if (job.stopped())
        m_known = false;
    finishVideo();
}

class MpegRoute : public Route {
public:
    Verdict repair(RepairJob& job, Reporter& report) override;

private:
    bool repairFrom(RepairJob& job, Reporter& report, bool isProgramStream, ByteReader& in);
    bool write(RepairJob& job, bool isProgramStream, bool shortSequenceHeader, bool longSequenceHeader);

    uint8_t m_systemBounds[6] = {};
    uint8_t m_pictureSize[3] = {};
    // The learnt sequence header (12 or 76 bytes) and, in an MPEG-2 stream, the
    // extensions that follow it; m_sequenceLength counts the bytes held.
    uint8_t m_sequenceHeader[kSequenceRunMax] = {};
    uint64_t m_sequenceLength = 0;
};

// The headers are learnt from the sample when one is given, else from the
// file; the stream is always copied from the file.
Verdict MpegRoute::repair(RepairJob& job, Reporter& report)
{
    report.showFileProgress(job.fileName);
    ByteReader* sample = job.sample;
    if (sample)
        report.setRange(sample->size() < 0x300000 ? 5000 : 50000);
    if (!job.input)
        return Verdict::failed().viaAviSignal();
    // A program stream has audio (C0) or video (E0) packet heads.
    const bool isProgramStream = FindCode(*job.input, 0, job.input->size(), {0x000001C0u, 0x000001E0u}, job) >= 0;
    if (job.stopped())
        return Verdict::stopped();
    const bool ok = repairFrom(job, report, isProgramStream, sample ? *sample : *job.input);
    if (job.stopped())
        return Verdict::stopped();
    if (!ok)
        return Verdict::failed().viaAviSignal();
    const Verdict v = Verdict::repaired(job.outputPath()).viaAviSignal();
    // The output, just written, is walked from the page cache: far cheaper
    // than the muxer's reading of it.
    // A small window, reused for the whole walk, keeps the pages it reads
    // into hot in the cache.
    const std::unique_ptr<FileReader> out = FileReader::open(job.outputPath(), kFigureWindow);
    if (!out)
        return v;
    StreamFigures figures;
    if (isProgramStream)
        figures.walkProgramStream(*out, job);
    else
        figures.walkVideoStream(*out, job);
    if (job.stopped())
        return Verdict::stopped();
    if (!figures.known())
        return v;
    return v.withFigures(figures.videoFrames(), figures.soundSeconds(), job.input->size(), out->size());
}

// Learns the headers from in (the sample or the file); true when the file was written.
bool MpegRoute::repairFrom(RepairJob& job, Reporter& report, bool isProgramStream, ByteReader& in)
{
    report.setRange(500000);
    const uint64_t streamSize = in.size();
    if (streamSize < 8)
        return false;
    bool ok = false;
    if (!isProgramStream) {
        const int64_t p = FindCode(in, 0, streamSize / 8, {kSequence}, job);
        if (p >= 0) {
            in.read(uint64_t(p) + 4, m_pictureSize, 3);
            ok = write(job, false, false, false);
        }
    } else {
        bool validSystem = false;
        const uint64_t systemLimit = std::min<uint64_t>(job.input->size() / 8, streamSize);
        const int64_t h = FindCode(in, 0, systemLimit, {kSystem}, job);
        report.setValue(400000);
        if (h >= 0) {
            const uint16_t ids = in.be16(uint64_t(h) + 12);
            if (ids == 0xC0C0 || ids == 0xE0E0 || ids == 0xB9E0) {
                validSystem = true;
                in.read(uint64_t(h) + 6, m_systemBounds, 6);
            }
        }
        bool shortForm = false, longForm = false;
        for (int64_t p = 0; validSystem && !job.stopped();) {
            p = FindCode(in, uint64_t(p), streamSize / 8, {kSequence}, job);
            if (p < 0)
                break;
            const uint64_t q = uint64_t(p);
            const uint32_t w12 = in.be32(q + 12), w13 = in.be32(q + 13), w76 = in.be32(q + 76),
                           w140 = in.be32(q + 140);
            uint64_t len = 0;
            if (w12 == kGop || w12 == kUser || w12 == kExtension || w13 == kGop) {
                len = 12;
                shortForm = true;
            } else if (w76 == kGop || w76 == kUser || w76 == kExtension || w140 == kGop) {
                len = 76;
                longForm = true;
            }
            if (len) {
                len += ExtensionRun(in, q + len, kSequenceRunMax - len);
                in.read(q, m_sequenceHeader, size_t(len));
                m_sequenceLength = len;
                break;
            }
            ++p;
        }
        if (validSystem && (shortForm || longForm))
            ok = write(job, true, shortForm, longForm);
    }
    return ok;
}

bool MpegRoute::write(RepairJob& job, bool isProgramStream, bool shortSequenceHeader, bool longSequenceHeader)
{
    ByteReader& in = *job.input;
    const uint64_t size = in.size();
    // Without a group of pictures there is no point to resume the stream at: the file
    // gets a negative verdict and no output is made, rather than an empty one.
    const int64_t g = FindCode(in, 0, isProgramStream ? size : size / 2, {kGop}, job);
    if (g < 0 || job.stopped())
        return false;
    const QString path = job.outputPath();
    FileWriter out;
    if (!out.open(path))
        return false;
    job.outputs->append(path);
    if (!isProgramStream) {
        out.be32(kSequence);
        out.write(m_pictureSize, 3);
        out.write(kMpegHeaderBlock, sizeof kMpegHeaderBlock);
        CopyRange(in, out, size - uint64_t(g), uint64_t(g), job);
    } else {
        const int64_t kFound = FindCode(in, 0, size, {kPack}, job);
        const uint64_t k = kFound < 0 ? 0 : uint64_t(kFound);
        const uint64_t packLength = PackHeaderLength(in, k);
        out.copyFrom(in, k, packLength);
        const bool hasSystem = in.be32(k + packLength) == kSystem ||
                               (packLength == 12 && in.be32(k + 13) == kSystem);
        if (!hasSystem) {
            out.be32(kSystem);
            out.u8(0x00); out.u8(0x0C);
            out.write(m_systemBounds, 6);
            static const uint8_t tail[6] = {0xE0, 0xE0, 0x2E, 0xC0, 0xC0, 0x20};
            out.write(tail, 6);
        }
        // The group of pictures is searched from the pack header on.
        const int64_t g2 = FindCode(in, k, size, {kGop}, job);
        const uint64_t gg = g2 < 0 ? uint64_t(g) : uint64_t(g2);
        const uint64_t body = k + packLength;
        const uint64_t oldStart = gg > body ? OldSequenceStart(in, body, gg) : gg;
        const uint64_t learnt = shortSequenceHeader || longSequenceHeader ? m_sequenceLength : 0;
        // The learnt header replaces the old one inside a packet; when their sizes differ,
        // the packet's 16-bit length is corrected so the packets behind it stay in step.
        const int64_t delta = int64_t(learnt) - int64_t(gg - oldStart);
        int64_t lengthAt = delta != 0 && gg > body ? PacketLengthField(in, body, gg, job) : -1;
        int64_t newLength = 0;
        if (lengthAt >= 0) {
            newLength = int64_t(in.be16(uint64_t(lengthAt))) + delta;
            if (newLength < 0 || newLength > 0xFFFF || uint64_t(lengthAt) + 2 > oldStart)
                lengthAt = -1;
        }
        if (lengthAt >= 0) {
            CopyRange(in, out, uint64_t(lengthAt) - body, body, job);
            out.be16(uint16_t(newLength));
            CopyRange(in, out, oldStart - uint64_t(lengthAt) - 2, uint64_t(lengthAt) + 2, job);
        } else if (oldStart > body) {
            CopyRange(in, out, oldStart - body, body, job);
        }
        out.write(m_sequenceHeader, size_t(learnt));
        CopyRange(in, out, size - gg, gg, job);
    }
    return out.close() && !job.stopped();
}

} // namespace

std::unique_ptr<Route> MakeMpegRoute() { return std::make_unique<MpegRoute>(); }
