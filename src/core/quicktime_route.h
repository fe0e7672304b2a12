#pragma once
// The QuickTime family's route: the movie readers, the frame scanners, the
// pattern passes of the H.264/HEVC recovery and the QuickTime rebuild, with
// the codec-syntax recovery run first. One object repairs one file and keeps
// every position, flag and table of that file; its methods live in the file
// of their subsystem (core/, recovery/h264/, recovery/hevc/, containers/).
#include "core/byte_reader.h"
#include "core/file_writer.h"
#include "core/movie_facts.h"
#include "core/record_table.h"
#include "core/repair_globals.h"
#include "core/route.h"
#include "recovery/h264/chain_facts.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class LogCipher;
struct ChainPaths;
class IndexScanner;
enum class NalStartSet;
struct NalScanRules;
class PatternSet;

class QuickTimeRoute : public Route {
public:
    QuickTimeRoute();
    ~QuickTimeRoute() override;
    Verdict repair(RepairJob& job, Reporter& report) override;

    // Opens path read-only; null when it can't be opened.
    static std::unique_ptr<ByteReader> OpenReadOnly(const QString& path);
    // The sample that every stage of the file reads (the movie search, the
    // codec-syntax recovery and the pattern passes): the job's, or one
    // opened here at its first use; null when it can't be opened.
    ByteReader* Sample(const QString& path);
    // One enciphered line, closed by CR LF, to logFile.txt (when open).
    void WriteLogLine(LogCipher& cipher, const QString& line);

    // Where progress goes: the job's reporter while repair() runs, else nowhere.
    Reporter* m_report;
    // What lasts from one file of the run to the next (see RunCarryOver).
    RunCarryOver* m_carried;
    RunCarryOver m_ownCarry;                // the carry-over of a file that stands alone
    bool m_passFailed = false;              // a recovery pass ended without a result
    // A pass (or the camera remux) left a finished file: the rebuild only
    // lists it. Starts false for every file.
    bool m_remuxed = false;

    // The steps of one file; repair() sets the job's reader, log and names first.
    Verdict RepairFile(const RepairJob& job);

    // ---- Movie location and readers (core/movie_search.cpp, core/movie_header.cpp) ----
    bool FindDamagedMovie(bool& imkhMark);
    bool FindReferenceMovie(const QString& referencePath);
    void ReadMovieHeader();
    void ReadReferenceMovieHeader();

    // ---- Frame scanners without a sample (core/frame_scanners.cpp) ----
    void ScanMpeg4Frames();
    void ScanJpegFrames();
    void ScanProResFrames();

    // ---- QuickTime rebuild (core/quicktime_rebuild.cpp) ----
    void RebuildQuickTimeFile(const QString& logPath);

    // ---- Recovery passes (recovery/h264, recovery/hevc) ----
    void RepairH264Aac(const QString& inputPath, const QString& referencePath);
    void RepairH264Lpcm(const QString& inputPath, const QString& referencePath);
    void RepairH264Sowt(const QString& inputPath, const QString& referencePath);
    void RepairH264Twos(const QString& inputPath, const QString& referencePath);
    void RepairHevcAac(const QString& inputPath, const QString& referencePath);
    void RepairHevcLpcm(const QString& inputPath, const QString& referencePath);

