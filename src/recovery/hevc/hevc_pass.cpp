// The HEVC repair pass and its chain. It runs the H.264 chain's stages with
// what HEVC changes: parameter sets from hvcC (VPS, SPS, PPS), the two-byte
// NAL unit header in every byte test, the chain of units of every chunk of
// the sample, wider tables of frame starts, and muxer runs at a default of
// 25 frames per second.
#include "recovery/h264/h264_recovery.h"
#include "recovery/h264/nal_sets.h"
#include "recovery/h264/stream_scanner.h"
#include "recovery/hevc/hevc_tables.h"

#include "core/code_search.h"
#include "core/muxer.h"
#include "core/quicktime_route.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <functional>
#include <utility>

namespace {

const char kStartCode[4] = {0, 0, 0, 1};

// HEVC cameras record at 25 frames per second far more often than at 30.
constexpr int kHevcDefaultRate = 25;
// Sizes of a damaged lpcm file that are indexed in place (exclusive bounds).
constexpr qint64 kHevcIndexModeMin = 0x6400000;
constexpr qint64 kHevcIndexModeEnd = 0xC0000000;

// The damaged file's own chunk table (first entry at first) is usable when
// its first chunk opens on an HEVC unit that a decoder can start from. Each
// entry but the last is looked at; the first that isn't a unit ends the test,
// as a refusal only when it is the first entry.
bool OwnChunkTableUsable(ByteReader& r, uint64_t first, bool wide, uint32_t count, NalStartSet set)
{
    const unsigned width = wide ? 8 : 4;
    const uint64_t room = first < r.size() ? (r.size() - first) / width : 0;
    const uint64_t entries = std::min<uint64_t>(count, room);
    for (uint64_t i = 0; i + 1 < entries && !g_stopRequested; ++i) {
        const uint64_t at = first + i * width;
        const uint64_t c = wide ? r.be64(at) : r.be32(at);
        uint8_t b[6];
        std::copy_n(r.view(c, 6), 6, b);
        if (b[0] != 0)
            return false;
        if (!IsNalStartBytes(b, set))
            return i != 0;
    }
    return !g_stopRequested;
}

void MuxHevcOnce(QuickTimeRoute& t, const ChainPaths& p,
                 const std::function<QString(const QString& out, const QString& rate)>& command)
{
    ChainFacts& facts = t.m_chainFacts;
    g_muxerBusy = true;
    facts.frameRate =
        ComputeFrameRate(facts.videoSampleCount, facts.movieDuration, facts.movieTimescale, kHevcDefaultRate);
    t.m_remuxed = g_remuxRan = true;
    // One run: the rate is known before it, so no run at a fixed rate first.
    // It may have been taken during the scan.
    if (!std::exchange(t.m_firstMuxDone, false)) {
        t.PrepareMuxOutput();
        RunMuxer(command(facts.outputName, QString::number(facts.frameRate)), t.m_workDir);
    }
    const QString out = t.m_workDir + QLatin1Char('/') + facts.outputName;
    t.RemoveChainFiles(p);
    g_muxerBusy = false;
    const QFileInfo info(out);
    if (!(info.isFile() && info.size() > 0) && !g_stopRequested)
        t.H264PassFailed();
}

} // namespace

void QuickTimeRoute::RepairHevcAac(const QString& inputPath, const QString& referencePath)
{
    m_remuxed = g_remuxRan = g_muxerBusy = true;
    m_fileName = QFileInfo(inputPath).fileName();
    m_chain = {true, false};
    if (!g_referenceMode)
        RemuxHevcFromOwnIndex(inputPath);
    else
        LearnFromSample(inputPath, referencePath);
    g_muxerBusy = false;
}

// The lpcm pass: the chain of the H.264 lpcm pass on HEVC units. Its header
// set has no type 0 or 1 units and no parameter sets.
void QuickTimeRoute::RepairHevcLpcm(const QString& inputPath, const QString& referencePath)
{
    m_remuxed = g_remuxRan = g_muxerBusy = true;
    m_fileName = QFileInfo(inputPath).fileName();
    m_chain = {true, true};
    if (!g_referenceMode)
        RemuxHevcFromOwnIndex(inputPath);
    else
        LearnFromSample(inputPath, referencePath);
    g_muxerBusy = false;
}

