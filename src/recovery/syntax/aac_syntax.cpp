#include "recovery/syntax/aac_syntax.h"

#include "core/byte_reader.h"

#include <algorithm>
#include <array>
#include <vector>

namespace syntax {

namespace {

// ---- The Huffman codebooks of AAC (codeword, length), in index order --------

const uint32_t kScalefactorCodes[121] = {
    0x3ffe8, 0x3ffe6, 0x3ffe7, 0x3ffe5, 0x7fff5, 0x7fff1, 0x7ffed, 0x7fff6, 0x7ffee, 0x7ffef, 0x7fff0,
    0x7fffc, 0x7fffd, 0x7ffff, 0x7fffe, 0x7fff7, 0x7fff8, 0x7fffb, 0x7fff9, 0x3ffe4, 0x7fffa, 0x3ffe3,
    0x1ffef, 0x1fff0, 0x0fff5, 0x1ffee, 0x0fff2, 0x0fff3, 0x0fff4, 0x0fff1, 0x07ff6, 0x07ff7, 0x03ff9,
    0x03ff5, 0x03ff7, 0x03ff3, 0x03ff6, 0x03ff2, 0x01ff7, 0x01ff5, 0x00ff9, 0x00ff7, 0x00ff6, 0x007f9,
    0x00ff4, 0x007f8, 0x003f9, 0x003f7, 0x003f5, 0x001f8, 0x001f7, 0x000fa, 0x000f8, 0x000f6, 0x00079,
    0x0003a, 0x00038, 0x0001a, 0x0000b, 0x00004, 0x00000, 0x0000a, 0x0000c, 0x0001b, 0x00039, 0x0003b,
    0x00078, 0x0007a, 0x000f7, 0x000f9, 0x001f6, 0x001f9, 0x003f4, 0x003f6, 0x003f8, 0x007f5, 0x007f4,
    0x007f6, 0x007f7, 0x00ff5, 0x00ff8, 0x01ff4, 0x01ff6, 0x01ff8, 0x03ff8, 0x03ff4, 0x0fff0, 0x07ff4,
    0x0fff6, 0x07ff5, 0x3ffe2, 0x7ffd9, 0x7ffda, 0x7ffdb, 0x7ffdc, 0x7ffdd, 0x7ffde, 0x7ffd8, 0x7ffd2,
    0x7ffd3, 0x7ffd4, 0x7ffd5, 0x7ffd6, 0x7fff2, 0x7ffdf, 0x7ffe7, 0x7ffe8, 0x7ffe9, 0x7ffea, 0x7ffeb,
    0x7ffe6, 0x7ffe0, 0x7ffe1, 0x7ffe2, 0x7ffe3, 0x7ffe4, 0x7ffe5, 0x7ffd7, 0x7ffec, 0x7fff4, 0x7fff3,
};
const uint8_t kScalefactorLengths[121] = {
    18, 18, 18, 18, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 18, 19, 18, 17, 17,
    16, 17, 16, 16, 16, 16, 15, 15, 14, 14, 14, 14, 14, 14, 13, 13, 12, 12, 12, 11, 12, 11, 10, 10,
    10, 9,  9,  8,  8,  8,  7,  6,  6,  5,  4,  3,  1,  4,  4,  5,  6,  6,  7,  7,  8,  8,  9,  9,
    10, 10, 10, 11, 11, 11, 11, 12, 12, 13, 13, 13, 14, 14, 16, 15, 16, 15, 18, 19, 19, 19, 19, 19,
    19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19, 19,
};

const uint16_t kCodes1[81] = {
    0x7f8, 0x1f1, 0x7fd, 0x3f5, 0x068, 0x3f0, 0x7f7, 0x1ec, 0x7f5, 0x3f1, 0x072, 0x3f4, 0x074, 0x011,
    0x076, 0x1eb, 0x06c, 0x3f6, 0x7fc, 0x1e1, 0x7f1, 0x1f0, 0x061, 0x1f6, 0x7f2, 0x1ea, 0x7fb, 0x1f2,
    0x069, 0x1ed, 0x077, 0x017, 0x06f, 0x1e6, 0x064, 0x1e5, 0x067, 0x015, 0x062, 0x012, 0x000, 0x014,
    0x065, 0x016, 0x06d, 0x1e9, 0x063, 0x1e4, 0x06b, 0x013, 0x071, 0x1e3, 0x070, 0x1f3, 0x7fe, 0x1e7,
    0x7f3, 0x1ef, 0x060, 0x1ee, 0x7f0, 0x1e2, 0x7fa, 0x3f3, 0x06a, 0x1e8, 0x075, 0x010, 0x073, 0x1f4,
    0x06e, 0x3f7, 0x7f6, 0x1e0, 0x7f9, 0x3f2, 0x066, 0x1f5, 0x7ff, 0x1f7, 0x7f4,
};
const uint8_t kLengths1[81] = {
    11, 9, 11, 10, 7, 10, 11, 9, 11, 10, 7, 10, 7, 5, 7, 9, 7, 10, 11, 9, 11, 9, 7, 9, 11, 9, 11,
    9,  7, 9,  7,  5, 7,  9,  7, 9,  7,  5, 7,  5, 1, 5, 7, 5, 7,  9,  7, 9, 7, 5, 7, 9, 7, 9, 11,
    9,  11, 9, 7,  9, 11, 9,  11, 10, 7, 9, 7, 5, 7, 9, 7, 10, 11, 9, 11, 10, 7, 9, 11, 9, 11,
};
const uint16_t kCodes2[81] = {
    0x1f3, 0x06f, 0x1fd, 0x0eb, 0x023, 0x0ea, 0x1f7, 0x0e8, 0x1fa, 0x0f2, 0x02d, 0x070, 0x020, 0x006,
    0x02b, 0x06e, 0x028, 0x0e9, 0x1f9, 0x066, 0x0f8, 0x0e7, 0x01b, 0x0f1, 0x1f4, 0x06b, 0x1f5, 0x0ec,
    0x02a, 0x06c, 0x02c, 0x00a, 0x027, 0x067, 0x01a, 0x0f5, 0x024, 0x008, 0x01f, 0x009, 0x000, 0x007,
    0x01d, 0x00b, 0x030, 0x0ef, 0x01c, 0x064, 0x01e, 0x00c, 0x029, 0x0f3, 0x02f, 0x0f0, 0x1fc, 0x071,
    0x1f2, 0x0f4, 0x021, 0x0e6, 0x0f7, 0x068, 0x1f8, 0x0ee, 0x022, 0x065, 0x031, 0x002, 0x026, 0x0ed,
    0x025, 0x06a, 0x1fb, 0x072, 0x1fe, 0x069, 0x02e, 0x0f6, 0x1ff, 0x06d, 0x1f6,
};
const uint8_t kLengths2[81] = {
    9, 7, 9, 8, 6, 8, 9, 8, 9, 8, 6, 7, 6, 5, 6, 7, 6, 8, 9, 7, 8, 8, 6, 8, 9, 7, 9,
    8, 6, 7, 6, 5, 6, 7, 6, 8, 6, 5, 6, 5, 3, 5, 6, 5, 6, 8, 6, 7, 6, 5, 6, 8, 6, 8,
    9, 7, 9, 8, 6, 8, 8, 7, 9, 8, 6, 7, 6, 4, 6, 8, 6, 7, 9, 7, 9, 7, 6, 8, 9, 7, 9,
};
const uint16_t kCodes3[81] = {
    0x0000, 0x0009, 0x00ef, 0x000b, 0x0019, 0x00f0, 0x01eb, 0x01e6, 0x03f2, 0x000a, 0x0035, 0x01ef,
    0x0034, 0x0037, 0x01e9, 0x01ed, 0x01e7, 0x03f3, 0x01ee, 0x03ed, 0x1ffa, 0x01ec, 0x01f2, 0x07f9,
    0x07f8, 0x03f8, 0x0ff8, 0x0008, 0x0038, 0x03f6, 0x0036, 0x0075, 0x03f1, 0x03eb, 0x03ec, 0x0ff4,
    0x0018, 0x0076, 0x07f4, 0x0039, 0x0074, 0x03ef, 0x01f3, 0x01f4, 0x07f6, 0x01e8, 0x03ea, 0x1ffc,
    0x00f2, 0x01f1, 0x0ffb, 0x03f5, 0x07f3, 0x0ffc, 0x00ee, 0x03f7, 0x7ffe, 0x01f0, 0x07f5, 0x7ffd,
    0x1ffb, 0x3ffa, 0xffff, 0x00f1, 0x03f0, 0x3ffc, 0x01ea, 0x03ee, 0x3ffb, 0x0ff6, 0x0ffa, 0x7ffc,
    0x07f2, 0x0ff5, 0xfffe, 0x03f4, 0x07f7, 0x7ffb, 0x0ff7, 0x0ff9, 0x7ffa,
};
const uint8_t kLengths3[81] = {
    1,  4,  8,  4,  5,  8,  9,  9,  10, 4,  6,  9,  6,  6,  9,  9,  9,  10, 9,  10, 13, 9,  9,  11,
    11, 10, 12, 4,  6,  10, 6,  7,  10, 10, 10, 12, 5,  7,  11, 6,  7,  10, 9,  9,  11, 9,  10, 13,
    8,  9,  12, 10, 11, 12, 8,  10, 15, 9,  11, 15, 13, 14, 16, 8,  10, 14, 9,  10, 14, 12, 12, 15,
    11, 12, 16, 10, 11, 15, 12, 12, 15,
};
const uint16_t kCodes4[81] = {
    0x007, 0x016, 0x0f6, 0x018, 0x008, 0x0ef, 0x1ef, 0x0f3, 0x7f8, 0x019, 0x017, 0x0ed, 0x015, 0x001,
    0x0e2, 0x0f0, 0x070, 0x3f0, 0x1ee, 0x0f1, 0x7fa, 0x0ee, 0x0e4, 0x3f2, 0x7f6, 0x3ef, 0x7fd, 0x005,
    0x014, 0x0f2, 0x009, 0x004, 0x0e5, 0x0f4, 0x0e8, 0x3f4, 0x006, 0x002, 0x0e7, 0x003, 0x000, 0x06b,
    0x0e3, 0x069, 0x1f3, 0x0eb, 0x0e6, 0x3f6, 0x06e, 0x06a, 0x1f4, 0x3ec, 0x1f0, 0x3f9, 0x0f5, 0x0ec,
    0x7fb, 0x0ea, 0x06f, 0x3f7, 0x7f9, 0x3f3, 0xfff, 0x0e9, 0x06d, 0x3f8, 0x06c, 0x068, 0x1f5, 0x3ee,
    0x1f2, 0x7f4, 0x7f7, 0x3f1, 0xffe, 0x3ed, 0x1f1, 0x7f5, 0x7fe, 0x3f5, 0x7fc,
};
const uint8_t kLengths4[81] = {
    4,  5,  8,  5, 4,  8,  9,  8,  11, 5,  5, 8,  5, 4,  8,  8,  7,  10, 9,  8,  11, 8, 8,  10, 11, 10, 11,
    4,  5,  8,  4, 4,  8,  8,  8,  10, 4,  4, 8,  4, 4,  7,  8,  7,  9,  8,  8,  10, 7, 7,  9,  10, 9,  10,
    8,  8,  11, 8, 7,  10, 11, 10, 12, 8,  7, 10, 7, 7,  9,  10, 9,  11, 11, 10, 12, 10, 9, 11, 11, 10, 11,
};
const uint16_t kCodes5[81] = {
    0x1fff, 0x0ff7, 0x07f4, 0x07e8, 0x03f1, 0x07ee, 0x07f9, 0x0ff8, 0x1ffd, 0x0ffd, 0x07f1, 0x03e8,
    0x01e8, 0x00f0, 0x01ec, 0x03ee, 0x07f2, 0x0ffa, 0x0ff4, 0x03ef, 0x01f2, 0x00e8, 0x0070, 0x00ec,
    0x01f0, 0x03ea, 0x07f3, 0x07eb, 0x01eb, 0x00ea, 0x001a, 0x0008, 0x0019, 0x00ee, 0x01ef, 0x07ed,
    0x03f0, 0x00f2, 0x0073, 0x000b, 0x0000, 0x000a, 0x0071, 0x00f3, 0x07e9, 0x07ef, 0x01ee, 0x00ef,
    0x0018, 0x0009, 0x001b, 0x00eb, 0x01e9, 0x07ec, 0x07f6, 0x03eb, 0x01f3, 0x00ed, 0x0072, 0x00e9,
    0x01f1, 0x03ed, 0x07f7, 0x0ff6, 0x07f0, 0x03e9, 0x01ed, 0x00f1, 0x01ea, 0x03ec, 0x07f8, 0x0ff9,
    0x1ffc, 0x0ffc, 0x0ff5, 0x07ea, 0x03f3, 0x03f2, 0x07f5, 0x0ffb, 0x1ffe,
};
const uint8_t kLengths5[81] = {
    13, 12, 11, 11, 10, 11, 11, 12, 13, 12, 11, 10, 9,  8,  9,  10, 11, 12, 12, 10, 9,  8,  7,  8,  9,  10, 11,
    11, 9,  8,  5,  4,  5,  8,  9,  11, 10, 8,  7,  4,  1,  4,  7,  8,  11, 11, 9,  8,  5,  4,  5,  8,  9,  11,
    11, 10, 9,  8,  7,  8,  9,  10, 11, 12, 11, 10, 9,  8,  9,  10, 11, 12, 13, 12, 12, 11, 10, 10, 11, 12, 13,
};
const uint16_t kCodes6[81] = {
    0x7fe, 0x3fd, 0x1f1, 0x1eb, 0x1f4, 0x1ea, 0x1f0, 0x3fc, 0x7fd, 0x3f6, 0x1e5, 0x0ea, 0x06c, 0x071,
    0x068, 0x0f0, 0x1e6, 0x3f7, 0x1f3, 0x0ef, 0x032, 0x027, 0x028, 0x026, 0x031, 0x0eb, 0x1f7, 0x1e8,
    0x06f, 0x02e, 0x008, 0x004, 0x006, 0x029, 0x06b, 0x1ee, 0x1ef, 0x072, 0x02d, 0x002, 0x000, 0x003,
    0x02f, 0x073, 0x1fa, 0x1e7, 0x06e, 0x02b, 0x007, 0x001, 0x005, 0x02c, 0x06d, 0x1ec, 0x1f9, 0x0ee,
    0x030, 0x024, 0x02a, 0x025, 0x033, 0x0ec, 0x1f2, 0x3f8, 0x1e4, 0x0ed, 0x06a, 0x070, 0x069, 0x074,
    0x0f1, 0x3fa, 0x7ff, 0x3f9, 0x1f6, 0x1ed, 0x1f8, 0x1e9, 0x1f5, 0x3fb, 0x7fc,
};
const uint8_t kLengths6[81] = {
    11, 10, 9, 9, 9, 9, 9, 10, 11, 10, 9, 8, 7, 7, 7, 8, 9, 10, 9,  8,  6, 6, 6, 6, 6, 8, 9,
    9,  7,  6, 4, 4, 4, 6, 7,  9,  9,  7, 6, 4, 4, 4, 6, 7, 9,  9,  7,  6, 4, 4, 4, 6, 7, 9,
    9,  8,  6, 6, 6, 6, 6, 8,  9,  10, 9, 8, 7, 7, 7, 7, 8, 10, 11, 10, 9, 9, 9, 9, 9, 10, 11,
};
const uint16_t kCodes7[64] = {
    0x000, 0x005, 0x037, 0x074, 0x0f2, 0x1eb, 0x3ed, 0x7f7, 0x004, 0x00c, 0x035, 0x071, 0x0ec,
    0x0ee, 0x1ee, 0x1f5, 0x036, 0x034, 0x072, 0x0ea, 0x0f1, 0x1e9, 0x1f3, 0x3f5, 0x073, 0x070,
    0x0eb, 0x0f0, 0x1f1, 0x1f0, 0x3ec, 0x3fa, 0x0f3, 0x0ed, 0x1e8, 0x1ef, 0x3ef, 0x3f1, 0x3f9,
    0x7fb, 0x1ed, 0x0ef, 0x1ea, 0x1f2, 0x3f3, 0x3f8, 0x7f9, 0x7fc, 0x3ee, 0x1ec, 0x1f4, 0x3f4,
    0x3f7, 0x7f8, 0xffd, 0xffe, 0x7f6, 0x3f0, 0x3f2, 0x3f6, 0x7fa, 0x7fd, 0xffc, 0xfff,
};
const uint8_t kLengths7[64] = {
    1, 3, 6, 7, 8, 9, 10, 11, 3, 4, 6,  7,  8,  8,  9,  9,  6,  6,  7,  8,  8,  9,  9,  10,
    7, 7, 8, 8, 9, 9, 10, 10, 8, 8, 9,  9,  10, 10, 10, 11, 9,  8,  9,  9,  10, 10, 11, 11,
    10, 9, 9, 10, 10, 11, 12, 12, 11, 10, 10, 10, 11, 11, 12, 12,
};
const uint16_t kCodes8[64] = {
    0x00e, 0x005, 0x010, 0x030, 0x06f, 0x0f1, 0x1fa, 0x3fe, 0x003, 0x000, 0x004, 0x012, 0x02c,
    0x06a, 0x075, 0x0f8, 0x00f, 0x002, 0x006, 0x014, 0x02e, 0x069, 0x072, 0x0f5, 0x02f, 0x011,
    0x013, 0x02a, 0x032, 0x06c, 0x0ec, 0x0fa, 0x071, 0x02b, 0x02d, 0x031, 0x06d, 0x070, 0x0f2,
    0x1f9, 0x0ef, 0x068, 0x033, 0x06b, 0x06e, 0x0ee, 0x0f9, 0x3fc, 0x1f8, 0x074, 0x073, 0x0ed,
    0x0f0, 0x0f6, 0x1f6, 0x1fd, 0x3fd, 0x0f3, 0x0f4, 0x0f7, 0x1f7, 0x1fb, 0x1fc, 0x3ff,
};
const uint8_t kLengths8[64] = {
    5, 4, 5, 6, 7, 8, 9, 10, 4, 3, 4, 5, 6, 7, 7, 8, 5, 4, 4, 5, 6, 7, 7, 8, 6, 5, 5, 6, 6, 7, 8, 8,
    7, 6, 6, 6, 7, 7, 8, 9,  8, 7, 6, 7, 7, 8, 8, 10, 9, 7, 7, 8, 8, 8, 9, 9, 10, 8, 8, 8, 9, 9, 9, 10,
};
const uint16_t kCodes9[169] = {
    0x0000, 0x0005, 0x0037, 0x00e7, 0x01de, 0x03ce, 0x03d9, 0x07c8, 0x07cd, 0x0fc8, 0x0fdd, 0x1fe4,
    0x1fec, 0x0004, 0x000c, 0x0035, 0x0072, 0x00ea, 0x00ed, 0x01e2, 0x03d1, 0x03d3, 0x03e0, 0x07d8,
    0x0fcf, 0x0fd5, 0x0036, 0x0034, 0x0071, 0x00e8, 0x00ec, 0x01e1, 0x03cf, 0x03dd, 0x03db, 0x07d0,
    0x0fc7, 0x0fd4, 0x0fe4, 0x00e6, 0x0070, 0x00e9, 0x01dd, 0x01e3, 0x03d2, 0x03dc, 0x07cc, 0x07ca,
    0x07de, 0x0fd8, 0x0fea, 0x1fdb, 0x01df, 0x00eb, 0x01dc, 0x01e6, 0x03d5, 0x03de, 0x07cb, 0x07dd,
    0x07dc, 0x0fcd, 0x0fe2, 0x0fe7, 0x1fe1, 0x03d0, 0x01e0, 0x01e4, 0x03d6, 0x07c5, 0x07d1, 0x07db,
    0x0fd2, 0x07e0, 0x0fd9, 0x0feb, 0x1fe3, 0x1fe9, 0x07c4, 0x01e5, 0x03d7, 0x07c6, 0x07cf, 0x07da,
    0x0fcb, 0x0fda, 0x0fe3, 0x0fe9, 0x1fe6, 0x1ff3, 0x1ff7, 0x07d3, 0x03d8, 0x03e1, 0x07d4, 0x07d9,
    0x0fd3, 0x0fde, 0x1fdd, 0x1fd9, 0x1fe2, 0x1fea, 0x1ff1, 0x1ff6, 0x07d2, 0x03d4, 0x03da, 0x07c7,
    0x07d7, 0x07e2, 0x0fce, 0x0fdb, 0x1fd8, 0x1fee, 0x3ff0, 0x1ff4, 0x3ff2, 0x07e1, 0x03df, 0x07c9,
    0x07d6, 0x0fca, 0x0fd0, 0x0fe5, 0x0fe6, 0x1feb, 0x1fef, 0x3ff3, 0x3ff4, 0x3ff5, 0x0fe0, 0x07ce,
    0x07d5, 0x0fc6, 0x0fd1, 0x0fe1, 0x1fe0, 0x1fe8, 0x1ff0, 0x3ff1, 0x3ff8, 0x3ff6, 0x7ffc, 0x0fe8,
    0x07df, 0x0fc9, 0x0fd7, 0x0fdc, 0x1fdc, 0x1fdf, 0x1fed, 0x1ff5, 0x3ff9, 0x3ffb, 0x7ffd, 0x7ffe,
    0x1fe7, 0x0fcc, 0x0fd6, 0x0fdf, 0x1fde, 0x1fda, 0x1fe5, 0x1ff2, 0x3ffa, 0x3ff7, 0x3ffc, 0x3ffd,
    0x7fff,
};
const uint8_t kLengths9[169] = {
    1,  3,  6,  8,  9,  10, 10, 11, 11, 12, 12, 13, 13, 3,  4,  6,  7,  8,  8,  9,  10, 10, 10, 11,
    12, 12, 6,  6,  7,  8,  8,  9,  10, 10, 10, 11, 12, 12, 12, 8,  7,  8,  9,  9,  10, 10, 11, 11,
    11, 12, 12, 13, 9,  8,  9,  9,  10, 10, 11, 11, 11, 12, 12, 12, 13, 10, 9,  9,  10, 11, 11, 11,
    12, 11, 12, 12, 13, 13, 11, 9,  10, 11, 11, 11, 12, 12, 12, 12, 13, 13, 13, 11, 10, 10, 11, 11,
    12, 12, 13, 13, 13, 13, 13, 13, 11, 10, 10, 11, 11, 11, 12, 12, 13, 13, 14, 13, 14, 11, 10, 11,
    11, 12, 12, 12, 12, 13, 13, 14, 14, 14, 12, 11, 11, 12, 12, 12, 13, 13, 13, 14, 14, 14, 15, 12,
    11, 12, 12, 12, 13, 13, 13, 13, 14, 14, 15, 15, 13, 12, 12, 12, 13, 13, 13, 13, 14, 14, 14, 14,
    15,
};
const uint16_t kCodes10[169] = {
    0x022, 0x008, 0x01d, 0x026, 0x05f, 0x0d3, 0x1cf, 0x3d0, 0x3d7, 0x3ed, 0x7f0, 0x7f6, 0xffd,
    0x007, 0x000, 0x001, 0x009, 0x020, 0x054, 0x060, 0x0d5, 0x0dc, 0x1d4, 0x3cd, 0x3de, 0x7e7,
    0x01c, 0x002, 0x006, 0x00c, 0x01e, 0x028, 0x05b, 0x0cd, 0x0d9, 0x1ce, 0x1dc, 0x3d9, 0x3f1,
    0x025, 0x00b, 0x00a, 0x00d, 0x024, 0x057, 0x061, 0x0cc, 0x0dd, 0x1cc, 0x1de, 0x3d3, 0x3e7,
    0x05d, 0x021, 0x01f, 0x023, 0x027, 0x059, 0x064, 0x0d8, 0x0df, 0x1d2, 0x1e2, 0x3dd, 0x3ee,
    0x0d1, 0x055, 0x029, 0x056, 0x058, 0x062, 0x0ce, 0x0e0, 0x0e2, 0x1da, 0x3d4, 0x3e3, 0x7eb,
    0x1c9, 0x05e, 0x05a, 0x05c, 0x063, 0x0ca, 0x0da, 0x1c7, 0x1ca, 0x1e0, 0x3db, 0x3e8, 0x7ec,
    0x1e3, 0x0d2, 0x0cb, 0x0d0, 0x0d7, 0x0db, 0x1c6, 0x1d5, 0x1d8, 0x3ca, 0x3da, 0x7ea, 0x7f1,
    0x1e1, 0x0d4, 0x0cf, 0x0d6, 0x0de, 0x0e1, 0x1d0, 0x1d6, 0x3d1, 0x3d5, 0x3f2, 0x7ee, 0x7fb,
    0x3e9, 0x1cd, 0x1c8, 0x1cb, 0x1d1, 0x1d7, 0x1df, 0x3cf, 0x3e0, 0x3ef, 0x7e6, 0x7f8, 0xffa,
    0x3eb, 0x1dd, 0x1d3, 0x1d9, 0x1db, 0x3d2, 0x3cc, 0x3dc, 0x3ea, 0x7ed, 0x7f3, 0x7f9, 0xff9,
    0x7f2, 0x3ce, 0x1e4, 0x3cb, 0x3d8, 0x3d6, 0x3e2, 0x3e5, 0x7e8, 0x7f4, 0x7f5, 0x7f7, 0xffb,
    0x7fa, 0x3ec, 0x3df, 0x3e1, 0x3e4, 0x3e6, 0x3f0, 0x7e9, 0x7ef, 0xff8, 0xffe, 0xffc, 0xfff,
};
const uint8_t kLengths10[169] = {
    6,  5,  6,  6,  7,  8,  9,  10, 10, 10, 11, 11, 12, 5,  4,  4,  5,  6,  7,  7,  8,  8,  9,  10,
    10, 11, 6,  4,  5,  5,  6,  6,  7,  8,  8,  9,  9,  10, 10, 6,  5,  5,  5,  6,  7,  7,  8,  8,
    9,  9,  10, 10, 7,  6,  6,  6,  6,  7,  7,  8,  8,  9,  9,  10, 10, 8,  7,  6,  7,  7,  7,  8,
    8,  8,  9,  10, 10, 11, 9,  7,  7,  7,  7,  8,  8,  9,  9,  9,  10, 10, 11, 9,  8,  8,  8,  8,
    8,  9,  9,  9,  10, 10, 11, 11, 9,  8,  8,  8,  8,  8,  9,  9,  10, 10, 10, 11, 11, 10, 9,  9,
    9,  9,  9,  9,  10, 10, 10, 11, 11, 12, 10, 9,  9,  9,  9,  10, 10, 10, 10, 11, 11, 11, 12, 11,
    10, 9,  10, 10, 10, 10, 10, 11, 11, 11, 11, 12, 11, 10, 10, 10, 10, 10, 10, 11, 11, 12, 12, 12,
    12,
};
const uint16_t kCodes11[289] = {
    0x000, 0x006, 0x019, 0x03d, 0x09c, 0x0c6, 0x1a7, 0x390, 0x3c2, 0x3df, 0x7e6, 0x7f3, 0xffb,
    0x7ec, 0xffa, 0xffe, 0x38e, 0x005, 0x001, 0x008, 0x014, 0x037, 0x042, 0x092, 0x0af, 0x191,
    0x1a5, 0x1b5, 0x39e, 0x3c0, 0x3a2, 0x3cd, 0x7d6, 0x0ae, 0x017, 0x007, 0x009, 0x018, 0x039,
    0x040, 0x08e, 0x0a3, 0x0b8, 0x199, 0x1ac, 0x1c1, 0x3b1, 0x396, 0x3be, 0x3ca, 0x09d, 0x03c,
    0x015, 0x016, 0x01a, 0x03b, 0x044, 0x091, 0x0a5, 0x0be, 0x196, 0x1ae, 0x1b9, 0x3a1, 0x391,
    0x3a5, 0x3d5, 0x094, 0x09a, 0x036, 0x038, 0x03a, 0x041, 0x08c, 0x09b, 0x0b0, 0x0c3, 0x19e,
    0x1ab, 0x1bc, 0x39f, 0x38f, 0x3a9, 0x3cf, 0x093, 0x0bf, 0x03e, 0x03f, 0x043, 0x045, 0x09e,
    0x0a7, 0x0b9, 0x194, 0x1a2, 0x1ba, 0x1c3, 0x3a6, 0x3a7, 0x3bb, 0x3d4, 0x09f, 0x1a0, 0x08f,
    0x08d, 0x090, 0x098, 0x0a6, 0x0b6, 0x0c4, 0x19f, 0x1af, 0x1bf, 0x399, 0x3bf, 0x3b4, 0x3c9,
    0x3e7, 0x0a8, 0x1b6, 0x0ab, 0x0a4, 0x0aa, 0x0b2, 0x0c2, 0x0c5, 0x198, 0x1a4, 0x1b8, 0x38c,
    0x3a4, 0x3c4, 0x3c6, 0x3dd, 0x3e8, 0x0ad, 0x3af, 0x192, 0x0bd, 0x0bc, 0x18e, 0x197, 0x19a,
    0x1a3, 0x1b1, 0x38d, 0x398, 0x3b7, 0x3d3, 0x3d1, 0x3db, 0x7dd, 0x0b4, 0x3de, 0x1a9, 0x19b,
    0x19c, 0x1a1, 0x1aa, 0x1ad, 0x1b3, 0x38b, 0x3b2, 0x3b8, 0x3ce, 0x3e1, 0x3e0, 0x7d2, 0x7e5,
    0x0b7, 0x7e3, 0x1bb, 0x1a8, 0x1a6, 0x1b0, 0x1b2, 0x1b7, 0x39b, 0x39a, 0x3ba, 0x3b5, 0x3d6,
    0x7d7, 0x3e4, 0x7d8, 0x7ea, 0x0ba, 0x7e8, 0x3a0, 0x1bd, 0x1b4, 0x38a, 0x1c4, 0x392, 0x3aa,
    0x3b0, 0x3bc, 0x3d7, 0x7d4, 0x7dc, 0x7db, 0x7d5, 0x7f0, 0x0c1, 0x7fb, 0x3c8, 0x3a3, 0x395,
    0x39d, 0x3ac, 0x3ae, 0x3c5, 0x3d8, 0x3e2, 0x3e6, 0x7e4, 0x7e7, 0x7e0, 0x7e9, 0x7f7, 0x190,
    0x7f2, 0x393, 0x1be, 0x1c0, 0x394, 0x397, 0x3ad, 0x3c3, 0x3c1, 0x3d2, 0x7da, 0x7d9, 0x7df,
    0x7eb, 0x7f4, 0x7fa, 0x195, 0x7f8, 0x3bd, 0x39c, 0x3ab, 0x3a8, 0x3b3, 0x3b9, 0x3d0, 0x3e3,
    0x3e5, 0x7e2, 0x7de, 0x7ed, 0x7f1, 0x7f9, 0x7fc, 0x193, 0xffd, 0x3dc, 0x3b6, 0x3c7, 0x3cc,
    0x3cb, 0x3d9, 0x3da, 0x7d3, 0x7e1, 0x7ee, 0x7ef, 0x7f5, 0x7f6, 0xffc, 0xfff, 0x19d, 0x1c2,
    0x0b5, 0x0a1, 0x096, 0x097, 0x095, 0x099, 0x0a0, 0x0a2, 0x0ac, 0x0a9, 0x0b1, 0x0b3, 0x0bb,
    0x0c0, 0x18f, 0x004,
};
const uint8_t kLengths11[289] = {
    4,  5,  6,  7,  8,  8,  9,  10, 10, 10, 11, 11, 12, 11, 12, 12, 10, 5,  4,  5,  6,  7,  7,  8,
    8,  9,  9,  9,  10, 10, 10, 10, 11, 8,  6,  5,  5,  6,  7,  7,  8,  8,  8,  9,  9,  9,  10, 10,
    10, 10, 8,  7,  6,  6,  6,  7,  7,  8,  8,  8,  9,  9,  9,  10, 10, 10, 10, 8,  8,  7,  7,  7,
    7,  8,  8,  8,  8,  9,  9,  9,  10, 10, 10, 10, 8,  8,  7,  7,  7,  7,  8,  8,  8,  9,  9,  9,
    9,  10, 10, 10, 10, 8,  9,  8,  8,  8,  8,  8,  8,  8,  9,  9,  9,  10, 10, 10, 10, 10, 8,  9,
    8,  8,  8,  8,  8,  8,  9,  9,  9,  10, 10, 10, 10, 10, 10, 8,  10, 9,  8,  8,  9,  9,  9,  9,
    9,  10, 10, 10, 10, 10, 10, 11, 8,  10, 9,  9,  9,  9,  9,  9,  9,  10, 10, 10, 10, 10, 10, 11,
    11, 8,  11, 9,  9,  9,  9,  9,  9,  10, 10, 10, 10, 10, 11, 10, 11, 11, 8,  11, 10, 9,  9,  10,
    9,  10, 10, 10, 10, 10, 11, 11, 11, 11, 11, 8,  11, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 11,
    11, 11, 11, 11, 9,  11, 10, 9,  9,  10, 10, 10, 10, 10, 10, 11, 11, 11, 11, 11, 11, 9,  11, 10,
    10, 10, 10, 10, 10, 10, 10, 10, 11, 11, 11, 11, 11, 11, 9,  12, 10, 10, 10, 10, 10, 10, 10, 11,
    11, 11, 11, 11, 11, 12, 12, 9,  9,  8,  8,  8,  8,  8,  8,  8,  8,  8,  8,  8,  8,  8,  8,  9,
    5,
};

// ---- Scale factor bands -------------------------------------------------------

// Offsets of the bands of a long window (1024 lines) and of a short one (128),
// for each sampling rate index 0..11 (96000 .. 8000 Hz).
const uint16_t kLong96[] = {0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  44,  48,  52,
                            56,  64,  72,  80,  88,  96,  108, 120, 132, 144, 156, 172, 188, 212,
                            240, 276, 320, 384, 448, 512, 576, 640, 704, 768, 832, 896, 960, 1024};
const uint16_t kLong64[] = {0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  44,  48,  52,  56,  64,
                            72,  80,  88,  100, 112, 124, 140, 156, 172, 192, 216, 240, 268, 304, 344, 384,
                            424, 464, 504, 544, 584, 624, 664, 704, 744, 784, 824, 864, 904, 944, 984, 1024};
const uint16_t kLong48[] = {0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  48,  56,  64,  72,  80,  88,
                            96,  108, 120, 132, 144, 160, 176, 196, 216, 240, 264, 292, 320, 352, 384, 416, 448,
                            480, 512, 544, 576, 608, 640, 672, 704, 736, 768, 800, 832, 864, 896, 928, 1024};
const uint16_t kLong32[] = {0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  48,  56,  64,  72,  80,  88, 96,
                            108, 120, 132, 144, 160, 176, 196, 216, 240, 264, 292, 320, 352, 384, 416, 448, 480, 512,
                            544, 576, 608, 640, 672, 704, 736, 768, 800, 832, 864, 896, 928, 960, 992, 1024};
const uint16_t kLong24[] = {0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  44,  52,  60,  68,  76,
                            84,  92,  100, 108, 116, 124, 136, 148, 160, 172, 188, 204, 220, 240, 260, 284,
                            308, 336, 364, 396, 432, 468, 508, 552, 600, 652, 704, 768, 832, 896, 960, 1024};
const uint16_t kLong16[] = {0,   8,   16,  24,  32,  40,  48,  56,  64,  72,  80,  88,  100, 112, 124,
                            136, 148, 160, 172, 184, 196, 212, 228, 244, 260, 280, 300, 320, 344, 368,
                            396, 424, 456, 492, 532, 572, 616, 664, 716, 772, 832, 896, 960, 1024};
const uint16_t kLong8[] = {0,   12,  24,  36,  48,  60,  72,  84,  96,  108, 120, 132, 144, 156,
                           172, 188, 204, 220, 236, 252, 268, 288, 308, 328, 348, 372, 396, 420,
                           448, 476, 508, 544, 580, 620, 664, 712, 764, 820, 880, 944, 1024};
const uint16_t kShort96[] = {0, 4, 8, 12, 16, 20, 24, 32, 40, 48, 64, 92, 128};
const uint16_t kShort48[] = {0, 4, 8, 12, 16, 20, 28, 36, 44, 56, 68, 80, 96, 112, 128};
const uint16_t kShort24[] = {0, 4, 8, 12, 16, 20, 24, 28, 36, 44, 52, 64, 76, 92, 108, 128};
const uint16_t kShort16[] = {0, 4, 8, 12, 16, 20, 24, 28, 32, 40, 48, 60, 72, 88, 108, 128};
const uint16_t kShort8[] = {0, 4, 8, 12, 16, 20, 24, 28, 36, 44, 52, 60, 72, 88, 108, 128};

struct Bands {
    const uint16_t* offsets;
    unsigned count;
};
template <size_t N>
constexpr Bands bands(const uint16_t (&offsets)[N])
{
    return {offsets, unsigned(N - 1)};
}
const Bands kLongBands[12] = {bands(kLong96), bands(kLong96), bands(kLong64), bands(kLong48),
                              bands(kLong48), bands(kLong32), bands(kLong24), bands(kLong24),
                              bands(kLong16), bands(kLong16), bands(kLong16), bands(kLong8)};
const Bands kShortBands[12] = {bands(kShort96), bands(kShort96), bands(kShort96), bands(kShort48),
                               bands(kShort48), bands(kShort48), bands(kShort24), bands(kShort24),
                               bands(kShort16), bands(kShort16), bands(kShort16), bands(kShort8)};

// ---- Decoding tables ------------------------------------------------------------

// A code table looked up by the next rootBits bits; codes longer than that go
// through a second table. A cell holds the code's length (0: no such code)
// and what the parser needs of the value in `info`; a link cell points to a
// second table.
class CodeTable {
public:
    template <typename Code>
    CodeTable(const Code* codes, const uint8_t* lengths, size_t n, const uint8_t* infos)
    {
        const unsigned maxLength = *std::max_element(lengths, lengths + n);
        m_root = std::min(maxLength, 9u);
        m_cells.assign(size_t(1) << m_root, 0);
        // Second tables, one per root prefix that longer codes share.
        std::vector<unsigned> subBits(m_cells.size(), 0);
        for (size_t i = 0; i < n; ++i)
            if (lengths[i] > m_root) {
                const size_t prefix = size_t(codes[i]) >> (lengths[i] - m_root);
                subBits[prefix] = std::max(subBits[prefix], unsigned(lengths[i]) - m_root);
            }
        for (size_t prefix = 0; prefix < subBits.size(); ++prefix)
            if (subBits[prefix]) {
                m_cells[prefix] = kLink | uint32_t(m_cells.size()) << 5 | subBits[prefix];
                m_cells.resize(m_cells.size() + (size_t(1) << subBits[prefix]), 0);
            }
        for (size_t i = 0; i < n; ++i) {
            const unsigned len = lengths[i];
            const uint32_t cell = len | uint32_t(infos[i]) << 5;
            if (len <= m_root) {
                const size_t first = size_t(codes[i]) << (m_root - len);
                std::fill_n(m_cells.begin() + first, size_t(1) << (m_root - len), cell);
                continue;
            }
            const uint32_t link = m_cells[size_t(codes[i]) >> (len - m_root)];
            const unsigned sub = link & 31;
            const size_t rest = size_t(codes[i]) & ((size_t(1) << (len - m_root)) - 1);
            const size_t first = (link >> 5 & 0xFFFFFF) + (rest << (m_root + sub - len));
            std::fill_n(m_cells.begin() + first, size_t(1) << (m_root + sub - len), cell);
        }
    }

