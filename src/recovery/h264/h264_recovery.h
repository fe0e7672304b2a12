#pragma once
// Shared pieces of the sample-driven H.264 recovery: the scratch file names,
// the three-byte pattern sets, and the muxer command lines as text. What the
// chain learns on its way is the route's ChainFacts (chain_facts.h).
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

class ByteReader;

// The file names of the chain, all inside the workspace folder.
struct ChainPaths {
    QString input;          // the damaged file
    QString video;          // video.h264
    QString videoText;      // videotext.txt
    QString indexing;       // Indexing
    QString videoUnique;    // VideoUNIQUEfile.txt
    QString audioText;      // audio.txt
    QString audio;          // audio.aac
    QString audioUnique;    // AudioUNIQUEfile.txt
    QString pcm;            // Audio.pcm
    static ChainPaths in(const QString& workDir, const QString& input);
    // The parameter sets the sample pass left in Indexing (empty when none).
    QByteArray parameterBlock() const;
};

// Distinct three-byte records of a source file, in order of first sight, at
// most kMaxUniqueRecords. Writes them to target. The two messages go to the
// engine's message stream.
constexpr int kMaxUniqueRecords = 10000;
void ReduceToUnique(const QString& source, const QString& target);

// The engine's two plain messages ("Maximum unique sequences reached.",
// "Error opening file.") go to standard output; a host whose standard output
// is a protocol (the batch runner) points them elsewhere.
void SetEngineMessageStream(std::FILE* stream);
void EngineMessage(const char* text);

// A set of three-byte patterns, loaded from a unique sequence file. A test at
// a position costs a few lookups instead of a walk over the list, so the
// scan's cost doesn't grow with the list. The scan tests every position of
// the sound it walks: a small bit table of the first two bytes, which stays
// in the processor's caches, turns most positions away first. Behind it each
// pair of first bytes in the set has a 256-bit block of its third bytes. Only
// the blocks in use are made, so a set costs what it holds rather than a
// table of all 2^24 values (a run makes several sets, most of them small).
class PatternSet {
public:
    // Loads the records of path; a missing file gives an empty set.
    bool load(const QString& path);
    void add(uint32_t triple);
    bool empty() const { return m_count == 0; }
    int count() const { return m_count; }
    bool has(uint32_t triple) const
    {
        const uint32_t lead = triple >> 8 & 0xFFFF;
        return (m_lead[lead >> 6] >> (lead & 63) & 1)
            && (m_blocks[m_blockOf[lead >> 8][lead & 255]][triple >> 6 & 3] >> (triple & 63) & 1);
    }
    // True when the three bytes at pos, all inside the file, are a pattern.
    bool matchAt(ByteReader& r, uint64_t pos) const;
    // The same for bytes already at hand: p holds the bytes at a position,
    // left of them lie inside the file.
    bool matchBytes(const uint8_t* p, uint64_t left) const
    {
        return left >= 3 && has(uint32_t(p[0]) << 16 | uint32_t(p[1]) << 8 | p[2]);
    }
    // The first position in [from, end) where matchAt holds or, with
    // stopAtFill, that holds a byte 0x00 or 0xFF; end when there is none.
    // A block at a time: scans call it to pass the bytes of a frame.
    uint64_t next(ByteReader& r, uint64_t from, uint64_t end, bool stopAtFill = false) const;

private:
    std::array<uint64_t, (1u << 16) / 64> m_lead{};   // which first two bytes occur
    // The block of each first two bytes that occur, in pages of one first
    // byte, made when that byte first occurs. An entry is written when its
    // lead bit is set and read only behind that bit, so pages are not cleared.
    std::array<std::unique_ptr<uint16_t[]>, 256> m_blockOf;
    std::vector<std::array<uint64_t, 4>> m_blocks;   // 65536 at most, as the 16-bit entries allow
    int m_count = 0;
};

// The top-level walk from pos (just behind a four-character code) to moov:
// true with pos on moov's code; false at a zero size, an unknown code, an
// mdat larger than the file, or the end. passBeam: "beam" is passed like
// "free". mdatSeen/mdatSize, when given, tell of an mdat passed on the way.
// passMmpu: "mmpu", which HEVC cameras write, is passed too.
bool WalkToMovie(ByteReader& r, uint64_t& pos, bool passBeam, bool* mdatSeen = nullptr,
                 uint64_t* mdatSize = nullptr, bool passMmpu = false);
// Atoms that may stand between stretches of media data; ftyp counts only
// between video units.
bool IsInterleavedAtom(uint32_t code, bool withFtyp);

// ---- PCM sound of the lpcm chain ----
// The raw format, rate and channel texts given to the muxer. A bit depth the
// muxer has no name for keeps the previous format text.
QString PcmFormatText(uint32_t bits, const QString& previous);
QString PcmRateText(int64_t rate);
QString PcmChannelText(uint32_t channels);

// ---- Muxer command lines (each starts with MuxerPrefix()) ----
QString MuxVideoAndAudioCommand(const QString& video, const QString& audio, const QString& out,
                                const QString& rate = QString());
QString MuxVideoOnlyCommand(const QString& video, const QString& out, const QString& rate = QString());
QString RemuxDamagedCommand(const QString& input, const QString& name, bool withAudio);
QString RemuxDamagedSowtCommand(const QString& input, const QString& out);
QString MuxVideoAndPcmCommand(const QString& video, const QString& format, const QString& sampleRate,
                              const QString& channels, const QString& audio, const QString& out);

// Frames per second from the sample's movie header: sample count over whole
// seconds. Without a usable answer (no count, no time scale, under a second,
// a rate of 0) fallback is taken: the muxer's default of 30 for H.264.
int ComputeFrameRate(uint32_t sampleCount, uint32_t duration, uint32_t timescale, int fallback = 30);
// Rates 25..32 keep the first muxer run; all others get a second run.
inline bool NeedsSecondRun(int rate) { return uint32_t(rate - 25) > 7; }
