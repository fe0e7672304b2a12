// The per-file driver: the body of a run.
#include "core/thread_video_repair.h"

#include "core/code_search.h"
#include "core/file_writer.h"
#include "core/output_folder.h"
#include "core/quicktime_pass.h"
#include "core/route.h"
#include "recovery/syntax/syntax_route.h"
#include "core/platform_core.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <cstring>

namespace {

// The codec-syntax output at syntaxPath against what the pattern passes left
// at outPath (when they ran and repaired): more video frames win, then more
// sound; a tie keeps the syntax output, whose frames are the original bytes.
// The winner ends at outPath. Returns its figures, or none when neither has a
// file.
bool KeepBetterOutput(const syntax::SyntaxOutcome& bySyntax, const QString& syntaxPath, const QString& outPath,
                      bool passRepaired, syntax::MovieFigures& figures)
{
    const syntax::MovieFigures byPass = passRepaired && QFileInfo(outPath).isFile() ? syntax::ReadFigures(outPath)
                                                                                    : syntax::MovieFigures{};
    const bool passHas = passRepaired && byPass.videoFrames > 0;
    if (bySyntax.written
        && (!passHas || bySyntax.figures.videoFrames > byPass.videoFrames
            || (bySyntax.figures.videoFrames == byPass.videoFrames
                && bySyntax.figures.audioSeconds + 0.5 >= byPass.audioSeconds))) {
        QFile::remove(outPath);
        if (QFile::rename(syntaxPath, outPath)) {
            figures = bySyntax.figures;
            if (!g_repairedPaths.contains(outPath))
                g_repairedPaths << outPath;
            return true;
        }
    }
    QFile::remove(syntaxPath);
    figures = byPass;
    return passRepaired;
}

} // namespace

// The routes whose state still lives in the worker: each runs its step of
// the worker, which sends its verdict itself.
namespace {
template <void (ThreadVideoRepair::*Step)(const RepairJob&)>
class WorkerRoute : public Route {
public:
    Verdict repair(RepairJob& job, Reporter&) override
    {
        (job.worker->*Step)(job);
        return Verdict::sent();
    }
};
template <void (ThreadVideoRepair::*Step)(const RepairJob&)>
std::unique_ptr<Route> MakeWorkerRoute()
{
    return std::make_unique<WorkerRoute<Step>>();
}
} // namespace

std::unique_ptr<Route> MakeQuickTimeRoute() { return MakeWorkerRoute<&ThreadVideoRepair::RepairQuickTimeFamily>(); }

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
    if (verdict.outcome == Verdict::Outcome::Stopped || verdict.outcome == Verdict::Outcome::Sent)
        return;
    const bool repaired = verdict.outcome == Verdict::Outcome::Repaired;
    if (repaired && !verdict.output.isEmpty())
        AnnounceOutput(verdict.output, verdict.copiesInput);
    if (verdict.aviSignal)
        Q_EMIT WriteAVIFileStatus(repaired, job.fileName);
    else
        Q_EMIT WriteStatus(repaired, false, job.fileName, verdict.defaultCodec);
}

