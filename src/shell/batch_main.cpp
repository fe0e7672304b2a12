// reelwright-batch: runs the repair engine over files and folders without a
// window (see Usage() for the options).
//
// stdout carries one JSON object per line for each verdict and one at the end
// (a verdict carries "unreadableBytes" when parts of the file could not be
// read, and "reason" when it failed for want of room for its results);
// stderr carries progress lines and a closing table unless --quiet. Each file
// is repaired by a process of its own (batch_jobs.h); such a job process runs
// the engine here, in RunOneJob.
#include "core/repair_globals.h"
#include "core/thread_video_repair.h"
#include "recovery/h264/h264_recovery.h"
#include "shell/batch_inputs.h"
#include "shell/batch_jobs.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>

namespace {

void OnInterrupt(int)
{
    g_stopRequested = true;   // lock-free atomic store: safe in a signal handler
}

// With --quiet the engine's log lines are dropped too; real failures still show.
void QuietMessages(QtMsgType type, const QMessageLogContext&, const QString& msg)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(msg));
}

void PrintJson(const QJsonObject& obj)
{
    const QByteArray line = QJsonDocument(obj).toJson(QJsonDocument::Compact);
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

const char kUsage[] = "usage: reelwright-batch [--reference SAMPLE] [--work-root DIR] [--jobs N] [--quiet] FILE|FOLDER...\n";

// The options as the manual page lists them.
void PrintHelp()
{
    std::printf("%s", kUsage);
    std::printf(
        "Repairs damaged video files without a window. A folder stands for its video files,\n"
        "recursively. Standard output gets one JSON line per verdict and one end line.\n"
        "\n"
        "  --reference SAMPLE  Advance Repair with SAMPLE, a healthy file from the same camera\n"
        "  --work-root DIR     put the results below DIR/Repaired instead of beside each file\n"
        "  --jobs N            repair N files at once, each in a process of its own\n"
        "                      (default: the number of processor cores)\n"
        "  --quiet             no progress lines and no closing table on standard error\n"
        "  --help              show this help and exit\n"
        "  --version           show the version and exit\n"
        "\n"
        "Exit status: 0 finished, 1 stopped, 2 usage error.\n");
}

int UsageError(const QString& message)
{
    std::fprintf(stderr, "reelwright-batch: %s\n", qPrintable(message));
    std::fprintf(stderr, "%s", kUsage);
    return 2;
}

// One progress line per file, rewritten in place on a terminal or a log.
class ProgressLine {
public:
    explicit ProgressLine(bool quiet) : m_quiet(quiet) {}
    void file(const QString& name)
    {
        if (name == m_name)
            return;
        endLine();
        m_name = name;
        m_percent = -1;
        m_max = 0;
        show(0);
    }
    void range(ulong max) { m_max = max; }
    void value(ulong v)
    {
        if (m_max > 0)
            show(int(qMin<quint64>(100, quint64(v) * 100 / m_max)));
    }
    void endLine()
    {
        if (!m_quiet && !m_name.isEmpty())
            std::fputc('\n', stderr);
        m_name.clear();
    }

private:
    void show(int percent)
    {
        if (m_quiet || percent == m_percent || m_name.isEmpty())
            return;
        m_percent = percent;
        std::fprintf(stderr, "\r%s %3d%%", qPrintable(m_name), percent);
        std::fflush(stderr);
    }
    bool m_quiet;
    QString m_name;
    int m_percent = -1;
    ulong m_max = 0;
};

} // namespace

