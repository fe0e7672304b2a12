#pragma once
// BDAV transport stream units: the four system units written into a rebuilt
// stream, and the classes of the packet heads that the repair recognises.
//
// A unit is 192 bytes: a 4-byte TP_extra_header and a 188-byte transport
// packet. The layout is fixed: video on PID 0x1011, audio on 0x1100, PCR on
// 0x1001, the PMT on 0x0100 and the SIT on 0x001F.
#include <array>
#include <cstddef>
#include <cstdint>

namespace mts {

constexpr size_t kUnitSize = 192;
constexpr size_t kExtraHeaderSize = 4;
using Unit = std::array<uint8_t, kUnitSize>;

// A unit with a zero TP_extra_header, the packet bytes given, and 0xFF up to its end.
template <size_t N>
constexpr Unit MakeUnit(const uint8_t (&packet)[N])
{
    static_assert(N <= kUnitSize - kExtraHeaderSize, "packet longer than a unit");
    Unit u{};
    for (size_t i = 0; i < kUnitSize; ++i)
        u[i] = i < kExtraHeaderSize ? 0x00 : 0xFF;
    for (size_t i = 0; i < N; ++i)
        u[kExtraHeaderSize + i] = packet[i];
    return u;
}

namespace detail {
// PAT: program 0 -> PID 0x001F, program 1 -> PMT on PID 0x0100, with CRC.
constexpr uint8_t kPat[] = {
    0x47, 0x40, 0x00, 0x10, 0x00,                       // header (PUSI), pointer field
    0x00, 0xB0, 0x11, 0x00, 0x00, 0xC1, 0x00, 0x00,     // table 0, length 17, ts id 0
    0x00, 0x00, 0xE0, 0x1F,                             // program 0 -> 0x001F
    0x00, 0x01, 0xE1, 0x00,                             // program 1 -> 0x0100
    0x23, 0x5A, 0xAB, 0x82,                             // CRC_32
};
// PMT of program 1: PCR on 0x1001, H.264 on 0x1011 and AC-3 on 0x1100.
constexpr uint8_t kPmt[] = {
    0x47, 0x41, 0x00, 0x10, 0x00,                       // header (PUSI, PID 0x0100), pointer field
    0x02, 0xB0, 0x39, 0x00, 0x01, 0xC1, 0x00, 0x00,     // table 2, length 57, program 1
    0xF0, 0x01, 0xF0, 0x0C,                             // PCR_PID 0x1001, program_info_length 12
    0x05, 0x04, 0x48, 0x44, 0x4D, 0x56,                 // registration "HDMV"
    0x88, 0x04, 0x0F, 0xFF, 0xFC, 0xFC,                 // descriptor 0x88
    0x1B, 0xF0, 0x11, 0xF0, 0x0A,                       // H.264 on 0x1011, 10 bytes of descriptors
    0x05, 0x08, 0x48, 0x44, 0x4D, 0x56, 0xFF, 0x1B, 0x56, 0x3F,   // registration "HDMV"
    0x81, 0xF1, 0x00, 0xF0, 0x0C,                       // AC-3 on 0x1100, 12 bytes of descriptors
    0x05, 0x04, 0x41, 0x43, 0x2D, 0x33,                 // registration "AC-3"
    0x81, 0x04, 0x04, 0x28, 0x05, 0x00,                 // descriptor 0x81
    0x95, 0x65, 0xB4, 0x0F,                             // CRC_32
};
// SIT: table 0x7F on PID 0x001F.
constexpr uint8_t kSit[] = {
    0x47, 0x40, 0x1F, 0x10, 0x00,                       // header (PUSI, PID 0x001F), pointer field
    0x7F, 0xF0, 0x19, 0xFF, 0xFF, 0xC1, 0x00, 0x00,     // table 0x7F, length 25
    0xF0, 0x0A,                                         // transmission_info_loop_length 10
    0x63, 0x08, 0xC0, 0xAF, 0xC8, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,   // descriptor 0x63
    0x00, 0x01, 0x80, 0x00,                             // service 1, running
    0xAE, 0xB4, 0x3A, 0x35,                             // CRC_32
};
// Adaptation field only, PCR flag set, PCR zero; stuffing follows.
constexpr uint8_t kPcr[] = {
    0x47, 0x10, 0x01, 0x20,                             // PID 0x1001, adaptation only
    0xB7, 0x10,                                         // adaptation_field_length 183, PCR flag
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00,                 // PCR base and extension: 0
};
} // namespace detail

inline constexpr Unit PatUnit = MakeUnit(detail::kPat);
inline constexpr Unit PmtUnit = MakeUnit(detail::kPmt);
inline constexpr Unit SitUnit = MakeUnit(detail::kSit);
inline constexpr Unit PcrUnit = MakeUnit(detail::kPcr);

enum class HeadClass {
    None,           // not a recognised packet head
    System,         // PAT, PMT, SIT, PCR only: dropped when rebuilding
    Media,          // video or audio, copied
    MediaCounted,   // video or audio with payload start: copied and counted
};

// Class of the four bytes at a sync byte, read big-endian. Audio without the
// transport priority bit is not recognised, and neither are other PIDs.
constexpr HeadClass ClassifyHead(uint32_t head)
{
    if (head == 0x47100120u)                    // PCR only
        return HeadClass::System;
    switch (head >> 8) {
    case 0x474000u:                             // PAT
    case 0x474100u:                             // PMT
    case 0x47401Fu:                             // SIT
        return HeadClass::System;
    case 0x471011u:                             // video
    case 0x473011u:                             // video, priority
    case 0x477011u:                             // video, priority, payload start
    case 0x473100u:                             // audio, priority
        return HeadClass::Media;
    case 0x475011u:                             // video, payload start
    case 0x477100u:                             // audio, priority, payload start
        return HeadClass::MediaCounted;
    default:
        return HeadClass::None;
    }
}

} // namespace mts