    unsigned root() const { return m_root; }
    // The cell of the code that `window` (the next root + 16 bits, at least
    // as many as the longest code) starts with.
    uint32_t cell(uint32_t window, unsigned windowBits) const
    {
        uint32_t c = m_cells[window >> (windowBits - m_root)];
        if (c & kLink) {
            const unsigned sub = c & 31;
            c = m_cells[(c >> 5 & 0xFFFFFF) + ((window >> (windowBits - m_root - sub)) & ((1u << sub) - 1))];
        }
        return c;
    }

    static constexpr uint32_t kLink = 0x80000000u;

private:
    unsigned m_root = 0;
    std::vector<uint32_t> m_cells;
};

// What the spectrum parser needs of a codebook's value: the sign bits that
// follow the code (unsigned books: one per value that is not zero) and, in the
// escape book, which of the two values are escapes (bit 3: first, bit 4:
// second).
struct Codebooks {
    std::vector<CodeTable> spectral;   // books 1..11 at 0..10
    CodeTable scalefactor;             // its info: the index (the difference + 60)

    Codebooks() : scalefactor(kScalefactorCodes, kScalefactorLengths, 121, indexes().data())
    {
        struct Book {
            const uint16_t* codes;
            const uint8_t* lengths;
            unsigned n, dim, lav;
            bool isSigned;
        };
        const Book books[11] = {{kCodes1, kLengths1, 81, 4, 1, true},       {kCodes2, kLengths2, 81, 4, 1, true},
                                {kCodes3, kLengths3, 81, 4, 2, false},      {kCodes4, kLengths4, 81, 4, 2, false},
                                {kCodes5, kLengths5, 81, 2, 4, true},       {kCodes6, kLengths6, 81, 2, 4, true},
                                {kCodes7, kLengths7, 64, 2, 7, false},      {kCodes8, kLengths8, 64, 2, 7, false},
                                {kCodes9, kLengths9, 169, 2, 12, false},    {kCodes10, kLengths10, 169, 2, 12, false},
                                {kCodes11, kLengths11, 289, 2, 16, false}};
        spectral.reserve(11);
        for (int b = 0; b < 11; ++b) {
            const Book& book = books[b];
            // Values are the digits of the index, base lav+1 (unsigned) or
            // 2*lav+1 (signed, offset by lav).
            const unsigned base = book.isSigned ? 2 * book.lav + 1 : book.lav + 1;
            std::vector<uint8_t> infos(book.n, 0);
            for (unsigned i = 0; i < book.n; ++i) {
                unsigned rest = i, signBits = 0, escapes = 0;
                for (unsigned d = 0; d < book.dim; ++d) {
                    const unsigned value = rest % base;   // the last digit first
                    rest /= base;
                    if (!book.isSigned && value != 0)
                        ++signBits;
                    if (b == 10 && value == 16)
                        escapes |= d == 0 ? 0x10 : 0x08;   // digit 0 is the second value
                }
                infos[i] = uint8_t(signBits | escapes);
            }
            spectral.emplace_back(book.codes, book.lengths, book.n, infos.data());
        }
    }

