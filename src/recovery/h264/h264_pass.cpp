// The H.264 repair pass. Without a sample it decides from the file's own
// chunk table whether the file can go straight to the muxer. With a sample it
// learns what the damaged file lost: the movie's rate inputs, the first SPS
// and PPS, and the bytes that frames begin with; then the chain of unique
// files, sample audio, stream scan and muxer takes over.
#include "recovery/h264/bit_tools.h"
#include "recovery/h264/h264_recovery.h"
#include "recovery/h264/index_scanners.h"
#include "recovery/h264/nal_sets.h"

#include "core/code_search.h"
#include "core/muxer.h"
#include "core/quicktime_route.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

bool WalkToMovie(ByteReader& r, uint64_t& pos, bool passBeam, bool* mdatSeen, uint64_t* mdatSize,
                 bool passMmpu)
{
    static constexpr uint32_t passed[] = {"ftyp"_4cc, "free"_4cc, "meta"_4cc, "wide"_4cc,
                                          "uuid"_4cc, "frea"_4cc, "skip"_4cc, "beam"_4cc};
    const auto passedEnd = std::end(passed) - (passBeam ? 0 : 1);
    while (!g_stopRequested && pos < r.size()) {
        const uint32_t code = r.be32(pos);
        if (std::find(std::begin(passed), passedEnd, code) != passedEnd || (passMmpu && code == "mmpu"_4cc)) {
            const uint32_t size = r.be32(pos - 4);
            if (size == 0)
                return false;
            pos += size;
        } else if (code == "mdat"_4cc) {
            uint64_t size = r.be32(pos - 4);
            if (size == 1)
                size = r.be64(pos + 4);
            if (size == 0 || size > r.size())
                return false;
            if (mdatSeen)
                *mdatSeen = true;
            if (mdatSize)
                *mdatSize = size;
            pos += size;
        } else {
            return code == "moov"_4cc;
        }
    }
    return false;
}

void QuickTimeRoute::RepairH264Aac(const QString& inputPath, const QString& referencePath)
{
    m_remuxed = g_remuxRan = g_muxerBusy = true;
    m_fileName = QFileInfo(inputPath).fileName();
    m_chain = {false, false};
    if (!g_referenceMode)
        RemuxFromOwnIndex(inputPath);
    else
        LearnFromSample(inputPath, referencePath);
    g_muxerBusy = false;
}

// Without a sample: the file's first video chunk table must start on a NAL
// length field, and hold at least two chunks, for the muxer to use the file
// as it stands. Every dead end is one negative verdict.
void QuickTimeRoute::RemuxFromOwnIndex(const QString& inputPath)
{
    DecideFromOwnIndex(inputPath, OwnIndexAction::Remux);
}

std::unique_ptr<ByteReader> QuickTimeRoute::OpenOwnMovie(const QString& inputPath, bool* mdatSeen, uint64_t* mdatSize)
{
    m_inAudioTrak = false;
    m_inVideoTrak = false;
    std::unique_ptr<ByteReader> file = OpenReadOnly(inputPath);
    if (file) {
        m_inputSize = file->size();
        QDir().mkpath(m_workDir);
        m_pos = 4;
        if (WalkToMovie(*file, m_pos, true, mdatSeen, mdatSize, m_chain.hevc)) {
            m_moovPos = m_pos;
            m_moovSize = file->be32(m_pos - 4);
            return file;
        }
    }
    H264PassFailed();
    return nullptr;
}

