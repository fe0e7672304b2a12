#include "recovery/syntax/media_scan.h"

#include "recovery/syntax/codec_frames.h"
#include "recovery/syntax/nal_syntax.h"
#include "recovery/syntax/sound_frames.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <numeric>

namespace syntax {
namespace {

// Bytes of a NAL unit handed to the header parser: enough for any slice
// header field the picture cut and the picture order count need.
constexpr size_t kNalPeek = 96;
// The largest raw AAC frame (8 channels of 6144 bits) and a margin.
constexpr size_t kAacPeek = 8192;
// Positions a search for a video sample tests from one view.
constexpr size_t kCandidateBlock = 1024;
constexpr uint64_t kProgressStep = 16u << 20;
// Sound stretches queued for cutting at most; the scan waits for the first
// when it would queue more, so that it keeps only a little ahead.
constexpr size_t kSoundStretchesAhead = 1024;

// What one video sample says about itself.
struct VideoSample {
    uint64_t size = 0;
    bool keyframe = false;
    NalInfo first;            // H.264 / HEVC: the picture's first slice
    int refFrameNum = -1;     // H.264: frame number of the last reference picture up to this one
    bool openEnd = false;     // MPEG-4: the sample runs to the next start code, sound may sit at its end
};

// Measures the video samples of one codec.
class VideoSyntax {
public:
    virtual ~VideoSyntax() = default;
    // The sample at pos when one starts there and ends by end; size 0
    // otherwise. previous: the sample in front of it, when known (not
    // behind a gap), for the syntax that numbers its pictures.
    virtual VideoSample measure(ByteReader& r, uint64_t pos, uint64_t end, const VideoSample* previous) = 0;
    // A cheap test of the first bytes, before measure, for the resync search
    // (p: eight bytes; room: the bytes from there to the end of the data).
    // False only where measure would find no sample.
    virtual bool mayStart(const uint8_t* p, uint64_t room) const = 0;
    // The first of n positions from p where the word is zero or mayStart
    // holds; n when none. p holds n + 7 bytes, room counts from p.
    virtual size_t firstCandidate(const uint8_t* p, size_t n, uint64_t room) const
    {
        for (size_t i = 0; i < n; ++i)
            if (ByteReader::loadBe32(p + i) == 0 || mayStart(p + i, room - i))
                return i;
        return n;
    }
    // Each picture carries a number that measure checks against the one
    // before (a strong test of where a picture starts).
    virtual bool numbersPictures() const { return false; }
    // A sample has been kept: learn what it carries for the ones that follow.
    virtual void keep(ByteReader&, uint64_t, const VideoSample&) {}
};

class NalVideo final : public VideoSyntax {
public:
    bool init(const TrackModel& t)
    {
        const NalCodec codec = t.video == VideoCodec::Hevc ? NalCodec::Hevc : NalCodec::H264;
        if (!m_syntax.loadConfig(codec, reinterpret_cast<const uint8_t*>(t.codecConfig.constData()),
                                 size_t(t.codecConfig.size())))
            return false;
        m_lengthSize = m_syntax.lengthSize();
        // A picture may be larger than the sample's largest (other content),
        // but not by much.
        if (t.maxSampleSize)
            m_maxPicture = std::max<uint64_t>(uint64_t(t.maxSampleSize) * 8, 256u << 10);
        m_minUnit = codec == NalCodec::Hevc ? 3 : 2;
        return true;
    }
    const NalSyntax& syntax() const { return m_syntax; }
    bool numbersPictures() const override { return m_syntax.codec() == NalCodec::H264; }

