// The per-file driver: the body of a run.
#include "core/thread_video_repair.h"

#include "core/code_search.h"
#include "core/file_writer.h"
#include "core/output_folder.h"
#include "core/route.h"
#include "core/platform_core.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <cstring>

void ThreadVideoRepair::showFileProgress(const QString& label)
{
    Q_EMIT ShowProgressBar();
    Q_EMIT FileNamelabel(label);
}

void ThreadVideoRepair::setLabel(const QString& label) { Q_EMIT FileNamelabel(label); }

void ThreadVideoRepair::setRange(ulong maximum) { Q_EMIT SetProgressBarRange(maximum); }

void ThreadVideoRepair::setValue(ulong value) { Q_EMIT setProgressvalue(value); }

void ThreadVideoRepair::sendVerdict(const RepairJob& job, const Verdict& verdict)
{
    if (verdict.outcome == Verdict::Outcome::Stopped)
        return;
    const bool repaired = verdict.outcome == Verdict::Outcome::Repaired;
    if (verdict.hasFigures) {
        if (repaired && !verdict.output.isEmpty())
            Q_EMIT OutputWritten(job.fileName, verdict.output);
        const RecoveredFigures& f = verdict.figures;
        Q_EMIT RecoveryFigures(job.fileName, f.videoFrames, f.audioSeconds, f.skippedBytes);
    } else if (repaired && !verdict.output.isEmpty()) {
        AnnounceOutput(verdict.output, verdict.copiesInput);
    }
    if (verdict.aviSignal)
        Q_EMIT WriteAVIFileStatus(repaired, job.fileName);
    else
        Q_EMIT WriteStatus(repaired, false, job.fileName, verdict.defaultCodec);
    if (verdict.unreadableBytes)
        Q_EMIT ReadDamage(job.fileName, verdict.unreadableBytes);
}

void ThreadVideoRepair::RepairFiles(QStringList files, QString referencePath)
{
    // Start of a run.
    Q_EMIT OverAllProgressValue(0, 0);
    m_file.reset();
    g_stopRequested = false;
    m_carried = RunCarryOver{};
    m_fileName.clear();
    if (g_forgetReference) {
        referencePath.clear();
        g_forgetReference = false;
        g_referenceMode = false;
    }
    // The window's settings as the run starts: a change made while it runs
    // counts from the next run on. (The passes read g_referenceMode, which
    // only the start of a run and the window between runs write.)
    const bool referenceMode = g_referenceMode;
    const QString customRoot = g_customWorkRoot;
    if (referenceMode)
        Q_EMIT disableAddReferenceBtn();
    Q_EMIT ShowOverAllProgressBar();
    const int count = files.size();
    Q_EMIT OverAllProgressBarMax(uint(count));
    if (!referenceMode) {
        QDir stale(QDir::tempPath() + QStringLiteral("/Repaired"));
        if (stale.exists())
            stale.removeRecursively();
    }

    for (int i = 0; i < count && !g_stopRequested; ++i) {
        const QString path = files.at(i);
        const QFileInfo info(path);

        // Results go to Repaired in the user's folder, else beside the file
        // (hidden there); a folder that can't be written gives way to one of
        // the user's own (see ChooseOutputFolder).
        const bool custom = !customRoot.isEmpty() && QFileInfo(customRoot).isDir();
        const OutputFolder folder = ChooseOutputFolder(info.absolutePath(), custom ? customRoot : QString());
        m_workDir = folder.dir.isEmpty() ? (custom ? customRoot : info.absolutePath()) + QStringLiteral("/Repaired")
                                         : folder.dir;
        const QString workRoot = QFileInfo(m_workDir).path();
        if (!custom && !folder.fallback && !folder.dir.isEmpty())
            SetHiddenInFolder(workRoot, QStringLiteral("Repaired"), true);
        if (folder.fallback)
            qWarning().noquote() << QStringLiteral("%1 can't be written beside; its results go to %2")
                                        .arg(info.fileName(), m_workDir);
        if (!folder.dir.isEmpty())
            RemoveStaleWork(m_workDir);
        m_file = FileReader::open(path);
        m_logPath = m_workDir + QStringLiteral("/logFile.txt");
        if (!referenceMode)
            referencePath.clear();
        m_fileSize = m_file ? m_file->size() : uint64_t(info.size());
        m_fileName = info.fileName();
        const QString suffix = info.suffix();
        Q_EMIT WriteProcessingStatus(m_fileName);
        // No room for the results: a verdict with the reason, and the next file.
        const QString shortage = folder.dir.isEmpty() ? QStringLiteral("no folder can be written for the results")
                                                      : SpaceShortage(m_workDir, m_fileSize);
        if (!shortage.isEmpty()) {
            Q_EMIT WriteStatus(false, false, m_fileName, false);
            Q_EMIT VerdictReason(m_fileName, shortage);
            m_file.reset();
            Q_EMIT OverAllProgressValue(uint(i + 1), uint((i * 100 + 100) / count));
            continue;
        }
        if (!m_logHandle.open(m_logPath))
            qWarning() << "Can't create" << m_logPath;
        const unsigned spaceFailures = FileWriter::outOfSpaceFailures();
        const int resultsBefore = g_repairedPaths.size();
        const QDateTime fileStart = QDateTime::currentDateTime().addSecs(-1);

        RepairJob job;
        job.inputPath = info.absolutePath() + QLatin1Char('/') + m_fileName;
        job.fileName = m_fileName;
        job.suffix = suffix;
        job.referencePath = referencePath;
        job.referenceMode = referenceMode;
        job.workDir = m_workDir;
        job.logPath = m_logPath;
        job.input = m_file.get();
        const std::unique_ptr<ByteReader> sample = referencePath.isEmpty() ? nullptr : FileReader::open(referencePath);
        job.sample = sample.get();
        job.log = &m_logHandle;
        job.stop = &g_stopRequested;
        job.outputs = &g_repairedPaths;
        job.runFiles = &m_fileList;
        job.carried = &m_carried;
        sendVerdict(job, RouteForSuffix(suffix)->repair(job, *this));
        m_logHandle.close();
        if (m_file && m_file->unreadableBytes())
            Q_EMIT ReadDamage(m_fileName, m_file->unreadableBytes());
        // The disk filled up on the way: what this file left is not trusted.
        if (FileWriter::outOfSpaceFailures() != spaceFailures) {
            while (g_repairedPaths.size() > resultsBefore)
                QFile::remove(g_repairedPaths.takeLast());
            QFile::remove(m_workDir + QLatin1Char('/') + m_fileName);
            Q_EMIT VerdictReason(m_fileName, SpaceMessage(m_workDir, m_fileSize));
        }
        m_file.reset();
        if (g_stopRequested) {
            // A stop leaves no result of this file, whatever stage it came
            // in: what it wrote goes (a result of an earlier run stays).
            while (g_repairedPaths.size() > resultsBefore)
                QFile::remove(g_repairedPaths.takeLast());
            const QFileInfo output(m_workDir + QLatin1Char('/') + m_fileName);
            if (output.exists() && output.lastModified() >= fileStart)
                QFile::remove(output.absoluteFilePath());
            break;
        }

        if (count == 1)
            Q_EMIT OverAllProgressValue(uint(i), uint(i * 100 / count));
        else
            Q_EMIT OverAllProgressValue(uint(i + 1), uint((i * 100 + 100) / count));
    }
}

