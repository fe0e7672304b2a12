// The stream scanner's walk over the damaged file, and ScanStreams, the stage
// of the chain that runs it and hands the streams to the muxer.
#include "recovery/h264/stream_scanner.h"
#include "recovery/h264/overlapped_mux.h"

#include "core/byte_reader.h"
#include "core/code_search.h"
#include "core/file_writer.h"
#include "core/quicktime_route.h"
#include "recovery/h264/bit_tools.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QFile>
#include <algorithm>

namespace {

const char kStartCode[4] = {0, 0, 0, 1};

} // namespace

bool IsInterleavedAtom(uint32_t code, bool withFtyp)
{
    static constexpr uint32_t codes[] = {"free"_4cc, "wide"_4cc, "pict"_4cc, "meta"_4cc,
                                         "meco"_4cc, "uuid"_4cc, "pdin"_4cc, "ftyp"_4cc};
    const auto end = std::end(codes) - (withFtyp ? 0 : 1);
    return std::find(std::begin(codes), end, code) != end;
}

StreamScanner::StreamScanner(ByteReader& in, FileWriter& video, FileWriter* audio,
                             const PatternSet& audioPatterns, QByteArray paramBlock, const ChainFacts& facts,
                             NalScanRules rules)
    : m_in(in), m_video(video), m_audio(audio), m_patterns(audioPatterns),
      m_paramBlock(std::move(paramBlock)), m_rules(rules), m_audioSampleRate(facts.audioSampleRate),
      m_averageAudioFrame(facts.averageAudioFrame), m_size(in.size())
{
}

bool StreamScanner::isUnit(uint64_t pos) const
{
    return IsNalStart(m_in, pos, audioMode() ? m_rules.audioUnit : m_rules.videoOnlyUnit);
}

bool StreamScanner::isSuccessor(uint64_t pos) const
{
    return m_rules.ownSuccessorSet ? IsNalStart(m_in, pos, m_rules.successor) : isUnit(pos);
}

void StreamScanner::run()
{
    leadingWalk();
    State state = firstFrame();
    if (!audioMode()) {
        if (state == State::Video)
            videoOnly();
        return;
    }
    while (state != State::End && !g_stopRequested) {
        switch (state) {
        case State::Video: state = videoState(); break;
        case State::Resync: state = resync(); break;
        case State::Audio: state = audioState(); break;
        case State::End: break;
        }
    }
}

// Passes the atoms ahead of the media data by their sizes. mdat's body is
// not skipped: the walk stops at its first bytes. A zero size can't be
// passed, so it ends the walk where it stands.
void StreamScanner::leadingWalk()
{
    while (m_pos < m_size) {
        const uint32_t code = m_in.be32(m_pos + 4);
        const uint32_t size = m_in.be32(m_pos);
        if (IsInterleavedAtom(code, true) || code == "moov"_4cc || code == "skip"_4cc) {
            if (size == 0)
                return;
            m_pos += size;
        } else if (code == "mdat"_4cc) {
            if (audioMode())
                m_pos += size == 0 ? 15 : size == 1 ? 16 : 8;
            else
                m_pos += size == 1 ? 16 : 8;
        } else {
            return;
        }
    }
}

StreamScanner::State StreamScanner::firstFrame()
{
    const NalStartSet set = audioMode() ? m_rules.audioFirst : m_rules.videoOnlyFirst;
    const NalStartSet successorSet = m_rules.ownSuccessorSet ? m_rules.successor : set;
    while (m_pos < m_size) {
        if (g_stopRequested)
            return State::End;
        m_pos = nextCandidate(m_pos, audioMode());
        if (m_pos >= m_size)
            break;
        const uint8_t* v = m_in.view(m_pos, kFillerRun);
        if (IsFillerRunBytes(v, kFillerRun)) {
            m_pos += kFillerRun;
            continue;
        }
        if (IsNalStartBytes(v, set)) {
            const uint32_t length = ByteReader::loadBe32(v);
            if (length != 0 && !standAloneShortUnit(length)
                && IsNalStart(m_in, m_pos + 4 + length, successorSet)) {
                atomCheck();
                return State::Video;
            }
            ++m_pos;
            continue;
        }
        if (audioMode() && m_patterns.matchBytes(v, m_size - m_pos))
            return State::Audio;   // the file starts with audio
        ++m_pos;
    }
    return State::End;
}

