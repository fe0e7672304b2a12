// MPEG-1/2 repair: puts back the system header and the sequence header ahead of
// the first group of pictures and copies the rest of the stream unchanged.
#include "containers/mpegps.h"
#include "core/thread_video_repair.h"
#include "core/byte_reader.h"
#include "core/file_writer.h"
#include "core/repair_globals.h"

#include <cstring>

const uint8_t MpegHeaderBlock[93] = {
    0x15, 0xFF, 0xFF, 0xE0, 0x00, 0x00, 0x00, 0x01, 0xB2,
    'M', 'P', 'E', 'G', ' ', 's', 't', 'r', 'e', 'a', 'm', ' ', 'e', 'n', 'c', 'o', 'd', 'e', 'd', ' ',
    'b', 'y', ' ', 'U', 'C', 'B', ' ', 'E', 'n', 'c', 'o', 'd', 'e', 'r', ' ', '(', 'm', 'p', 'e', 'g',
    '_', 'e', 'n', 'c', 'o', 'd', 'e', ')', ' ', 'v', '1', '.', '5', 'b', ' ', 'o', 'n', ' ', 'T', 'u',
    'e', ' ', 'O', 'c', 't', ' ', ' ', '9', ' ', '1', '2', ':', '2', '3', ':', '3', '1', ' ', '2', '0',
    '0', '1', '\n', '.'};

