// Matroska element size reading, shared by the repair and its tests.
#pragma once
#include <cstdint>
#include <utility>

class ByteReader;

// (length of the size field, value) at pos. A field of 5 to 8 bytes is read in full.
std::pair<int, uint64_t> ReadEbmlSize(ByteReader& in, uint64_t pos);
