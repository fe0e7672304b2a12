// MPEG-1/2 repair: puts back the system header and the sequence header ahead of
// the first group of pictures and copies the rest of the stream unchanged.
#include "core/byte_reader.h"
#include "core/code_search.h"
#include "core/file_writer.h"
#include "core/repair_globals.h"
#include "core/route.h"

#include <cstring>
#include <initializer_list>

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
    return (ok ? Verdict::repaired(job.outputPath()) : Verdict::failed()).viaAviSignal();
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