void QuickTimeRoute::DecideFromOwnIndex(const QString& inputPath, OwnIndexAction action)
{
    bool mdatSeen = false;
    uint64_t mdatSize = 0;
    std::unique_ptr<ByteReader> file = OpenOwnMovie(inputPath, &mdatSeen, &mdatSize);
    if (!file)
        return;
    ByteReader& r = *file;
    const uint64_t size = r.size();

    // An mdat behind which the movie can't fit is a cut file: its index
    // points into data that isn't there.
    const bool cut = mdatSeen && uint64_t(m_moovSize) + mdatSize > size;
    const uint32_t table = FindOwnVideoChunkTable(r, cut);
    if (table != 0) {
        const bool wide = table == "co64"_4cc;
        const uint64_t first = m_pos + 12;
        const uint64_t c0 = wide ? r.be64(first) : r.be32(first);
        // The first chunk must lie in the file and begin with the top byte
        // of a NAL length, which is 0.
        m_movie.hasSoundTrak = c0 < size && r.u8(c0) == 0;
        if (m_movie.hasSoundTrak) {
            file.reset();
            switch (action) {
            case OwnIndexAction::Remux: RemuxDamagedFile(inputPath); break;
            case OwnIndexAction::RemuxLpcm: RemuxDamagedFileLpcm(inputPath); break;
            case OwnIndexAction::RemuxSowt: RemuxDamagedFileSowt(inputPath); break;
            case OwnIndexAction::ScanTwos: {
                // The muxer can't be trusted with twos sound: the file is
                // indexed from its media data and rebuilt around its own movie.
                std::unique_ptr<ByteReader> own = OpenReadOnly(inputPath);
                if (own)
                    WalkSampleIndexTracks(*own, nullptr);
                ScanIndexTwos(inputPath);
                break;
            }
            }
            return;
        }
    }
    if (!g_stopRequested)
        H264PassFailed();
}

// Walks the movie from m_pos, one position at a time, to the chunk table of
// the first video track that has two chunks or more. Returns its code (stco
// or co64) with m_pos on it and m_chainFacts.chunkCount set, or 0 when there
// is none, the walk was stopped, or cut is set and a video track is reached.
uint32_t QuickTimeRoute::FindOwnVideoChunkTable(ByteReader& r, bool cut)
{
    const uint64_t size = r.size();
    CodeSearch vmhd({"vmhd"_4cc});
    while (m_pos < size && !g_stopRequested) {
        const uint32_t code = r.be32(m_pos);
        if (code == "trak"_4cc) {
            m_chainFacts.trakBytesLeft = r.be32(m_pos - 4);
            m_trakPos = m_pos;
            const int64_t hit = vmhd.next(r, m_pos);
            if (hit < 0)
                return 0;
            m_pos = uint64_t(hit);
            m_inVideoTrak = true;
            m_inAudioTrak = false;
        }
        if (m_inVideoTrak) {
            if (cut)
                return 0;
            if (code == "stco"_4cc || code == "co64"_4cc) {
                m_chainFacts.chunkCount = r.be32(m_pos + 8);
                if (m_chainFacts.chunkCount >= 2)
                    return code;
                m_inVideoTrak = false;
            }
        }
        ++m_pos;
    }
    return 0;
}

// With a sample: walk its movie for the rate inputs, the parameter sets and
// the first bytes of its frames, then run the chain.
void QuickTimeRoute::LearnFromSample(const QString& inputPath, const QString& referencePath)
{
    const bool hevc = m_chain.hevc;
    // The output is listed by the rebuild step, which sees m_remuxed.
    QDir().mkpath(m_workDir);
    ChainPaths paths = ChainPaths::in(m_workDir, inputPath);
    if (hevc)
        paths.video = m_workDir + QStringLiteral("/video.hevc");
    FileWriter video, indexing, videoText;
    video.open(paths.video);
    indexing.open(paths.indexing);
    videoText.open(paths.videoText);

    if (ByteReader* ref = Sample(referencePath)) {
        m_fileSize = m_inputSize = ref->size();
        WalkSampleMovie(*ref, video, indexing, videoText);
    }
    indexing.close();
    videoText.close();

    // The chain, top to bottom: the video starts learnt are reduced to a
    // set; the sample's sound is learnt (PCM facts, or AAC chunk starts when
    // it has a sound track) and reduced likewise; then the damaged file is
    // scanned into elementary streams, which the muxer joins.
    ReduceToUnique(paths.videoText, paths.videoUnique);
    if (m_chain.pcm) {
        LearnSamplePcm(paths);
        ReduceToUnique(paths.audioText, paths.audioUnique);
        if (hevc)
            ScanHevcStreamsPcm(video, paths);
        else
            ScanStreamsLpcm(video, paths);
    } else {
        if (LearnSampleAac(paths))
            ReduceToUnique(paths.audioText, paths.audioUnique);
        if (hevc)
            ScanHevcStreams(video, paths);
        else
            ScanStreams(video, paths);
    }
    video.close();
}