void ThreadVideoRepair::RepairFiles(QStringList files, QString referencePath)
{
    // Start of a run.
    Q_EMIT OverAllProgressValue(0, 0);
    m_file.reset();
    g_stopRequested = false;
    g_passFailed = false;   // a pass stopped in the last run may have left it set
    m_isJpeg = m_isProRes = m_isTwos = m_isHevc = m_isMpeg4In3gp = false;
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
        g_workRoot = QDir::tempPath();
        QDir stale(g_workRoot + QStringLiteral("/Repaired"));
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
        g_workRoot = QFileInfo(m_workDir).path();
        if (!custom && !folder.fallback && !folder.dir.isEmpty())
            SetHiddenInFolder(g_workRoot, QStringLiteral("Repaired"), true);
        if (folder.fallback)
            qWarning().noquote() << QStringLiteral("%1 can't be written beside; its results go to %2")
                                        .arg(info.fileName(), m_workDir);
        if (!folder.dir.isEmpty())
            RemoveStaleWork(m_workDir);
        m_file = OpenReadOnly(path);
        m_logPath = m_workDir + QStringLiteral("/logFile.txt");
        if (!referenceMode)
            referencePath.clear();
        m_fileSize = g_inputSize = m_file ? m_file->size() : uint64_t(info.size());
        m_fileName = info.fileName();
        g_sourceFullPath = info.absolutePath() + QLatin1Char('/') + m_fileName;
        const QString suffix = info.suffix();
        if (suffix == QLatin1String("3gp") || suffix == QLatin1String("3g2"))
            g_is3gp = true;
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
        job.inputPath = g_sourceFullPath;
        job.fileName = m_fileName;
        job.suffix = suffix;
        job.referencePath = referencePath;
        job.referenceMode = referenceMode;
        job.workDir = m_workDir;
        job.logPath = m_logPath;
        job.input = m_file.get();
        job.log = &m_logHandle;
        job.stop = &g_stopRequested;
        job.outputs = &g_repairedPaths;
        job.runFiles = &m_fileList;
        job.worker = this;
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
        m_refFile.reset();
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

uint32_t ThreadVideoRepair::MovieCodecs() const
{
    return (m_isJpeg ? kCodecJpeg : 0) | (m_isProRes ? kCodecProRes : 0) | (m_isHevc ? kCodecHevc : 0)
         | (m_isMpeg4In3gp ? kCodecMpeg4 : 0) | (m_isTwos ? kCodecTwos : 0) | (m_isSowt ? kCodecSowt : 0)
         | (m_isLpcm ? kCodecLpcm : 0) | (m_isLpcmHevc ? kCodecLpcmHevc : 0);
}

void ThreadVideoRepair::ReopenInput()
{
    m_file = OpenReadOnly(g_sourceFullPath);
}

void ThreadVideoRepair::RepairQuickTimeFamily(const RepairJob& job)
{
    const QString& referencePath = job.referencePath;
    bool movieFound = false;
    bool imkh = false;
    g_hasSoundTrak = false;   // set again by the movie reader of this file
    if (referencePath.isEmpty() && !job.referenceMode) {
        if (m_file) {
            Q_EMIT ShowProgressBar();
            Q_EMIT FileNamelabel(m_fileName);
            Q_EMIT SetProgressBarRange(50000);
            movieFound = FindDamagedMovie(imkh);
        }
    } else {
        movieFound = FindReferenceMovie(referencePath);
    }

    if (!movieFound) {
        // No movie: the ordinary way into Advance Repair on a first pass.
        if (!g_stopRequested)
            Q_EMIT WriteStatus(false, false, m_fileName, false);
        return;
    }
    if (g_stopRequested)
        return;
    if (!m_fileName.isEmpty())
        Q_EMIT FileNamelabel(m_fileName);

    // The codec-syntax recovery runs first; its frames are the original bytes.
    // The pattern passes run behind it only where it explained too little of
    // the media data (no frame, or more than a tenth skipped), and then the
    // better of the two outputs is kept.
    const QString outPath = m_workDir + QLatin1Char('/') + m_fileName;
    const QString syntaxPath = m_workDir + QStringLiteral("/.syntax-") + m_fileName;
    syntax::SyntaxOutcome bySyntax;
    if (!imkh) {
        Q_EMIT SetProgressBarRange(1000);
        syntax::ScanControl control;
        control.stop = &g_stopRequested;
        control.progress = [this](uint64_t done, uint64_t total) {
            Q_EMIT setProgressvalue(ulong(done * 1000 / std::max<uint64_t>(total, 1)));
        };
        const bool firstPass = referencePath.isEmpty() && !job.referenceMode;
        bySyntax = syntax::RecoverBySyntax(g_sourceFullPath, firstPass ? g_sourceFullPath : g_referenceFullPath,
                                           syntaxPath, control);
        if (g_stopRequested) {
            QFile::remove(syntaxPath);
            return;
        }
        if (!bySyntax.written)
            qDebug() << "Syntax recovery of" << m_fileName << ":" << bySyntax.reason;
    }
    const bool syntaxSuffices = bySyntax.written && bySyntax.skippedBytes <= bySyntax.mediaBytes / 10;

    if (imkh) {
        movieFound = false;
        RemuxCameraFile(g_sourceFullPath);
        if (g_stopRequested)
            return;
    } else if (!syntaxSuffices) {
        // Each pass of the recovery subsystems opens its own handles, so the
        // damaged file is closed around it and reopened behind it.
        auto runPass = [this](void (ThreadVideoRepair::*pass)(const QString&, const QString&)) {
            m_file.reset();
            (this->*pass)(g_sourceFullPath, g_referenceFullPath);
            ReopenInput();
        };
        switch (PassForCodecs(MovieCodecs())) {
        case QuickTimePass::Mpeg4Frames:
            if (m_file)
                ScanMpeg4Frames();
            break;
        case QuickTimePass::JpegFrames:
            if (m_file)
                ScanJpegFrames();
            break;
        case QuickTimePass::ProResFrames:
            if (m_file)
                ScanProResFrames();
            break;
        case QuickTimePass::HevcLpcm:
            runPass(&ThreadVideoRepair::RepairHevcLpcm);
            break;
        case QuickTimePass::H264Lpcm:
            runPass(&ThreadVideoRepair::RepairH264Lpcm);
            break;
        case QuickTimePass::HevcAac:
            runPass(&ThreadVideoRepair::RepairHevcAac);
            break;
        case QuickTimePass::H264Twos:
            runPass(&ThreadVideoRepair::RepairH264Twos);
            break;
        case QuickTimePass::H264Sowt:
            runPass(&ThreadVideoRepair::RepairH264Sowt);
            break;
        case QuickTimePass::H264Aac:
            runPass(&ThreadVideoRepair::RepairH264Aac);
            break;
        case QuickTimePass::None:
            break;
        }
        // Two codec flags together match no row: nothing runs, and the
        // rebuild goes on with what logFile.txt holds.
        if (g_stopRequested)
            return;
    }

    m_logHandle.close();
    if (g_stopRequested) {
        QFile::remove(syntaxPath);
        return;
    }
    if (!imkh && !syntaxSuffices) {
        RebuildQuickTimeFile(m_logPath);
        if (g_stopRequested) {
            QFile::remove(syntaxPath);
            return;
        }
    }

    if (imkh) {
        if (!g_passFailed)
            AnnounceOutput(outPath);
        Q_EMIT WriteStatus(!g_passFailed, false, m_fileName, false);
        g_passFailed = false;
    } else {
        bool repaired = movieFound && !syntaxSuffices;
        if (g_passFailed) {
            g_passFailed = false;
            repaired = false;
        }
        syntax::MovieFigures figures;
        repaired = KeepBetterOutput(bySyntax, syntaxPath, outPath, repaired, figures);
        if (repaired)
            Q_EMIT OutputWritten(m_fileName, outPath);
        Q_EMIT RecoveryFigures(m_fileName, figures.videoFrames, figures.audioSeconds, bySyntax.skippedBytes);
        Q_EMIT WriteStatus(repaired, false, m_fileName, MovieCodecs() == 0);
        if (bySyntax.unreadableBytes)
            Q_EMIT ReadDamage(m_fileName, bySyntax.unreadableBytes);
    }
    m_videoRunLengths.clear();
    m_audioRunLengths.clear();
}
