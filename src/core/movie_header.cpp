// Reading the movie of the damaged file and of the sample. A damaged moov
// can't be trusted, so the scan steps byte by byte from mvhd and reacts to
// the four-character codes wherever they stand. The two readers share one
// scan; the sample's rules differ in the places marked `reference`.
#include "core/quicktime_route.h"

#include <algorithm>
#include <cstring>

namespace {

struct TrackSearch {
    // The last search for vmhd/smhd: a hostile file full of "trak" words
    // would otherwise search the same stretch again for each of them.
    uint64_t from = 0, end = 0, hit = 0;
    bool valid = false;
};

// First position in [from, end) whose word is vmhd or smhd, or end.
uint64_t FindMediaHeader(ByteReader& r, uint64_t from, uint64_t end, TrackSearch& memo)
{
    if (memo.valid && from >= memo.from) {
        if (memo.hit < memo.end && from <= memo.hit)
            return memo.hit < end ? memo.hit : end;
        if (memo.hit >= memo.end && end <= memo.end)
            return end;
    }
    const uint32_t vmhd = "vmhd"_4cc, smhd = "smhd"_4cc;
    const uint64_t stop = std::min(end, r.size());
    const size_t block = std::min<size_t>(1u << 20, r.maxView() - 4);
    uint64_t hit = end;
    for (uint64_t pos = from; pos < stop && hit == end; pos += block) {
        if (g_stopRequested)
            return end;
        const size_t n = size_t(std::min<uint64_t>(block, stop - pos));
        const uint8_t* p = r.view(pos, n + 3);
        for (size_t i = 0; i < n; ++i) {
            const uint32_t w = ByteReader::loadBe32(p + i);
            if (w == vmhd || w == smhd) {
                hit = pos + i;
                break;
            }
        }
    }
    memo = {from, end, hit, true};
    return hit;
}

// The words the scan reacts to, in any track state. Every other position
// only moves the scan on by one byte.
constexpr uint32_t kReactedCodes[] = {
    "trak"_4cc, "mdhd"_4cc, "tkhd"_4cc, "stsd"_4cc, "stts"_4cc, "stsc"_4cc, "stsz"_4cc, "ctts"_4cc, "mdat"_4cc,
    "jpeg"_4cc, "es26"_4cc, "mp4v"_4cc, "apch"_4cc, "apcn"_4cc, "apcs"_4cc, "apco"_4cc, "ap4h"_4cc,
    "hvc1"_4cc, "hev1"_4cc, "twos"_4cc, "sowt"_4cc, "lpcm"_4cc};

// A bit per pair of leading bytes that starts one of the codes: in media
// data only about one position in 4700 gets past it to the full comparison.
struct LeadingPairTable {
    uint32_t bits[65536 / 32] = {};
    constexpr LeadingPairTable()
    {
        for (uint32_t code : kReactedCodes) {
            const uint32_t pair = code >> 16;
            bits[pair >> 5] |= uint32_t(1) << (pair & 31);
        }
    }
    bool has(const uint8_t* p) const
    {
        const uint32_t pair = uint32_t(p[0]) << 8 | p[1];
        return bits[pair >> 5] >> (pair & 31) & 1;
    }
};
constexpr LeadingPairTable kLeadingPair;

// False when none of the 32 bytes at p lies in 0x60..0x7f, where every code
// above starts: then no word begins among them. A byte is in that range
// exactly when (b ^ 0x60) & 0xe0 is zero, and the zero-byte test is exact
// about whether such a byte exists. Zeroed or sparse stretches pass at once.
bool MayHoldCode32(const uint8_t* p)
{
    uint64_t x[4];
    std::memcpy(x, p, sizeof x);
    uint64_t hit = 0;
    for (uint64_t w : x) {
        const uint64_t v = (w ^ 0x6060606060606060ull) & 0xe0e0e0e0e0e0e0e0ull;
        hit |= (v - 0x0101010101010101ull) & ~v & 0x8080808080808080ull;
    }
    return hit != 0;
}

bool IsReacted(uint32_t w)
{
    for (uint32_t code : kReactedCodes)
        if (w == code)
            return true;
    return false;
}

// First position in [from, end) whose word is one the scan reacts to, or end.
// Media data and padding are passed over a block at a time instead of through
// one positioned read per byte. With honourStop a stop request returns from.
uint64_t NextReactedWord(ByteReader& r, uint64_t from, uint64_t end, bool honourStop)
{
    const uint64_t stop = std::min(end, r.size());
    const size_t block = std::min<size_t>(1u << 20, r.maxView() - 4);
    for (uint64_t pos = from; pos < stop; pos += block) {
        if (honourStop && g_stopRequested)
            return from;
        const size_t n = size_t(std::min<uint64_t>(block, stop - pos));
        const uint8_t* p = r.view(pos, n + 3);
        size_t i = 0;
        while (i < n) {
            if (i + 32 <= n && !MayHoldCode32(p + i)) {
                i += 32;
                continue;
            }
            // Eight positions at a time without a branch on each: the common
            // case, media data or padding, has no candidate among them.
            if (i + 8 <= n) {
                uint32_t any = 0;
                for (size_t k = 0; k < 8; ++k)
                    any |= uint32_t(kLeadingPair.has(p + i + k));
                if (!any) {
                    i += 8;
                    continue;
                }
            }
            if (kLeadingPair.has(p + i) && IsReacted(ByteReader::loadBe32(p + i)))
                return pos + i;
            ++i;
        }
    }
    return end;   // words past the end of the data are zero and match nothing
}

} // namespace