    static std::array<uint8_t, 121> indexes()
    {
        std::array<uint8_t, 121> all{};
        for (unsigned i = 0; i < all.size(); ++i)
            all[i] = uint8_t(i);
        return all;
    }
};

const Codebooks& codebooks()
{
    static const Codebooks books;
    return books;
}

// ---- Bits -------------------------------------------------------------------

// MSB-first reader of [p, p + bytes), through a 64-bit cache of the bits
// ahead. Reads past the end give zeros and leave the reader overrun; the
// parser checks that once per element.
class BitReader {
public:
    BitReader(const uint8_t* p, size_t bytes) : m_p(p), m_bytes(bytes) {}

    // The next 32 bits, without moving.
    uint32_t peek32()
    {
        if (m_count < 32)
            refill();
        return uint32_t(m_cache >> 32);
    }
    uint32_t read(unsigned n)   // n <= 32
    {
        if (!n)
            return 0;
        const uint32_t v = peek32() >> (32 - n);
        drop(n);
        return v;
    }
    void skip(uint64_t n)
    {
        if (n <= m_count)
            drop(unsigned(n));
        else
            seek(position() + n);
    }
    void alignToByte() { skip((8 - position() % 8) % 8); }
    bool overrun() const { return position() > uint64_t(m_bytes) * 8; }
    uint64_t position() const { return uint64_t(m_next) * 8 - m_count; }