void StreamScanner::atomCheck()
{
    while (m_pos < m_size) {
        const uint32_t code = m_in.be32(m_pos + 4);
        const uint32_t size = m_in.be32(m_pos);
        if (IsInterleavedAtom(code, true) && size != 0)
            m_pos += size;
        else if (code == "mdat"_4cc)
            m_pos += size == 1 ? 12 : 8;
        else
            return;
    }
}

void StreamScanner::writeUnit(uint64_t start, uint32_t length)
{
    reportProgress();
    m_video.write(kStartCode, 4);
    m_video.copyFrom(m_in, start + 4, length);
    ++m_videoUnits;
}

void StreamScanner::reportProgress()
{
    const unsigned percent = m_size ? unsigned(std::min<uint64_t>(m_pos, m_size) * 100 / m_size) : 0;
    if (percent != m_lastPercent) {
        m_lastPercent = percent;
        if (m_progress)
            m_progress(percent);
    }
}

// Audio mode, video state: units follow each other as long as the chain of
// lengths holds. Once a gap was crossed or the second audio run has ended,
// every unit is preceded by the parameter block, so that a decoder can start
// again at any point of a stream that was pieced together.
StreamScanner::State StreamScanner::videoState()
{
    for (;;) {
        if (m_pos >= m_size || g_stopRequested)
            return State::End;
        if (m_frameGapCount != 0 || m_audioRunCount >= 1)
            m_video.write(m_paramBlock);
        if (!isUnit(m_pos)) {
            m_pos = nextCandidate(m_pos + 1, false);
            continue;
        }
        const uint32_t length = m_in.be32(m_pos);
        m_pendingStart = m_pos;
        m_pendingLength = length;
        if (length == 0) {
            ++m_pos;
            continue;
        }
        if (standAloneShortUnit(length)) {
            writeUnit(m_pos, length);
            m_pos += 6;
            continue;
        }
        const uint64_t next = m_pos + 4 + length;
        if (isSuccessor(next) || next == m_size) {
            // A unit that ends exactly at the end of the file is whole.
            writeUnit(m_pendingStart, length);
            m_pos = next;
            continue;
        }
        m_skipLengthOnce = false;
        return State::Resync;
    }
}

uint64_t StreamScanner::nextCandidate(uint64_t from, bool moovAndSound) const
{
    // At most a MiB a call, so that the callers' stop checks stay frequent.
    const uint64_t limit = std::min(m_size, from + (uint64_t(1) << 20));
    return FindFirstWhere(m_in, from, limit, [&](const uint8_t* p, uint64_t left) {
        return p[0] == 0x00 || p[0] == 0xFF || (moovAndSound && (p[0] == 'm' || m_patterns.matchBytes(p, left)));
    });
}