void QuickTimeRoute::ReadMovieHeader()
{
    m_movie = ScanMovieHeader(false);
}

void QuickTimeRoute::ReadReferenceMovieHeader()
{
    m_movie = ScanMovieHeader(true);
}

MovieFacts QuickTimeRoute::ScanMovieHeader(bool reference)
{
    ByteReader* file = reference ? m_refFile : m_file;
    if (!file)
        return m_movie;
    ByteReader& r = *file;

    // The facts start afresh, but for two: the sample's reader leaves isJpeg
    // as the damaged file's set it, and whether the movie has sound is
    // cleared once per file, not per reader.
    MovieFacts facts;
    facts.isJpeg = reference && m_movie.isJpeg;
    facts.hasSoundTrak = m_movie.hasSoundTrak;
    m_trakPos = 0;
    m_inAudioTrak = m_inVideoTrak = m_haveVideoTrak = m_inNullTrak = m_inGenericTrak = false;
    int sttsCount = 0;

    m_pos += 24;
    m_moovBodyPos = m_pos;
    const uint64_t fileSize = reference ? m_refFileSize : m_fileSize;
    if (m_moovSize >= fileSize)
        return facts;
    // The damaged file is scanned to its end; the sample only over its moov.
    const uint64_t scanEnd = reference ? m_moovBodyPos + m_moovSize : m_fileSize;
    uint64_t& countDown = reference ? m_refFileSize : m_inputSize;
    TrackSearch memo;

    // A copy of the atom whose 4CC is at pos, from its size word on. A size
    // beyond the data is cut at the end of the file, which it can't exceed.
    auto copyAtom = [&r](uint64_t pos, uint32_t size) {
        const uint64_t avail = r.size() > pos - 4 ? r.size() - (pos - 4) : 0;
        QByteArray out(int(std::min<uint64_t>(size, avail)), '\0');
        r.read(pos - 4, out.data(), size_t(out.size()));
        return out;
    };

    bool done = false;
    while (!done && m_pos < scanEnd && (reference || !g_stopRequested)) {
        // Skip the positions that can't change anything; each still counts down.
        const uint64_t next = NextReactedWord(r, m_pos, scanEnd, !reference);
        const uint64_t skipped = next - m_pos;
        countDown = countDown > skipped ? countDown - skipped : 0;
        m_pos = next;
        if (m_pos >= scanEnd || (!reference && g_stopRequested))
            break;
        uint32_t w = r.be32(m_pos);

        if (w == "trak"_4cc) {
            m_trakPos = m_pos;
            const uint64_t end = reference ? m_pos + r.be32(m_pos - 4) : m_fileSize;
            const uint64_t hit = FindMediaHeader(r, m_pos, end, memo);
            if (hit < end) {
                w = r.be32(hit);
                if (w == "vmhd"_4cc) {
                    m_inVideoTrak = true;
                    m_haveVideoTrak = true;
                } else {
                    m_inAudioTrak = true;
                }
                m_pos = m_trakPos + 4;
            } else {
                // No media header: the scan goes on where the search ended.
                m_pos = end;
                w = 0;
                if (m_pos >= scanEnd)
                    break;
            }
        }

        if (m_inVideoTrak) {
            if (w == "mdhd"_4cc) {
                facts.videoTimeScale = r.be32(m_pos + 16);
            } else if (!reference && w == "jpeg"_4cc) {
                facts.isJpeg = true;
            } else if (w == "es26"_4cc || w == "mp4v"_4cc) {
                if (m_carried->is3gp)
                    facts.isMpeg4In3gp = true;
            } else if (w == "apch"_4cc || w == "apcn"_4cc || w == "apcs"_4cc || w == "apco"_4cc
                       || w == "ap4h"_4cc) {
                facts.isProRes = true;
            } else if (w == "hvc1"_4cc || w == "hev1"_4cc) {
                facts.isHevc = true;
            } else if (w == "mdat"_4cc) {
                done = true;
            } else if (w == "stsc"_4cc) {
                if (!reference && facts.videoSampleDelta == 0) {
                    // The stts behind the stsc gives the frame duration.
                    const uint32_t s = r.be32(m_pos - 4);
                    if (r.be32(m_pos + s) == "stts"_4cc)
                        facts.videoSampleDelta = r.be32(m_pos + s + 16);
                }
                m_inVideoTrak = false;
            } else if (w == "tkhd"_4cc) {
                facts.frameWidth = r.be32(m_pos + 78);
                facts.frameHeight = r.be32(m_pos + 82);
                if (reference && m_log && m_log->isOpen()) {
                    m_log->write(QByteArray("FrameWidth = ") + QByteArray::number(facts.frameWidth) + "\r\n");
                    m_log->write(QByteArray("FrameHeight = ") + QByteArray::number(facts.frameHeight) + "\r\n");
                }
            } else if (w == "stsd"_4cc) {
                facts.videoStsdSize = r.be32(m_pos - 4);
                if (reference || facts.videoStsdSize < 1000)
                    facts.videoStsd = copyAtom(m_pos, facts.videoStsdSize);
            } else if (w == "stts"_4cc) {
                if (reference) {
                    facts.videoSampleDelta = r.be32(m_pos + 16);
                    m_inVideoTrak = false;
                    if (++sttsCount >= 2)
                        done = true;
                } else if (sttsCount == 2) {
                    done = true;
                } else {
                    facts.videoSampleDelta = r.be32(m_pos + 16);
                    ++sttsCount;
                }
            } else if (w == "ctts"_4cc) {
                facts.cttsOffset2 = 0;
                if (!reference) {
                    // The word where the next atom's size stands is compared with stsc.
                    const uint32_t s = r.be32(m_pos - 4);
                    const uint64_t next = m_pos + s - 4;
                    if (next < m_inputSize && r.be32(next) != "stsc"_4cc)
                        m_inVideoTrak = false;
                }
                facts.cttsEntries = r.be32(m_pos + 8);
                if (facts.cttsEntries > 1) {
                    facts.hasCtts = true;
                    m_pos += 12;
                    facts.cttsCount0 = r.be32(m_pos);
                    facts.cttsOffset0 = r.be32(m_pos + 4);
                    m_pos += 8;
                    facts.cttsCount1 = r.be32(m_pos);
                    facts.cttsOffset1 = r.be32(m_pos + 4);
                    m_pos += 8;
                    if (facts.cttsCount1 == 2) {
                        facts.cttsOffset2 = facts.cttsOffset1;
                    } else if (facts.cttsCount1 == 1) {
                        facts.cttsCount2 = r.be32(m_pos);
                        facts.cttsOffset2 = r.be32(m_pos + 4);
                    }
                }
            }
        }

        if (!done && m_inAudioTrak) {
            static const uint32_t audioCodes[] = {"stsd"_4cc, "mdhd"_4cc, "twos"_4cc, "sowt"_4cc, "lpcm"_4cc,
                                                  "stsz"_4cc, "stts"_4cc, "mdat"_4cc};
            if (std::find(std::begin(audioCodes), std::end(audioCodes), w) != std::end(audioCodes))
                facts.hasSoundTrak = true;
            if (w == "stsd"_4cc) {
                facts.audioStsdSize = r.be32(m_pos - 4);
                if (facts.audioStsdSize < 670)
                    facts.audioStsd = copyAtom(m_pos, facts.audioStsdSize);
                facts.audioStsdRate = r.be32(m_pos + 42);
            } else if (w == "mdhd"_4cc) {
                facts.soundTimeScale = r.be32(m_pos + 16);
            } else if (w == "twos"_4cc) {
                facts.isTwos = true;
            } else if (w == "sowt"_4cc) {
                facts.isSowt = true;
                if (reference)
                    m_carried->is3gp = false;
            } else if (w == "lpcm"_4cc) {
                facts.isLpcm = true;
                if (facts.isHevc) {
                    facts.isLpcmHevc = true;
                    facts.isHevc = false;
                }
            } else if (w == "stsz"_4cc) {
                const uint32_t a = r.be32(m_pos + 16);
                const uint32_t b = r.be32(m_pos + 20);
                facts.audioFrameSize = a == 4 ? b : b - 50;
                m_inAudioTrak = false;
                if (reference) {
                    if (m_inVideoTrak)
                        done = true;
                } else if (m_haveVideoTrak) {
                    m_haveVideoTrak = false;
                    done = true;
                }
            } else if (w == "stts"_4cc) {
                facts.audioSampleDelta = r.be32(m_pos + 16);
                ++sttsCount;
            } else if (w == "mdat"_4cc) {
                done = true;
            }
        }
        if (done)
            break;
        ++m_pos;
        if (countDown)
            --countDown;
    }
    if (!reference && g_stopRequested)
        return facts;
    g_moovRead = true;
    return facts;
}