    // ---- H.264 recovery chain (recovery/h264/) ----
    // Which chain a pass runs: H.264 or HEVC units, AAC or PCM sound. The
    // pass sets it as it starts; every stage of the chain reads it.
    struct ChainFlavour {
        bool hevc = false;
        bool pcm = false;
    };
    ChainFlavour m_chain;
    // What the chain's walks learn and its muxer runs are named, for this file.
    ChainFacts m_chainFacts;
    // Without a sample: remux when the file's own chunk table is usable.
    void RemuxFromOwnIndex(const QString& inputPath);
    // With a sample: learn from it, then run the chain down to the muxer.
    // hevc: the same walks for an HEVC sample (hvcC, every chunk's chain, mmpu).
    void LearnFromSample(const QString& inputPath, const QString& referencePath);
    void WalkSampleMovie(ByteReader& r, FileWriter& video, FileWriter& indexing, FileWriter& videoText);
    void CopyParameterSets(ByteReader& r, uint64_t pos, FileWriter& video, FileWriter& indexing);
    void SampleFrameStarts(ByteReader& r, uint64_t pos, bool wide, FileWriter& videoText);
    // The chain's sound stages: what the sample teaches of its sound, into
    // the audio text list. LearnSampleAac is false when the sample has no
    // sound track (the list stays empty).
    bool LearnSampleAac(const ChainPaths& p);
    void LearnSamplePcm(const ChainPaths& p);
    void WalkSampleSound(ByteReader& r, FileWriter& audioText);
    void ReadAudioFrameSizes(ByteReader& r, uint64_t pos);
    void SampleAudioStarts(ByteReader& r, uint64_t pos, bool wide, FileWriter& audioText);
    void WriteVideoUniqueFileIndex(const ChainPaths& p);
    void ScanStreams(FileWriter& video, const ChainPaths& p);
    // The scan of ScanStreams under the given header rules; false when the
    // muxer has nothing to work on (the pass has then failed or was stopped).
    // firstMux, when given, gives the command of the muxer's first run for
    // two stream paths: that run then reads the streams while they are
    // scanned, and m_firstMuxDone tells whether it completed.
    bool ScanChainStreams(FileWriter& video, const ChainPaths& p, const NalScanRules& rules, bool& audioMode,
                          const std::function<QString(bool, const QString&, const QString&)>& firstMux = {});
    uint64_t ScanIntoStreams(ByteReader* in, FileWriter& video, bool audioMode, const PatternSet& patterns,
                             const QByteArray& paramBlock, const NalScanRules& rules);
    // Names the chain's outputs and clears the way for the muxer.
    void PrepareMuxOutput();
    void MuxVideoAndAudio(const ChainPaths& p);
    void MuxVideoOnly(const ChainPaths& p);
    void RemuxDamagedFile(const QString& inputPath);
    // A pass that ends without a file: the pass-failed flag (the driver sends the verdict).
    void H264PassFailed();
    void RemoveChainFiles(const ChainPaths& p);
    FileWriter m_audioOut;                  // audio.aac while the chain runs

    // ---- PCM and index scanners (recovery/h264/pcm_recovery.cpp, index_scanners.cpp) ----
    // What a pass without a sample does with a file whose own chunk table is usable.
    enum class OwnIndexAction { Remux, RemuxLpcm, RemuxSowt, ScanTwos };
    // Opens the file of a pass without a sample and walks to its movie
    // (m_moovPos, m_moovSize). Null, with the negative verdict sent, when the
    // file can't be read or has no movie.
    std::unique_ptr<ByteReader> OpenOwnMovie(const QString& inputPath, bool* mdatSeen = nullptr,
                                             uint64_t* mdatSize = nullptr);
    uint32_t FindOwnVideoChunkTable(ByteReader& r, bool cut);
    void DecideFromOwnIndex(const QString& inputPath, OwnIndexAction action);
    void SampleFrameStartsWith(ByteReader& r, uint64_t pos, bool wide, FileWriter& videoText, NalStartSet set);
    // The track walk of the sowt and twos passes: the four kinds of track, the
    // chunk counts, the sound's channels and rate, the timecode sample size;
    // with videoText, the frame starts of the video track.
    void WalkSampleIndexTracks(ByteReader& r, FileWriter* videoText);
    // everyStart: each chunk's first three bytes are noted, silent or not.
    void WalkSampleLpcmSound(ByteReader& r, FileWriter& audioText, bool everyStart = false);
    void ScanStreamsLpcm(FileWriter& video, const ChainPaths& p);
    void MuxVideoAndPcm(const ChainPaths& p);
    void RemuxDamagedFileLpcm(const QString& inputPath);
    void RemuxDamagedFileSowt(const QString& inputPath);
    void RemuxOwnIndex(const QString& inputPath, bool halfwayProgress);
    void ScanIndexSowt(const QString& inputPath, const QString& videoUniquePath);
    void ScanIndexTwos(const QString& inputPath);
    void ScanIndexHevcPcm(const QString& inputPath, const QString& videoUniquePath);
    void RunIndexScan(const QString& inputPath, const std::function<void(IndexScanner&)>& scan);