    VideoSample measure(ByteReader& r, uint64_t pos, uint64_t end, const VideoSample* previous) override
    {
        VideoSample s;
        uint64_t q = pos;
        uint64_t lastSliceEnd = pos;
        bool haveSlice = false;
        for (int units = 0; units < 4096 && q + uint64_t(m_lengthSize) < end; ++units) {
            const uint64_t len = unitLength(r, q);
            if (len < m_minUnit || len > end - q - uint64_t(m_lengthSize))
                break;
            const size_t n = size_t(std::min<uint64_t>(len, kNalPeek));
            const NalInfo info = m_syntax.inspect(r.view(q + uint64_t(m_lengthSize), n), n);
            if (!info.valid || (!info.vcl && len > maxParameterUnit(info.type)))
                break;
            if (isFiller(info.type) && !fillerBytes(r, q + uint64_t(m_lengthSize), len))
                break;
            if (info.vcl) {
                if (!info.sliceHeaderOk)
                    break;
                if (haveSlice && (info.firstSliceOfPicture || !samePicture(s.first, info)))
                    break;   // the next picture
                if (!haveSlice) {
                    if (!info.firstSliceOfPicture)
                        return {};   // a picture is read from its first slice on
                    s.first = info;
                    s.keyframe = info.keyframe;
                }
                haveSlice = true;
            } else if (haveSlice ? !trails(info.type) : !leads(info.type)) {
                break;
            }
            q += uint64_t(m_lengthSize) + len;
            if (info.vcl)
                lastSliceEnd = q;
        }
        // Units behind the last slice that would make the picture too large
        // are not its own.
        if (haveSlice && q - pos > m_maxPicture)
            q = lastSliceEnd;
        if (!haveSlice || q - pos > m_maxPicture || !follows(previous, s.first))
            return {};
        s.size = q - pos;
        s.refFrameNum = s.first.reference ? s.first.frameNum : previous ? previous->refFrameNum : -1;
        return s;
    }

    bool mayStart(const uint8_t* p, uint64_t room) const override
    {
        uint64_t len = 0;
        for (int i = 0; i < m_lengthSize; ++i)
            len = len << 8 | p[i];
        // measure takes no first unit that runs past the data, nor one
        // longer than a picture may be or than the longest unit other than
        // a slice: random bytes (the sound that the search walks through)
        // seldom give so short a length.
        const uint64_t head = uint64_t(m_lengthSize);
        return room > head && len >= m_minUnit && len <= std::min(room - head, maxFirstUnit())
            && (p[m_lengthSize] & 0x80) == 0;
    }
    // As the default, with the test written out for the usual four-byte
    // lengths: the searches spend most of their time here.
    size_t firstCandidate(const uint8_t* p, size_t n, uint64_t room) const override
    {
        if (m_lengthSize != 4)
            return VideoSyntax::firstCandidate(p, n, room);
        const uint64_t longest = maxFirstUnit();
        for (size_t i = 0; i < n; ++i) {
            const uint32_t len = ByteReader::loadBe32(p + i);
            if (len == 0 || (room - i > 4 && len >= m_minUnit && len <= std::min(room - i - 4, longest)
                             && (p[i + 4] & 0x80) == 0))
                return i;
        }
        return n;
    }

