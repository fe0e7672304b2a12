// DAT files (video CD tracks and the like) get no repair of their own: the
// external muxer reads the whole file and encodes it anew into a QuickTime
// file, libx264 video and AAC sound. It takes the file through a pipe that the
// engine's reader fills, so that a bad sector reaches it as zeros (and is
// counted) instead of as a read error that ends its input.
#include "containers/output_checks.h"
#include "core/byte_reader.h"
#include "core/muxer.h"
#include "core/pipe_feeder.h"
#include "core/repair_globals.h"
#include "core/route.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <atomic>
#include <thread>

namespace {

// clip.dat beside clip.mov would write the .mov's result (or the .mov
// this one): the name of another file of the run is taken, and the first
// free "clip_2.mov", "clip_3.mov"... is used instead.
QString FreeOutputName(const QString& fileName, const QStringList* runFiles)
{
    auto taken = [&](const QString& name) {
        if (runFiles)
            for (const QString& other : *runFiles)
                if (QFileInfo(other).fileName() == name)
                    return true;
        return false;
    };
    QString outName = outputcheck::DatOutputName(fileName);
    for (int n = 2; taken(outName); ++n)
        outName = QFileInfo(outputcheck::DatOutputName(fileName)).completeBaseName() + QStringLiteral("_%1.mov").arg(n);
    return outName;
}

class DatRoute : public Route {
public:
    Verdict repair(RepairJob& job, Reporter& report) override;

private:
    QString encode(RepairJob& job, Reporter& report);
};

// The output written, or "" when there is none.
QString DatRoute::encode(RepairJob& job, Reporter& report)
{
    const QString& path = job.inputPath;
    const QFileInfo info(path);
    const uint64_t size = uint64_t(std::max<qint64>(info.size(), 0));
    const ulong half = ulong(size / 2);
    report.setRange(ulong(size));

    g_remuxRan = true;
    g_muxerBusy = true;
    const QString& workDir = job.workDir;
    const QString outName = FreeOutputName(info.fileName(), job.runFiles);
    const QString outPath = workDir + QLatin1Char('/') + outName;
    QDir().mkpath(workDir);
    report.setValue(half);

    if (outputcheck::SameFile(outPath, path)) {
        qWarning() << "The output" << outPath << "would replace its own input; not run.";
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
    if (job.input && feed.start(workDir + QStringLiteral("/.input-") + info.fileName())) {
        std::atomic<bool> cancel{false};
        std::thread muxer([&] {
            RunMuxer(command(feed.path()), workDir, -1, &cancel);
            feed.readerGone();
        });
        constexpr size_t kPiece = 1u << 20;
        for (uint64_t pos = 0; pos < size && !feed.failed() && !job.stopped(); pos += kPiece) {
            const size_t n = size_t(std::min<uint64_t>(kPiece, size - pos));
            feed.push(job.input->view(pos, n), n);
            report.setValue(half + ulong(double(half) * double(pos) / double(size)));
        }
        feed.finish();
        if (job.stopped())
            cancel = true;   // (a muxer that hasn't opened the pipe yet would wait for it forever)
        else if (feed.failed())
            feed.stop();     // the muxer sees the end of its input once the pipe is closed
        muxer.join();
        feed.stop();
    } else {
        RunMuxer(command(path), workDir);
    }
    g_muxerBusy = false;
    if (job.stopped()) {
        QFile::remove(outPath);
        return QString();
    }

    // The muxer's exit code is not read: what counts is a non-empty output.
    if (!outputcheck::NonEmptyFile(outPath)) {
        qWarning() << "The muxer left no output for" << info.fileName();
        QFile::remove(outPath);
        return QString();
    }
    *job.outputs << outPath;
    return outPath;
}

Verdict DatRoute::repair(RepairJob& job, Reporter& report)
{
    report.showFileProgress(job.fileName);
    const QString written = encode(job, report);
    // A file that can't be opened is still handed to the muxer by its path,
    // but gets no verdict from this route.
    if (!job.input)
        return Verdict::stopped();
    // A stop is told "not repaired" here.
    if (written.isEmpty() || job.stopped())
        return Verdict::failed();
    // Encoded anew: the frame count says what was kept, no bytes are skipped.
    return Verdict::repaired(written, false);
}

} // namespace

std::unique_ptr<Route> MakeDatRoute() { return std::make_unique<DatRoute>(); }
