// AAC recovery. An AAC frame in a QuickTime file has no marker and no length
// of its own, so the sample teaches what frames begin with: the first three
// bytes of each of its audio chunks. The scanner's audio state then cuts the
// damaged file's audio from one such pattern to the next, and puts an ADTS
// header in front of each frame so that the muxer can read the stream.
#include "recovery/h264/bit_tools.h"
#include "recovery/h264/h264_recovery.h"
#include "recovery/h264/stream_scanner.h"
#include "recovery/hevc/hevc_tables.h"

#include "core/code_search.h"
#include "core/muxer.h"
#include "core/quicktime_route.h"

#include <algorithm>

namespace {

// Every sample's table ends with this record: a frequent start of a stereo
// AAC frame that a short sample may not show.
const char kFixedRecord[3] = {0x21, 0x1A, 0x0B};

} // namespace

bool QuickTimeRoute::LearnSampleAac(const ChainPaths& p)
{
    m_remuxed = g_remuxRan = g_muxerBusy = true;
    m_audioOut.open(p.audio);
    FileWriter audioText;
    audioText.open(p.audioText);
    if (!m_movie.hasSoundTrak)
        return false;
    if (ByteReader* ref = Sample(m_referencePath)) {
        m_fileSize = m_inputSize = ref->size();
        WalkSampleSound(*ref, audioText);
    }
    return true;
}

// The sample's sound track: channels, rate, mean frame size, and the first
// three bytes of every chunk. An HEVC sample may hold a timed metadata
// track (gmhd), which is neither.
void QuickTimeRoute::WalkSampleSound(ByteReader& r, FileWriter& audioText)
{
    const bool hevc = m_chain.hevc;
    const uint64_t size = r.size();
    m_pos = 4;
    if (!WalkToMovie(r, m_pos, false, nullptr, nullptr, hevc))
        return;
    m_inVideoTrak = m_inAudioTrak = false;
    CodeSearch mediaHeader = hevc ? CodeSearch({"vmhd"_4cc, "smhd"_4cc, "gmhd"_4cc})
                                  : CodeSearch({"vmhd"_4cc, "smhd"_4cc});
    while (m_pos < size && !g_stopRequested) {
        const uint32_t code = r.be32(m_pos);
        if (code == "trak"_4cc) {
            m_chainFacts.trakBytesLeft = r.be32(m_pos - 4);
            m_trakPos = m_pos;
            const int64_t hit = mediaHeader.next(r, m_pos);
            if (hit >= 0) {
                m_pos = uint64_t(hit);
                const uint32_t kind = r.be32(m_pos);
                m_inVideoTrak = kind == "vmhd"_4cc;
                m_inAudioTrak = kind == "smhd"_4cc;
            }
        }
        if (m_inVideoTrak && code == "stsc"_4cc)
            m_inVideoTrak = false;
        if (m_inAudioTrak) {
            m_movie.hasSoundTrak = true;
            if (code == "stsd"_4cc) {
                m_chainFacts.audioChannels = r.be32(m_pos + 34);
                m_chainFacts.audioSampleRate = r.be32(m_pos + 42);
            } else if (code == "stsz"_4cc) {
                ReadAudioFrameSizes(r, m_pos);
            } else if (code == "stco"_4cc || code == "co64"_4cc) {
                SampleAudioStarts(r, m_pos, code == "co64"_4cc, audioText);
                m_inAudioTrak = false;
                return;
            } else if (code == "mdat"_4cc) {
                return;
            }
        }
        ++m_pos;
    }
}

// stsz of the sound track (code at pos): the count, and the mean size. A
// table with one size for all samples has no entries; its size is the mean.
// In an HEVC sample a single sound sample gives no mean.
void QuickTimeRoute::ReadAudioFrameSizes(ByteReader& r, uint64_t pos)
{
    const uint32_t constant = r.be32(pos + 8);
    m_chainFacts.audioSampleCount = r.be32(pos + 12);
    if (m_chainFacts.audioSampleCount == 0)
        return;
    if (constant != 0) {
        m_chainFacts.averageAudioFrame = constant;
        return;
    }
    if (m_chain.hevc && m_chainFacts.audioSampleCount < 2)
        return;
    const uint64_t first = pos + 16;
    const uint64_t room = first < r.size() ? (r.size() - first) / 4 : 0;
    const uint64_t count = std::min<uint64_t>(m_chainFacts.audioSampleCount, room);
    uint64_t sum = 0;
    for (uint64_t i = 0; i < count; ++i)
        sum += r.be32(first + 4 * i);
    m_chainFacts.averageAudioFrame = uint32_t(sum / m_chainFacts.audioSampleCount);
}

