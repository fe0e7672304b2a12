#include "recovery/h264/bit_tools.h"

#include <algorithm>


const std::map<int32_t, uint32_t>& AdtsSampleRateTable()
{
    static const std::map<int32_t, uint32_t> table = {
        {96000, 0}, {88200, 1}, {64000, 2}, {48000, 3}, {44100, 4}, {32000, 5}, {24000, 6},
        {22050, 7}, {16000, 8}, {12000, 9}, {11025, 10}, {8000, 11}, {7350, 12}};
    return table;
}
// Built before main runs so the first audio frame pays nothing for it.
static const auto& s_rateTableAtStart = AdtsSampleRateTable();

uint32_t ReadBigEndian32(const uint8_t* bytes)
{
    if (!bytes)
        return 0;
    return (uint32_t(bytes[0]) << 24) | (uint32_t(bytes[1]) << 16) | (uint32_t(bytes[2]) << 8) | bytes[3];
}

bool AdtsRateSupported(int64_t rate)
{
    if (rate == 0 || rate == 1000)
        return true;
    return AdtsSampleRateTable().count(int32_t(uint32_t(rate))) != 0;
}

namespace {
// Fields written most significant bit first. A field takes at least its
// width, and more when its value needs more bits (a value below 1 is 0).
class HeaderBits {
public:
    void put(int64_t value, unsigned width)
    {
        const uint64_t v = value > 0 ? uint64_t(value) : 0;
        unsigned bits = 0;
        while (bits < 64 && (v >> bits) != 0)
            ++bits;
        for (int b = int(std::max(bits, width)) - 1; b >= 0; --b, ++m_count)
            if (b < 64 && (v >> b & 1))
                m_bytes[m_count / 8] |= uint8_t(0x80 >> (m_count % 8));
    }
    uint8_t byte(int i) const { return m_bytes[i]; }

private:
    uint8_t m_bytes[24] = {};
    unsigned m_count = 0;
};
} // namespace

bool BuildAdtsHeader(uint32_t frameSize, int64_t sampleRate, AdtsHeaderBytes& header)
{
    if (sampleRate == 0 || sampleRate == 1000)
        sampleRate = 48000;
    constexpr int64_t kChannels = 2;   // the header always says two channels
    const auto& table = AdtsSampleRateTable();
    // A rate with no ADTS index cannot be written as AAC/ADTS; report it so the
    // pass drops the audio instead of writing frames no decoder accepts.
    const auto row = table.find(int32_t(uint32_t(sampleRate)));
    if (row == table.end())
        return false;
    HeaderBits h;
    h.put(0xFFF, 12);                     // sync word
    h.put(0, 1);                          // MPEG-4
    h.put(0, 2);                          // layer
    h.put(1, 1);                          // no CRC
    h.put(1, 2);                          // profile: AAC LC
    h.put(row->second, 4);                // frequency index
    h.put(0, 1);                          // private bit
    h.put(kChannels, 3);
    h.put(0, 4);                          // original, home, two copyright bits
    h.put(int32_t(frameSize + 7), 13);    // frame length with the header
    h.put(0x7FF, 11);                     // buffer fullness: variable rate
    h.put(0, 2);                          // one raw block
    for (int i = 0; i < 7; ++i)
        header[size_t(i)] = uint8_t(h.byte(i));
    return true;
}