namespace {
constexpr uint32_t kPack = 0x000001BAu, kSystem = 0x000001BBu, kSequence = 0x000001B3u,
                   kGop = 0x000001B8u, kUser = 0x000001B2u, kExtension = 0x000001B5u;

uint8_t g_mpegSystemBounds[6];
uint8_t g_mpegPictureSize[3];
// The learnt sequence header (12 or 76 bytes) and, in an MPEG-2 stream, the
// extensions that follow it; g_mpegSequenceLength counts the bytes held.
constexpr uint64_t kSequenceRunMax = 256;
uint8_t g_mpegSequenceHeader[kSequenceRunMax];
uint64_t g_mpegSequenceLength = 0;

// First position in [from, limit) holding the 4-byte code, or -1; polls the stop flag.
int64_t FindCode(ByteReader& in, uint64_t from, uint64_t limit, uint32_t code)
{
    constexpr uint64_t kBlock = 1u << 20;
    const uint8_t c0 = uint8_t(code >> 24), c1 = uint8_t(code >> 16), c2 = uint8_t(code >> 8),
                  c3 = uint8_t(code);
    for (uint64_t pos = from; pos < limit && !g_stopRequested;) {
        const uint64_t n = std::min(kBlock, limit - pos);
        const uint8_t* v = in.view(pos, size_t(n) + 3);
        for (uint64_t i = 0; i < n; ++i)
            if (v[i] == c0 && v[i + 1] == c1 && v[i + 2] == c2 && v[i + 3] == c3)
                return int64_t(pos + i);
        pos += n;
    }
    return -1;
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
int64_t PacketLengthField(ByteReader& in, uint64_t pos, uint64_t g)
{
    while (pos < g && !g_stopRequested) {
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
} // namespace

void ThreadVideoRepair::RepairMpegFile(bool isProgramStream, ByteReader* stream, uint64_t streamSize)
{
    Q_EMIT SetProgressBarRange(500000);
    std::memset(g_mpegSystemBounds, 0, sizeof g_mpegSystemBounds);
    std::memset(g_mpegPictureSize, 0, sizeof g_mpegPictureSize);
    std::memset(g_mpegSequenceHeader, 0, sizeof g_mpegSequenceHeader);
    g_mpegSequenceLength = 0;
    if (!stream || !m_file || streamSize < 8) {
        if (!g_stopRequested)
            Q_EMIT WriteAVIFileStatus(false, m_fileName);
        return;
    }
    ByteReader& in = *stream;
    bool ok = false;
    if (!isProgramStream) {
        const int64_t p = FindCode(in, 0, streamSize / 8, kSequence);
        if (p >= 0) {
            in.read(uint64_t(p) + 4, g_mpegPictureSize, 3);
            ok = WriteMpegFile(false, false, false);
        }
    } else {
        bool validSystem = false;
        const uint64_t systemLimit = std::min<uint64_t>(g_inputSize / 8, streamSize);
        const int64_t h = FindCode(in, 0, systemLimit, kSystem);
        Q_EMIT setProgressvalue(400000);
        if (h >= 0) {
            const uint16_t ids = in.be16(uint64_t(h) + 12);
            if (ids == 0xC0C0 || ids == 0xE0E0 || ids == 0xB9E0) {
                validSystem = true;
                in.read(uint64_t(h) + 6, g_mpegSystemBounds, 6);
            }
        }
        bool shortForm = false, longForm = false;
        for (int64_t p = 0; validSystem && !g_stopRequested;) {
            p = FindCode(in, uint64_t(p), streamSize / 8, kSequence);
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
                in.read(q, g_mpegSequenceHeader, size_t(len));
                g_mpegSequenceLength = len;
                break;
            }
            ++p;
        }
        if (validSystem && (shortForm || longForm))
            ok = WriteMpegFile(true, shortForm, longForm);
    }
    if (g_stopRequested)
        return;
    if (ok)
        AnnounceOutput(m_workDir + QLatin1Char('/') + m_fileName);
    Q_EMIT WriteAVIFileStatus(ok, m_fileName);
}

bool ThreadVideoRepair::WriteMpegFile(bool isProgramStream, bool shortSequenceHeader, bool longSequenceHeader)
{
    ByteReader& in = *m_file;
    const uint64_t size = in.size();
    // Without a group of pictures there is no point to resume the stream at: the file
    // gets a negative verdict and no output is made, rather than an empty one.
    const int64_t g = FindCode(in, 0, isProgramStream ? size : size / 2, kGop);
    if (g < 0 || g_stopRequested)
        return false;
    const QString path = m_workDir + "/" + m_fileName;
    FileWriter out;
    if (!out.open(path))
        return false;
    g_repairedPaths.append(path);
    if (!isProgramStream) {
        out.be32(kSequence);
        out.write(g_mpegPictureSize, 3);
        out.write(MpegHeaderBlock, sizeof MpegHeaderBlock);
        CopyFileRange(in, out, size - uint64_t(g), uint64_t(g));
    } else {
        const int64_t kFound = FindCode(in, 0, size, kPack);
        const uint64_t k = kFound < 0 ? 0 : uint64_t(kFound);
        const uint64_t packLength = PackHeaderLength(in, k);
        out.copyFrom(in, k, packLength);
        const bool hasSystem = in.be32(k + packLength) == kSystem ||
                               (packLength == 12 && in.be32(k + 13) == kSystem);
        if (!hasSystem) {
            out.be32(kSystem);
            out.u8(0x00); out.u8(0x0C);
            out.write(g_mpegSystemBounds, 6);
            static const uint8_t tail[6] = {0xE0, 0xE0, 0x2E, 0xC0, 0xC0, 0x20};
            out.write(tail, 6);
        }
        // The group of pictures is searched from the pack header on.
        const int64_t g2 = FindCode(in, k, size, kGop);
        const uint64_t gg = g2 < 0 ? uint64_t(g) : uint64_t(g2);
        const uint64_t body = k + packLength;
        const uint64_t oldStart = gg > body ? OldSequenceStart(in, body, gg) : gg;
        const uint64_t learnt = shortSequenceHeader || longSequenceHeader ? g_mpegSequenceLength : 0;
        // The learnt header replaces the old one inside a packet; when their sizes differ,
        // the packet's 16-bit length is corrected so the packets behind it stay in step.
        const int64_t delta = int64_t(learnt) - int64_t(gg - oldStart);
        int64_t lengthAt = delta != 0 && gg > body ? PacketLengthField(in, body, gg) : -1;
        int64_t newLength = 0;
        if (lengthAt >= 0) {
            newLength = int64_t(in.be16(uint64_t(lengthAt))) + delta;
            if (newLength < 0 || newLength > 0xFFFF || uint64_t(lengthAt) + 2 > oldStart)
                lengthAt = -1;
        }
        if (lengthAt >= 0) {
            CopyFileRange(in, out, uint64_t(lengthAt) - body, body);
            out.be16(uint16_t(newLength));
            CopyFileRange(in, out, oldStart - uint64_t(lengthAt) - 2, uint64_t(lengthAt) + 2);
        } else if (oldStart > body) {
            CopyFileRange(in, out, oldStart - body, body);
        }
        out.write(g_mpegSequenceHeader, size_t(learnt));
        CopyFileRange(in, out, size - gg, gg);
    }
    std::memset(g_mpegSystemBounds, 0, sizeof g_mpegSystemBounds);
    std::memset(g_mpegPictureSize, 0, sizeof g_mpegPictureSize);
    std::memset(g_mpegSequenceHeader, 0, sizeof g_mpegSequenceHeader);
    g_mpegSequenceLength = 0;
    return out.close() && !g_stopRequested;
}