void QuickTimeRoute::WalkSampleMovie(ByteReader& r, FileWriter& video, FileWriter& indexing, FileWriter& videoText)
{
    const bool hevc = m_chain.hevc;
    const uint64_t size = r.size();
    m_pos = 4;
    if (!WalkToMovie(r, m_pos, true, nullptr, nullptr, hevc))
        return;   // no movie: nothing is learnt, the chain goes on empty
    m_moovPos = m_pos;
    m_moovSize = r.be32(m_pos - 4);
    m_inVideoTrak = false;
    CodeSearch vmhd({"vmhd"_4cc}), avcCSearch({ByteReader::fourcc(hevc ? "hvcC" : "avcC")});

    while (m_pos < size && !g_stopRequested) {
        const uint32_t code = r.be32(m_pos);
        if (code == "mvhd"_4cc) {
            m_chainFacts.movieTimescale = r.be32(m_pos + 16);
            m_chainFacts.movieDuration = r.be32(m_pos + 20);
        }
        if (code == "trak"_4cc) {
            m_chainFacts.trakBytesLeft = r.be32(m_pos - 4);
            m_trakPos = m_pos;
            // Searched to the end of the file, not of the track: a sound
            // track first in the movie still leads to the video's tables.
            if (vmhd.next(r, m_pos) >= 0) {
                m_inVideoTrak = true;
                m_pos = m_trakPos + 4;
                continue;
            }
        }
        if (m_inVideoTrak) {
            if (code == "stsz"_4cc) {
                m_chainFacts.videoSampleCount = r.be32(m_pos + 12);
            } else if (code == "stsd"_4cc) {
                int64_t avcC = avcCSearch.next(r, m_pos);
                if (avcC >= 0 && !hevc) {
                    m_pos = uint64_t(avcC);
                    CopyParameterSets(r, m_pos, video, indexing);
                }
                // An hvcC without all three sets gives way to the next one.
                while (hevc && avcC >= 0 && !g_stopRequested) {
                    m_pos = uint64_t(avcC);
                    if (CopyHevcParameterSets(r, m_pos, video, indexing))
                        break;
                    avcC = avcCSearch.next(r, m_pos + 4);
                }
            } else if (code == "stco"_4cc || code == "co64"_4cc) {
                if (hevc)
                    HevcFrameStarts(r, m_pos, code == "co64"_4cc, videoText);
                else
                    SampleFrameStarts(r, m_pos, code == "co64"_4cc, videoText);
                // What stands behind the table is normally no known code, so
                // this ends the walk: the first video table is the last read.
                m_inVideoTrak = false;
                if (!WalkToMovie(r, m_pos, true, nullptr, nullptr, hevc))
                    return;
                continue;
            }
        }
        if (m_inAudioTrak) {
            m_movie.hasSoundTrak = true;
            if (code == "stsd"_4cc) {
                m_chainFacts.audioChannels = r.be32(m_pos + 34);
                m_chainFacts.audioSampleRate = r.be32(m_pos + 42);
            } else if (code == "mdat"_4cc) {
                if (!WalkToMovie(r, m_pos, true, nullptr, nullptr, hevc))
                    return;
                continue;
            }
        }
        ++m_pos;
    }
}

