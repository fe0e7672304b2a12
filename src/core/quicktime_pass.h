#pragma once
// Which recovery pass a QuickTime-family file takes, from the codecs its
// movie (or the sample's) names.
#include <cstdint>

// The codec facts of a movie, one bit each.
constexpr uint32_t kCodecJpeg = 1u << 0;
constexpr uint32_t kCodecProRes = 1u << 1;
constexpr uint32_t kCodecHevc = 1u << 2;        // HEVC video with AAC sound
constexpr uint32_t kCodecMpeg4 = 1u << 3;       // MPEG-4 Visual video in a 3GP file
constexpr uint32_t kCodecTwos = 1u << 4;
constexpr uint32_t kCodecSowt = 1u << 5;
constexpr uint32_t kCodecLpcm = 1u << 6;
constexpr uint32_t kCodecLpcmHevc = 1u << 7;    // with kCodecLpcm: the PCM sound is beside HEVC video

enum class QuickTimePass {
    None,           // the codecs together match no pass: nothing runs
    Mpeg4Frames,
    JpegFrames,
    ProResFrames,
    HevcLpcm,
    H264Lpcm,
    HevcAac,
    H264Twos,
    H264Sowt,
    H264Aac,        // no codec flag: the default pair
};

QuickTimePass PassForCodecs(uint32_t codecs);