// The unit at m_pendingStart has no unit behind it. Decide what follows it:
// audio (the unit is good), a healthy unit further on (a gap was crossed), or
// nothing before the end of the file (the unit is dropped).
StreamScanner::State StreamScanner::resync()
{
    for (;;) {
        if (g_stopRequested)
            return State::End;
        if (m_skipLengthOnce && m_pos < m_size)
            m_pos = nextCandidate(m_pos, true);
        if (m_pos >= m_size) {
            ++m_pos;
            return State::Video;
        }
        if (!m_skipLengthOnce)
            m_pos += uint64_t(m_pendingLength) + 4;
        m_skipLengthOnce = false;
        if (m_patterns.matchAt(m_in, m_pos)) {
            writeUnit(m_pendingStart, m_pendingLength);
            return State::Audio;
        }

        bool restart = false;
        while (m_pos < m_size && isUnit(m_pos)) {
            const uint32_t c = m_in.be32(m_pos);
            if (c == 0) {
                ++m_pos;
                m_skipLengthOnce = true;
                restart = true;
                break;
            }
            const uint64_t next = m_pos + 4 + c;
            if (standAloneShortUnit(c)) {
                ++m_pos;
                continue;
            }
            if (isSuccessor(next)) {
                ++m_frameGapCount;
                writeUnit(m_pendingStart, m_pendingLength);
                return State::Video;
            }
            if (m_patterns.matchAt(m_in, next)) {
                // A unit whose successor is audio: both the pending unit and
                // this one are good. Each goes out with its own length, and
                // the audio starts where this unit ends.
                writeUnit(m_pendingStart, m_pendingLength);
                writeUnit(m_pos, c);
                m_pos = next;
                return State::Audio;
            }
            ++m_pos;
        }
        if (restart)
            continue;
        if (IsFillerRun(m_in, m_pos, 128)) {
            m_pos += 128;
            m_skipLengthOnce = true;
            continue;
        }
        if (m_in.be32(m_pos) == "moov"_4cc) {
            // A movie written ahead of the damage is jumped over.
            m_pos += m_in.be32(m_pos - 4);
            continue;
        }
        ++m_pos;
        m_skipLengthOnce = true;
    }
}

// Video-only mode: the chain of units with a simpler resynchronisation.
void StreamScanner::videoOnly()
{
    while (m_pos < m_size && !g_stopRequested) {
        if (!isUnit(m_pos)) {
            m_pos = nextCandidate(m_pos + 1, false);
            continue;
        }
        uint32_t length = m_in.be32(m_pos);
        if (length == 0) {
            ++m_pos;
            continue;
        }
        if (standAloneShortUnit(length)) {
            writeUnit(m_pos, length);
            m_pos += 6;
            continue;
        }
        m_pendingStart = m_pos;
        m_pendingLength = length;
        const uint64_t next = m_pos + 4 + length;
        if (isSuccessor(next) || next == m_size) {
            writeUnit(m_pendingStart, length);
            m_pos = next;
            continue;
        }
        // Resynchronise: first where the successor should stand, then one
        // position at a time until a unit with a valid successor is found.
        bool skip = false;
        for (;;) {
            if (g_stopRequested)
                return;
            if (!skip)
                m_pos += uint64_t(length) + 4;
            else if (m_pos < m_size)
                m_pos = nextCandidate(m_pos, false);
            skip = false;
            if (m_pos >= m_size) {
                ++m_pos;   // the pending unit is dropped
                break;
            }
            if (isUnit(m_pos)) {
                const uint32_t c = m_in.be32(m_pos);
                if (c != 0 && !standAloneShortUnit(c) && isSuccessor(m_pos + 4 + c)) {
                    writeUnit(m_pendingStart, m_pendingLength);
                    break;
                }
            }
            if (IsFillerRun(m_in, m_pos, 512)) {
                // Past the run, then on position by position: a unit that
                // starts right behind the run is not jumped over.
                m_pos += 512;
                skip = true;
                continue;
            }
            ++m_pos;
            length = 0;
            skip = true;
        }
    }
}

void QuickTimeRoute::ScanStreams(FileWriter& video, const ChainPaths& p)
{
    bool audioMode = false;
    // The first run names the fixed rate; a second one, if any, runs later.
    const auto firstMux = [this](bool withAudio, const QString& v, const QString& a) {
        PrepareMuxOutput();
        const QString& out = m_chainFacts.outputName;
        return withAudio ? MuxVideoAndAudioCommand(v, a, out) : MuxVideoOnlyCommand(v, out);
    };
    if (!ScanChainStreams(video, p, NalScanRules::h264(), audioMode, firstMux))
        return;
    if (audioMode)
        MuxVideoAndAudio(p);
    else
        MuxVideoOnly(p);
}