    // Parameter sets sent inside the stream replace those of the sample
    // description from the picture that carries them on.
    void keep(ByteReader& r, uint64_t pos, const VideoSample& s) override
    {
        uint64_t q = pos;
        const uint64_t end = pos + s.size;
        while (q + uint64_t(m_lengthSize) < end) {
            const uint64_t len = unitLength(r, q);
            if (len < m_minUnit || len > end - q - uint64_t(m_lengthSize))
                break;
            const uint8_t* u = r.view(q + uint64_t(m_lengthSize), 2);
            const int type = m_syntax.codec() == NalCodec::Hevc ? (u[0] >> 1) & 0x3F : u[0] & 0x1F;
            const bool parameterSet = m_syntax.codec() == NalCodec::Hevc ? type >= 32 && type <= 34
                                                                         : type == 7 || type == 8;
            if (parameterSet && len <= 4096)
                m_syntax.learnParameterSet(r.view(q + uint64_t(m_lengthSize), size_t(len)), size_t(len));
            q += uint64_t(m_lengthSize) + len;
        }
    }

private:
    // Units that may stand in front of a picture's first slice, and behind
    // its last one (anything else behind a slice begins what follows).
    bool leads(int type) const
    {
        if (m_syntax.codec() == NalCodec::Hevc)
            return (type >= 32 && type <= 35) || type == 39 || (type >= 41 && type <= 44);
        return (type >= 6 && type <= 9) || (type >= 13 && type <= 15);
    }
    bool trails(int type) const
    {
        if (m_syntax.codec() == NalCodec::Hevc)
            return (type >= 36 && type <= 38) || type == 40;
        return type >= 10 && type <= 12;
    }
    // Units other than slices are small: parameter sets, messages and
    // delimiters. Filler data may run long in a constant-rate stream.
    static constexpr uint64_t kMaxFiller = 1u << 20;
    uint64_t maxFirstUnit() const { return std::max(m_maxPicture, kMaxFiller); }
    uint64_t maxParameterUnit(int type) const { return isFiller(type) ? kMaxFiller : 64u << 10; }
    bool isFiller(int type) const { return m_syntax.codec() == NalCodec::Hevc ? type == 38 : type == 12; }
    // Filler data is bytes of FF (the first few are looked at).
    bool fillerBytes(ByteReader& r, uint64_t unit, uint64_t len) const
    {
        const uint64_t header = m_syntax.codec() == NalCodec::Hevc ? 2 : 1;
        const uint64_t n = std::min<uint64_t>(len > header + 1 ? len - header - 1 : 0, 16);
        const uint8_t* p = r.view(unit + header, size_t(n));
        return std::all_of(p, p + n, [](uint8_t b) { return b == 0xFF; });
    }
    // An H.264 picture other than an IDR takes the frame number after the
    // last reference picture's (the same one for a second field).
    bool follows(const VideoSample* previous, const NalInfo& first) const
    {
        if (!previous || previous->refFrameNum < 0 || m_syntax.codec() != NalCodec::H264 || first.pocReset)
            return true;
        const AvcSps* sps = m_syntax.avcSps(first.spsId);
        if (!sps)
            return true;
        const int next = (previous->refFrameNum + 1) % (1 << sps->log2MaxFrameNum);
        return first.frameNum == next || first.frameNum == previous->refFrameNum;
    }
    // The slices of one picture share its parameter set, frame number and order count.
    static bool samePicture(const NalInfo& a, const NalInfo& b)
    {
        return a.ppsId == b.ppsId && a.pocLsb == b.pocLsb && a.frameNum == b.frameNum && a.idrPicId == b.idrPicId;
    }

    uint64_t unitLength(ByteReader& r, uint64_t q) const
    {
        switch (m_lengthSize) {
        case 1: return r.u8(q);
        case 2: return r.be16(q);
        case 3: return r.be24(q);
        default: return r.be32(q);
        }
    }

