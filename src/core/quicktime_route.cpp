// The QuickTime family's route: find the movie, recover by the codecs' own
// syntax, fall back on the pattern pass of the movie's codecs, rebuild.
#include "core/quicktime_route.h"

#include "core/log_cipher.h"
#include "core/quicktime_pass.h"
#include "recovery/syntax/syntax_route.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

namespace {

// Progress of a route object used outside a job goes nowhere.
class SilentReporter : public Reporter {
public:
    void showFileProgress(const QString&) override {}
    void setLabel(const QString&) override {}
    void setRange(ulong) override {}
    void setValue(ulong) override {}
    void sendVerdict(const RepairJob&, const Verdict&) override {}
};
SilentReporter g_silent;   // stateless

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

std::unique_ptr<Route> MakeQuickTimeRoute() { return std::make_unique<QuickTimeRoute>(); }

QuickTimeRoute::QuickTimeRoute()
    : m_report(&g_silent), m_carried(&m_ownCarry)
{
}

QuickTimeRoute::~QuickTimeRoute() = default;

std::unique_ptr<ByteReader> QuickTimeRoute::OpenReadOnly(const QString& path) { return FileReader::open(path); }

ByteReader* QuickTimeRoute::Sample(const QString& path)
{
    if (!m_refFile) {
        m_ownSample = OpenReadOnly(path);
        m_refFile = m_ownSample.get();
    }
    return m_refFile;
}

void QuickTimeRoute::WriteLogLine(LogCipher& cipher, const QString& line) { WriteCipheredLine(m_log, cipher, line); }

Verdict QuickTimeRoute::repair(RepairJob& job, Reporter& report)
{
    m_report = &report;
    if (job.carried)
        m_carried = job.carried;
    m_file = job.input;
    m_refFile = job.sample;
    m_log = job.log;
    m_workDir = job.workDir;
    m_logPath = job.logPath;
    m_fileName = job.fileName;
    m_fileSize = m_inputSize = m_file ? m_file->size() : uint64_t(QFileInfo(job.inputPath).size());
    if (job.suffix == QLatin1String("3gp") || job.suffix == QLatin1String("3g2"))
        m_carried->is3gp = true;
    const Verdict verdict = RepairFile(job);
    m_report = &g_silent;
    return verdict;
}

Verdict QuickTimeRoute::RepairFile(const RepairJob& job)
{
    const QString& referencePath = job.referencePath;
    bool movieFound = false;
    bool imkh = false;
    if (referencePath.isEmpty() && !job.referenceMode) {
        if (m_file) {
            m_report->showFileProgress(m_fileName);
            m_report->setRange(50000);
            movieFound = FindDamagedMovie(imkh);
        }
    } else {
        movieFound = FindReferenceMovie(referencePath);
    }

    // No movie: the ordinary way into Advance Repair on a first pass.
    if (!movieFound)
        return Verdict::failedUnlessStopped(job);
    if (job.stopped())
        return Verdict::stopped();
    if (!m_fileName.isEmpty())
        m_report->setLabel(m_fileName);

    // The codec-syntax recovery runs first; its frames are the original bytes.
    // The pattern passes run behind it only where it explained too little of
    // the media data (no frame, or more than a tenth skipped), and then the
    // better of the two outputs is kept.
    const QString outPath = job.outputPath();
    const QString syntaxPath = m_workDir + QStringLiteral("/.syntax-") + m_fileName;
    syntax::SyntaxOutcome bySyntax;
    if (!imkh) {
        m_report->setRange(1000);
        syntax::ScanControl control;
        control.stop = job.stop;
        control.progress = [this](uint64_t done, uint64_t total) {
            m_report->setValue(ulong(done * 1000 / std::max<uint64_t>(total, 1)));
        };
        const bool firstPass = referencePath.isEmpty() && !job.referenceMode;
        ByteReader* sample = firstPass ? nullptr : Sample(m_referencePath);
        if (firstPass || sample)
            bySyntax = syntax::RecoverBySyntax(job.inputPath, sample, syntaxPath, control);
        if (job.stopped()) {
            QFile::remove(syntaxPath);
            return Verdict::stopped();
        }
        if (!bySyntax.written)
            qDebug() << "Syntax recovery of" << m_fileName << ":" << bySyntax.reason;
    }
    const bool syntaxSuffices = bySyntax.written && bySyntax.skippedBytes <= bySyntax.mediaBytes / 10;

    if (imkh) {
        RemuxCameraFile(job.inputPath);
        if (job.stopped())
            return Verdict::stopped();
        m_log->close();
        return m_passFailed ? Verdict::failed() : Verdict::repaired(outPath);
    }
    if (!syntaxSuffices) {
        switch (PassForCodecs(m_movie.codecs())) {
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
            RepairHevcLpcm(job.inputPath, m_referencePath);
            break;
        case QuickTimePass::H264Lpcm:
            RepairH264Lpcm(job.inputPath, m_referencePath);
            break;
        case QuickTimePass::HevcAac:
            RepairHevcAac(job.inputPath, m_referencePath);
            break;
        case QuickTimePass::H264Twos:
            RepairH264Twos(job.inputPath, m_referencePath);
            break;
        case QuickTimePass::H264Sowt:
            RepairH264Sowt(job.inputPath, m_referencePath);
            break;
        case QuickTimePass::H264Aac:
            RepairH264Aac(job.inputPath, m_referencePath);
            break;
        case QuickTimePass::None:
            break;
        }
        // Two codec flags together match no row: nothing runs, and the
        // rebuild goes on with what logFile.txt holds.
    }

    m_log->close();
    if (job.stopped()) {
        QFile::remove(syntaxPath);
        return Verdict::stopped();
    }
    if (!syntaxSuffices) {
        RebuildQuickTimeFile(m_logPath);
        if (job.stopped()) {
            QFile::remove(syntaxPath);
            return Verdict::stopped();
        }
    }

    Verdict verdict;
    syntax::MovieFigures figures;
    const bool repaired = KeepBetterOutput(bySyntax, syntaxPath, outPath, !syntaxSuffices && !m_passFailed, figures);
    if (repaired)
        verdict = Verdict::repaired(outPath);
    verdict.defaultCodec = m_movie.codecs() == 0;
    verdict.hasFigures = true;
    verdict.figures = {figures.videoFrames, figures.audioSeconds, bySyntax.skippedBytes};
    verdict.unreadableBytes = bySyntax.unreadableBytes;
    return verdict;
}
