#include "recovery/h264/bit_tools.h"

#include <QStringList>
#include <algorithm>

int64_t g_audioSampleRate = 0;
int64_t g_audioChannels = 0;
int AdtsHeaderBytes[7] = {0, 0, 0, 0, 0, 0, 0};

const std::map<int32_t, QString>& AdtsSampleRateTable()
{
    static const std::map<int32_t, QString> table = {
        {96000, "0000"}, {88200, "0001"}, {64000, "0010"}, {48000, "0011"},
        {44100, "0100"}, {32000, "0101"}, {24000, "0110"}, {22050, "0111"},
        {16000, "1000"}, {12000, "1001"}, {11025, "1010"}, {8000, "1011"},
        {7350, "1100"}};
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

QString IntToBitString(int32_t value, uint32_t width)
{
    QString bits;
    for (uint32_t v = value > 0 ? uint32_t(value) : 0; v > 0; v >>= 1)
        bits.append((v & 1) ? QLatin1Char('1') : QLatin1Char('0'));
    std::reverse(bits.begin(), bits.end());
    while (uint32_t(bits.size()) < width)
        bits.prepend(QLatin1Char('0'));
    return bits;
}

QString BitStringToHexText(const QString& bits)
{
    static const char* const digits = "0123456789ABCDEF";
    QString hex;
    for (int i = 0; i + 4 <= bits.size(); i += 4) {
        int nibble = 0;
        for (int k = 0; k < 4; ++k)
            nibble = nibble * 2 + (bits[i + k] == QLatin1Char('1') ? 1 : 0);
        hex.append(QLatin1Char(digits[nibble]));
    }
    for (int at = 2; at < hex.size(); at += 3)
        hex.insert(at, QLatin1Char(' '));
    return hex;
}

bool AdtsRateSupported(int64_t rate)
{
    if (rate == 0 || rate == 1000)
        return true;
    return AdtsSampleRateTable().count(int32_t(uint32_t(rate))) != 0;
}

bool BuildAdtsHeader(uint32_t frameSize)
{
    if (g_audioSampleRate == 0 || g_audioSampleRate == 1000)
        g_audioSampleRate = 48000;
    g_audioChannels = 2;   // the header always says two channels
    const auto& table = AdtsSampleRateTable();
    // A rate with no ADTS index cannot be written as AAC/ADTS; report it so the
    // pass drops the audio instead of writing frames no decoder accepts.
    const auto row = table.find(int32_t(uint32_t(g_audioSampleRate)));
    if (row == table.end())
        return false;
    QString bits = QStringLiteral("111111111111000101");
    bits += row->second;
    bits += QLatin1Char('0');
    bits += IntToBitString(int32_t(g_audioChannels), 3);
    bits += QStringLiteral("0000");
    bits += IntToBitString(int32_t(frameSize + 7), 13);
    bits += QStringLiteral("1111111111100");
    const QStringList pairs = BitStringToHexText(bits).split(QLatin1Char(' '));
    for (int i = 0; i < 7; ++i)
        AdtsHeaderBytes[i] = i < pairs.size() ? pairs[i].toInt(nullptr, 16) : 0;
    return true;
}
