#include "recovery/h264/overlapped_mux.h"

#include "core/file_writer.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

#include <chrono>

OverlappedMux::~OverlappedMux()
{
    if (running())
        abandon(QString());
}

bool OverlappedMux::start(const QString& workDir, bool audioMode, FileWriter& video, FileWriter* audio,
                          const FirstMuxCommand& command)
{
    // With two streams the overlap waits on itself: the muxer interleaves by
    // time and reads only the stream that is behind, while the scan, which
    // writes both in the file's order, blocks on the full pipe of the other
    // one until the feeder's stall time ends the run (and the file is
    // scanned again). Only a lone video stream, which can't be out of step,
    // is muxed during the scan.
    if (!command || audioMode || qEnvironmentVariableIsSet(kAfterScanVariable) || video.flushedBytes() != 0)
        return false;
    m_audioMode = audioMode;
    // The pipes keep the streams' extensions, by which the muxer knows them.
    if (!m_video.start(workDir + QStringLiteral("/pipe-video.") + QFileInfo(video.path()).suffix()))
        return false;
    if (audioMode && !m_audio.start(workDir + QStringLiteral("/pipe-audio.") + QFileInfo(audio->path()).suffix()))
        return false;
    constexpr size_t kFlushAt = 64 * 1024;
    m_videoHead = video.unflushed();
    video.setTap([this](const uint8_t* p, size_t n) { m_video.push(p, n); }, kFlushAt, false);
    if (audioMode) {
        m_audioHead = audio->unflushed();
        audio->setTap([this](const uint8_t* p, size_t n) { m_audio.push(p, n); }, kFlushAt, false);
    }
    // The muxer reads each input on a thread of its own, through a queue of
    // a few packets; from a pipe, with the other input not ready, that queue
    // runs empty and the muxer naps. A long queue per pipe keeps it reading.
    // The raw video reader cuts its input into packets of 1 KiB before it
    // finds the frames in them, and with two inputs each packet crosses a
    // queue between threads. Packets of 64 KiB, the size the writers hand
    // over, cost a fraction of that (larger ones were slower again: the
    // reader waits longer for each). 512 of them (32 MiB, seconds of video
    // at any camera's rate) make the video's queue; the sound's frames are
    // small and many.
    QString line = command(audioMode, m_video.path(), m_audio.path());
    const auto inputOptions = [&line](const PipeFeeder& pipe, const QString& options) {
        const QString input = QStringLiteral(" -i \"") + pipe.path() + QLatin1Char('"');
        line.replace(input, QLatin1Char(' ') + options + input);
    };
    inputOptions(m_video, QStringLiteral("-thread_queue_size 512 -raw_packet_size %1").arg(kFlushAt));
    inputOptions(m_audio, QStringLiteral("-thread_queue_size 4096"));
    m_muxer = std::thread([this, line, workDir] {
        m_result = RunMuxer(line, workDir, -1, &m_cancel);
        // A muxer that ended early reads no more: the scan must not wait.
        m_video.readerGone();
        m_audio.readerGone();
        {
            std::lock_guard<std::mutex> lock(m_doneLock);
            m_muxerDone = true;
        }
        m_doneSignal.notify_all();
    });
    return true;
}

bool OverlappedMux::complete(const QString& outPath)
{
    m_video.finish();
    m_audio.finish();
    awaitMuxer();
    // A muxer that ended before reading everything leaves its pipe unread.
    m_video.stop();
    m_audio.stop();
    // Stopped after the muxer's end: a stream still drained was read whole.
    const bool fed = m_video.drained() && !(m_audioMode && !m_audio.drained());
    const QFileInfo out(outPath);
    const bool ok = fed && m_result.finished && m_result.exitCode == 0 && out.isFile() && out.size() > 0;
    if (!ok) {
        qDebug().noquote() << QStringLiteral("The muxer's run during the scan didn't complete (streams %1, exit %2);"
                                             " the streams are scanned again into their files for a run from them.")
                                  .arg(fed ? QStringLiteral("fed") : QStringLiteral("not fed"))
                                  .arg(m_result.exitCode);
        QFile::remove(outPath);
    }
    return ok;
}

void OverlappedMux::abandon(const QString& outPath)
{
    m_cancel = true;
    awaitMuxer();
    m_video.stop();
    m_audio.stop();
    if (!outPath.isEmpty())
        QFile::remove(outPath);
}

void OverlappedMux::awaitMuxer()
{
    // The feeders' failures are looked at every 10 ms; the muxer's end is
    // taken the moment it comes.
    std::unique_lock<std::mutex> lock(m_doneLock);
    while (m_muxer.joinable() && !m_muxerDone) {
        if (m_video.failed() || (m_audioMode && m_audio.failed()))
            m_cancel = true;
        m_doneSignal.wait_for(lock, std::chrono::milliseconds(10));
    }
    lock.unlock();
    if (m_muxer.joinable())
        m_muxer.join();
}