    NalSyntax m_syntax;
    int m_lengthSize = 4;
    uint64_t m_maxPicture = 0xFFFFFFFFu;
    uint64_t m_minUnit = 2;
};

class JpegVideo final : public VideoSyntax {
public:
    explicit JpegVideo(bool twoFields) : m_twoFields(twoFields) {}
    VideoSample measure(ByteReader& r, uint64_t pos, uint64_t end, const VideoSample* previous) override
    {
        VideoSample s;
        s.size = JpegSampleSize(r, pos, end, m_twoFields);
        s.keyframe = true;
        return s;
    }
    bool mayStart(const uint8_t* p, uint64_t) const override { return p[0] == 0xFF && p[1] == 0xD8 && p[2] == 0xFF; }

private:
    bool m_twoFields;
};

class ProResVideo final : public VideoSyntax {
public:
    VideoSample measure(ByteReader& r, uint64_t pos, uint64_t end, const VideoSample* previous) override
    {
        VideoSample s;
        s.size = ProResSampleSize(r, pos, end);
        s.keyframe = true;
        return s;
    }
    bool mayStart(const uint8_t* p, uint64_t) const override { return p[4] == 'i' && p[5] == 'c' && p[6] == 'p' && p[7] == 'f'; }
};

class Mpeg4Video final : public VideoSyntax {
public:
    VideoSample measure(ByteReader& r, uint64_t pos, uint64_t end, const VideoSample* previous) override
    {
        VideoSample s;
        if (!Mpeg4SampleStarts(r, pos))
            return s;
        const uint64_t next = Mpeg4NextSampleStart(r, pos, end);
        if (next <= pos || next > end)
            return s;
        s.size = next - pos;
        s.keyframe = Mpeg4IsKeyframe(r, pos, next);
        s.openEnd = true;
        return s;
    }
    bool mayStart(const uint8_t* p, uint64_t) const override
    {
        return p[0] == 0 && p[1] == 0 && p[2] == 1 && (p[3] == 0xB6 || p[3] == 0xB0 || p[3] == 0xB3 || p[3] <= 0x2F);
    }
};

std::unique_ptr<VideoSyntax> MakeVideo(const TrackModel& t)
{
    switch (t.video) {
    case VideoCodec::H264:
    case VideoCodec::Hevc: {
        auto v = std::make_unique<NalVideo>();
        if (!v->init(t))
            return nullptr;
        return v;
    }
    case VideoCodec::Jpeg: return std::make_unique<JpegVideo>(t.twoFields);
    case VideoCodec::ProRes: return std::make_unique<ProResVideo>();
    case VideoCodec::Mpeg4: return std::make_unique<Mpeg4Video>();
    case VideoCodec::None: break;
    }
    return nullptr;
}

class Scanner {
public:
    Scanner(ByteReader& r, const MovieModel& m, MediaRange range, const ScanControl& control)
        : m_r(r), m_range(range), m_control(control)
    {
        if (!control.spillPath.isEmpty()) {
            m_out.video.frames = RecordTable<VideoFrame>(control.spillPath + QStringLiteral(".video"));
            m_out.soundSizes = RecordTable<uint32_t>(control.spillPath + QStringLiteral(".sound"));
            m_out.chunks = ScannedChunks(control.spillPath + QStringLiteral(".chunks"));
        }
        if (m.videoTrack >= 0) {
            m_video = MakeVideo(m.tracks[size_t(m.videoTrack)]);
            if (auto* nal = dynamic_cast<NalVideo*>(m_video.get())) {
                m_poc = std::make_unique<PocTracker>(nal->syntax());
                m_out.video.hasPoc = true;
            }
        }
        m_pcmMayStart = m.soundFirst;
        if (m.soundTrack >= 0) {
            const TrackModel& s = m.tracks[size_t(m.soundTrack)];
            if (s.sound == SoundCodec::Aac && m_aac.init(reinterpret_cast<const uint8_t*>(s.codecConfig.constData()),
                                                         size_t(s.codecConfig.size()))) {
                m_sound = SoundCodec::Aac;
                m_splitter = std::make_unique<AacRangeSplitter>(s.codecConfig, r, control.soundReaders, control.stop);
                uint32_t frames = 1;
                for (uint32_t n : s.chunkHabits)
                    frames = std::max(frames, std::min<uint32_t>(n, 64));
                m_aacTailWindow = uint64_t(frames + 1) * (s.maxSampleSize ? std::min<uint32_t>(s.maxSampleSize, 8192) * 2 : 4096);
                m_soundChunkLimit = std::max<uint64_t>(m_aacTailWindow * 2, 4096);
            } else if (s.sound == SoundCodec::Pcm && s.pcmFrameBytes) {
                m_sound = SoundCodec::Pcm;
                m_pcmFrame = s.pcmFrameBytes;
                for (uint32_t n : s.chunkHabits)
                    if (n && uint64_t(n) * m_pcmFrame < (64u << 20))
                        m_pcmHabits.push_back(uint64_t(n) * m_pcmFrame);
                if (!m_pcmHabits.empty())
                    m_soundChunkLimit = *std::max_element(m_pcmHabits.begin(), m_pcmHabits.end()) * 2;
            }
        }
    }

