#pragma once
// Frame index scanners for H.264 files with uncompressed sound (sowt, twos).
// Nothing is extracted: the scan walks the damaged file and reports where
// pictures, sound and zero padding lie, one line per run, for the QuickTime
// rebuild. Sound is whatever stands between two stretches of video.
#include "recovery/h264/h264_recovery.h"

#include <QString>
#include <cstdint>
#include <functional>

class ByteReader;

struct IndexLine {
    enum Kind { Video, Audio, Zero };
    Kind kind;
    uint64_t pos;
    uint64_t size;
    QString text() const;   // "AVC(Vide) at = 10 Size = 20" and the like
};

class IndexScanner {
public:
    using Sink = std::function<void(const IndexLine&)>;
    IndexScanner(ByteReader& in, Sink sink);
    void setProgress(std::function<void(unsigned)> progress) { m_progress = std::move(progress); }

    // Sound is told from video by the sample's frame-start patterns. With
    // audFirst the sample's frames open with an access unit delimiter, and the
    // first frame is searched for by that marker.
    void runSowt(const PatternSet& patterns, bool audFirst);
    // No patterns: every picture opens with an access unit delimiter.
    // gapSkip is the size of a timecode sample between media data.
    void runTwos(uint32_t gapSkip);
    // HEVC with lpcm sound: the sowt scan on HEVC units, without gap
    // markers and with no limit on the search for the first frame.
    void runHevcPcm(const PatternSet& patterns);

    // Audio runs shorter than this are left out of the index.
    static constexpr uint64_t kMinAudioRun = 101;
    // Zero bytes behind a picture count as padding from this length on.
    static constexpr uint64_t kMinZeroRun = 128;
    // The first frame of a sowt file is looked for in this much of it.
    static constexpr uint64_t kFirstFrameLimit = 0xA00000;

    uint64_t videoLines() const { return m_videoLines; }
    uint64_t audioLines() const { return m_audioLines; }
    uint64_t zeroLines() const { return m_zeroLines; }

private:
    using UnitTest = bool (IndexScanner::*)(uint64_t) const;
    using PositionTest = UnitTest;
    bool sowtUnit(uint64_t pos) const;
    bool hevcUnit(uint64_t pos) const;
    bool chainUnit(uint64_t pos) const { return m_hevc ? hevcUnit(pos) : sowtUnit(pos); }
    bool hevcFirstFrameAt(uint64_t pos) const;
    bool newPictureAt(uint64_t pos, bool pictureHasSlice, bool* slice) const;
    uint64_t skipLeadingAtoms() const;
    void sowtLoop(uint64_t pos);
    bool twosUnit(uint64_t pos) const;
    bool audAt(uint64_t pos) const;          // a delimiter with a picture unit behind it
    bool audMarkerAt(uint64_t pos) const;    // the delimiter's five bytes alone
    bool sowtFrameAt(uint64_t pos) const;    // pattern, length, and a unit where the length ends
    bool atomHeaderAt(uint64_t pos) const;
    bool sowtSoundEnds(uint64_t pos) const;
    bool twosSoundEnds(uint64_t pos) const;
    // First position in [from, to) whose first byte is zero and where test holds; to when none.
    uint64_t findNext(uint64_t from, uint64_t to, PositionTest test) const;
    uint64_t findNonZero(uint64_t from) const;
    uint64_t walkVideo(uint64_t pos, UnitTest unit);
    uint64_t zeroRun(uint64_t pos);
    void audio(uint64_t start, uint64_t end);
    void emitLine(IndexLine::Kind kind, uint64_t pos, uint64_t size);

    ByteReader& m_in;
    Sink m_sink;
    std::function<void(unsigned)> m_progress;
    const PatternSet* m_patterns = nullptr;
    uint64_t m_size;
    bool m_videoSeen = false;
    bool m_hevc = false;   // units carry two-byte HEVC headers
    unsigned m_lastPercent = ~0u;
    uint64_t m_videoLines = 0, m_audioLines = 0, m_zeroLines = 0;
};
