#include "recovery/h264/bit_tools.h"

#include <iterator>

namespace {
// The four-bit frequency index of an ADTS header for a rate (its low 32
// bits), or -1 when the header can't name it.
int AdtsRateIndex(int64_t rate)
{
    static constexpr int32_t kRates[] = {96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                         22050, 16000, 12000, 11025, 8000,  7350};
    const int32_t key = int32_t(uint32_t(rate));
    for (int i = 0; i < int(std::size(kRates)); ++i)
        if (kRates[i] == key)
            return i;
    return -1;
}
} // namespace

uint32_t ReadBigEndian32(const uint8_t* bytes)
{
    if (!bytes)
        return 0;
    return (uint32_t(bytes[0]) << 24) | (uint32_t(bytes[1]) << 16) | (uint32_t(bytes[2]) << 8) | bytes[3];
}

bool AdtsRateSupported(int64_t rate)
{
    return rate == 0 || rate == 1000 || AdtsRateIndex(rate) >= 0;
}

bool BuildAdtsHeader(uint32_t frameSize, int64_t sampleRate, AdtsHeaderBytes& header)
{
    if (sampleRate == 0 || sampleRate == 1000)
        sampleRate = 48000;
    // A rate with no ADTS index cannot be written as AAC/ADTS; report it so the
    // pass drops the audio instead of writing frames no decoder accepts.
    const int index = AdtsRateIndex(sampleRate);
    const uint32_t length = frameSize + 7;   // the frame with its header
    if (index < 0 || frameSize > kMaxAdtsPayload)
        return false;
    // Sync word FFF, MPEG-4, layer 0, no CRC; profile AAC LC, the frequency
    // index, no private bit, two channels (the header always says two), no
    // original, home or copyright bits; the thirteen-bit length; buffer
    // fullness 7FF (variable rate); one raw block.
    header[0] = 0xFF;
    header[1] = 0xF1;
    header[2] = uint8_t(0x40 | index << 2);
    header[3] = uint8_t(0x80 | length >> 11);
    header[4] = uint8_t(length >> 3);
    header[5] = uint8_t((length & 7) << 5 | 0x1F);
    header[6] = 0xFC;
    return true;
}