    ScanResult run()
    {
        uint64_t p = m_range.begin;
        const uint64_t end = m_range.end;
        uint64_t reported = p;
        while (p < end) {
            if (m_control.stop && m_control.stop->load()) {
                m_out.stopped = true;
                break;
            }
            if (m_control.progress && p - reported >= kProgressStep) {
                m_control.progress(p - m_range.begin, end - m_range.begin);
                reported = p;
            }
            uint64_t next = p;
            if (m_video && videoStarts(p, end, false))
                next = readVideoChunk(p, end);
            else if (m_sound == SoundCodec::Aac && aacChunkStarts(p, end))
                next = readAacChunk(p, end);
            else if (m_sound == SoundCodec::Pcm && m_video && m_pcmMayStart)
                next = readPcmChunk(p, end);
            if (next <= p) {
                // What stood before the gap says nothing of what follows it.
                m_gap = true;
                m_haveLast = false;
                next = resync(p + 1, end);
                ++m_out.skippedRanges;
                m_out.skippedBytes += next - p;
            }
            p = next;
        }
        if (m_splitter)
            placeSoundFrames(true);
        if (m_control.progress)
            m_control.progress(end - m_range.begin, end - m_range.begin);
        m_out.video.frames.seal();
        m_out.soundSizes.seal();
        m_out.chunks.seal();
        return std::move(m_out);
    }

private:
    uint32_t aacFrame(uint64_t pos, uint64_t end)
    {
        if (pos >= end)
            return 0;
        const size_t n = size_t(std::min<uint64_t>(end - pos, kAacPeek));
        const uint32_t size = m_aac.frameSize(m_r.view(pos, n), n);
        return size <= end - pos ? size : 0;
    }

    // A video sample at pos that the bytes behind it confirm: more video,
    // a sound frame, or the end of the data. Where the sound is PCM, which
    // no syntax confirms, a sample alone is taken when weakOk.
    bool videoStarts(uint64_t pos, uint64_t end, bool weakOk)
    {
        const VideoSample* previous = last();
        const VideoSample s = m_video->measure(m_r, pos, end, previous);
        if (s.size == 0)
            return false;
        const uint64_t behind = pos + s.size;
        if (behind >= end || s.openEnd || weakOk)
            return true;
        if (m_video->measure(m_r, behind, end, &s).size)
            return true;
        // Behind a picture whose number follows the last one kept, a
        // plausible frame header will do: the decoder measures every frame
        // later anyway. Elsewhere the decoder confirms it now.
        if (m_sound == SoundCodec::Aac)
            return (previous && m_video->numbersPictures() && AacElementPlausible(m_r.view(behind, 4)))
                || aacFrame(behind, end) != 0;
        if (m_sound == SoundCodec::Pcm)
            return pcmThenVideo(behind, end, s);
        return false;
    }

    // PCM sound of one of the sample's chunk sizes, then a video sample.
    bool pcmThenVideo(uint64_t pos, uint64_t end, const VideoSample& previous)
    {
        for (uint64_t bytes : m_pcmHabits) {
            if (bytes >= end - pos)
                return true;   // the data ends inside this chunk
            if (m_video->measure(m_r, pos + bytes, end, &previous).size)
                return true;
        }
        return false;
    }

    void keepVideo(uint64_t pos, const VideoSample& s)
    {
        m_video->keep(m_r, pos, s);
        VideoFrame f;
        f.size = uint32_t(s.size);
        f.keyframe = s.keyframe;
        if (m_poc) {
            // Behind a gap the order count starts afresh, and so does the run
            // of pictures ordered by it: what came before can't be ordered
            // against it.
            if (m_gap)
                m_poc->reset();
            f.poc = m_poc->next(s.first);
            f.pocReset = s.first.pocReset || m_gap;
        }
        m_out.video.frames.push_back(f);
        m_gap = false;
        m_last = s;
        m_haveLast = true;
    }
    const VideoSample* last() const { return m_haveLast ? &m_last : nullptr; }

    uint64_t readVideoChunk(uint64_t pos, uint64_t end)
    {
        ScannedChunk chunk;
        chunk.offset = pos;
        chunk.firstSample = m_out.video.frames.size();
        uint64_t q = pos;
        while (q < end) {
            VideoSample s = m_video->measure(m_r, q, end, last());
            if (s.size == 0 || s.size > 0xFFFFFFFFull)
                break;
            if (s.openEnd && m_sound == SoundCodec::Aac) {
                // The sample runs to the next start code: sound frames that
                // end exactly there are the next chunk.
                const uint64_t soundAt = aacTailStart(q + 1, q + s.size);
                if (soundAt) {
                    s.size = soundAt - q;
                    keepVideo(q, s);
                    q = soundAt;
                    break;
                }
            }
            keepVideo(q, s);
            q += s.size;
            if (s.openEnd && m_sound == SoundCodec::Pcm)
                break;
        }
        chunk.samples = m_out.video.frames.size() - chunk.firstSample;
        if (chunk.samples == 0)
            return pos;
        chunk.bytes = q - pos;
        addChunk(chunk);
        m_pcmMayStart = true;
        return q;
    }

