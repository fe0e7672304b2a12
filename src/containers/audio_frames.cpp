#include "containers/audio_frames.h"

bool MpegAudioFrameAt(const uint8_t* p, AudioFrame& f)
{
    if (p[0] != 0xFF || (p[1] & 0xE0) != 0xE0)
        return false;
    // version: 0 MPEG-2.5, 2 MPEG-2, 3 MPEG-1; layer bits: 3 layer I, 2 II, 1 III.
    const unsigned version = (p[1] >> 3) & 3, layer = (p[1] >> 1) & 3;
    const unsigned rateIndex = (p[2] >> 2) & 3, bitIndex = p[2] >> 4, padding = (p[2] >> 1) & 1;
    if (version == 1 || layer == 0 || rateIndex == 3 || bitIndex == 0 || bitIndex == 15)
        return false;
    static const uint16_t kbps[5][14] = {
        {32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},   // MPEG-1 layer I
        {32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},      // MPEG-1 layer II
        {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},       // MPEG-1 layer III
        {32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},      // MPEG-2 and 2.5 layer I
        {8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}};          // MPEG-2 and 2.5 layers II, III
    static const uint32_t rates[3] = {44100, 48000, 32000};
    const bool one = version == 3;
    f.rate = rates[rateIndex] >> (one ? 0 : version == 2 ? 1 : 2);
    const unsigned table = one ? 3 - layer : layer == 3 ? 3 : 4;
    const uint64_t bitRate = uint64_t(kbps[table][bitIndex - 1]) * 1000;
    if (layer == 3) {
        f.samples = 384;
        f.bytes = uint32_t((12 * bitRate / f.rate + padding) * 4);
    } else {
        f.samples = layer == 2 || one ? 1152 : 576;
        f.bytes = uint32_t(f.samples / 8 * bitRate / f.rate + padding);
    }
    return true;
}

bool Ac3FrameAt(const uint8_t* p, AudioFrame& f)
{
    const unsigned fscod = p[4] >> 6, frmsizecod = p[4] & 0x3F, bsid = p[5] >> 3;
    if (p[0] != 0x0B || p[1] != 0x77 || fscod == 3 || frmsizecod >= 38 || bsid > 10)
        return false;
    static const uint16_t kbps[19] = {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384, 448, 512, 576, 640};
    const uint32_t k = kbps[frmsizecod >> 1];
    // 16-bit words: two per kbit/s at 48 kHz, three at 32 kHz, and at
    // 44.1 kHz the rounded-down share with an odd code adding one.
    const uint32_t words = fscod == 0 ? 2 * k : fscod == 2 ? 3 * k : k * 320 / 147 + (frmsizecod & 1);
    static const uint32_t rates[3] = {48000, 44100, 32000};
    f.samples = 1536;
    f.bytes = 2 * words;
    f.rate = rates[fscod];
    return true;
}