// The first SPS and the first PPS of an avcC box (code at pos), each behind a
// start code, into the stream and into the parameter block file.
void QuickTimeRoute::CopyParameterSets(ByteReader& r, uint64_t pos, FileWriter& video, FileWriter& indexing)
{
    static const char startCode[4] = {0, 0, 0, 1};
    uint64_t at = pos + 10;   // code, version, profile, compatibility, level, length size, SPS count
    const uint16_t spsLength = r.be16(at);
    at += 2;
    // Sets that run past the end of the sample are taken as far as it goes;
    // zero fill would only add noise to every frame's parameter block.
    auto copySet = [&](uint64_t from, uint16_t length) {
        const uint64_t avail = from < r.size() ? std::min<uint64_t>(length, r.size() - from) : 0;
        for (FileWriter* w : {&video, &indexing}) {
            w->write(startCode, 4);
            w->copyFrom(r, from, avail);
        }
    };
    copySet(at, spsLength);
    at += spsLength + 1;   // the SPS, then the PPS count
    const uint16_t ppsLength = r.be16(at);
    copySet(at + 2, ppsLength);
}

// The chunk table (code at pos): the three bytes behind the NAL length of the
// first chunk's chain of units, and of the first unit of every other chunk.
void QuickTimeRoute::SampleFrameStarts(ByteReader& r, uint64_t pos, bool wide, FileWriter& videoText)
{
    SampleFrameStartsWith(r, pos, wide, videoText, NalStartSet::ReferenceNalBytes);
}

void QuickTimeRoute::SampleFrameStartsWith(ByteReader& r, uint64_t pos, bool wide, FileWriter& videoText,
                                              NalStartSet set)
{
    const uint64_t size = r.size();
    const unsigned width = wide ? 8 : 4;
    m_chainFacts.chunkCount = r.be32(pos + 8);
    pos += 12;
    // No more entries than the file holds.
    const uint64_t room = pos < size ? (size - pos) / width : 0;
    const uint64_t count = std::min<uint64_t>(m_chainFacts.chunkCount, room);
    auto record = [&](uint64_t at) { videoText.write(r.view(at + 4, 3), 3); };
    for (uint64_t i = 0; i < count && !g_stopRequested; ++i, pos += width) {
        uint64_t c = wide ? r.be64(pos) : r.be32(pos);
        if (c == 0 || c >= size || !IsNalStart(r, c, set))
            continue;
        record(c);
        if (i != 0)
            continue;
        // The whole chain of the first chunk; its first unit is recorded
        // twice, which the reduction to unique records removes.
        while (c < size && !g_stopRequested) {
            const uint32_t length = r.be32(c);
            if (length == 0)
                break;
            const uint64_t next = c + 4 + length;
            record(c);
            if (!IsNalStart(r, next, set))
                break;
            c = next;
        }
    }
    m_pos = pos;
}

// The lpcm pass: the chain of the AAC pass, with PCM sound cut out between
// the video runs instead of AAC frames told by patterns.
void QuickTimeRoute::RepairH264Lpcm(const QString& inputPath, const QString& referencePath)
{
    m_remuxed = g_remuxRan = g_muxerBusy = true;
    m_fileName = QFileInfo(inputPath).fileName();
    m_chain = {false, true};
    if (!g_referenceMode)
        DecideFromOwnIndex(inputPath, OwnIndexAction::RemuxLpcm);
    else
        LearnFromSample(inputPath, referencePath);
    g_muxerBusy = false;
}

// The sowt pass: the sample gives the frame starts of its video track, and
// the index scanner turns the damaged file into lines for the rebuild.
void QuickTimeRoute::RepairH264Sowt(const QString& inputPath, const QString& referencePath)
{
    m_remuxed = g_remuxRan = g_muxerBusy = true;
    m_fileName = QFileInfo(inputPath).fileName();
    m_chainFacts.nullTrackSampleSize = m_chainFacts.videoChunkEntries = m_chainFacts.audioChunkEntries = 0;
    if (!g_referenceMode) {
        DecideFromOwnIndex(inputPath, OwnIndexAction::RemuxSowt);
    } else {
        QDir().mkpath(m_workDir);
        const ChainPaths paths = ChainPaths::in(m_workDir, inputPath);
        FileWriter videoText;
        videoText.open(paths.videoText);
        if (ByteReader* ref = Sample(referencePath))
            WalkSampleIndexTracks(*ref, &videoText);
        videoText.close();
        WriteVideoUniqueFileIndex(paths);
    }
    g_muxerBusy = false;
}