    // The first position in [from, to) from which AAC frames tile the range
    // exactly; 0 when there is none. Only the last stretch that a sound
    // chunk of the sample's habits can fill is tried, and only where the
    // first element's header could be one.
    uint64_t aacTailStart(uint64_t from, uint64_t to)
    {
        for (uint64_t q = std::max(from, to > m_aacTailWindow ? to - m_aacTailWindow : 0); q < to; ++q) {
            if (!AacElementPlausible(m_r.view(q, 4)))
                continue;
            uint64_t t = q;
            while (t < to) {
                const uint32_t f = aacFrame(t, to);
                if (f == 0)
                    break;
                t += f;
            }
            if (t == to)
                return q;
        }
        return 0;
    }

    bool aacChunkStarts(uint64_t pos, uint64_t end)
    {
        // Right behind a picture a plausible frame header will do (the
        // decoder measures the frames later; what it can't is skipped).
        if (m_haveLast && AacElementPlausible(m_r.view(pos, 4)))
            return true;
        const uint32_t f = aacFrame(pos, end);
        if (f == 0)
            return false;
        const uint64_t behind = pos + f;
        return behind >= end || aacFrame(behind, end) || (m_video && m_video->measure(m_r, behind, end, last()).size);
    }

    // An AAC stretch: from pos to where video starts again. Its frames are
    // cut by the splitter (on its own thread where it can be); the chunks
    // behind it wait until they are.
    uint64_t readAacChunk(uint64_t pos, uint64_t end)
    {
        uint64_t stop = nextVideo(pos + 1, end, 1);
        if (!stop)
            stop = end;
        m_waiting.push_back({ScannedChunk(), m_splitter->submit(pos, stop)});
        ++m_stretchesWaiting;
        placeSoundFrames(false);
        m_pcmMayStart = false;
        return stop;
    }

    void addChunk(const ScannedChunk& c)
    {
        if (m_waiting.empty())
            m_out.chunks.push_back(c);
        else
            m_waiting.push_back({c, kNoStretch});
    }

    // Where video starts again behind sound, searched from from in steps of
    // step; 0 when nowhere. Near by, the next picture must follow the last
    // one kept; farther on, pictures were lost in between (damage inside
    // the video), and any picture that the bytes behind it confirm will do.
    uint64_t nextVideo(uint64_t from, uint64_t end, uint64_t step)
    {
        const uint64_t near = std::min(end, from + m_soundChunkLimit);
        for (bool strict : {true, false}) {
            if (!strict) {
                m_haveLast = false;
                m_gap = true;   // pictures were lost: their order starts afresh
            }
            const uint64_t limit = strict ? near : end;
            for (uint64_t q = from; q < limit; q += step) {
                if (step == 1 && (q = nextCandidate(q, limit, end)) >= limit)
                    break;
                if ((step == 1 || (q & 0xFFFFF) < step) && m_control.stop && m_control.stop->load())
                    return 0;
                const uint8_t* v = m_r.view(q, 8);
                if (step == 1 && ByteReader::loadBe32(v) == 0) {
                    q = SkipToPossibleStart(q, limit) - 1;
                    continue;
                }
                if (m_video->mayStart(v, end - q) && videoStarts(q, end, false))
                    return q;
            }
        }
        return 0;
    }

