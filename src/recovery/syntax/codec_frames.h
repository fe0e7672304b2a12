#pragma once
// Sample measurers for the codecs whose samples carry no length of their own:
// raw AAC frames (measured by decoding them), and JPEG, ProRes and MPEG-4
// visual pictures (measured from their own markers and headers). Each tells
// how many bytes the sample at a position takes, or 0 when no sample of that
// codec starts there. Sizes read from the data are never trusted: every
// measure is bounded by the end the caller gives.
#include "recovery/syntax/aac_syntax.h"

#include <QByteArray>
#include <cstddef>
#include <cstdint>
#include <vector>

class ByteReader;

namespace syntax {

// Measures raw AAC frames as a QuickTime or MP4 sample stores them (no ADTS
// header), set up from the track's AudioSpecificConfig: by their syntax where
// AacFrameParser follows it (AAC-LC), by decoding with FAAD2 where it does not
// and where the syntax refuses a frame, so that the decoder has the last word
// on every frame that is not plainly well formed.
//
// FAAD2 keeps state from frame to frame that a failed decode can spoil for
// good (every later frame then fails, and FAAD2's post-seek reset does not
// clear it), so after a failure the decoder is rebuilt from the
// AudioSpecificConfig before the next frame. A frame that fails on a decoder
// that has decoded frames since its last rebuild is tried once more on a
// rebuilt one: the answer for a position never depends on what was tried
// before it. Since every refusal costs a rebuild, bytes that the syntax
// reader shows no decoder would take (AacFrameParser::decoderRefuses) are
// refused without the decoder: most of what a resync through damaged sound
// tries.
class AacFramer {
public:
    AacFramer();
    ~AacFramer();
    AacFramer(const AacFramer&) = delete;
    AacFramer& operator=(const AacFramer&) = delete;

    // asc: the AudioSpecificConfig bytes. False when FAAD2 can't read them.
    // The decoder is made when a frame first needs it; should it refuse the
    // configuration then, no frame gets a size from there on.
    // decoderOnly: every frame through FAAD2 (to check the syntax reader).
    bool init(const uint8_t* asc, size_t n, bool decoderOnly = false);
    // Bytes the raw frame at p takes when it decodes without error and with
    // the channel count the configuration names; 0 otherwise. avail: the bytes
    // readable from p (at most what is left of the data); nothing past them
    // is read.
    uint32_t frameSize(const uint8_t* p, size_t avail);
    // Reads the frame at pos of r (up to end).
    uint32_t frameSize(ByteReader& r, uint64_t pos, uint64_t end);

private:
    bool open();
    void close();
    uint32_t decodeOnce(const uint8_t* p, size_t avail);

    AacFrameParser m_syntax;
    void* m_decoder = nullptr;          // NeAACDecHandle
    std::vector<uint8_t> m_asc;
    std::vector<uint8_t> m_buffer;      // the frame's bytes, zero-padded for FAAD2's read ahead
    std::vector<uint8_t> m_copy;        // a frame longer than the reader's view
    size_t m_maxFrame = 0;              // the most bytes handed to FAAD2 for one frame
    unsigned m_channels = 0;            // what the configuration names (0: a program config element says)
    bool m_spoiled = false;             // the last decode failed: rebuild before the next
    bool m_decodedSinceOpen = false;
};

// The DecoderSpecificInfo inside an esds box's payload (with or without its
// four bytes of version and flags): ES descriptor (tag 3), decoder config
// (tag 4), decoder specific info (tag 5), each with a size of one to four
// bytes of seven bits. Empty when absent, cut, or for another object type.
// AAC: object types 0x40 and 0x66..0x68.
QByteArray AudioSpecificConfigFromEsds(const uint8_t* esds, size_t n);

// JPEG: SOI, marker segments with checked lengths up to a scan, the
// entropy-coded data (stuffed FF00 and restart markers belong to it) up to
// EOI. Tables and further scans between scans are followed; any other marker
// makes the sample invalid. twoFields (two images per sample, one per field):
// a second image right behind the first, after zero padding if any, is
// included; without one the sample is the first image. Zero padding behind
// the last EOI is not counted.
uint64_t JpegSampleSize(ByteReader& r, uint64_t pos, uint64_t end, bool twoFields);

// ProRes: a 32-bit frame size then 'icpf' and the frame header; the size must
// hold the frame header and fit before end.
uint64_t ProResSampleSize(ByteReader& r, uint64_t pos, uint64_t end);

// MPEG-4 visual. A sample starts with the start code of a VOP (B6), GOV (B3),
// visual object sequence (B0), visual object (B5, 00..1F) or video object
// layer (20..2F), and the header start codes at its head lead to its VOP.
bool Mpeg4SampleStarts(ByteReader& r, uint64_t pos);
// Where the next sample starts: the first of those start codes behind the VOP
// of the sample at pos, searched up to end; end when there is none.
uint64_t Mpeg4NextSampleStart(ByteReader& r, uint64_t pos, uint64_t end);
// True when the sample's VOP is intra coded.
bool Mpeg4IsKeyframe(ByteReader& r, uint64_t pos, uint64_t end);

} // namespace syntax
