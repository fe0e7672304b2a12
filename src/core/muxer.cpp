#include "core/muxer.h"

#include "core/file_writer.h"
#include "core/output_folder.h"
#include "core/repair_globals.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <atomic>

std::atomic<bool> g_muxerBusy{false};
std::atomic<bool> g_remuxRan{false};

namespace {
std::atomic<bool> g_stopMuxer{false};   // set by StopMuxer from any thread

// The muxer as a process of its own: started in workDir and waited for.
MuxerResult RunProcess(const QString& program, const QStringList& args, const QString& workDir, int timeoutMs,
                       const std::atomic<bool>* cancel)
{
    QProcess process;
    process.setWorkingDirectory(workDir);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, args);
    MuxerResult result;
    if (!process.waitForStarted(30000)) {
        qWarning() << "The muxer could not be started:" << process.errorString();
        return result;
    }
    result.started = true;
    // Wait in slices so that a stop request can reach it: first "q" on its
    // input (ffmpeg ends cleanly and closes its file), then terminate, then kill.
    int waited = 0;
    int stopWaited = -1;
    bool timedOut = false;
    while (!process.waitForFinished(100)) {
        if (process.state() == QProcess::NotRunning)
            break;
        if (cancel && *cancel) {
            process.kill();
            process.waitForFinished(5000);
            timedOut = true;
            break;
        }
        waited += 100;
        if (timeoutMs >= 0 && waited >= timeoutMs) {
            timedOut = true;
            g_stopMuxer = true;
        }
        if (g_stopMuxer) {
            if (stopWaited < 0) {
                process.write("q");
                process.closeWriteChannel();
                stopWaited = 0;
            } else {
                stopWaited += 100;
                if (stopWaited == 2000)
                    process.terminate();
                else if (stopWaited >= 4000)
                    process.kill();
            }
        }
    }
    result.finished = process.exitStatus() == QProcess::NormalExit && !timedOut;
    result.exitCode = process.exitCode();
    result.stopped = stopWaited >= 0;
    return result;
}

// The muxer as a process whose standard output is read; a stop kills it.
bool ListProcess(const QString& program, const QStringList& args, QByteArray& output)
{
    QProcess p;
    p.setStandardErrorFile(QProcess::nullDevice());
    p.start(program, args);
    if (!p.waitForStarted(30000))
        return false;
    while (p.state() != QProcess::NotRunning && !p.waitForFinished(200)) {
        output += p.readAllStandardOutput();
        if (g_stopRequested) {
            p.kill();
            p.waitForFinished(5000);
            return false;
        }
    }
    output += p.readAllStandardOutput();
    return true;
}

MuxerRunner g_runner{RunProcess, ListProcess};
}

void SetMuxerRunner(const MuxerRunner& runner)
{
    g_runner = runner;
}

QString MuxerPrefix()
{
    return QLatin1Char('"') + g_appDir + QLatin1String("\"/ffmpeg");
}

QStringList SplitCommandLine(const QString& commandLine)
{
    return QProcess::splitCommand(commandLine);
}

MuxerResult RunMuxer(const QString& commandLine, const QString& workDir, int timeoutMs,
                     const std::atomic<bool>* cancel)
{
    MuxerResult result;
    QStringList args = SplitCommandLine(commandLine);
    if (args.isEmpty())
        return result;
    QString program = args.takeFirst();
    if (!QFileInfo(program).isExecutable()) {
        static bool said = false;
        const QString onPath = QStandardPaths::findExecutable(QFileInfo(program).fileName());
        if (!said) {
            qDebug() << "Muxer" << program << "not found; using" << (onPath.isEmpty() ? QStringLiteral("nothing") : onPath);
            said = true;
        }
        if (onPath.isEmpty()) {
            qWarning() << "The muxer program (ffmpeg) can't be found.";
            result.program = program;
            return result;
        }
        program = onPath;
    }
    result.program = program;
    qDebug().noquote() << "Muxer:" << commandLine;

    // Cleared before the start, not after it, so that a stop asked for while
    // the program is still starting isn't lost.
    g_stopMuxer = false;
    // The muxer's output (its last argument, a file name) is written under its
    // partial name and renamed when the muxer has ended by itself: a run that
    // is stopped or killed leaves no file that looks like a result.
    QString output, partial;
    if (QFileInfo(program).fileName() == QLatin1String("ffmpeg") && !args.isEmpty()
        && !args.last().startsWith(QLatin1Char('-')) && !args.last().contains(QLatin1Char(':'))
        && QFileInfo(args.last()).fileName().contains(QLatin1Char('.'))) {
        output = QDir(workDir).absoluteFilePath(args.last());
        partial = PartialPath(output);
        QFile::remove(partial);
        const QString given = QFileInfo(args.last()).fileName();
        args.last().replace(args.last().size() - given.size(), given.size(), QFileInfo(partial).fileName());
    }
    const MuxerResult run = g_runner.run(program, args, workDir, timeoutMs, cancel);
    result.started = run.started;
    result.finished = run.finished;
    result.exitCode = run.exitCode;
    result.stopped = run.stopped;
    if (!result.started)
        return result;
    if (!output.isEmpty() && QFileInfo::exists(partial)) {
        // A muxer that failed on a full disk leaves a cut file: it goes.
        const bool full = result.exitCode != 0 && FreeBytes(QFileInfo(partial).absolutePath()) < (1 << 20);
        if (full)
            FileWriter::noteOutOfSpace();
        if (result.finished && !result.stopped && !full) {
            QFile::remove(output);
            QFile::rename(partial, output);
        } else {
            QFile::remove(partial);
        }
    }
    return result;
}

bool ReadFrameListing(const QString& path, QByteArray& listing)
{
    QString program = g_appDir + QStringLiteral("/ffmpeg");
    if (!QFileInfo(program).isExecutable())
        program = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    if (program.isEmpty())
        return false;
    return g_runner.listing(program,
                            {QStringLiteral("-nostdin"), QStringLiteral("-v"), QStringLiteral("error"),
                             QStringLiteral("-i"), path, QStringLiteral("-map"), QStringLiteral("0"),
                             QStringLiteral("-c"), QStringLiteral("copy"), QStringLiteral("-f"),
                             QStringLiteral("framecrc"), QStringLiteral("-")},
                            listing);
}

void StopMuxer()
{
    g_stopMuxer = true;
}

QString SplitVideoCommand(const QString& rebuiltPath)
{
    return MuxerPrefix() + QStringLiteral(" -i \"") + rebuiltPath + QStringLiteral("\" -c:v copy -an \"output_video.mov\"");
}

QString SplitAudioCommand(const QString& rebuiltPath)
{
    return MuxerPrefix() + QStringLiteral(" -i \"") + rebuiltPath + QStringLiteral("\" -vn -c:a copy \"output_audio.mov\"");
}

QString SpeedChangeCommand(const QString& splitVideoPath)
{
    return MuxerPrefix() + QStringLiteral(" -i \"") + splitVideoPath
        + QStringLiteral("\" -filter:v setpts=PTS/2 -c:a copy -preset ultrafast ModifiedFile.mov");
}

QString JoinCommand(const QString& videoPath, const QString& audioPath, const QString& outputName)
{
    return MuxerPrefix() + QStringLiteral(" -i \"") + videoPath + QStringLiteral("\" -i \"") + audioPath
        + QStringLiteral("\" -c copy \"") + outputName + QLatin1Char('"');
}