    // The AAC stretches whose frames are cut get a chunk for each run of
    // frames, and the chunks behind them follow, in file order. all: waits
    // for every stretch; else only while too many are queued.
    void placeSoundFrames(bool all)
    {
        AacRangeSplitter::Result r;
        for (; !m_waiting.empty(); m_waiting.pop_front()) {
            const Waiting& w = m_waiting.front();
            if (w.stretch == kNoStretch) {
                m_out.chunks.push_back(w.chunk);
                continue;
            }
            if (!m_splitter->take(w.stretch, r, all || m_stretchesWaiting > kSoundStretchesAhead))
                return;
            --m_stretchesWaiting;
            m_out.skippedBytes += r.skipped;
            for (const AacRangeSplitter::Run& run : r.runs) {
                ScannedChunk c;
                c.sound = true;
                c.offset = run.offset;
                c.firstSample = m_out.soundSizes.size();
                c.samples = run.frames.size();
                for (uint32_t f : run.frames)
                    c.bytes += f;
                for (uint32_t f : run.frames)
                    m_out.soundSizes.push_back(f);
                m_out.chunks.push_back(c);
            }
        }
    }

    // A PCM chunk: from pos to where video starts again; first at the
    // sample's chunk sizes, then at every frame boundary.
    uint64_t readPcmChunk(uint64_t pos, uint64_t end)
    {
        uint64_t stop = 0;
        // The sample's chunk sizes, where the video behind agrees, then
        // where a lone picture stands.
        for (bool weakOk : {false, true}) {
            for (uint64_t bytes : m_pcmHabits) {
                if (!stop && bytes < end - pos && videoStarts(pos + bytes, end, weakOk))
                    stop = pos + bytes;
            }
        }
        if (!stop)
            stop = nextVideo(pos + m_pcmFrame, end, m_pcmFrame);
        if (!stop)
            stop = end - (end - pos) % m_pcmFrame;   // the data ends in sound
        if (stop <= pos)
            return pos;
        ScannedChunk chunk;
        chunk.sound = true;
        chunk.offset = pos;
        chunk.bytes = stop - pos;
        chunk.firstSample = m_out.pcmFrames;
        chunk.samples = chunk.bytes / m_pcmFrame;
        m_out.pcmFrames += chunk.samples;
        addChunk(chunk);
        m_pcmMayStart = false;
        return stop;
    }

    // No sample of these codecs starts with four zero bytes (a NAL unit's
    // length, a JPEG or MPEG-4 start, a ProRes size): from a position that
    // does, the next that may start a sample is three bytes before the next
    // byte that isn't zero (at least from + 1, at most limit).
    uint64_t SkipToPossibleStart(uint64_t from, uint64_t limit)
    {
        const uint64_t nonZero = NextNonZero(m_r, from, limit);
        return std::min(limit, std::max(from + 1, nonZero >= 3 ? nonZero - 3 : 0));
    }

    // The next position at or after from where video starts and the bytes
    // behind it agree; end when there is none.
    uint64_t resync(uint64_t from, uint64_t end)
    {
        if (!m_video)
            return end;
        for (uint64_t q = from; q < end; ++q) {
            if ((q = nextCandidate(q, end, end)) >= end)
                break;
            if (m_control.stop && m_control.stop->load())
                return end;
            const uint8_t* v = m_r.view(q, 8);
            if (ByteReader::loadBe32(v) == 0) {
                q = SkipToPossibleStart(q, end) - 1;
                continue;
            }
            if (m_video->mayStart(v, end - q) && videoStarts(q, end, false))
                return q;
        }
        return end;
    }

    // The first position in [from, limit) whose word is zero or where a
    // video sample may start (mayStart, room counted to end); limit when
    // none. The searches above test every position: this reads a block of
    // them at a time.
    uint64_t nextCandidate(uint64_t from, uint64_t limit, uint64_t end)
    {
        const size_t block = std::min<size_t>(kCandidateBlock, m_r.maxView() - 8);
        for (uint64_t q = from; q < limit;) {
            const size_t n = size_t(std::min<uint64_t>(block, limit - q));
            const size_t i = m_video->firstCandidate(m_r.view(q, n + 7), n, end - q);
            if (i < n)
                return q + i;
            q += n;
        }
        return std::max(from, limit);
    }