    // ---- HEVC recovery (recovery/hevc/) ----
    // Without a sample: remux when the file's own chunk table opens on HEVC units.
    void RemuxHevcFromOwnIndex(const QString& inputPath);
    // The first VPS, SPS and PPS of an hvcC box (code at pos), in that order;
    // false when the box doesn't hold all three.
    bool CopyHevcParameterSets(ByteReader& r, uint64_t pos, FileWriter& video, FileWriter& indexing);
    // A chunk table of the sample (code at pos): every chunk's chain of units.
    // With lpcm the chain's own set is used and no slice table is added.
    void HevcFrameStarts(ByteReader& r, uint64_t pos, bool wide, FileWriter& videoText);
    void ScanHevcStreams(FileWriter& video, const ChainPaths& p);
    void MuxHevcVideoAndAudio(const ChainPaths& p);
    void MuxHevcVideoOnly(const ChainPaths& p);
    void RemuxDamagedHevcFile(const QString& inputPath);
    void ScanHevcStreamsPcm(FileWriter& video, const ChainPaths& p);
    bool m_firstMuxDone = false;   // the first muxer run was taken during the scan

    // ---- Camera files of the QuickTime family (containers/camera.cpp) ----
    void RemuxCameraFile(const QString& path);

    // ---- Files and positions ----
    ByteReader* m_file = nullptr;           // the damaged file (the job's reader); null when not open
    ByteReader* m_refFile = nullptr;        // the sample: the job's, else m_ownSample
    std::unique_ptr<ByteReader> m_ownSample;   // a sample opened for a route run without a job
    FileWriter m_outFile;                   // the file being rebuilt
    FileWriter* m_log = nullptr;            // logFile.txt of the file (the job's); may be closed
    uint64_t m_pos = 0;                     // shared scratch position of every walk and writer
    uint64_t m_fileSize = 0;
    uint64_t m_inputSize = 0;               // the damaged file's size, counted down by the movie reader
    QString m_referencePath;                // the sample, absolute (set by the sample's movie search)
    uint64_t m_refFileSize = 0;
    uint64_t m_atomSize = 0;
    uint32_t m_atomSize32 = 0;
    uint64_t m_moovPos = 0;
    uint32_t m_moovSize = 0;
    uint64_t m_trakPos = 0;
    uint64_t m_moovBodyPos = 0;

    // ---- Names ----
    QString m_workDir;                      // the job's work folder (its Repaired)
    QString m_logPath;                      // m_workDir + "/logFile.txt"
    QString m_fileName;

    // ---- Movie facts, and the reader's walk through the tracks ----
    MovieFacts m_movie;
    bool m_inVideoTrak = false;
    bool m_inAudioTrak = false;
    bool m_inNullTrak = false;
    bool m_inGenericTrak = false;
    bool m_haveVideoTrak = false;

    // ---- Rebuild state ----
    uint32_t m_frameSize = 0;
    uint32_t m_videoRun = 0, m_videoFrames = 0, m_videoRuns = 0;
    uint32_t m_audioRun = 0, m_audioFrames = 0, m_audioSamples = 0;
    bool m_audioInIndex = false;
    uint32_t m_audioRuns = 0;

    // ---- Scanner state ----
    uint64_t m_frameStart = 0;
    uint64_t m_audioGapStart = 0;
    uint32_t m_audioGapSize = 0;

    // ---- QuickTime rebuild: WriteVideoTrack, WriteAudioTrack, ReadTrackDurations (core/quicktime_rebuild.cpp) ----
    // One chunk of the rebuilt file: where it starts and what it holds. The
    // chunks are kept in record tables, so a long recording's chunk list
    // spills to a work file beside the output instead of growing in memory.
    struct RebuildChunk {
        uint64_t offset = 0;
        uint64_t samples = 0;
        uint32_t frames = 0;
        uint32_t unused = 0;
    };
    using ChunkTable = RecordTable<RebuildChunk>;
    void WriteVideoTrack(const ChunkTable& chunks);
    void WriteAudioTrack(const ChunkTable& chunks);
    // Time scale and duration of the video and sound tracks of a finished file,
    // as whole seconds in g_videoSeconds and g_audioSeconds.
    void ReadTrackDurations(const QString& path);
    QString m_rebuildIndexPath;                // the FrameIndexFile being rebuilt from
    double m_videoSeconds = 0;
    double m_audioSeconds = 0;

    // ---- Movie search and readers: FindDamagedMovie, FindReferenceMovie, ReadMovieHeader (core/movie_search.cpp, core/movie_header.cpp) ----
    // One byte-wise search window; true when the movie reader ran.
    bool SearchMovieWindow(ByteReader& r, bool& movieFound, uint64_t& steps, uint64_t stepLimit,
                           ulong range, bool progress, bool reference);
    // The readers' scan, shared by both; reference selects the sample's rules.
    // Returns what it learned (m_movie as it stands when there is no file).
    MovieFacts ScanMovieHeader(bool reference);

};
