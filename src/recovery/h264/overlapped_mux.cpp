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
    if (!command || qEnvironmentVariableIsSet(kAfterScanVariable) || video.flushedBytes() != 0
        || (audioMode && (!audio || audio->flushedBytes() != 0)))
        return false;
    m_audioMode = audioMode;
    // The pipes keep the streams' extensions, by which the muxer knows them.
    if (!m_video.start(workDir + QStringLiteral("/pipe-video.") + QFileInfo(video.path()).suffix()))
        return false;
    if (audioMode && !m_audio.start(workDir + QStringLiteral("/pipe-audio.") + QFileInfo(audio->path()).suffix()))
        return false;
    video.setTap([this](const uint8_t* p, size_t n) { m_video.push(p, n); });
    if (audioMode)
        audio->setTap([this](const uint8_t* p, size_t n) { m_audio.push(p, n); });
    // The muxer reads each input on a thread of its own, through a queue of
    // a few packets; from a pipe, with the other input not ready, that queue
    // runs empty and the muxer naps. A long queue per pipe keeps it reading.
    QString line = command(audioMode, m_video.path(), m_audio.path());
    for (const PipeFeeder* pipe : {&m_video, &m_audio}) {
        const QString input = QStringLiteral(" -i \"") + pipe->path() + QLatin1Char('"');
        line.replace(input, QStringLiteral(" -thread_queue_size 4096") + input);
    }
    m_muxer = std::thread([this, line, workDir] {
        m_result = RunMuxer(line, workDir, -1, &m_cancel);
        m_muxerDone = true;
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
                                             " it runs again from the files.")
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
    while (m_muxer.joinable() && !m_muxerDone) {
        if (m_video.failed() || (m_audioMode && m_audio.failed()))
            m_cancel = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    if (m_muxer.joinable())
        m_muxer.join();
}
