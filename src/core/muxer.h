#pragma once
// The one runner of the external muxer (ffmpeg in g_appDir).
//
// Every command line is built as text starting with MuxerPrefix(), which is
// the quoted folder followed by the program name: "<g_appDir>"/ffmpeg. The
// runner splits the line as a shell would (quotes respected), runs it with
// the given folder as its current folder, logs the line, and reports a
// missing executable plainly. The muxer's exit code is not what decides a
// verdict: callers check that the output they expect exists.
#include <QByteArray>
#include <QString>
#include <QStringList>

#include <atomic>

class QProcess;

// Set while a muxer run is under way that can't be cut short. Written by the
// routes that run the muxer; read by the window's Stop while the repair
// thread runs.
extern std::atomic<bool> g_muxerBusy;
// Set once a muxer has run in this process. Written by the routes that run
// the muxer; read by the window on its way back to page 1 (unsaved results
// of such runs are deleted).
extern std::atomic<bool> g_remuxRan;

struct MuxerResult {
    bool started = false;      // the program could be started
    bool finished = false;     // it ended by itself (not killed or timed out)
    int exitCode = -1;
    bool stopped = false;      // asked to stop (a stop or the time limit) before it ended
    QString program;           // the executable that was run
};

// "\"" + g_appDir + "\"/ffmpeg": the leading part of every command line.
QString MuxerPrefix();

// Splits a command line into program and arguments, as QProcess does.
QStringList SplitCommandLine(const QString& commandLine);

// Runs commandLine with workDir as the current folder and waits for it.
// timeoutMs < 0 waits without limit. If Libmp4/ffmpeg is missing, ffmpeg from
// PATH is used instead (said once in the debug log).
// cancel, when given and set, kills the muxer at once (the run then isn't
// finished): for a run whose input can no longer come.
MuxerResult RunMuxer(const QString& commandLine, const QString& workDir, int timeoutMs = -1,
                     const std::atomic<bool>* cancel = nullptr);

// The muxer's listing of the frames of the file at path ("-f framecrc" on
// its standard output; see MeasureOutput). False when the program is
// missing, can't be started, or the run was stopped.
bool ReadFrameListing(const QString& path, QByteArray& listing);

// What starts the muxer program, once RunMuxer or ReadFrameListing has chosen
// it (and RunMuxer has renamed the output to its partial name). The default
// starts it as a process; SetMuxerRunner puts another runner in its place for
// every later run, so that the fuzz harness can stand in for the program
// without starting a process per input.
struct MuxerRunner {
    // Runs program with args in workDir and waits, as RunMuxer describes
    // (timeoutMs, cancel, StopMuxer).
    MuxerResult (*run)(const QString& program, const QStringList& args, const QString& workDir, int timeoutMs,
                       const std::atomic<bool>* cancel);
    // Runs program with args and collects its standard output; false when it
    // couldn't be started or a stop cut it short.
    bool (*listing)(const QString& program, const QStringList& args, QByteArray& output);
};
void SetMuxerRunner(const MuxerRunner& runner);

// Stops a running muxer in stages: "q" on its input, then terminate, then kill.
// A stop asked for while the muxer is still starting holds for that run.
void StopMuxer();

// The command lines of the rebuild's speed check, run in the workspace:
// the rebuilt file split into its video and its sound, the video played at
// twice its speed, and the two joined again under the file's own name.
QString SplitVideoCommand(const QString& rebuiltPath);
QString SplitAudioCommand(const QString& rebuiltPath);
QString SpeedChangeCommand(const QString& splitVideoPath);
QString JoinCommand(const QString& videoPath, const QString& audioPath, const QString& outputName);
