// Frame scanners that need no sample: Motion JPEG, MPEG-4 Visual / H.263 in
// 3GPP, and ProRes. Each walks m_file and writes one FrameIndexFile line per
// frame (and per audio run where the format allows).
#include "core/quicktime_route.h"

#include "core/log_cipher.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr uint32_t kUdta = ByteReader::fourcc("udta");
constexpr uint32_t kMoov = ByteReader::fourcc("moov");
constexpr uint32_t kFtyp = ByteReader::fourcc("ftyp");
constexpr uint32_t kTkhd = ByteReader::fourcc("tkhd");
constexpr uint32_t kMdat = ByteReader::fourcc("mdat");
constexpr uint32_t kIcpf = ByteReader::fourcc("icpf");

inline bool IsJpegOpening(uint32_t w)
{
    return w == 0xFFD8FFDBu || w == 0xFFD8FFE0u || w == 0xFFD8FFE1u;
}

inline bool IsMpeg4Opening(const uint8_t* p)
{
    if (p[0] != 0 || p[1] != 0)
        return false;
    if (p[2] == 0x01 && p[3] == 0xB6)
        return true;
    return p[2] >= 0x80 && p[2] <= 0x83 && p[3] != 0;
}

QString VideoLine(uint64_t pos, uint64_t size)
{
    return QStringLiteral("AVC(Vide) at = %1 Size = %2").arg(pos).arg(size);
}
QString AudioLine(uint64_t pos, uint64_t size)
{
    return QStringLiteral("AAC(soun) at = %1 Size = %2").arg(pos).arg(size);
}

constexpr size_t kBlock = 1u << 20;

} // namespace

void QuickTimeRoute::ScanJpegFrames()
{
    m_remuxed = false;
    LogCipher cipher;
    const uint64_t range = std::min<uint64_t>(m_fileSize, 0x40000000u);
    m_report->setRange(ulong(range));
    const uint64_t end = std::min<uint64_t>(m_inputSize, m_file ? m_file->size() : 0);
    ByteReader& f = *m_file;
    uint32_t skip = 5000;
    uint32_t count = 0;
    m_pos = 0;
    m_frameStart = 0;
    m_frameSize = 0;
    while (m_pos < end && !g_stopRequested) {
        // Between frames: look for an opening mark or an atom to pass over,
        // a block at a time.
        const size_t n = size_t(std::min<uint64_t>(kBlock, end - m_pos));
        const uint8_t* p = f.view(m_pos, n + 3);
        size_t i = 0;
        uint32_t w = 0;
        for (; i < n; ++i) {
            if (p[i] != 0xFF && p[i] != 'u' && p[i] != 'm' && p[i] != 'f' && p[i] != 't')
                continue;
            w = ByteReader::loadBe32(p + i);
            if (IsJpegOpening(w) || w == kUdta || w == kMoov || w == kFtyp || w == kTkhd)
                break;
        }
        m_pos += i;
        if (i == n)
            continue;
        if (!IsJpegOpening(w)) {
            // An atom of the movie: jump over it by its size.
            const uint32_t s = m_pos >= 4 ? f.be32(m_pos - 4) : 0;
            m_pos += uint64_t(s) + 6;
            continue;
        }
        m_frameStart = m_pos;
        ++count;
        if (count == 3)
            skip = uint32_t(skip * 0.88);
        m_pos += skip;
        m_frameSize += skip;
        bool done = false;
        while (!done && m_pos < end && !g_stopRequested) {
            const size_t k = size_t(std::min<uint64_t>(kBlock, end - m_pos));
            const uint8_t* q = f.view(m_pos, k + 3);
            size_t j = 0;
            while (j < k) {
                const void* hit = std::memchr(q + j, 0xFF, k - j);
                if (!hit) { j = k; break; }
                j = size_t(static_cast<const uint8_t*>(hit) - q);
                if (q[j + 1] == 0xD9) {
                    m_frameSize += uint32_t(j) + 2;
                    m_pos += j;
                    if (count == 2)
                        skip = m_frameSize;
                    WriteLogLine(cipher, VideoLine(m_frameStart, m_frameSize));
                    m_frameStart = 0;
                    m_frameSize = 0;
                    done = true;
                    break;
                }
                if (IsJpegOpening(ByteReader::loadBe32(q + j))) {
                    m_frameSize += uint32_t(j);
                    m_pos += j;
                    if (count == 2)
                        skip = m_frameSize;
                    WriteLogLine(cipher, VideoLine(m_frameStart, m_frameSize));
                    m_frameStart = 0;
                    m_frameSize = 0;
                    m_pos -= 2;
                    done = true;
                    break;
                }
                ++j;
            }
            if (!done) {
                m_frameSize += uint32_t(k);
                m_pos += k;
            }
        }
        m_report->setValue(ulong(std::min<uint64_t>(m_pos, range)));
        m_pos += 1;
    }
}