    // An escape: N ones, a zero, then N + 4 bits; false when N passes 8.
    bool escapeWord()
    {
        unsigned ones = 0;
        while (read(1))
            if (++ones > 8)
                return false;
        skip(ones + 4);
        return true;
    }

    // The value of the code at the position (its table's info) and moves
    // past it; -1 for bits that start no code.
    int code(const CodeTable& table)
    {
        const uint32_t c = table.cell(peek32(), 32);
        const unsigned len = c & 31;
        if (!len || (c & CodeTable::kLink))
            return -1;
        drop(len);
        return int(c >> 5 & 0xFF);
    }

private:
    void drop(unsigned n)   // n <= m_count
    {
        m_cache = n < 64 ? m_cache << n : 0;
        m_count -= n;
    }
    void seek(uint64_t bit)
    {
        m_next = size_t(std::min<uint64_t>(bit / 8, uint64_t(m_bytes) + 8));
        m_cache = 0;
        m_count = 0;
        refill();
        if (bit / 8 > m_next)   // far past the end: only overrun matters
            m_next = size_t(bit / 8);
        drop(unsigned(bit % 8));
    }
    // Tops the cache up to at least 56 bits. The bits below the counted
    // ones may already hold the next bytes; loading them again gives the
    // same bits.
    void refill()
    {
        if (m_next + 8 <= m_bytes) {
            const uint64_t word = uint64_t(ByteReader::loadBe32(m_p + m_next)) << 32 | ByteReader::loadBe32(m_p + m_next + 4);
            m_cache |= word >> m_count;
            m_next += (63 - m_count) >> 3;
            m_count |= 56;
            return;
        }
        while (m_count <= 56) {
            const uint64_t byte = m_next < m_bytes ? m_p[m_next] : 0;
            m_cache |= byte << (56 - m_count);
            ++m_next;
            m_count += 8;
        }
    }

