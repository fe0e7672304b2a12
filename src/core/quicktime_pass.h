#pragma once
// Which recovery pass a QuickTime-family file takes, from the codecs its
// movie (or the sample's) names.
#include <cstdint>

// The codec facts of a movie, one bit each.
enum MovieCodec : uint32_t {
    kCodecJpeg = 1u << 0,
    kCodecProRes = 1u << 1,
    kCodecHevc = 1u << 2,        // HEVC video with AAC sound
    kCodecMpeg4 = 1u << 3,       // MPEG-4 Part 2 video in a 3GP file
    kCodecTwos = 1u << 4,
    kCodecSowt = 1u << 5,
    kCodecLpcm = 1u << 6,
    kCodecLpcmHevc = 1u << 7,    // with kCodecLpcm: the PCM sound is beside HEVC video
};

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