void QuickTimeRoute::ScanMpeg4Frames()
{
    m_remuxed = false;
    m_carried->is3gp = false;
    LogCipher cipher;
    m_report->setRange(ulong(m_fileSize));
    ByteReader& f = *m_file;
    const uint64_t end = std::min<uint64_t>(m_fileSize, f.size());
    static const uint32_t skipCodes[] = {kFtyp, ByteReader::fourcc("wide"), ByteReader::fourcc("free"),
                                         ByteReader::fourcc("pict"), ByteReader::fourcc("meta"),
                                         ByteReader::fourcc("meco"), ByteReader::fourcc("uuid"),
                                         ByteReader::fourcc("pdin")};
    uint64_t total = 0;
    m_pos = 0;
    m_frameSize = 0;
    while (m_pos < end && !g_stopRequested) {
        const uint8_t* p = f.view(m_pos, 4);
        const uint32_t w = ByteReader::loadBe32(p);
        if (w == kMoov)
            break;
        if (std::find(std::begin(skipCodes), std::end(skipCodes), w) != std::end(skipCodes)) {
            const uint32_t s = m_pos >= 4 ? f.be32(m_pos - 4) : 0;
            m_pos += s ? s : 1;
            continue;
        }
        if (w == kMdat) {
            const uint32_t s = m_pos >= 4 ? f.be32(m_pos - 4) : 0;
            m_pos += s == 1 ? 11 : 4;
            continue;
        }
        if (!IsMpeg4Opening(p)) {
            ++m_pos;
            continue;
        }
        m_frameStart = m_pos;
        // Walk to the next opening, a block at a time. The movie atom behind
        // the media data also ends a frame: the last frame then gets its line,
        // and the tables of moov, where start codes turn up by chance, are
        // never taken for frames. Its size word starts with a zero byte for
        // any moov under 16 MiB, so the same search for zeros finds it.
        uint64_t e = m_pos + 1;
        bool found = false;
        bool atMoov = false;
        while (e < end && !g_stopRequested && !found) {
            const size_t k = size_t(std::min<uint64_t>(kBlock, end - e));
            const uint8_t* q = f.view(e, k + 8);
            size_t j = 0;
            while (j < k) {
                const void* hit = std::memchr(q + j, 0, k - j);
                if (!hit) { j = k; break; }
                j = size_t(static_cast<const uint8_t*>(hit) - q);
                if (IsMpeg4Opening(q + j)) { found = true; break; }
                if (ByteReader::loadBe32(q + j + 4) == kMoov) { found = atMoov = true; break; }
                ++j;
            }
            e += j;
        }
        if (!found)
            break;   // the last frame has no opening behind it: no line
        m_frameSize = uint32_t(std::min<uint64_t>(e - m_frameStart, 0xFFFFFFFFu));
        // Audio frames in front of the opening belong to the sound, not the frame.
        m_pos = e;
        for (;;) {
            uint64_t back = 0;
            if (f.u8(m_pos - 14) == 0x0C) back = 14;
            else if (f.u8(m_pos - 32) == 0x3C) back = 32;
            else if (f.u8(m_pos - 15) == 0x1C) back = 18;
            else if (f.u8(m_pos - 15) == 0x24) back = 41;
            if (back == 0 || m_pos - back <= m_frameStart)
                break;
            m_pos -= back;
            m_frameSize -= uint32_t(back);
        }
        WriteLogLine(cipher, VideoLine(m_frameStart, m_frameSize));
        total += m_frameSize;
        m_report->setValue(ulong(total));
        // An audio frame that would run past the opening isn't taken, so the
        // next frame is always found at e.
        while (m_pos < e && !g_stopRequested) {
            const uint8_t* a = f.view(m_pos, 4);
            uint32_t size = 0;
            if (a[0] == 0x0C) size = 14;
            else if (a[0] == 0x3C) size = 32;
            else if (a[0] == 0x1C) size = 18;
            else if (a[3] == 0x24) size = 41;
            if (size && m_pos + size <= e) {
                WriteLogLine(cipher, AudioLine(m_pos, size));
                m_pos += size;
            } else {
                ++m_pos;
            }
        }
        m_frameSize = 0;
        if (atMoov)
            break;
    }
}

