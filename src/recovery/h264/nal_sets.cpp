#include "recovery/h264/nal_sets.h"

#include "core/byte_reader.h"

#include <array>
#include <cstring>

namespace {

// 256-entry membership tables built at compile time from the allowed bytes.
struct ByteSet {
    std::array<bool, 256> has{};
    bool hevcTrailing = false;   // 02 is allowed when the next byte is 01
    bool hevcTypeZero = false;   // 00 is allowed when the next byte is 01 (HEVC NAL type 0)
    // HEVC: the second header byte must read layer 0 and a temporal id plus
    // one that isn't 0, that is 01 to 07. Audio and noise that ends in a
    // plausible length rarely does, while every single-layer stream does.
    bool hevcSecondByte = false;
};

template <std::size_t N>
constexpr ByteSet makeSet(const uint8_t (&bytes)[N], bool hevcTrailing, bool hevcTypeZero = false)
{
    ByteSet s{};
    for (std::size_t i = 0; i < N; ++i)
        s.has[bytes[i]] = true;
    s.hevcTrailing = hevcTrailing;
    s.hevcTypeZero = hevcTypeZero;
    s.hevcSecondByte = hevcTypeZero;
    return s;
}

constexpr uint8_t kReference[] = {0x01, 0x06, 0x0E, 0x21, 0x25, 0x27, 0x28, 0x41, 0x4E, 0x61, 0x65, 0x68, 0x6E};
constexpr uint8_t kStreamFirst[] = {0x01, 0x06, 0x21, 0x25, 0x27, 0x28, 0x41, 0x61, 0x65, 0x67, 0x68};
constexpr uint8_t kStream[] = {0x01, 0x06, 0x0C, 0x21, 0x25, 0x27, 0x28, 0x41, 0x61, 0x65, 0x67, 0x68};
constexpr uint8_t kVideoOnlyFirst[] = {0x01, 0x06, 0x21, 0x25, 0x27, 0x28, 0x40, 0x41, 0x42, 0x44, 0x61, 0x65, 0x67, 0x68};
constexpr uint8_t kVideoOnly[] = {0x01, 0x06, 0x0C, 0x21, 0x25, 0x27, 0x28, 0x40, 0x41, 0x42, 0x44, 0x61, 0x65, 0x67, 0x68};
constexpr uint8_t kIndexScan[] = {0x01, 0x06, 0x21, 0x25, 0x27, 0x28, 0x41, 0x61, 0x65, 0x68};
constexpr uint8_t kHevcReference[] = {0x01, 0x02, 0x06, 0x21, 0x25, 0x26, 0x27, 0x28, 0x2A,
                                      0x40, 0x41, 0x42, 0x44, 0x46, 0x4E, 0x61, 0x65, 0x68};
// As the sample's set without 2A (CRA): a damaged file's own table must
// open on a unit that a decoder can start from without leading pictures.
constexpr uint8_t kHevcOwnIndex[] = {0x01, 0x02, 0x06, 0x21, 0x25, 0x26, 0x27, 0x28,
                                     0x40, 0x41, 0x42, 0x44, 0x46, 0x4E, 0x61, 0x65, 0x68};
// Parameter sets (40 42 44) don't open a unit in the scan: the stream gets
// the sample's own at its head.
constexpr uint8_t kHevcLpcm[] = {0x02, 0x10, 0x12, 0x26, 0x28, 0x2A, 0x46, 0x4E};
constexpr uint8_t kHevcStream[] = {0x01, 0x02, 0x06, 0x21, 0x25, 0x26, 0x27, 0x28,
                                   0x2A, 0x41, 0x46, 0x4E, 0x61, 0x65, 0x67, 0x68};

constexpr ByteSet kSets[] = {
    makeSet(kReference, false),    makeSet(kStreamFirst, false), makeSet(kStream, false),
    makeSet(kVideoOnlyFirst, true), makeSet(kVideoOnly, true),   makeSet(kIndexScan, false),
    makeSet(kHevcReference, false, true), makeSet(kHevcOwnIndex, false, true),
    makeSet(kHevcStream, false, true), makeSet(kHevcLpcm, false, true),
};

} // namespace

bool IsNalStartBytes(const uint8_t b[6], NalStartSet set)
{
    if (b[0] == 0 && b[1] == 0 && b[2] == 0 && b[3] == 2 && b[4] == 0x09)
        return true;   // two-byte access unit delimiter
    if (b[0] != 0)
        return false;  // no NAL unit of 16 MiB or more is taken
    const ByteSet& s = kSets[int(set)];
    if (s.hevcSecondByte && (b[5] == 0 || b[5] > 7))
        return false;
    return s.has[b[4]] || (s.hevcTrailing && b[4] == 0x02 && b[5] == 0x01)
        || (s.hevcTypeZero && b[4] == 0x00 && b[5] == 0x01);
}

bool IsNalStart(ByteReader& r, uint64_t position, NalStartSet set)
{
    uint8_t b[6];
    std::memcpy(b, r.view(position, 6), 6);   // zero-filled past the end
    return IsNalStartBytes(b, set);
}

bool IsFillerRun(ByteReader& r, uint64_t position, uint32_t length)
{
    return length != 0 && IsFillerRunBytes(r.view(position, length), length);
}

bool IsFillerRunBytes(const uint8_t* p, uint32_t length)
{
    if (length == 0)
        return false;
    const uint8_t first = p[0];
    if (first != 0x00 && first != 0xFF)
        return false;
    for (uint32_t i = 1; i < length; ++i)
        if (p[i] != first)
            return false;
    return true;
}