    const uint8_t* m_p;
    size_t m_bytes;
    size_t m_next = 0;      // the next byte to load
    uint64_t m_cache = 0;   // the bits ahead, from the top
    unsigned m_count = 0;   // how many of them count
};

// ---- The syntax ----------------------------------------------------------------

constexpr unsigned kEightShort = 2;
constexpr unsigned kZeroBook = 0, kNoiseBook = 13, kIntensityBook2 = 14, kIntensityBook = 15;

struct StreamInfo {
    bool shortWindows = false;
    unsigned maxSfb = 0;
    unsigned groups = 1;
    uint8_t groupLength[8] = {1};
};

// The window groups of eight short windows, from the seven grouping bits.
void ReadGrouping(BitReader& bits, StreamInfo& info)
{
    const unsigned grouping = bits.read(7);
    info.groups = 1;
    info.groupLength[0] = 1;
    for (int w = 6; w >= 0; --w) {
        if (grouping >> w & 1)
            ++info.groupLength[info.groups - 1];
        else
            info.groupLength[info.groups++] = 1;
    }
}

// What a part of a channel's stream came to: read, bits that start no code
// (or a broken escape), a value out of its range, or past the frame's end.
enum class Part { Ok, NoCode, OutOfRange, Overrun };

// The scale factors: differences coded by the scale factor book, the first
// noise energy as nine plain bits; those of the spectral books must stay in
// 0..255.
Part ScaleFactors(BitReader& bits, const StreamInfo& info, const uint8_t (&books)[8][64], unsigned globalGain)
{
    const CodeTable& sfTable = codebooks().scalefactor;
    int scale = int(globalGain);
    bool firstNoise = true;
    for (unsigned g = 0; g < info.groups; ++g)
        for (unsigned sfb = 0; sfb < info.maxSfb; ++sfb) {
            const unsigned book = books[g][sfb];
            if (book == kZeroBook)
                continue;
            if (book == kNoiseBook && firstNoise) {
                firstNoise = false;
                bits.read(9);
                continue;
            }
            const int index = bits.code(sfTable);
            if (index < 0)
                return Part::NoCode;
            if (book == kNoiseBook || book == kIntensityBook || book == kIntensityBook2)
                continue;
            scale += index - 60;
            if (scale < 0 || scale > 255)
                return Part::OutOfRange;
        }
    return Part::Ok;
}

// Temporal noise shaping, when its flag is set; OutOfRange for a filter
// order above what the window allows.
Part SkipNoiseShaping(BitReader& bits, const StreamInfo& info)
{
    if (!bits.read(1))
        return Part::Ok;
    const unsigned windows = info.shortWindows ? 8 : 1;
    for (unsigned w = 0; w < windows; ++w) {
        const unsigned filters = bits.read(info.shortWindows ? 1 : 2);
        if (!filters)
            continue;
        const unsigned resolution = bits.read(1);
        for (unsigned f = 0; f < filters; ++f) {
            bits.read(info.shortWindows ? 4 : 6);
            const unsigned order = bits.read(info.shortWindows ? 3 : 5);
            if (order > (info.shortWindows ? 7u : 12u))
                return Part::OutOfRange;
            if (!order)
                continue;
            bits.read(1);   // direction
            const unsigned compress = bits.read(1);
            bits.skip(uint64_t(order) * (3 + resolution - compress));
        }
    }
    return Part::Ok;
}

// The spectrum: the codes of each section, with their sign bits and
// escapes. Overrun as soon as a section ends past the frame.
Part SkipSpectrum(BitReader& bits, const StreamInfo& info, const Bands& bands, const uint8_t (&books)[8][64])
{
    const Codebooks& cb = codebooks();
    for (unsigned g = 0; g < info.groups; ++g) {
        for (unsigned k = 0; k < info.maxSfb;) {
            const unsigned book = books[g][k];
            unsigned end = k + 1;
            while (end < info.maxSfb && books[g][end] == book)
                ++end;
            if (book != kZeroBook && book < kNoiseBook) {
                const unsigned dim = book < 5 ? 4 : 2;
                const unsigned lines = unsigned(bands.offsets[end] - bands.offsets[k]) * info.groupLength[g];
                const CodeTable& table = cb.spectral[book - 1];
                for (unsigned n = lines / dim; n > 0; --n) {
                    const int infoBits = bits.code(table);
                    if (infoBits < 0)
                        return Part::NoCode;
                    bits.skip(unsigned(infoBits) & 7);
                    for (unsigned e = (unsigned(infoBits) >> 3) & 3; e; e >>= 1)
                        if ((e & 1) && !bits.escapeWord())
                            return Part::NoCode;
                }
                if (bits.overrun())
                    return Part::Overrun;
            }
            k = end;
        }
    }
    return Part::Ok;
}

// A data stream element behind its id: its tag, then its bytes (after a
// byte alignment when it asks for one).
void SkipDataStream(BitReader& bits)
{
    bits.read(4);
    const bool align = bits.read(1);
    unsigned count = bits.read(8);
    if (count == 255)
        count += bits.read(8);
    if (align)
        bits.alignToByte();
    bits.skip(uint64_t(count) * 8);
}

// The bytes of a fill element, from the count behind its id.
unsigned FillCount(BitReader& bits)
{
    unsigned count = bits.read(4);
    if (count == 15)
        count += bits.read(8) - 1;
    return count;
}

struct Parser {
    BitReader& bits;
    unsigned rateIndex;

