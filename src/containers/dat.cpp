// DAT files (video CD tracks and the like) get no repair of their own: the
// external muxer reads the whole file and encodes it anew into a QuickTime
// file, libx264 video and AAC sound.
#include "containers/output_checks.h"
#include "core/muxer.h"
#include "core/thread_video_repair.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>

namespace {

// The first non-empty piece of the name between dots, with ".mov" behind it:
// clip.v2.dat gives clip.mov, .hidden.dat gives hidden.mov.
QString DatOutputName(const QString& fileName)
{
    const QStringList pieces = fileName.split(QLatin1Char('.'), Qt::SkipEmptyParts);
    return (pieces.isEmpty() ? QString() : pieces.first()) + QStringLiteral(".mov");
}

} // namespace

void ThreadVideoRepair::RepairDatFile(const QString& path)
{
    m_datDone = true;
    const QFileInfo info(path);
    g_inputSize = m_fileSize = uint64_t(std::max<qint64>(info.size(), 0));
    const ulong half = ulong(m_fileSize / 2);
    Q_EMIT SetProgressBarRange(ulong(m_fileSize));

    g_remuxed = true;
    g_remuxRan = true;
    g_muxerBusy = true;
    const QString outName = DatOutputName(info.fileName());
    const QString workDir = g_workRoot + QStringLiteral("/Repaired");
    const QString outPath = workDir + QLatin1Char('/') + outName;
    QDir().mkpath(workDir);
    Q_EMIT setProgressvalue(half);

    if (outputcheck::SameFile(outPath, path)) {
        qWarning() << "The output" << outPath << "would replace its own input; not run.";
        m_datDone = false;
        g_muxerBusy = false;
        return;
    }
    // A file left by an earlier run (or by a.dat before a.old.dat) must neither
    // count as this run's result nor make the muxer stop at its overwrite question.
    QFile::remove(outPath);
    RunMuxer(MuxerPrefix() + QStringLiteral(" -i \"") + path
                 + QStringLiteral("\" -c:v libx264 -c:a aac -strict experimental \"") + outName
                 + QLatin1Char('"'),
             workDir);
    g_muxerBusy = false;

    // The muxer's exit code is not read: what counts is a non-empty output. A
    // muxer that failed leaves the done flag clear, and the row is not reported repaired.
    if (!outputcheck::NonEmptyFile(outPath)) {
        qWarning() << "The muxer left no output for" << info.fileName();
        QFile::remove(outPath);
        m_datDone = false;
        return;
    }
    g_repairedPaths << outPath;
}
