#pragma once
// A route repairs the files of one container family. For each file the
// driver builds a RepairJob, takes a fresh route from the table (by the
// file's suffix) and sends the verdict the route returns through the
// Reporter. A route keeps its state in its own object, so nothing of one
// file reaches the next.
#include "core/byte_reader.h"
#include "core/file_writer.h"

#include <QString>
#include <QStringList>
#include <atomic>
#include <memory>

class LogCipher;
class ThreadVideoRepair;

// One enciphered line, closed by CR LF, to log when it is open.
void WriteCipheredLine(FileWriter* log, LogCipher& cipher, const QString& line);

// What one file's repair needs.
struct RepairJob {
    QString inputPath;                  // the damaged file, absolute
    QString fileName;                   // its name, and the output's
    QString suffix;
    QString referencePath;              // the sample of an Advance Repair run, else empty
    bool referenceMode = false;         // the run is an Advance Repair run
    QString workDir;                    // the folder the results go to
    QString logPath;                    // workDir + "/logFile.txt", the routes' scratch list
    ByteReader* input = nullptr;        // the damaged file; null when it can't be opened
    FileWriter* log = nullptr;          // logFile.txt, open while the route runs (may be closed)
    const std::atomic<bool>* stop = nullptr;   // the run's stop request
    QStringList* outputs = nullptr;     // the run's results: a route adds each file it writes
    const QStringList* runFiles = nullptr;   // every file of the run, whose names an output avoids
    // The routes that still keep their state in the worker reach it here.
    ThreadVideoRepair* worker = nullptr;

    bool stopped() const { return stop && stop->load(std::memory_order_relaxed); }
    QString outputPath() const { return workDir + QLatin1Char('/') + fileName; }
    // One enciphered line, closed by CR LF, to logFile.txt when it is open.
    void writeLogLine(LogCipher& cipher, const QString& line) const { WriteCipheredLine(log, cipher, line); }
};

// What a route found. Stopped sends nothing; Sent means the route has sent
// its verdict itself (the routes that still run in the worker).
struct Verdict {
    enum class Outcome { Stopped, Repaired, Failed, Sent };
    Outcome outcome = Outcome::Failed;
    bool aviSignal = false;     // sent as WriteAVIFileStatus (AVI, Matroska, program streams)
    bool defaultCodec = false;
    QString output;             // the file written, for a repaired verdict
    bool copiesInput = true;    // the output holds the input's own bytes: what it lacks was skipped

    static Verdict repaired(const QString& output, bool copiesInput = true)
    {
        Verdict v;
        v.outcome = Outcome::Repaired;
        v.output = output;
        v.copiesInput = copiesInput;
        return v;
    }
    static Verdict failed() { return Verdict{}; }
    static Verdict stopped()
    {
        Verdict v;
        v.outcome = Outcome::Stopped;
        return v;
    }
    // Failed, unless the run was asked to stop (then nothing is said).
    static Verdict failedUnlessStopped(const RepairJob& job)
    {
        Verdict v;
        if (job.stopped())
            v.outcome = Outcome::Stopped;
        return v;
    }
    // The same verdict, sent as WriteAVIFileStatus.
    Verdict viaAviSignal() const
    {
        Verdict v = *this;
        v.aviSignal = true;
        return v;
    }
    static Verdict sent()
    {
        Verdict v;
        v.outcome = Outcome::Sent;
        return v;
    }
};

// The one way from a route to the window and the batch runner.
class Reporter {
public:
    virtual ~Reporter() = default;
    // The file's progress bar is shown and labelled.
    virtual void showFileProgress(const QString& label) = 0;
    virtual void setLabel(const QString& label) = 0;
    virtual void setRange(ulong maximum) = 0;
    virtual void setValue(ulong value) = 0;
    // A verdict sent before the route's own: a route that fails in two
    // stages tells the window twice.
    virtual void sendVerdict(const RepairJob& job, const Verdict& verdict) = 0;
};

class Route {
public:
    virtual ~Route() = default;
    virtual Verdict repair(RepairJob& job, Reporter& report) = 0;
};

// The route for a file suffix, compared exactly (case-sensitive) with the
// table; a suffix no row names (Mov, mp4, 3gp...) takes the QuickTime family.
std::unique_ptr<Route> RouteForSuffix(const QString& suffix);
// True when suffix and other take the same route.
bool SameRoute(const QString& suffix, const QString& other);