    ByteReader& m_r;
    MediaRange m_range;
    const ScanControl& m_control;
    std::unique_ptr<VideoSyntax> m_video;
    std::unique_ptr<PocTracker> m_poc;
    SoundCodec m_sound = SoundCodec::None;
    AacFramer m_aac;                     // the scan's own checks of sound frames
    std::unique_ptr<AacRangeSplitter> m_splitter;
    // From the first AAC stretch not yet cut on: the stretches (by their
    // number in the splitter) and the chunks between them, in file order.
    static constexpr size_t kNoStretch = SIZE_MAX;
    struct Waiting {
        ScannedChunk chunk;
        size_t stretch = kNoStretch;
    };
    std::deque<Waiting> m_waiting;
    size_t m_stretchesWaiting = 0;
    uint64_t m_aacTailWindow = 0;
    uint64_t m_soundChunkLimit = 64u << 10;   // farther than any sound chunk of the sample        // bytes at the end of an MPEG-4 sample that may be sound
    uint32_t m_pcmFrame = 0;
    std::vector<uint64_t> m_pcmHabits;   // the sample's PCM chunk sizes in bytes
    bool m_pcmMayStart = false;
    bool m_gap = false;                  // bytes were skipped since the last picture
    VideoSample m_last;                  // the last picture kept, unless a gap followed it
    bool m_haveLast = false;
    ScanResult m_out;
};

} // namespace

void ScannedChunks::put(uint64_t v)
{
    for (; v >= 0x80; v >>= 7)
        m_bytes.push_back(uint8_t(v | 0x80));
    m_bytes.push_back(uint8_t(v));
}

void ScannedChunks::push_back(const ScannedChunk& c)
{
    put(c.offset - m_end);
    put(c.bytes);
    put(c.samples << 1 | (c.sound ? 1 : 0));
    m_end = c.offset + c.bytes;
    ++m_count;
}

ScannedChunks::const_iterator::const_iterator(const ScannedChunks& list, size_t index)
    : m_list(&list), m_index(index), m_bytes(list.m_bytes)
{
    if (m_index < m_list->m_count)
        load();
}

ScannedChunks::const_iterator& ScannedChunks::const_iterator::operator++()
{
    if (++m_index < m_list->m_count)
        load();
    return *this;
}

void ScannedChunks::const_iterator::load()
{
    auto get = [&] {
        uint64_t v = 0;
        uint8_t byte = 0;
        for (int shift = 0; shift < 64 && m_bytes.next(byte); shift += 7) {
            v |= uint64_t(byte & 0x7F) << shift;
            if (!(byte & 0x80))
                break;
        }
        return v;
    };
    m_chunk.offset += m_chunk.bytes + get();
    m_chunk.bytes = get();
    const uint64_t samples = get();
    m_chunk.sound = samples & 1;
    m_chunk.samples = samples >> 1;
    m_chunk.firstSample = m_next[m_chunk.sound];
    m_next[m_chunk.sound] += m_chunk.samples;
}

uint32_t CompositionOffsets(const RecordTable<VideoFrame>& frames, uint32_t shift,
                            const std::function<void(uint32_t)>& emit)
{
    int64_t most = 0;   // the largest i - p(i)
    std::vector<int64_t> poc;
    std::vector<uint32_t> order;   // order[k]: index in the run of the k-th picture presented
    std::vector<int64_t> moved;    // p(i) - i of each picture of the run
    auto endRun = [&] {
        order.resize(poc.size());
        std::iota(order.begin(), order.end(), uint32_t(0));
        std::stable_sort(order.begin(), order.end(), [&](uint32_t a, uint32_t b) { return poc[a] < poc[b]; });
        moved.resize(poc.size());
        for (size_t k = 0; k < order.size(); ++k) {
            moved[order[k]] = int64_t(k) - int64_t(order[k]);
            most = std::max(most, int64_t(order[k]) - int64_t(k));
        }
        if (emit)
            for (int64_t m : moved)
                emit(uint32_t(m + shift));
        poc.clear();
    };
    VideoFrame f;
    for (auto r = frames.reader(); r.next(f);) {
        if (f.pocReset && !poc.empty())
            endRun();
        poc.push_back(f.poc);
    }
    if (!poc.empty())
        endRun();
    return uint32_t(most);
}

ScanResult ScanMedia(ByteReader& r, const MovieModel& model, MediaRange range, const ScanControl& control)
{
    range.end = std::min(range.end, r.size());
    if (range.begin >= range.end)
        return {};
    return Scanner(r, model, range, control).run();
}

} // namespace syntax
