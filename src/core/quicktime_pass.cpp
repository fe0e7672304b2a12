#include "core/quicktime_pass.h"

namespace {

// A row matches when the codec bits, with the ones it ignores taken out, are
// exactly the ones it needs; the first row that matches wins. The scanners
// without a sample (MPEG-4, JPEG, ProRes) don't look at the PCM flavour of an
// HEVC sample, and ProRes takes twos sound as its own.
struct Row {
    uint32_t needs;
    uint32_t ignores;
    QuickTimePass pass;
};

constexpr Row kRows[] = {
    {kCodecMpeg4, kCodecLpcmHevc, QuickTimePass::Mpeg4Frames},
    {kCodecJpeg, kCodecLpcmHevc, QuickTimePass::JpegFrames},
    {kCodecProRes, kCodecLpcmHevc | kCodecTwos, QuickTimePass::ProResFrames},
    {kCodecLpcm | kCodecLpcmHevc, 0, QuickTimePass::HevcLpcm},
    {kCodecLpcm, 0, QuickTimePass::H264Lpcm},
    {kCodecHevc, kCodecLpcmHevc, QuickTimePass::HevcAac},
    {kCodecTwos, kCodecLpcmHevc, QuickTimePass::H264Twos},
    {kCodecSowt, kCodecLpcmHevc, QuickTimePass::H264Sowt},
    {0, 0, QuickTimePass::H264Aac},
};

} // namespace

QuickTimePass PassForCodecs(uint32_t codecs)
{
    for (const Row& row : kRows)
        if ((codecs & ~row.ignores) == row.needs)
            return row.pass;
    return QuickTimePass::None;
}
