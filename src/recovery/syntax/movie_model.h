#pragma once
// What a movie (moov) teaches about its tracks: the sample descriptions, time
// scales, frame durations and how the tracks interleave. It is learnt from a
// healthy sample of the same camera, or from the damaged file's own movie
// when that survives, and is all that the codec-syntax recovery needs: the
// sample boundaries themselves are found in the media data.
#include "core/byte_reader.h"

#include <QByteArray>
#include <cstdint>
#include <vector>

namespace syntax {

enum class TrackKind { Other, Video, Sound };
enum class VideoCodec { None, H264, Hevc, Jpeg, ProRes, Mpeg4 };
enum class SoundCodec { None, Aac, Pcm };

struct TrackModel {
    TrackKind kind = TrackKind::Other;
    VideoCodec video = VideoCodec::None;
    SoundCodec sound = SoundCodec::None;
    uint32_t format = 0;            // fourcc of the first sample description
    QByteArray stsd;                // the whole stsd box, copied into the new movie as it stands
    QByteArray codecConfig;         // avcC/hvcC payload, AudioSpecificConfig or MPEG-4 video headers
    uint32_t timeScale = 0;
    uint64_t mediaDuration = 0;     // mdhd, in timeScale units
    uint32_t sampleDelta = 0;       // the most common duration of one sample, in timeScale units
    uint32_t pcmFrameBytes = 0;     // PCM: bytes of one sample of all channels
    uint32_t width = 0, height = 0; // tkhd, 16.16
    uint16_t language = 0;          // mdhd
    uint32_t handler = 0;           // hdlr component type of a QuickTime movie ('mhlr'), else 0
    bool twoFields = false;         // JPEG: two images per sample ('mjpa', or fiel says 2)

    // From the sample tables, where they are readable.
    uint64_t sampleCount = 0;
    uint64_t chunkCount = 0;
    uint64_t firstChunkOffset = UINT64_MAX;
    uint32_t maxSampleSize = 0;
    std::vector<uint32_t> chunkHabits;     // samples per chunk of the sample-to-chunk table, most chunks first
    int64_t editMediaTime = 0;             // the first edit's start in the media (AAC priming), 0 when none
};

struct MovieModel {
    std::vector<TrackModel> tracks;   // the movie's order
    QByteArray ftyp;                  // the whole ftyp box of that file, when it has one
    int videoTrack = -1;              // the first usable video track, -1 when none
    int soundTrack = -1;              // the first usable sound track, -1 when none
    // The track whose chunk comes first in the media data: chunks of the
    // other follow it.
    bool soundFirst = false;
};

// The top-level moov of r: the body's start and end. False when there is
// none whose size fits the file (a byte search then looks for "moov" with a
// movie header behind it).
bool LocateMovie(ByteReader& r, uint64_t& body, uint64_t& end);

// Reads the movie whose body spans [body, end) of r. Tracks that can't be
// read stay in the list as TrackKind::Other.
MovieModel ReadMovie(ByteReader& r, uint64_t body, uint64_t end);

// Both steps for a whole file; false when it has no readable movie with a
// usable track.
bool LearnMovie(ByteReader& r, MovieModel& model);

// Where the media data of a damaged file lies: the body of its first
// top-level mdat, ending at the file's end when the size says 0 or too much
// (a recording cut off) and before a movie that stands behind it.
struct MediaRange {
    uint64_t begin = 0, end = 0;
};
MediaRange LocateMediaData(ByteReader& r);

// A child box inside [from, to): its code, body and end (clamped to to).
struct Box {
    uint32_t code = 0;
    uint64_t start = 0, body = 0, end = 0;
};
// The children of [from, to) one by one; stops at a size that can't be.
class BoxWalk {
public:
    BoxWalk(ByteReader& r, uint64_t from, uint64_t to) : m_r(r), m_pos(from), m_to(to) {}
    bool next(Box& box);

private:
    ByteReader& m_r;
    uint64_t m_pos, m_to;
};
// The first child of [from, to) with the code, searched depth-first through
// the containers that hold sample tables; false when none.
bool FindBox(ByteReader& r, uint64_t from, uint64_t to, uint32_t code, Box& found);

} // namespace syntax