// The chunk table of the sound track (code at pos): the first three bytes of
// each chunk, then the fixed record (for HEVC samples, the table of frame
// starts such cameras write). Offsets outside the file are passed over:
// their zero fill would teach the scanner a pattern of zeros.
void QuickTimeRoute::SampleAudioStarts(ByteReader& r, uint64_t pos, bool wide, FileWriter& audioText)
{
    const uint64_t size = r.size();
    const unsigned width = wide ? 8 : 4;
    const uint32_t entries = r.be32(pos + 8);
    pos += 12;
    const uint64_t room = pos < size ? (size - pos) / width : 0;
    const uint64_t count = std::min<uint64_t>(entries, room);
    for (uint64_t i = 0; i < count && !g_stopRequested; ++i, pos += width) {
        const uint64_t c = wide ? r.be64(pos) : r.be32(pos);
        if (c < size && size - c >= 3)
            audioText.write(r.view(c, 3), 3);
    }
    if (m_chain.hevc)
        audioText.write(HevcAacStartTable, sizeof HevcAacStartTable);
    else
        audioText.write(kFixedRecord, 3);
    m_pos = pos;
}

// Audio state: from a pattern at m_pos, frames run from one pattern match to
// the next. The run ends at a video unit whose successor is a unit or audio.
StreamScanner::State StreamScanner::audioState()
{
    m_pos = m_patterns.next(m_in, m_pos, m_size);
    if (m_pos >= m_size)
        return State::End;
    m_audioStart = m_pos++;

    while (m_pos < m_size) {
        if (g_stopRequested)
            return State::End;
        // The tests of this position read the bytes at hand until one looks
        // elsewhere.
        const uint8_t* v = m_in.view(m_pos, kFillerRun);
        if (m_patterns.matchBytes(v, m_size - m_pos)) {
            writeAudioFrame(m_pos);
            m_audioStart = m_pos++;
            continue;
        }
        // A unit's length, a small atom's size and a filler run all begin
        // with 0x00 or 0xFF: any other byte can only be more of the frame.
        if (v[0] != 0x00 && v[0] != 0xFF) {
            m_pos = m_patterns.next(m_in, m_pos + 1, m_size, true);
            continue;
        }
        if (IsNalStartBytes(v, m_rules.audioUnit)) {
            const uint32_t c = ByteReader::loadBe32(v);
            if (c != 0 && !standAloneShortUnit(c)) {
                const uint64_t next = m_pos + 4 + c;
                if (isSuccessor(next)) {
                    writeAudioFrame(m_pos);
                    ++m_audioRunCount;
                    return State::Video;
                }
                if (m_patterns.matchAt(m_in, next)) {
                    writeAudioFrame(m_pos);
                    return State::Video;
                }
                ++m_pos;
                continue;
            }
        }
        const uint32_t atomSize = ByteReader::loadBe32(v);
        if (atomSize != 0 && IsInterleavedAtom(ByteReader::loadBe32(v + 4), false)) {
            m_pos += atomSize;
            continue;
        }
        if (IsFillerRunBytes(v, kFillerRun)) {
            m_pos += kFillerRun;
            continue;
        }
        ++m_pos;
    }
    return State::End;   // the frame under cut is dropped
}

// Writes the frame from m_audioStart to end behind its ADTS header. A frame
// longer than a header can carry is not one frame: it is cut to the sample's
// mean frame size, and dropped when the sample gave none.
void StreamScanner::writeAudioFrame(uint64_t end)
{
    uint32_t size = uint32_t(std::min<uint64_t>(end - m_audioStart, 0xFFFFFFFFu));
    if (size > kMaxAacFrame)
        size = std::min(m_averageAudioFrame, kMaxAacFrame);
    AdtsHeaderBytes header;
    if (size == 0 || !BuildAdtsHeader(size, m_audioSampleRate, header))
        return;
    reportProgress();
    m_audio->write(header.data(), header.size());
    m_audio->copyFrom(m_in, m_audioStart, size);
    ++m_audioFrames;
}
