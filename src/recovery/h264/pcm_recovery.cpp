// PCM recovery. Uncompressed sound has no frame starts worth learning, so the
// roles of the stream scan are reversed: video units are found by the
// sample's frame-start patterns and the chain of lengths, and every byte
// between two video runs is sound. The sound goes unchanged to Audio.pcm, and
// the muxer encodes it, told its format, rate and channels.
#include "recovery/h264/bit_tools.h"
#include "recovery/h264/h264_recovery.h"
#include "recovery/h264/nal_sets.h"

#include "core/code_search.h"
#include "core/muxer.h"
#include "core/quicktime_route.h"

#include <QDebug>
#include <QFile>
#include <algorithm>
#include <cstring>

namespace {

const char kStartCode[4] = {0, 0, 0, 1};

// Runs of filler that stand between media data are passed in steps of this.
constexpr uint32_t kFillerStep = 512;

} // namespace

QString PcmFormatText(uint32_t bits, const QString& previous)
{
    switch (bits) {
    case 0: return QStringLiteral("s24le");   // a sample that doesn't say: the common camera depth
    case 16: return QStringLiteral("s16le");
    case 24: return QStringLiteral("s24le");
    case 32: return QStringLiteral("s32le");
    default: return previous;
    }
}

QString PcmRateText(int64_t rate)
{
    return rate > 0 ? QString::number(rate) : QStringLiteral("48000");
}

QString PcmChannelText(uint32_t channels)
{
    return channels == 1 || channels == 2 ? QString::number(channels) : QStringLiteral("2");
}

void QuickTimeRoute::LearnSamplePcm(const ChainPaths& p)
{
    m_remuxed = g_remuxRan = g_muxerBusy = true;
    m_chainFacts.pcmBits = m_chainFacts.pcmChannels = 0;
    m_chainFacts.audioSampleRate = 0;
    FileWriter audioText;
    audioText.open(p.audioText);
    if (ByteReader* ref = Sample(m_referencePath))
        WalkSampleLpcmSound(*ref, audioText, m_chain.hevc && m_chain.pcm);
}

// The sample's sound track: rate (mdhd), bits and channels (a version 2 sound
// description), and the first bytes of its chunks. A triple with a zero byte
// is silence, not a start worth noting.
void QuickTimeRoute::WalkSampleLpcmSound(ByteReader& r, FileWriter& audioText, bool everyStart)
{
    const uint64_t size = r.size();
    m_pos = 4;
    if (!WalkToMovie(r, m_pos, false))
        return;
    m_inVideoTrak = m_inAudioTrak = m_inGenericTrak = false;
    CodeSearch kinds({"vmhd"_4cc, "smhd"_4cc, "gmhd"_4cc});
    while (m_pos < size && !g_stopRequested) {
        const uint32_t code = r.be32(m_pos);
        if (code == "trak"_4cc) {
            m_trakPos = m_pos;
            const int64_t hit = kinds.next(r, m_pos);
            if (hit >= 0) {
                const uint32_t kind = r.be32(uint64_t(hit));
                m_inVideoTrak = kind == "vmhd"_4cc;
                m_inAudioTrak = kind == "smhd"_4cc;
                m_inGenericTrak = kind == "gmhd"_4cc;
            }
        } else if (code == "mdat"_4cc) {
            return;
        }
        if (m_inAudioTrak) {
            if (code == "mdhd"_4cc) {
                m_chainFacts.audioSampleRate = r.be32(m_pos + 16);
            } else if (code == "stsd"_4cc) {
                m_chainFacts.pcmChannels = r.be16(m_pos + 62);
                m_chainFacts.pcmBits = r.be32(m_pos + 68);
            } else if (code == "stco"_4cc || code == "co64"_4cc) {
                const bool wide = code == "co64"_4cc;
                const unsigned width = wide ? 8 : 4;
                const uint32_t entries = r.be32(m_pos + 8);
                uint64_t at = m_pos + 12;
                const uint64_t room = at < size ? (size - at) / width : 0;
                // Fewer than two chunks: nothing to learn. The last chunk is left out.
                const uint64_t count = entries < 2 ? 0 : std::min<uint64_t>(entries - 1, room);
                for (uint64_t i = 0; i < count && !g_stopRequested; ++i, at += width) {
                    const uint64_t c = wide ? r.be64(at) : r.be32(at);
                    if (c >= size || size - c < 3)
                        continue;
                    const uint8_t* t = r.view(c, 3);
                    if (everyStart || (t[0] && t[1] && t[2]))
                        audioText.write(t, 3);
                }
                m_inAudioTrak = false;
                return;
            }
        }
        ++m_pos;
    }
}

namespace {

// The lpcm scan over the damaged file. Positions are those of a unit's length
// field; a frame is a unit whose first bytes are a learnt pattern and behind
// which another unit starts.
class PcmScanner {
public:
    // chainSet: the header test of a unit behind a frame.
    PcmScanner(ByteReader& in, FileWriter& video, FileWriter& audio, const PatternSet& patterns,
               const QByteArray& paramBlock, NalStartSet chainSet)
        : m_in(in), m_video(video), m_audio(audio), m_patterns(patterns), m_paramBlock(paramBlock),
          m_chainSet(chainSet), m_size(in.size())
    {
    }