    bool streamInfo(StreamInfo& info)
    {
        if (bits.read(1))   // reserved bit
            return false;
        const unsigned sequence = bits.read(2);
        bits.read(1);       // window shape
        info.shortWindows = sequence == kEightShort;
        if (info.shortWindows) {
            info.maxSfb = bits.read(4);
            ReadGrouping(bits, info);
            return info.maxSfb <= kShortBands[rateIndex].count;
        }
        info.maxSfb = bits.read(6);
        info.groups = 1;
        info.groupLength[0] = 1;
        // Prediction belongs to the Main and LTP profiles, not to AAC-LC.
        return info.maxSfb <= kLongBands[rateIndex].count && !bits.read(1);
    }

    // One channel's stream; info is read here unless the pair shares it.
    // Intensity stereo belongs to the second channel of a pair only.
    bool channelStream(StreamInfo& info, bool commonWindow, bool intensityAllowed)
    {
        const unsigned globalGain = bits.read(8);
        if (!commonWindow && !streamInfo(info))
            return false;
        const Bands& bands = info.shortWindows ? kShortBands[rateIndex] : kLongBands[rateIndex];

        // Sections: a codebook and the bands it covers, per window group.
        uint8_t books[8][64];
        const unsigned lengthBits = info.shortWindows ? 3 : 5;
        const unsigned escape = (1u << lengthBits) - 1;
        for (unsigned g = 0; g < info.groups; ++g) {
            unsigned k = 0;
            while (k < info.maxSfb) {
                const unsigned book = bits.read(4);
                if (book == 12 || (!intensityAllowed && (book == kIntensityBook || book == kIntensityBook2)))
                    return false;
                unsigned length = 0, increment;
                do {
                    increment = bits.read(lengthBits);
                    length += increment;
                    if (bits.overrun())
                        return false;
                } while (increment == escape);
                if (length == 0 || k + length > info.maxSfb)
                    return false;
                std::fill_n(books[g] + k, length, uint8_t(book));
                k += length;
            }
        }

        if (ScaleFactors(bits, info, books, globalGain) != Part::Ok)
            return false;

        if (bits.read(1)) {   // pulse data: long windows only
            if (info.shortWindows)
                return false;
            const unsigned pulses = bits.read(2) + 1;
            const unsigned startBand = bits.read(6);
            if (startBand >= bands.count)
                return false;
            // Each pulse stands an offset behind the one before, and all
            // inside the spectrum (a decoder refuses the frame otherwise).
            unsigned line = bands.offsets[startBand];
            for (unsigned i = 0; i < pulses; ++i) {
                line += bits.read(5);
                bits.skip(4);   // amplitude
                if (line >= bands.offsets[bands.count])
                    return false;
            }
        }
        if (SkipNoiseShaping(bits, info) != Part::Ok)
            return false;
        if (bits.read(1))     // gain control belongs to the SSR profile
            return false;
        if (bits.overrun())
            return false;
        return SkipSpectrum(bits, info, bands, books) == Part::Ok && !bits.overrun();
    }
};

// Walks a frame by the rules the decoder keeps, as far as they are certain:
// Refused where the decoder refuses the frame whatever it decoded before,
// Unknown where it might take it (or where this walk doesn't follow it).
enum class Verdict { Ok, Refused, Unknown };

struct DecoderWalk {
    BitReader& bits;
    unsigned rateIndex;

