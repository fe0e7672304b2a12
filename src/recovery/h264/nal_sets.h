// Byte tests that tell a length-prefixed NAL unit from noise, without parsing
// any H.264 syntax, and the filler-run test.
#pragma once

#include <cstdint>

class ByteReader;

enum class NalStartSet {
    ReferenceNalBytes,
    StreamFirstBytes,
    StreamBytes,
    VideoOnlyFirstBytes,
    VideoOnlyBytes,
    IndexScanBytes,
    // HEVC: b4 is the first byte of the two-byte NAL unit header.
    HevcReferenceBytes,   // chunks of a sample; successors in a chain
    HevcOwnIndexBytes,    // first chunk of a damaged file's own table
    HevcStreamBytes,      // a unit opened by the stream scanner
    HevcLpcmBytes,        // units of the chain with lpcm sound
};

// True when the four bytes at position are a plausible length (first byte 0)
// followed by a NAL header byte allowed by the set, or the two-byte AUD marker.
bool IsNalStart(ByteReader& r, uint64_t position, NalStartSet set);
bool IsNalStartBytes(const uint8_t b[6], NalStartSet set);

// True when length bytes at position are all 0x00 or all 0xFF.
bool IsFillerRun(ByteReader& r, uint64_t position, uint32_t length);
bool IsFillerRunBytes(const uint8_t* p, uint32_t length);
