#pragma once
// Constant tables of the HEVC chain: records of three bytes each.
#include <cstdint>

// Appended to the sample's frame-start records: slice and PPS starts that
// widen what the stream scanner takes as a frame start.
extern const uint8_t HevcSliceStartTable[315];
// Appended to the sample's audio chunk starts: common AAC frame starts.
extern const uint8_t HevcAacStartTable[402];
