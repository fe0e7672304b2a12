#pragma once
// Measures raw AAC frames from their bitstream syntax alone: the element
// headers, section and scale factor data, pulse and TNS data and the Huffman
// codes of the spectrum are read (not dequantised, not transformed) up to the
// end element, which gives the frame's length at a small part of a decoder's
// cost.
//
// It follows the common case only: AAC-LC (also as the core of HE-AAC), 1024
// samples a frame, a channel configuration of 1..7 and a sampling rate from
// the table. Frames of anything else, and frames that break any rule it knows,
// are answered with 0, so the caller can ask a full decoder; it is stricter
// than a decoder, never more lenient, so a size it gives is one the decoder
// gives too.
#include <cstddef>
#include <cstdint>

namespace syntax {

class AacFrameParser {
public:
    // asc: the AudioSpecificConfig. False (and not ready) for a
    // configuration this parser does not follow.
    bool init(const uint8_t* asc, size_t n);
    bool ready() const { return m_layout != 0; }
    // Bytes the raw frame at p takes (its elements up to the end element,
    // then up to the byte boundary), when every element is well formed, the
    // channel elements are those of the configuration, in its order, and it
    // ends within avail;
    // 0 otherwise. Nothing past avail is read.
    uint32_t frameSize(const uint8_t* p, size_t avail) const;
    // True when a decoder refuses the frame at p whatever it decoded before:
    // its elements, read as a decoder reads them, break a rule every decoder
    // keeps (sections that don't end at the last band, scale factors out of
    // range, pulses or gain control where they can't be, coupling channels)
    // or run past avail. False leaves the frame to the decoder. Looser than
    // frameSize's rules, since it speaks for the decoder.
    bool decoderRefuses(const uint8_t* p, size_t avail) const;

private:
    unsigned m_rateIndex = 0;
    unsigned m_layout = 0;     // the channel configuration, 1..7; 0: not ready
};

} // namespace syntax
