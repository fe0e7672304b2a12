#pragma once
// What a movie reader learns of a movie, the damaged file's own or the
// sample's: its codecs, the tracks' scales, sizes and durations, and the
// sample descriptions. One value per file; the reader fills it from scratch
// (but for isJpeg, which the sample's reader leaves as the damaged file's
// reader set it).
#include "core/quicktime_pass.h"

#include <QByteArray>
#include <cstdint>

struct MovieFacts {
    // The codecs (RepairFlags).
    bool isJpeg = false;
    bool isProRes = false;
    bool isHevc = false;
    bool isMpeg4In3gp = false;
    bool isTwos = false;
    bool isSowt = false;
    bool isLpcm = false;
    bool isLpcmHevc = false;
    // The flags above as kCodec bits.
    uint32_t codecs() const
    {
        return (isJpeg ? kCodecJpeg : 0) | (isProRes ? kCodecProRes : 0) | (isHevc ? kCodecHevc : 0)
             | (isMpeg4In3gp ? kCodecMpeg4 : 0) | (isTwos ? kCodecTwos : 0) | (isSowt ? kCodecSowt : 0)
             | (isLpcm ? kCodecLpcm : 0) | (isLpcmHevc ? kCodecLpcmHevc : 0);
    }

    // The tracks.
    uint32_t videoTimeScale = 0;
    uint32_t soundTimeScale = 0;
    uint32_t frameWidth = 0;
    uint32_t frameHeight = 0;
    uint32_t videoSampleDelta = 0;
    uint32_t audioSampleDelta = 0;
    uint32_t audioFrameSize = 0;
    bool hasSoundTrak = false;

    // The first entries of the video track's ctts, when it has more than one.
    bool hasCtts = false;
    uint32_t cttsEntries = 0;
    uint32_t cttsCount0 = 0, cttsOffset0 = 0;
    uint32_t cttsCount1 = 0, cttsOffset1 = 0;
    uint32_t cttsCount2 = 0, cttsOffset2 = 0;

    // The sample descriptions, whole atoms (the damaged file's video one
    // only below 1000 bytes, the sound one below 670).
    QByteArray videoStsd;
    QByteArray audioStsd;
    uint32_t videoStsdSize = 0;
    uint32_t audioStsdSize = 0;
    uint32_t audioStsdRate = 0;
};