bool QuickTimeRoute::ScanChainStreams(FileWriter& video, const ChainPaths& p, const NalScanRules& rules,
                                         bool& audioMode, const FirstMuxCommand& firstMux)
{
    m_firstMuxDone = false;
    const QByteArray paramBlock = p.parameterBlock();
    m_remuxed = true;
    m_report->setRange(100);

    audioMode = m_movie.hasSoundTrak;
    if (audioMode && !AdtsRateSupported(m_chainFacts.audioSampleRate)) {
        // AAC at a rate that an ADTS header can't name can't be handed to the
        // muxer: the file still gets its video.
        qWarning() << "The sample's audio rate" << m_chainFacts.audioSampleRate
                   << "has no ADTS form; the audio is left out.";
        audioMode = false;
    }
    PatternSet patterns;
    if (audioMode)
        patterns.load(p.audioUnique);

    std::unique_ptr<ByteReader> in = OpenReadOnly(p.input);
    OverlappedMux overlap;
    if (in) {
        m_fileSize = in->size();
        overlap.start(m_workDir, audioMode, video, audioMode ? &m_audioOut : nullptr, firstMux);
    }
    const uint64_t units = ScanIntoStreams(in.get(), video, audioMode, patterns, paramBlock, rules);

    const QString out = m_workDir + QLatin1Char('/') + m_chainFacts.outputName;
    // Without a single video unit the muxer has nothing to make a file of.
    if (units == 0 || g_stopRequested) {
        if (overlap.running())
            overlap.abandon(out);
        RemoveChainFiles(p);
        if (!g_stopRequested)
            H264PassFailed();
        return false;
    }
    if (overlap.running()) {
        m_firstMuxDone = overlap.complete(out);
        if (!m_firstMuxDone && !g_stopRequested) {
            // The streams went to the muxer alone: the runs from the files
            // need them on disk. The scan is the same walk over the same
            // bytes, so it finds the same units again.
            video.open(p.video);
            video.write(overlap.videoHead());
            if (audioMode) {
                m_audioOut.open(p.audio);
                m_audioOut.write(overlap.audioHead());
            }
            ScanIntoStreams(in.get(), video, audioMode, patterns, paramBlock, rules);
        }
    }
    return true;
}

// One scan of the damaged file into the two stream writers, which are
// closed at its end. Returns the count of video units written.
uint64_t QuickTimeRoute::ScanIntoStreams(ByteReader* in, FileWriter& video, bool audioMode,
                                            const PatternSet& patterns, const QByteArray& paramBlock,
                                            const NalScanRules& rules)
{
    uint64_t units = 0;
    if (in) {
        StreamScanner scanner(*in, video, audioMode ? &m_audioOut : nullptr, patterns, paramBlock, m_chainFacts,
                              rules);
        scanner.setProgress([this](unsigned percent) { m_report->setValue(percent); });
        QElapsedTimer clock;
        clock.start();
        scanner.run();
        units = scanner.videoUnits();
        const double seconds = std::max<qint64>(clock.elapsed(), 1) / 1000.0;
        qDebug().noquote() << QStringLiteral("Stream scan: %1 video units, %2 audio frames, %3 gaps crossed, "
                                             "%4 MB in %5 s (%6 MB/s)")
                                  .arg(units).arg(scanner.audioFrames()).arg(scanner.frameGapCount())
                                  .arg(m_fileSize / 1e6, 0, 'f', 1).arg(seconds, 0, 'f', 3)
                                  .arg(m_fileSize / 1e6 / seconds, 0, 'f', 0);
    }
    if (audioMode && m_audioOut.isOpen() && m_audioOut.pos() == 0) {
        static const char empty[7] = {'\xFF', '\xFF', '\xFF', '\xFF', '\xFF', '\xFF', '\xFF'};
        m_audioOut.write(empty, 7);   // gives the muxer a file it can open
    }
    m_audioOut.close();
    video.close();
    m_movie.hasSoundTrak = false;
    return units;
}