void QuickTimeRoute::ScanProResFrames()
{
    m_remuxed = false;
    LogCipher cipher;
    m_report->setRange(ulong(m_fileSize));
    ByteReader& f = *m_file;
    const uint64_t end = std::min<uint64_t>(m_fileSize, f.size());
    m_audioGapSize = 0;
    m_audioGapStart = 0;
    uint64_t total = 0;
    // The first frame.
    m_pos = 0;
    bool found = false;
    while (m_pos < end && !g_stopRequested && !found) {
        const size_t n = size_t(std::min<uint64_t>(kBlock, end - m_pos));
        const uint8_t* p = f.view(m_pos, n + 3);
        size_t i = 0;
        for (; i < n; ++i)
            if (p[i] == 'i' && ByteReader::loadBe32(p + i) == kIcpf) { found = true; break; }
        m_pos += i;
    }
    if (!found)
        return;
    while (m_pos < end && !g_stopRequested) {
        const uint8_t* p = f.view(m_pos, 8);
        const uint32_t w = ByteReader::loadBe32(p);
        if (w == kIcpf) {
            const uint32_t s = m_pos >= 4 ? f.be32(m_pos - 4) : 0;
            // A size under 8 or running past the end isn't a frame: no line,
            // and the walk goes on byte by byte (a size of 0 would never move).
            if (s >= 8 && m_pos - 4 + s <= end) {
                WriteLogLine(cipher, VideoLine(m_pos - 4, s));
                total += s;
                m_report->setValue(ulong(total));
                m_pos += uint64_t(s) - 1;
            }
        } else if (m_audioGapSize != 0) {
            WriteLogLine(cipher, AudioLine(m_audioGapStart, m_audioGapSize));
            m_audioGapSize = 0;
        } else if (w == kMoov) {
            break;
        } else if (std::memcmp(p, "\0\0\0\0\0\0\0\0", 8) != 0) {
            // inside other data: nothing
        } else {
            // Zero padding: skip it, keeping the step a multiple of 4.
            const uint8_t* z = f.view(m_pos, 10000);
            size_t skipped = 0;
            while (skipped < 10000 && z[skipped] == 0)
                ++skipped;
            m_pos += skipped - skipped % 4;
            if (f.be32(m_pos + 4) == kIcpf) {
                m_pos += 3;
            } else {
                m_audioGapStart = m_pos;
                while (m_pos < end && !g_stopRequested) {
                    const uint8_t* g = f.view(m_pos, 8);
                    const uint32_t gw = ByteReader::loadBe32(g);
                    if (gw == kIcpf || gw == kMoov) {
                        if (m_audioGapSize > 4)
                            WriteLogLine(cipher, AudioLine(m_audioGapStart, m_audioGapSize - 4));
                        m_audioGapSize = 0;
                        // Land on the code again after the step below, so the
                        // frame behind the sound is read.
                        m_pos -= 1;
                        break;
                    }
                    if (m_audioGapSize > 0 && std::memcmp(g, "\0\0\0\0\0\0\0\0", 8) == 0) {
                        m_audioGapSize = (m_audioGapSize + 7) & ~7u;
                        const uint8_t* zz = f.view(m_pos, 10000);
                        size_t k = 0;
                        while (k < 10000 && zz[k] == 0)
                            ++k;
                        m_pos += k;
                        break;
                    }
                    ++m_pos;
                    ++m_audioGapSize;
                }
            }
        }
        m_pos += 1;
    }
}
