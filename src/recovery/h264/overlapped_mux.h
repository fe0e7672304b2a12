#pragma once
// The first muxer run of a stream scan, taken while the scan writes the
// stream: the muxer reads the video through a named pipe fed from the scan's
// writer, so that a large file is scanned and muxed in about the time of the
// slower of the two (only for video alone: see start()). Meanwhile the stream files stay empty: a
// second copy of the streams, almost never read, would cost the scan a
// third of its time and the disk the size of the file. When anything goes
// wrong on the way (the muxer falls behind, fails, or is missing) the
// caller scans once more into the files, each begun with the head its
// writer held at the start (the parameter sets), and runs the muxer on them.
#include "core/muxer.h"
#include "core/pipe_feeder.h"

#include <QByteArray>
#include <QString>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

class FileWriter;

// The command of the first run for the given stream paths (the pipes).
using FirstMuxCommand = std::function<QString(bool audioMode, const QString& video, const QString& audio)>;

class OverlappedMux {
public:
    ~OverlappedMux();
    // False (and nothing started) when the environment says not to, there
    // is sound, or the writer has already put bytes on disk that the pipe
    // would miss.
    // Otherwise the writers' bytes go to the pipes alone from now on.
    bool start(const QString& workDir, bool audioMode, FileWriter& video, FileWriter* audio,
               const FirstMuxCommand& command);
    // What the writers held when the run started: the start of each stream
    // file, for a scan into the files after a failed run.
    const QByteArray& videoHead() const { return m_videoHead; }
    const QByteArray& audioHead() const { return m_audioHead; }
    bool running() const { return m_muxer.joinable(); }
    // The scan found video and its writers are closed: the pipes are closed
    // behind their last bytes and the muxer awaited. True when its run is
    // complete and outPath holds a file.
    bool complete(const QString& outPath);
    // The scan found nothing or was stopped: the muxer is stopped and what
    // it wrote is removed.
    void abandon(const QString& outPath);

    // Set in the environment (to any value) to mux only after the scan.
    static constexpr const char* kAfterScanVariable = "REELWRIGHT_MUX_AFTER_SCAN";

private:
    PipeFeeder m_video;
    PipeFeeder m_audio;
    bool m_audioMode = false;
    QByteArray m_videoHead;
    QByteArray m_audioHead;
    std::thread m_muxer;
    // Set by the muxer's thread when it ends; the signal wakes the wait at
    // once rather than at its next look.
    std::mutex m_doneLock;
    std::condition_variable m_doneSignal;
    bool m_muxerDone = false;
    std::atomic<bool> m_cancel{false};
    MuxerResult m_result;

    // Waits for the muxer; a stream that can't be fed to its end kills it.
    void awaitMuxer();
};