    // ics_info: the reserved bit and more bands than the window has are
    // refused. commonWindow: the info of a pair, whose prediction data
    // covers both channels.
    Verdict streamInfo(StreamInfo& info, bool commonWindow)
    {
        if (bits.read(1))
            return Verdict::Refused;
        info.shortWindows = bits.read(2) == kEightShort;
        bits.read(1);
        info.groups = 1;
        info.groupLength[0] = 1;
        if (info.shortWindows) {
            info.maxSfb = bits.read(4);
            ReadGrouping(bits, info);
            return info.maxSfb > kShortBands[rateIndex].count ? Verdict::Refused : Verdict::Ok;
        }
        info.maxSfb = bits.read(6);
        if (info.maxSfb > kLongBands[rateIndex].count)
            return Verdict::Refused;
        if (!bits.read(1))
            return Verdict::Ok;
        // Prediction data, which the decoder reads in this profile as long
        // term prediction (and then leaves unused): per channel a flag,
        // then a lag, a coefficient and a flag per band up to the 40th.
        for (unsigned channel = 0; channel < (commonWindow ? 2u : 1u); ++channel) {
            if (!bits.read(1))
                continue;
            if (bits.read(11) > 2048)
                return Verdict::Unknown;
            bits.skip(3 + std::min(info.maxSfb, 40u));
        }
        return Verdict::Ok;
    }

