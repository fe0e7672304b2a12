// MPEG program stream repair: constants shared with the tests.
#pragma once
#include <cstdint>

// 93 bytes written behind a sequence start code and the picture size of a bare
// video stream: rate and aspect, a zero byte, a user data start code and its text.
extern const uint8_t MpegHeaderBlock[93];