void QuickTimeRoute::RemuxHevcFromOwnIndex(const QString& inputPath)
{
    std::unique_ptr<ByteReader> file = OpenOwnMovie(inputPath);
    if (!file)
        return;
    ByteReader& r = *file;
    // The muxer is asked to copy sound only when the movie has a sound track.
    const bool sound = FindAnyCode(r, m_pos, m_pos - 4 + m_moovSize, {"smhd"_4cc}) >= 0;

    const uint32_t table = FindOwnVideoChunkTable(r, false);
    const NalStartSet set = m_chain.pcm ? NalStartSet::HevcLpcmBytes : NalStartSet::HevcOwnIndexBytes;
    if (table != 0 && OwnChunkTableUsable(r, m_pos + 12, table == "co64"_4cc, m_chainFacts.chunkCount, set)) {
        // The lpcm command always copies sound.
        m_movie.hasSoundTrak = sound || m_chain.pcm;
        file.reset();
        RemuxDamagedHevcFile(inputPath);
        return;
    }
    if (!g_stopRequested)
        H264PassFailed();
}

void QuickTimeRoute::RemuxDamagedHevcFile(const QString& inputPath)
{
    RemuxDamagedFile(inputPath);
}

// The arrays of the box are read by their own counts and lengths, within the
// box and the file, so that any order of the arrays gives the sets in the
// order a decoder needs: VPS, SPS, PPS. Of an array with several units the
// first is taken.
bool QuickTimeRoute::CopyHevcParameterSets(ByteReader& r, uint64_t pos, FileWriter& video,
                                              FileWriter& indexing)
{
    if (pos < 4)
        return false;
    const uint64_t boxStart = pos - 4;
    const uint32_t boxSize = r.be32(boxStart);
    const uint64_t boxEnd = std::min<uint64_t>(boxSize >= 8 ? boxStart + boxSize : r.size(), r.size());
    // Code, 22 bytes of configuration, count of arrays.
    const unsigned arrays = r.u8(pos + 26);
    uint64_t at = pos + 27;
    uint64_t setPos[3] = {};
    uint16_t setLength[3] = {};
    for (unsigned a = 0; a < arrays && at + 3 <= boxEnd; ++a) {
        const unsigned type = r.u8(at) & 0x3F;
        const unsigned units = r.be16(at + 1);
        at += 3;
        for (unsigned u = 0; u < units; ++u) {
            if (at + 2 > boxEnd)
                return false;
            const uint16_t length = r.be16(at);
            at += 2;
            if (at + length > boxEnd)
                return false;   // a unit cut off by the end of the box
            const unsigned k = type - 32;   // 32 VPS, 33 SPS, 34 PPS
            if (k < 3 && setLength[k] == 0) {
                setPos[k] = at;
                setLength[k] = length;
            }
            at += length;
        }
    }
    if (setLength[0] == 0 || setLength[1] == 0 || setLength[2] == 0)
        return false;
    for (int k = 0; k < 3; ++k) {
        for (FileWriter* w : {&video, &indexing}) {
            w->write(kStartCode, 4);
            w->copyFrom(r, setPos[k], setLength[k]);
        }
    }
    return true;
}

