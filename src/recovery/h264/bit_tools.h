// Bit-string helpers for the H.264/AAC recovery: big-endian reads and the
// seven-byte ADTS header placed in front of every AAC frame found.
#pragma once

#include <QString>
#include <array>
#include <cstdint>

// The seven bytes of one ADTS header, as BuildAdtsHeader makes them.
using AdtsHeaderBytes = std::array<uint8_t, 7>;

uint32_t ReadBigEndian32(const uint8_t* bytes);

// The largest raw frame an ADTS header can carry: its thirteen-bit length
// counts the header's seven bytes.
constexpr uint32_t kMaxAdtsPayload = 0x1FFF - 7;

// Fills header for a raw AAC frame of frameSize bytes at sampleRate
// (its low 32 bits name it; 0 and 1000 stand for 48000); the header always
// says two channels. Returns false when the rate has no ADTS frequency index
// (the caller then drops the audio and keeps the video-only result) or the
// frame is longer than kMaxAdtsPayload.
bool BuildAdtsHeader(uint32_t frameSize, int64_t sampleRate, AdtsHeaderBytes& header);
// True when BuildAdtsHeader can name the rate (0 and 1000 stand for 48000).
bool AdtsRateSupported(int64_t rate);
