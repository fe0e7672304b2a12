#pragma once
// Frame headers of the sound codecs that the container routes time by their
// frames: what one frame holds (samples), how long it is (bytes) and its
// sample rate.
#include <cstdint>

struct AudioFrame {
    uint32_t samples = 0;
    uint32_t bytes = 0;
    uint32_t rate = 0;
};

// The MPEG audio frame (MPEG-1, 2 or 2.5, layer I, II or III) whose four
// header bytes are at p; false when they are no header, or a free-format
// one, whose length the header doesn't give.
bool MpegAudioFrameAt(const uint8_t* p, AudioFrame& f);

// The AC-3 frame whose six header bytes are at p; false when they are no
// header, or an E-AC-3 one.
bool Ac3FrameAt(const uint8_t* p, AudioFrame& f);
