// Differential target for the AAC syntax reader: wherever it gives a frame a
// size, FAAD2 must decode that frame to the same size, and wherever it says a
// decoder refuses the bytes, FAAD2 must refuse them; and it never reads or
// reports past the bytes given. The first byte picks the configuration.
#include "recovery/syntax/aac_syntax.h"
#include "recovery/syntax/codec_frames.h"

#include <cstdlib>

namespace {
const uint8_t kConfigs[][2] = {
    {0x14, 0x08},   // AAC-LC 16 kHz mono
    {0x11, 0x90},   // AAC-LC 48 kHz stereo
    {0x11, 0xB0},   // AAC-LC 48 kHz 5.1
    {0x12, 0x38},   // AAC-LC 44.1 kHz 7.1
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    const uint8_t* asc = kConfigs[data[0] % (sizeof kConfigs / sizeof kConfigs[0])];
    syntax::AacFrameParser parser;
    syntax::AacFramer decoder;
    if (!parser.init(asc, 2) || !decoder.init(asc, 2, true))
        std::abort();
    ++data;
    --size;
    // Frames one after another, a byte on where none starts (at most 64
    // tries). Each refusal checked costs a decoder rebuild, many times the
    // rest of a try: the first 8 of an input are checked.
    size_t pos = 0;
    int refusalChecks = 0;
    for (int tries = 0; pos < size && tries < 64; ++tries) {
        const uint32_t n = parser.frameSize(data + pos, size - pos);
        if (n > size - pos)
            std::abort();
        if (n && decoder.frameSize(data + pos, size - pos) != n)
            std::abort();
        // What it says a decoder refuses FAAD2 refuses, in whatever state the
        // frames before left it.
        if (!n && refusalChecks < 8 && parser.decoderRefuses(data + pos, size - pos)) {
            ++refusalChecks;
            if (decoder.frameSize(data + pos, size - pos))
                std::abort();
        }
        pos += n ? n : 1;
    }
    return 0;
}
