#pragma once
// The stream scanner: one walk over the damaged file that splits it into an
// Annex B video stream and, in audio mode, an ADTS audio stream, without any
// index. A video unit is told by its own structure (a plausible length and
// NAL header, and another such header where the length says the next unit
// starts); an audio frame by the three-byte patterns learnt from the sample.
#include "recovery/h264/h264_recovery.h"
#include "recovery/h264/nal_sets.h"

#include <QByteArray>
#include <functional>
#include <cstdint>

class ByteReader;
class FileWriter;

class StreamScanner {
public:
    // audio is null in video-only mode. progress receives whole percentages
    // of the input, each one once.
    StreamScanner(ByteReader& in, FileWriter& video, FileWriter* audio, const PatternSet& audioPatterns,
                  QByteArray paramBlock);
    void setProgress(std::function<void(unsigned)> progress) { m_progress = std::move(progress); }

    void run();

    uint64_t videoUnits() const { return m_videoUnits; }
    uint64_t audioFrames() const { return m_audioFrames; }
    int frameGapCount() const { return m_frameGapCount; }
    int audioRunCount() const { return m_audioRunCount; }

    // Largest raw AAC frame an ADTS header can carry (13-bit length, 7 bytes of header).
    static constexpr uint32_t kMaxAacFrame = 8184;

private:
    enum class State { Video, Resync, Audio, End };

    bool audioMode() const { return m_audio != nullptr; }
    bool isUnit(uint64_t pos) const;       // NAL start under the main set of this mode
    void leadingWalk();
    State firstFrame();
    void atomCheck();
    State videoState();
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
