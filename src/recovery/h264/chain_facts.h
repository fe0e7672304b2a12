#pragma once
// What the passes of the H.264/HEVC chain note on their way: the sample's
// rate inputs and sound, the counts of the tables they walk, and the names
// the muxer writes. The route of a file holds one value of it, so each file
// starts from the defaults below; the sowt and twos passes clear the index
// counts as they start, and the PCM sound stage clears what it learns before
// it walks the sample. Nothing here outlives the file.
#include <QString>
#include <cstdint>

struct ChainFacts {
    uint32_t movieTimescale = 0;        // time scale of the sample's mvhd
    uint32_t movieDuration = 0;         // duration of the sample's mvhd
    uint32_t videoSampleCount = 0;      // sample count of the sample's video stsz
    int frameRate = 30;                 // frames per second given to the muxer's rated run
    uint32_t chunkCount = 0;            // entries of the last chunk table read
    uint32_t trakBytesLeft = 0;         // size of the last trak met
    int64_t audioSampleRate = 0;        // the sample's sound rate (stsd; mdhd for PCM); low 32 bits key the ADTS table
    int64_t audioChannels = 0;          // channels of the sample's sound description
    uint32_t audioSampleCount = 0;      // sample count of the sample's sound stsz
    uint32_t averageAudioFrame = 0;     // mean AAC frame size of the sample (0: none known)
    uint32_t pcmBits = 0;               // bits per channel of the sample's PCM sound (0: not given)
    uint32_t pcmChannels = 0;           // channels of the sample's PCM sound
    uint32_t videoChunkEntries = 0;     // entries of the video chunk table (index passes)
    uint32_t audioChunkEntries = 0;     // entries of the sound chunk table (index passes)
    uint32_t nullTrackSampleSize = 0;   // constant sample size of an nmhd track (0: none seen)
    QString outputName;                 // the muxer's output, relative to the work folder
    QString outputNameRated;            // "1_" + outputName: the second muxer run's output
};
