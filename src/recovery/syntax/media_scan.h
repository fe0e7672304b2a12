#pragma once
// The scan of a damaged file's media data by the codecs' own syntax: each
// video sample is measured by its codec (a chain of NAL units, a JPEG image,
// a ProRes frame, an MPEG-4 VOP), each AAC frame by a decoder, and a PCM
// chunk is what lies between two video chunks. Where no track's syntax holds
// (a hole, junk, a track we don't keep), the scan moves on to the next place
// where video validates, and counts the bytes it passed over.
#include "recovery/syntax/movie_model.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

namespace syntax {

// One run of samples of one track, contiguous in the damaged file.
struct ScannedChunk {
    bool sound = false;
    uint64_t offset = 0;
    uint64_t bytes = 0;
    uint64_t firstSample = 0;   // index into the track's samples
    uint64_t samples = 0;       // samples of the track in this chunk (PCM: frames)
};

struct ScannedVideo {
    std::vector<uint32_t> sizes;
    std::vector<uint8_t> keyframe;
    std::vector<int64_t> poc;        // H.264 / HEVC: picture order count of each picture
    std::vector<uint8_t> pocReset;
    bool hasPoc = false;
};

struct ScanResult {
    std::vector<ScannedChunk> chunks;   // in file order
    ScannedVideo video;
    std::vector<uint32_t> soundSizes;   // AAC: one per frame
    uint64_t pcmFrames = 0;             // PCM: frames of all chunks
    uint64_t skippedBytes = 0;
    uint64_t skippedRanges = 0;
    bool stopped = false;
};

struct ScanControl {
    const std::atomic<bool>* stop = nullptr;
    // More readers of the same bytes, for nobody else: AAC frames are then
    // cut on threads of their own (one per reader) while the scan goes on.
    std::vector<ByteReader*> soundReaders;
    // Called now and then with the bytes scanned so far and the range's size.
    std::function<void(uint64_t done, uint64_t total)> progress;
};

// Scans [range.begin, range.end) of r for the samples of the model's first
// video track and first sound track.
ScanResult ScanMedia(ByteReader& r, const MovieModel& model, MediaRange range, const ScanControl& control);

} // namespace syntax