// Every chunk of the table is followed through its chain of units; the three
// bytes behind each unit's length (header and first payload byte) are noted,
// the first unit of a chunk twice. A chain that runs into the next chunk of
// the table stops there, as that entry walks on from it: the walk over
// contiguous chunks stays linear. The slice start table follows.
void QuickTimeRoute::HevcFrameStarts(ByteReader& r, uint64_t pos, bool wide, FileWriter& videoText)
{
    const bool lpcm = m_chain.pcm;
    // With lpcm the two bytes behind the header's first must both be set.
    auto unitAt = [&](uint64_t at) {
        return lpcm ? IsNalStart(r, at, NalStartSet::HevcLpcmBytes) && r.u8(at + 5) != 0 && r.u8(at + 6) != 0
                    : IsNalStart(r, at, NalStartSet::HevcReferenceBytes);
    };
    const uint64_t size = r.size();
    const unsigned width = wide ? 8 : 4;
    m_chainFacts.chunkCount = r.be32(pos + 8);
    pos += 12;
    const uint64_t room = pos < size ? (size - pos) / width : 0;
    const uint64_t count = std::min<uint64_t>(m_chainFacts.chunkCount, room);
    auto record = [&](uint64_t at) { videoText.write(r.view(at + 4, 3), 3); };
    // A unit takes at least five bytes, so a file can't hold more steps than
    // this; chunks that point into each other can't make the walk quadratic.
    uint64_t steps = size / 5 + count;
    auto entry = [&](uint64_t i) { return wide ? r.be64(pos + i * width) : r.be32(pos + i * width); };
    for (uint64_t i = 0; count >= 2 && i < count && !g_stopRequested; ++i) {
        uint64_t c = entry(i);
        const uint64_t nextChunk = i + 1 < count ? entry(i + 1) : 0;
        if (c == 0 || c >= size)
            continue;
        if (unitAt(c))
            record(c);
        while (c < size && steps > 0) {
            --steps;
            const uint32_t length = r.be32(c);
            if (length == 0)
                break;
            const uint64_t next = c + 4 + length;
            record(c);
            if (next == nextChunk || !unitAt(next))
                break;
            c = next;
        }
    }
    if (!lpcm)
        videoText.write(HevcSliceStartTable, sizeof HevcSliceStartTable);
    m_inVideoTrak = false;
    m_pos = pos + count * width;
}

void QuickTimeRoute::ScanHevcStreams(FileWriter& video, const ChainPaths& p)
{
    bool audioMode = false;
    const auto firstMux = [this](bool withAudio, const QString& v, const QString& a) {
        ChainFacts& facts = m_chainFacts;
        facts.frameRate =
            ComputeFrameRate(facts.videoSampleCount, facts.movieDuration, facts.movieTimescale, kHevcDefaultRate);
        PrepareMuxOutput();
        const QString rate = QString::number(facts.frameRate);
        return withAudio ? MuxVideoAndAudioCommand(v, a, facts.outputName, rate)
                         : MuxVideoOnlyCommand(v, facts.outputName, rate);
    };
    if (!ScanChainStreams(video, p, NalScanRules::hevc(), audioMode, firstMux))
        return;
    if (audioMode)
        MuxHevcVideoAndAudio(p);
    else
        MuxHevcVideoOnly(p);
}

void QuickTimeRoute::MuxHevcVideoAndAudio(const ChainPaths& p)
{
    MuxHevcOnce(*this, p, [&p](const QString& out, const QString& rate) {
        return MuxVideoAndAudioCommand(p.video, p.audio, out, rate);
    });
}

void QuickTimeRoute::MuxHevcVideoOnly(const ChainPaths& p)
{
    MuxHevcOnce(*this, p,
                [&p](const QString& out, const QString& rate) { return MuxVideoOnlyCommand(p.video, out, rate); });
}

// Files above 100 MiB and below 3 GiB are indexed in place and rebuilt
// around their own media data; any other size has its elementary streams
// video.hevc and Audio.pcm cut out by the lpcm scan on HEVC units, and the
// muxer turns the sound into AAC.
void QuickTimeRoute::ScanHevcStreamsPcm(FileWriter& video, const ChainPaths& p)
{
    const qint64 size = QFileInfo(p.input).size();
    if (size > kHevcIndexModeMin && size < kHevcIndexModeEnd) {
        video.close();
        ScanIndexHevcPcm(p.input, p.videoUnique);
        RemoveChainFiles(p);
        return;
    }
    ScanStreamsLpcm(video, p);
}
