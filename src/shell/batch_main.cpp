// reelwright-batch: runs the repair engine over files without a window.
//
//   reelwright-batch [--reference SAMPLE] [--work-root DIR] [--quiet] FILE...
//
// stdout carries one JSON object per line for each verdict and one at the end;
// stderr carries a progress line per file unless --quiet.
#include "core/repair_globals.h"
#include "core/thread_video_repair.h"
#include "recovery/h264/h264_recovery.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <cstdio>

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

int UsageError(const QString& message)
{
    std::fprintf(stderr, "reelwright-batch: %s\n", qPrintable(message));
    std::fprintf(stderr, "usage: reelwright-batch [--reference SAMPLE] [--work-root DIR] [--quiet] FILE...\n");
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

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    QString reference;
    QString workRoot;
    bool quiet = false;
    QStringList files;
    for (int i = 0; i < args.size(); ++i) {
        const QString& a = args.at(i);
        if (a == QLatin1String("--reference") || a == QLatin1String("--work-root")) {
            if (i + 1 >= args.size())
                return UsageError(a + QStringLiteral(" needs a value"));
            (a == QLatin1String("--reference") ? reference : workRoot) = args.at(++i);
        } else if (a == QLatin1String("--quiet")) {
            quiet = true;
        } else if (a == QLatin1String("--")) {
            files << args.mid(i + 1);
            break;
        } else if (a.startsWith(QLatin1String("--"))) {
            return UsageError(QStringLiteral("unknown option %1").arg(a));
        } else {
            files << a;
        }
    }
    if (files.isEmpty())
        return UsageError(QStringLiteral("no files given"));
    if (!reference.isEmpty() && !QFileInfo(reference).isFile())
        return UsageError(QStringLiteral("the reference %1 doesn't exist").arg(reference));
    if (!workRoot.isEmpty() && !QFileInfo(workRoot).isDir())
        return UsageError(QStringLiteral("the work root %1 isn't a folder").arg(workRoot));

    if (quiet)
        qInstallMessageHandler(QuietMessages);
    g_programDir = QCoreApplication::applicationDirPath();
    g_appDir = g_programDir + QStringLiteral("/Libmp4");
    g_customWorkRoot = workRoot.isEmpty() ? QString() : QFileInfo(workRoot).absoluteFilePath();
    g_referenceMode = !reference.isEmpty();
    g_referencePath = reference.isEmpty() ? QString() : QFileInfo(reference).absoluteFilePath();
    for (QString& f : files)
        f = QFileInfo(f).absoluteFilePath();

    // Standard output carries JSON lines: the engine's plain messages go to
    // standard error instead.
    SetEngineMessageStream(stderr);
    std::signal(SIGINT, OnInterrupt);
    std::signal(SIGTERM, OnInterrupt);

    ThreadVideoRepair repair;
    ProgressLine progress(quiet);
    int exitCode = 0;
    auto finish = [&](bool aborted) {
        progress.endLine();
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
    auto verdict = [&](QJsonObject line, const QString& name) {
        if (figures.value("file").toString() == name)
            for (const char* key : {"output", "videoFrames", "audioSeconds", "skippedBytes"})
                if (figures.contains(key))
                    line.insert(key, figures.value(key));
        figures = {};
        PrintJson(line);
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
    QObject::connect(&repair, &ThreadVideoRepair::WriteProcessingStatus, &app,
                     [&](QString name) { progress.file(name); }, queued);
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
