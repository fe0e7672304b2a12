// DAT files (video CD tracks and the like) get no repair of their own: the
// external muxer reads the whole file and encodes it anew into a QuickTime
// file, libx264 video and AAC sound. It takes the file through a pipe that the
// engine's reader fills, so that a bad sector reaches it as zeros (and is
// counted) instead of as a read error that ends its input.
#include "containers/output_checks.h"
#include "core/byte_reader.h"
#include "core/muxer.h"
#include "core/pipe_feeder.h"
#include "core/thread_video_repair.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <atomic>
#include <thread>

QString ThreadVideoRepair::RepairDatFile(const QString& path)
{
    m_datDone = true;
    const QFileInfo info(path);
    g_inputSize = m_fileSize = uint64_t(std::max<qint64>(info.size(), 0));
    const ulong half = ulong(m_fileSize / 2);
    Q_EMIT SetProgressBarRange(ulong(m_fileSize));

    g_remuxed = true;
    g_remuxRan = true;
    g_muxerBusy = true;
    const QString workDir = m_workDir;
    // clip.dat beside clip.mov would write the .mov's result (or the .mov
    // this one): the name of another file of the run is taken, and the first
    // free "clip_2.mov", "clip_3.mov"... is used instead.
    auto taken = [&](const QString& name) {
        for (const QString& other : m_fileList)
            if (QFileInfo(other).fileName() == name)
                return true;
        return false;
    };
    QString outName = outputcheck::DatOutputName(info.fileName());
    for (int n = 2; taken(outName); ++n)
        outName = QFileInfo(outputcheck::DatOutputName(info.fileName())).completeBaseName()
                + QStringLiteral("_%1.mov").arg(n);
    const QString outPath = workDir + QLatin1Char('/') + outName;
    QDir().mkpath(workDir);
    Q_EMIT setProgressvalue(half);

    if (outputcheck::SameFile(outPath, path)) {
        qWarning() << "The output" << outPath << "would replace its own input; not run.";
        m_datDone = false;
        g_muxerBusy = false;
        return QString();
    }
    // A file left by an earlier run (or by a.dat before a.old.dat) must neither
    // count as this run's result nor make the muxer stop at its overwrite question.
    QFile::remove(outPath);
    const auto command = [&](const QString& input) {
        return MuxerPrefix() + QStringLiteral(" -i \"") + input
             + QStringLiteral("\" -c:v libx264 -c:a aac -strict experimental \"") + outName + QLatin1Char('"');
    };
    PipeFeeder feed;
    if (m_file && feed.start(workDir + QStringLiteral("/.input-") + info.fileName())) {
        std::atomic<bool> cancel{false};
        std::thread muxer([&] {
            RunMuxer(command(feed.path()), workDir, -1, &cancel);
            feed.readerGone();
        });
        constexpr size_t kPiece = 1u << 20;
        for (uint64_t pos = 0; pos < m_fileSize && !feed.failed() && !g_stopRequested; pos += kPiece) {
            const size_t n = size_t(std::min<uint64_t>(kPiece, m_fileSize - pos));
            feed.push(m_file->view(pos, n), n);
            Q_EMIT setProgressvalue(half + ulong(double(half) * double(pos) / double(m_fileSize)));
        }
        feed.finish();
        if (g_stopRequested)
            cancel = true;   // (a muxer that hasn't opened the pipe yet would wait for it forever)
        else if (feed.failed())
            feed.stop();     // the muxer sees the end of its input once the pipe is closed
        muxer.join();
        feed.stop();
    } else {
        RunMuxer(command(path), workDir);
    }
    g_muxerBusy = false;
    if (g_stopRequested) {
        QFile::remove(outPath);
        m_datDone = false;
        return QString();
    }

    // The muxer's exit code is not read: what counts is a non-empty output. A
    // muxer that failed leaves the done flag clear, and the row is not reported repaired.
    if (!outputcheck::NonEmptyFile(outPath)) {
        qWarning() << "The muxer left no output for" << info.fileName();
        QFile::remove(outPath);
        m_datDone = false;
        return QString();
    }
    g_repairedPaths << outPath;
    return outPath;
}
