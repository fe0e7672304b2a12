#pragma once
// The scan of a damaged file's media data by the codecs' own syntax: each
// video sample is measured by its codec (a chain of NAL units, a JPEG image,
// a ProRes frame, an MPEG-4 VOP), each AAC frame by a decoder, and a PCM
// chunk is what lies between two video chunks. Where no track's syntax holds
// (a hole, junk, a track we don't keep), the scan moves on to the next place
// where video validates, and counts the bytes it passed over.
#include "recovery/syntax/movie_model.h"
#include "core/record_table.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <iterator>
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

// One video sample.
struct VideoFrame {
    int64_t poc = 0;         // H.264 / HEVC: picture order count
    uint32_t size = 0;
    uint8_t keyframe = 0;
    uint8_t pocReset = 0;    // the order count starts again here
};

struct ScannedVideo {
    RecordTable<VideoFrame> frames;   // in decode order
    bool hasPoc = false;
};

// Composition offsets of the frames in frames, computed one run of pictures
// at a time. Runs begin at each pocReset picture (and at the first); inside
// a run pictures are presented in order of count (ties in decode order).
// With p(i) the presentation index of picture i, emit (when given) receives
// off(i) = p(i) - i + shift for each picture in decode order. Returns the
// smallest shift that leaves no offset negative, max(i - p(i)); it is 0 only
// when every picture is presented in decode order. Memory holds the longest
// run: one group of pictures in an ordinary camera's file.
uint32_t CompositionOffsets(const RecordTable<VideoFrame>& frames, uint32_t shift,
                            const std::function<void(uint32_t)>& emit);

// The chunks of a scan in file order, a few bytes each (a recording of
// hours has millions): the offset is kept as the distance from the end of
// the chunk before (0 unless bytes were skipped), the size and the sample
// count as numbers of seven bits a byte, and the first sample follows from
// the chunks of the track before. Read back in order by iterating.
// Their bytes are a record table: a long list goes to the file given.
class ScannedChunks {
public:
    ScannedChunks() = default;
    explicit ScannedChunks(const QString& spillPath) : m_bytes(spillPath) {}
    // c.firstSample is not kept: it must follow the track's chunks before.
    void push_back(const ScannedChunk& c);
    // After the last chunk, before the first read; false when the list
    // could not be kept.
    bool seal() { return m_bytes.seal(); }
    bool failed() const { return m_bytes.failed(); }
    size_t size() const { return m_count; }
    bool empty() const { return m_count == 0; }

    class const_iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = ScannedChunk;
        using difference_type = std::ptrdiff_t;
        using pointer = const ScannedChunk*;
        using reference = const ScannedChunk&;
        const ScannedChunk& operator*() const { return m_chunk; }
        const ScannedChunk* operator->() const { return &m_chunk; }
        const_iterator& operator++();
        bool operator==(const const_iterator& o) const { return m_index == o.m_index; }
        bool operator!=(const const_iterator& o) const { return m_index != o.m_index; }

    private:
        friend class ScannedChunks;
        const_iterator(const ScannedChunks& list, size_t index);
        void load();
        const ScannedChunks* m_list;
        size_t m_index;
        RecordTable<uint8_t>::Reader m_bytes;   // at the next chunk's first byte
        ScannedChunk m_chunk;
        uint64_t m_next[2] = {0, 0};   // the next first sample of video, of sound
    };
    const_iterator begin() const { return const_iterator(*this, 0); }
    const_iterator end() const { return const_iterator(*this, m_count); }

private:
    void put(uint64_t v);
    RecordTable<uint8_t> m_bytes;
    size_t m_count = 0;
    uint64_t m_end = 0;   // where the last chunk ends
};

struct ScanResult {
    ScannedChunks chunks;
    ScannedVideo video;
    RecordTable<uint32_t> soundSizes;   // AAC: one per frame
    uint64_t pcmFrames = 0;             // PCM: frames of all chunks
    uint64_t skippedBytes = 0;
    uint64_t skippedRanges = 0;
    bool stopped = false;
    // The frame tables are whole (their files could be written and read).
    bool tablesKept() const { return !video.frames.failed() && !soundSizes.failed() && !chunks.failed(); }
};

struct ScanControl {
    const std::atomic<bool>* stop = nullptr;
    // More readers of the same bytes, for nobody else: AAC frames are then
    // cut on threads of their own (one per reader) while the scan goes on.
    std::vector<ByteReader*> soundReaders;
    // Called now and then with the bytes scanned so far and the range's size.
    std::function<void(uint64_t done, uint64_t total)> progress;
    // Where the frame tables of a long scan go, as files whose names begin
    // with this path (empty: they stay in memory).
    QString spillPath;
};

// Scans [range.begin, range.end) of r for the samples of the model's first
// video track and first sound track.
ScanResult ScanMedia(ByteReader& r, const MovieModel& model, MediaRange range, const ScanControl& control);

} // namespace syntax