// A job process: repairs its one file with the engine in this process,
// writing into workRoot.
static int RunOneJob(QCoreApplication& app, const QStringList& files, const QString& reference, const QString& workRoot,
                     bool quiet, bool progressLine)
{
    if (quiet)
        qInstallMessageHandler(QuietMessages);
    g_programDir = QCoreApplication::applicationDirPath();
    g_appDir = g_programDir + QStringLiteral("/Libmp4");
    g_customWorkRoot = workRoot;
    g_referenceMode = !reference.isEmpty();
    g_referencePath = reference;

    // Standard output carries JSON lines: the engine's plain messages go to
    // standard error instead.
    SetEngineMessageStream(stderr);
    std::signal(SIGINT, OnInterrupt);
    std::signal(SIGTERM, OnInterrupt);

    ThreadVideoRepair repair;
    ProgressLine progress(quiet || !progressLine);
    int exitCode = 0;
    QJsonObject pending;   // see below
    auto finish = [&](bool aborted) {
        if (!pending.isEmpty())
            PrintJson(pending);
        pending = {};
        progress.endLine();
        // A stopped job leaves nothing, also when the runner that made its
        // scratch folder is gone (killed) and can't remove it.
        if (aborted && QFileInfo(workRoot).fileName().startsWith(QLatin1String(".reelwright-job-")))
            QDir(workRoot).removeRecursively();
        QJsonArray outputs;
        // The engine names the file a pass aimed at even when the pass made
        // none; only files that exist are reported.
        for (const QString& p : g_repairedPaths)
            if (QFileInfo(p).isFile())
                outputs.append(QFileInfo(p).absoluteFilePath());
        PrintJson({{"event", "end"}, {"result", aborted ? "aborted" : "finished"}, {"outputs", outputs}});
        exitCode = aborted ? 1 : 0;
        app.quit();
    };
    const auto queued = Qt::QueuedConnection;
    // The output and the figures of a file arrive just before its verdict.
    QJsonObject figures;
    QObject::connect(&repair, &ThreadVideoRepair::RecoveryFigures, &app,
                     [&](QString name, qulonglong frames, double audioSeconds, qulonglong skipped) {
                         figures.insert("file", name);
                         figures.insert("videoFrames", double(frames));
                         figures.insert("audioSeconds", qRound(audioSeconds * 1000) / 1000.0);
                         figures.insert("skippedBytes", double(skipped));
                     }, queued);
    QObject::connect(&repair, &ThreadVideoRepair::OutputWritten, &app,
                     [&](QString name, QString path) {
                         figures.insert("file", name);
                         figures.insert("output", path);
                     }, queued);
    // A verdict line waits until its file's work has ended, for what the
    // engine reports after the verdict (the unreadable bytes, a reason).
    auto flush = [&] {
        if (!pending.isEmpty())
            PrintJson(pending);
        pending = {};
    };
    auto verdict = [&](QJsonObject line, const QString& name) {
        flush();
        if (figures.value("file").toString() == name)
            for (const char* key : {"output", "videoFrames", "audioSeconds", "skippedBytes"})
                if (figures.contains(key))
                    line.insert(key, figures.value(key));
        figures = {};
        pending = line;
    };
    QObject::connect(&repair, &ThreadVideoRepair::WriteStatus, &app,
                     [&](bool repaired, bool, QString name, bool defaultCodec) {
                         verdict({{"event", "verdict"}, {"signal", "WriteStatus"}, {"file", name},
                                  {"repaired", repaired}, {"defaultCodec", defaultCodec}}, name);
                     }, queued);
    QObject::connect(&repair, &ThreadVideoRepair::WriteAVIFileStatus, &app,
                     [&](bool repaired, QString name) {
                         verdict({{"event", "verdict"}, {"signal", "WriteAVIFileStatus"}, {"file", name},
                                  {"repaired", repaired}}, name);
                     }, queued);
    QObject::connect(&repair, &ThreadVideoRepair::ReadDamage, &app,
                     [&](QString name, qulonglong bytes) {
                         if (pending.value("file").toString() == name
                             && double(bytes) > pending.value("unreadableBytes").toDouble())
                             pending.insert("unreadableBytes", double(bytes));
                     }, queued);
    QObject::connect(&repair, &ThreadVideoRepair::VerdictReason, &app,
                     [&](QString name, QString reason) {
                         if (pending.value("file").toString() == name) {
                             pending.insert("repaired", false);
                             pending.remove("output");
                             pending.insert("reason", reason);
                         }
                     }, queued);
    QObject::connect(&repair, &ThreadVideoRepair::WriteProcessingStatus, &app,
                     [&](QString name) { flush(); progress.file(name); }, queued);
    QObject::connect(&repair, &ThreadVideoRepair::SetProgressBarRange, &app,
                     [&](ulong max) { progress.range(max); }, queued);
    QObject::connect(&repair, &ThreadVideoRepair::setProgressvalue, &app,
                     [&](ulong v) { progress.value(v); }, queued);
    QObject::connect(&repair, &ThreadVideoRepair::RepairFinish, &app, [&] { finish(false); }, queued);
    QObject::connect(&repair, &ThreadVideoRepair::ProcessAborted, &app, [&] { finish(true); }, queued);

    g_repairedPaths.clear();
    repair.StartRepair(files, g_referenceMode);
    app.exec();
    return exitCode;
}

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    QString reference;
    QString workRoot;
    QString jobsText;
    bool quiet = false;
    QStringList inputs;
    for (int i = 0; i < args.size(); ++i) {
        const QString& a = args.at(i);
        if (a == QLatin1String("--reference") || a == QLatin1String("--work-root") || a == QLatin1String("--jobs")) {
            if (i + 1 >= args.size())
                return UsageError(a + QStringLiteral(" needs a value"));
            (a == QLatin1String("--reference") ? reference : a == QLatin1String("--jobs") ? jobsText : workRoot) =
                args.at(++i);
        } else if (a == QLatin1String("--quiet")) {
            quiet = true;
        } else if (a == QLatin1String("--help")) {
            PrintHelp();
            return 0;
        } else if (a == QLatin1String("--version")) {
            std::printf("reelwright-batch %s\n", REELWRIGHT_VERSION);
            return 0;
        } else if (a == QLatin1String("--")) {
            inputs << args.mid(i + 1);
            break;
        } else if (a.startsWith(QLatin1String("--"))) {
            return UsageError(QStringLiteral("unknown option %1").arg(a));
        } else {
            inputs << a;
        }
    }
    if (inputs.isEmpty())
        return UsageError(QStringLiteral("no files given"));
    if (!reference.isEmpty() && !QFileInfo(reference).isFile())
        return UsageError(QStringLiteral("the reference %1 doesn't exist").arg(reference));
    if (!workRoot.isEmpty() && !QFileInfo(workRoot).isDir())
        return UsageError(QStringLiteral("the work root %1 isn't a folder").arg(workRoot));
    bool numeric = true;
    const int jobs = jobsText.isEmpty() ? qMax(1, QThread::idealThreadCount()) : jobsText.toInt(&numeric);
    if (!numeric || jobs < 1 || jobs > 1024)
        return UsageError(QStringLiteral("--jobs needs a number from 1 to 1024, not %1").arg(jobsText));
    if (!reference.isEmpty())
        reference = QFileInfo(reference).absoluteFilePath();
    if (!workRoot.isEmpty())
        workRoot = QFileInfo(workRoot).absoluteFilePath();

    const QByteArray job = qgetenv(kBatchJobVariable);
    if (!job.isEmpty()) {
        // A job ends with the runner that started it, even when that was killed.
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        QStringList files;
        for (const QString& f : inputs)
            files << QFileInfo(f).absoluteFilePath();
        return RunOneJob(app, files, reference, workRoot, quiet, job == "progress");
    }

    const BatchInputs expanded = ExpandInputs(inputs);
    if (!expanded.error.isEmpty())
        return UsageError(expanded.error);
    std::signal(SIGINT, OnInterrupt);
    std::signal(SIGTERM, OnInterrupt);
    BatchRun run;
    run.files = expanded.files;
    run.resultFolders = ResultFolders(run.files, workRoot);
    run.reference = reference;
    run.besideFiles = workRoot.isEmpty();
    run.workRoot = workRoot;
    run.quiet = quiet;
    run.jobs = qMin(jobs, int(run.files.size()));   // one file at a time shows its percentage
    return RunBatchJobs(run);
}
