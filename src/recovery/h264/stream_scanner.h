#pragma once
// The stream scanner: one walk over the damaged file that splits it into an
// Annex B video stream and, in audio mode, an ADTS audio stream, without any
// index. A video unit is told by its own structure (a plausible length and
// NAL header, and another such header where the length says the next unit
// starts); an audio frame by the three-byte patterns learnt from the sample.
#include "recovery/h264/bit_tools.h"
#include "recovery/h264/chain_facts.h"
#include "recovery/h264/h264_recovery.h"
#include "recovery/h264/nal_sets.h"

#include <QByteArray>
#include <functional>
#include <cstdint>

class ByteReader;
class FileWriter;

// Which header bytes the scanner takes where: the unit at the scan position
// (first frame, then chain), per mode, and the successor that a unit's length
// points at. The H.264 rules test the successor with the unit's set.
struct NalScanRules {
    NalStartSet audioFirst, audioUnit, videoOnlyFirst, videoOnlyUnit;
    bool ownSuccessorSet;      // successors are tested with `successor`
    NalStartSet successor;
    bool shortUnitsStandAlone; // a unit of length 2 is written without chaining
    static NalScanRules h264()
    {
        return {NalStartSet::StreamFirstBytes, NalStartSet::StreamBytes, NalStartSet::VideoOnlyFirstBytes,
                NalStartSet::VideoOnlyBytes, false, NalStartSet::StreamBytes, false};
    }
    static NalScanRules hevc()
    {
        return {NalStartSet::HevcStreamBytes, NalStartSet::HevcStreamBytes, NalStartSet::HevcStreamBytes,
                NalStartSet::HevcStreamBytes, true, NalStartSet::HevcReferenceBytes, true};
    }
};

class StreamScanner {
public:
    // audio is null in video-only mode. Of facts the sample's sound rate and
    // mean AAC frame size are taken, for the frames' headers. progress
    // receives whole percentages of the input, each one once.
    StreamScanner(ByteReader& in, FileWriter& video, FileWriter* audio, const PatternSet& audioPatterns,
                  QByteArray paramBlock, const ChainFacts& facts, NalScanRules rules = NalScanRules::h264());
    void setProgress(std::function<void(unsigned)> progress) { m_progress = std::move(progress); }

    void run();

    uint64_t videoUnits() const { return m_videoUnits; }
    uint64_t audioFrames() const { return m_audioFrames; }
    int frameGapCount() const { return m_frameGapCount; }
    int audioRunCount() const { return m_audioRunCount; }

    // Largest raw AAC frame an ADTS header can carry.
    static constexpr uint32_t kMaxAacFrame = kMaxAdtsPayload;
    // A run of this many bytes of 0x00 or 0xFF is filler, passed whole.
    static constexpr uint32_t kFillerRun = 128;

private:
    enum class State { Video, Resync, Audio, End };

    bool audioMode() const { return m_audio != nullptr; }
    bool isUnit(uint64_t pos) const;       // NAL start under the main set of this mode
    bool isSuccessor(uint64_t pos) const;  // the unit a length points at
    // A bare two-byte header (HEVC end of sequence and the like) has too
    // little behind it to test a successor: it is written as it stands and
    // the scan goes on behind it.
    bool standAloneShortUnit(uint32_t length) const { return m_rules.shortUnitsStandAlone && length == 2; }
    void leadingWalk();
    State firstFrame();
    void atomCheck();
    State videoState();
    // The first position from `from` on where a test of the scan can hold:
    // a byte 00 (a unit's length, a filler run) or FF (a filler run), and
    // with moovAndSound 'm' (moov) or a sound pattern. The positions before
    // it fail every test and are passed a block at a time. At most a MiB
    // ahead (a position there is only tested in vain); m_size at the end.
    uint64_t nextCandidate(uint64_t from, bool moovAndSound) const;
    State resync();
    State audioState();                    // cutting AAC frames (aac_recovery.cpp)
    void videoOnly();
    void writeUnit(uint64_t start, uint32_t length);
    void writeAudioFrame(uint64_t end);    // aac_recovery.cpp
    void reportProgress();

    ByteReader& m_in;
    FileWriter& m_video;
    FileWriter* m_audio;
    const PatternSet& m_patterns;
    QByteArray m_paramBlock;
    NalScanRules m_rules;
    int64_t m_audioSampleRate;       // keys the ADTS header's frequency index
    uint32_t m_averageAudioFrame;    // an overlong frame is cut to this (0: dropped)
    std::function<void(unsigned)> m_progress;
    uint64_t m_size;

    uint64_t m_pos = 0;
    uint64_t m_pendingStart = 0;
    uint32_t m_pendingLength = 0;
    uint64_t m_audioStart = 0;
    bool m_skipLengthOnce = false;
    int m_frameGapCount = 0;
    int m_audioRunCount = -1;
    uint64_t m_videoUnits = 0;
    uint64_t m_audioFrames = 0;
    unsigned m_lastPercent = ~0u;
};