// The twos pass: no patterns are learnt; the scanner steers by the access
// unit delimiters of the file itself.
void QuickTimeRoute::RepairH264Twos(const QString& inputPath, const QString& referencePath)
{
    m_remuxed = g_remuxRan = g_muxerBusy = true;
    m_fileName = QFileInfo(inputPath).fileName();
    m_chainFacts.nullTrackSampleSize = m_chainFacts.videoChunkEntries = m_chainFacts.audioChunkEntries = 0;
    if (!g_referenceMode) {
        DecideFromOwnIndex(inputPath, OwnIndexAction::ScanTwos);
    } else {
        if (ByteReader* ref = Sample(referencePath))
            WalkSampleIndexTracks(*ref, nullptr);
        ScanIndexTwos(inputPath);
    }
    g_muxerBusy = false;
}

void QuickTimeRoute::WalkSampleIndexTracks(ByteReader& r, FileWriter* videoText)
{
    const uint64_t size = r.size();
    m_pos = 4;
    // Top level as in the other passes; a thumbnail atom is passed as well.
    while (!WalkToMovie(r, m_pos, true)) {
        const uint32_t thumSize = r.be32(m_pos - 4);
        if (g_stopRequested || r.be32(m_pos) != "thum"_4cc || thumSize < 8)
            return;
        m_pos += thumSize;
    }
    m_moovPos = m_pos;
    m_moovSize = r.be32(m_pos - 4);
    m_inVideoTrak = m_inAudioTrak = m_inNullTrak = m_inGenericTrak = false;
    CodeSearch kinds({"vmhd"_4cc, "smhd"_4cc, "nmhd"_4cc, "gmhd"_4cc});

    while (m_pos < size && !g_stopRequested) {
        const uint32_t code = r.be32(m_pos);
        if (code == "mdat"_4cc)
            break;
        if (code == "trak"_4cc) {
            m_chainFacts.trakBytesLeft = r.be32(m_pos - 4);
            m_trakPos = m_pos;
            const int64_t hit = kinds.next(r, m_pos);
            if (hit >= 0) {
                const uint32_t kind = r.be32(uint64_t(hit));
                m_inVideoTrak = kind == "vmhd"_4cc;
                m_inAudioTrak = kind == "smhd"_4cc;
                m_inNullTrak = kind == "nmhd"_4cc;
                m_inGenericTrak = kind == "gmhd"_4cc;
            }
        }
        const bool table = code == "stco"_4cc || code == "co64"_4cc;
        if (m_inVideoTrak && table) {
            m_chainFacts.videoChunkEntries = r.be32(m_pos + 8);
            if (videoText) {
                SampleFrameStartsWith(r, m_pos, code == "co64"_4cc, *videoText, NalStartSet::IndexScanBytes);
                m_inVideoTrak = false;
                continue;   // m_pos stands behind the table
            }
            m_inVideoTrak = false;
        } else if (m_inAudioTrak) {
            if (code == "stsd"_4cc) {
                m_chainFacts.audioChannels = r.be32(m_pos + 34);
                m_chainFacts.audioSampleRate = r.be32(m_pos + 42);
            } else if (table) {
                m_chainFacts.audioChunkEntries = r.be32(m_pos + 8);
                m_inAudioTrak = false;
            }
        } else if (m_inNullTrak && code == "stsz"_4cc) {
            m_chainFacts.nullTrackSampleSize = r.be32(m_pos + 8);
            m_inNullTrak = false;
        }
        ++m_pos;
    }
}
