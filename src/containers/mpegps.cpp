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
uint8_t g_mpegSequenceHeader[76];

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
} // namespace

void ThreadVideoRepair::RepairMpegFile(bool isProgramStream, ByteReader* stream, uint64_t streamSize)
{
    Q_EMIT SetProgressBarRange(500000);
    std::memset(g_mpegSystemBounds, 0, sizeof g_mpegSystemBounds);
    std::memset(g_mpegPictureSize, 0, sizeof g_mpegPictureSize);
    std::memset(g_mpegSequenceHeader, 0, sizeof g_mpegSequenceHeader);
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
            if (w12 == kGop || w12 == kUser || w12 == kExtension || w13 == kGop) {
                in.read(q, g_mpegSequenceHeader, 12);
                shortForm = true;
                break;
            }
            if (w76 == kGop || w76 == kUser || w76 == kExtension || w140 == kGop) {
                in.read(q, g_mpegSequenceHeader, 76);
                longForm = true;
                break;
            }
            ++p;
        }
        if (validSystem && (shortForm || longForm))
            ok = WriteMpegFile(true, shortForm, longForm);
    }
    if (!g_stopRequested)
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
        int64_t kFound = FindCode(in, 0, size, kPack);
        const uint64_t k = kFound < 0 ? 0 : uint64_t(kFound);
        const uint64_t gp = uint64_t(g);
        out.copyFrom(in, k, 12);
        if (in.be32(k + 12) != kSystem && in.be32(k + 13) != kSystem) {
            out.be32(kSystem);
            out.u8(0x00); out.u8(0x0C);
            out.write(g_mpegSystemBounds, 6);
            static const uint8_t tail[6] = {0xE0, 0xE0, 0x2E, 0xC0, 0xC0, 0x20};
            out.write(tail, 6);
        }
        // The group of pictures is searched from the pack header on.
        int64_t g2 = FindCode(in, k, size, kGop);
        const uint64_t gg = g2 < 0 ? gp : uint64_t(g2);
        uint64_t n = gg > k + 12 ? gg - k - 12 : 0;
        if (gg >= 12 && in.be32(gg - 12) == kSequence)
            n = n >= 12 ? n - 12 : 0;
        else if (gg >= 76 && in.be32(gg - 76) == kSequence)
            n = n >= 76 ? n - 76 : 0;
        CopyFileRange(in, out, n, k + 12);
        out.write(g_mpegSequenceHeader, shortSequenceHeader ? 12 : (longSequenceHeader ? 76 : 0));
        CopyFileRange(in, out, size - gg, gg);
    }
    std::memset(g_mpegSystemBounds, 0, sizeof g_mpegSystemBounds);
    std::memset(g_mpegPictureSize, 0, sizeof g_mpegPictureSize);
    std::memset(g_mpegSequenceHeader, 0, sizeof g_mpegSequenceHeader);
    return out.close() && !g_stopRequested;
}