    Verdict channelStream(StreamInfo& info, bool commonWindow)
    {
        const unsigned globalGain = bits.read(8);
        if (!commonWindow) {
            const Verdict v = streamInfo(info, false);
            if (v != Verdict::Ok)
                return v;
        }
        const Bands& bands = info.shortWindows ? kShortBands[rateIndex] : kLongBands[rateIndex];

        // Sections: the decoder takes empty ones, but refuses the reserved
        // book, more sections or bands than a window has, and sections that
        // don't end exactly at the last band.
        uint8_t books[8][64];
        const unsigned lengthBits = info.shortWindows ? 3 : 5;
        const unsigned escape = (1u << lengthBits) - 1;
        const unsigned limit = info.shortWindows ? 8 * 15 : 51;
        for (unsigned g = 0; g < info.groups; ++g) {
            unsigned k = 0;
            for (unsigned sections = 0; k < info.maxSfb; ++sections) {
                const unsigned book = bits.read(4);
                if (sections >= limit || book == 12)
                    return Verdict::Refused;
                unsigned length = 0;
                unsigned increment = bits.read(lengthBits);
                for (; increment == escape; increment = bits.read(lengthBits)) {
                    length += increment;
                    if (length > limit)
                        return Verdict::Refused;
                }
                length += increment;
                if (k + length > limit)
                    return Verdict::Refused;
                if (k < info.maxSfb)
                    std::fill_n(books[g] + k, std::min(length, info.maxSfb - k), uint8_t(book));
                k += length;
            }
            if (k != info.maxSfb)
                return Verdict::Refused;
        }

        const Part factors = ScaleFactors(bits, info, books, globalGain);
        if (factors != Part::Ok)
            return factors == Part::OutOfRange ? Verdict::Refused : Verdict::Unknown;

        if (bits.read(1)) {   // pulses: never in short windows, never past the spectrum
            if (info.shortWindows)
                return Verdict::Refused;
            const unsigned pulses = bits.read(2) + 1;
            const unsigned startBand = bits.read(6);
            if (startBand > bands.count)
                return Verdict::Refused;
            unsigned line = bands.offsets[startBand];
            for (unsigned i = 0; i < pulses; ++i) {
                line += bits.read(5);
                bits.skip(4);
                if (line >= bands.offsets[bands.count])
                    return Verdict::Refused;
            }
        }
        if (SkipNoiseShaping(bits, info) != Part::Ok)
            return Verdict::Unknown;
        if (bits.read(1))     // gain control: not in this profile
            return Verdict::Refused;
        const Part spectrum = SkipSpectrum(bits, info, bands, books);
        return spectrum == Part::Ok ? Verdict::Ok : spectrum == Part::Overrun ? Verdict::Refused : Verdict::Unknown;
    }
};

} // namespace

bool AacFrameParser::decoderRefuses(const uint8_t* p, size_t avail) const
{
    if (!ready() || !p || avail == 0)
        return false;
    BitReader bits(p, avail);
    DecoderWalk walk{bits, m_rateIndex};
    for (unsigned elements = 0;; ++elements) {
        // Past the bytes there are zeros, which never end a frame: the
        // decoder runs out of bytes, elements or channels.
        if (bits.overrun())
            return true;
        Verdict v = Verdict::Ok;
        switch (bits.read(3)) {
        case 0:    // single channel
        case 3: {  // low frequency channel
            bits.read(4);
            StreamInfo info;
            v = walk.channelStream(info, false);
            break;
        }
        case 1: {  // channel pair
            bits.read(4);
            StreamInfo info;
            const bool common = bits.read(1);
            if (common) {
                v = walk.streamInfo(info, true);
                if (v != Verdict::Ok)
                    return v == Verdict::Refused;
                const unsigned msMask = bits.read(2);
                if (msMask == 3)
                    return false;
                if (msMask == 1)
                    bits.skip(uint64_t(info.groups) * info.maxSfb);
            }
            StreamInfo second = info;
            v = walk.channelStream(info, common);
            if (v == Verdict::Ok)
                v = walk.channelStream(second, common);
            break;
        }
        case 2:    // coupling channels: the decoder has none
            return true;
        case 4: {  // data stream
            SkipDataStream(bits);
            break;
        }
        case 5:    // a program config is refused behind other elements
            return elements > 0;
        case 6: {  // fill: plain fill only (other payloads have their own syntax)
            const unsigned count = FillCount(bits);
            if (count && (bits.peek32() >> 29) != 0)
                return false;
            bits.skip(uint64_t(count) * 8);
            break;
        }
        default:   // the end: the frame may well be taken
            return false;
        }
        if (v != Verdict::Ok)
            return v == Verdict::Refused;
    }
}

bool AacFrameParser::init(const uint8_t* asc, size_t n)
{
    m_layout = 0;
    if (!asc || n < 2)
        return false;
    BitReader bits(asc, n);
    unsigned type = bits.read(5);
    if (type == 31)
        return false;
    const unsigned rateIndex = bits.read(4);
    const unsigned config = bits.read(4);
    if (type == 5) {   // SBR over an AAC core: the core's own type follows
        if (bits.read(4) == 15)
            return false;
        type = bits.read(5);
    }
    // AAC-LC with 1024 samples a frame, no core coder; the rate from the table.
    if (type != 2 || rateIndex >= 12 || config < 1 || config > 7 || bits.read(1) || bits.read(1) || bits.overrun())
        return false;
    m_rateIndex = rateIndex;
    m_layout = config;
    codebooks();   // built once, before threads share them
    return true;
}

uint32_t AacFrameParser::frameSize(const uint8_t* p, size_t avail) const
{
    if (!ready() || !p || avail == 0)
        return 0;
    // The channel elements each configuration has, in their order (single,
    // pair, low frequency): a frame with others is left to a decoder.
    static const char* const kLayouts[8] = {"", "S", "P", "SP", "SPS", "SPP", "SPPL", "SPPPL"};
    static const char kElementLetters[8] = {'S', 'P', 0, 'L', 0, 0, 0, 0};
    const char* expected = kLayouts[m_layout];
    BitReader bits(p, avail);
    Parser parser{bits, m_rateIndex};
    for (;;) {
        const unsigned id = bits.read(3);
        if (id == 7)   // end
            break;
        if (kElementLetters[id]) {
            if (*expected != kElementLetters[id])
                return 0;
            ++expected;
        }
        switch (id) {
        case 0:    // single channel
        case 3: {  // low frequency channel (long windows only)
            bits.read(4);
            StreamInfo info;
            if (!parser.channelStream(info, false, false) || (id == 3 && info.shortWindows))
                return 0;
            break;
        }
        case 1: {  // channel pair
            bits.read(4);
            StreamInfo info;
            const bool common = bits.read(1);
            if (common) {
                if (!parser.streamInfo(info))
                    return 0;
                const unsigned msMask = bits.read(2);
                if (msMask == 3)
                    return 0;
                if (msMask == 1)
                    bits.skip(uint64_t(info.groups) * info.maxSfb);
            }
            StreamInfo second = info;
            if (!parser.channelStream(info, common, false) || !parser.channelStream(second, common, common))
                return 0;
            break;
        }
        case 4: {  // data stream
            if (expected == kLayouts[m_layout])   // (ahead of the sound: rare, left to a decoder)
                return 0;
            SkipDataStream(bits);
            break;
        }
        case 6: {  // fill: extension data of the channels before it
            if (expected == kLayouts[m_layout])
                return 0;
            const unsigned count = FillCount(bits);
            // Plain fill only: a decoder reads the payload of the other
            // extensions (SBR, dynamic range, data) by their own syntax,
            // which on damaged bytes can end elsewhere than the count says.
            if (count && (bits.peek32() >> 29) != 0)
                return 0;
            bits.skip(uint64_t(count) * 8);
            break;
        }
        default:   // coupling channels and program configs: left to a decoder
            return 0;
        }
        if (bits.overrun())
            return 0;
    }
    bits.alignToByte();
    if (bits.overrun() || *expected)
        return 0;
    return uint32_t(bits.position() / 8);
}

} // namespace syntax