    void run()
    {
        uint64_t pos = leadingWalk();
        pos = firstFrame(pos);
        bool firstRun = true;
        while (pos < m_size && !g_stopRequested) {
            if (!firstRun)
                m_video.write(m_paramBlock);
            firstRun = false;
            pos = frameAt(pos) ? videoRun(pos) : pos;
            pos = audioRun(pos);
        }
    }

    uint64_t units() const { return m_units; }
    uint64_t audioBytes() const { return m_audioBytes; }

private:
    uint64_t leadingWalk()
    {
        uint64_t pos = 0;
        while (pos < m_size) {
            const uint32_t size = m_in.be32(pos);
            const uint32_t code = m_in.be32(pos + 4);
            if (IsInterleavedAtom(code, true) || code == "moov"_4cc || code == "skip"_4cc) {
                if (size < 8)
                    return pos;
                pos += size;
            } else if (code == "mdat"_4cc) {
                pos += size == 1 ? 16 : 8;
            } else {
                return pos;
            }
        }
        return pos;
    }

    bool unitAt(uint64_t pos) const
    {
        if (!m_patterns.matchAt(m_in, pos + 4) || m_in.u8(pos) != 0)
            return false;
        const uint32_t length = m_in.be32(pos);
        return length != 0 && pos + 4 + length <= m_size;
    }

    bool frameAt(uint64_t pos) const
    {
        if (!unitAt(pos))
            return false;
        const uint64_t next = pos + 4 + m_in.be32(pos);
        return next == m_size || IsNalStart(m_in, next, m_chainSet);
    }

    uint64_t firstFrame(uint64_t pos)
    {
        while (pos < m_size && !g_stopRequested) {
            if (IsFillerRun(m_in, pos, kFillerStep)) {
                pos += kFillerStep;
                continue;
            }
            if (frameAt(pos))
                return pos;
            ++pos;
        }
        return m_size;
    }

    // A run opens on a frame (a learnt pattern) and goes on while the chain
    // of lengths holds: the sample teaches the first units of its chunks, not
    // every slice header, so later units are taken by their structure alone.
    // The unit whose successor fails is the last of the run and still goes
    // out with its own length.
    uint64_t videoRun(uint64_t pos)
    {
        bool first = true;
        while (pos < m_size && !g_stopRequested) {
            const uint32_t length = m_in.be32(pos);
            if (length == 0 || pos + 4 + length > m_size)
                break;
            if (!first && !IsNalStart(m_in, pos, m_chainSet))
                break;
            first = false;
            m_video.write(kStartCode, 4);
            m_video.copyFrom(m_in, pos + 4, length);
            ++m_units;
            pos += 4 + uint64_t(length);
        }
        return pos;
    }

    // Sound up to the next frame. Filler and atoms between the media data are
    // passed and not taken as sound. The sound behind the last frame has no
    // frame to close it and is left out.
    uint64_t audioRun(uint64_t pos)
    {
        uint64_t start = pos;
        while (pos < m_size && !g_stopRequested) {
            if (frameAt(pos)) {
                append(start, pos);
                return pos;
            }
            const uint32_t size = m_in.be32(pos);
            if (size >= 8 && IsInterleavedAtom(m_in.be32(pos + 4), false)) {
                append(start, pos);
                pos += size;
                start = pos;
                continue;
            }
            if (m_in.u8(pos) == 0 && IsFillerRun(m_in, pos, kFillerStep)) {
                append(start, pos);
                pos += kFillerStep;
                start = pos;
                continue;
            }
            ++pos;
        }
        return m_size;
    }

    void append(uint64_t start, uint64_t end)
    {
        if (end > start) {
            m_audio.copyFrom(m_in, start, end - start);
            m_audioBytes += end - start;
        }
    }

    ByteReader& m_in;
    FileWriter& m_video;
    FileWriter& m_audio;
    const PatternSet& m_patterns;
    const QByteArray& m_paramBlock;
    NalStartSet m_chainSet;
    uint64_t m_size;
    uint64_t m_units = 0;
    uint64_t m_audioBytes = 0;
};

} // namespace

void QuickTimeRoute::ScanStreamsLpcm(FileWriter& video, const ChainPaths& p)
{
    FileWriter pcm;
    pcm.open(p.pcm);
    m_remuxed = true;
    m_report->setRange(100);
    const QByteArray paramBlock = p.parameterBlock();
    PatternSet patterns;
    patterns.load(p.videoUnique);

    uint64_t units = 0;
    std::unique_ptr<ByteReader> in = OpenReadOnly(p.input);
    if (in && !patterns.empty()) {
        m_fileSize = in->size();
        PcmScanner scanner(*in, video, pcm, patterns, paramBlock,
                           m_chain.hevc && m_chain.pcm ? NalStartSet::HevcLpcmBytes : NalStartSet::IndexScanBytes);
        scanner.run();
        units = scanner.units();
        qDebug().noquote() << QStringLiteral("PCM scan: %1 video units, %2 bytes of sound")
                                  .arg(units).arg(scanner.audioBytes());
    }
    m_report->setValue(100);
    in.reset();
    pcm.close();
    video.close();
    if (units == 0 || g_stopRequested) {
        RemoveChainFiles(p);
        if (!g_stopRequested)
            H264PassFailed();
        return;
    }
    MuxVideoAndPcm(p);
}
