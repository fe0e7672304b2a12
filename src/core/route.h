#pragma once
// A route repairs the files of one container family. For each file the
// driver builds a RepairJob, takes a fresh route from the table (by the
// file's suffix) and sends the verdict the route returns through the
// Reporter. A route keeps its state in its own object, so nothing of one
// file reaches the next.
#include "core/byte_reader.h"
#include "core/file_writer.h"
#include "core/output_figures.h"

#include <QString>
#include <QStringList>
#include <atomic>
#include <memory>

class LogCipher;

// What deliberately lasts from one file of a run to the next, kept by the
// driver for the whole run. A file named .3gp or .3g2 marks the run as 3GPP:
// a later MPEG-4 movie of the same run is then read as 3GPP too, until the
// MPEG-4 frame scan or a sample with sowt sound clears the mark (cameras
// that write 3GPP write it for every clip of a card).
// The muxer is told the sample format of PCM sound by the sample's bit depth;
// an odd depth (not 16, 24 or 32) keeps the format last told in the run,
// 24-bit at first: such a sample comes from the camera of the clip before.
struct RunCarryOver {
    bool is3gp = false;
    QString pcmFormat = QStringLiteral("s24le");
};

// What a repair recovered: its video frames, seconds of sound and the bytes
// of the input it skipped.
struct RecoveredFigures {
    uint64_t videoFrames = 0;
    double audioSeconds = 0;
    uint64_t skippedBytes = 0;
};

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
    ByteReader* sample = nullptr;       // the sample, opened once for every stage; null without one
    FileWriter* log = nullptr;          // logFile.txt, open while the route runs (may be closed)
    const std::atomic<bool>* stop = nullptr;   // the run's stop request
    QStringList* outputs = nullptr;     // the run's results: a route adds each file it writes
    const QStringList* runFiles = nullptr;   // every file of the run, whose names an output avoids
    RunCarryOver* carried = nullptr;    // the run's carry-over; null: the file stands alone

    bool stopped() const { return stop && stop->load(std::memory_order_relaxed); }
    QString outputPath() const { return workDir + QLatin1Char('/') + fileName; }
    // One enciphered line, closed by CR LF, to logFile.txt when it is open.
    void writeLogLine(LogCipher& cipher, const QString& line) const { WriteCipheredLine(log, cipher, line); }
};

// What a route found. Stopped sends nothing.
struct Verdict {
    enum class Outcome { Stopped, Repaired, Failed };
    Outcome outcome = Outcome::Failed;
    bool aviSignal = false;     // sent as WriteAVIFileStatus (AVI, Matroska, program streams)
    bool defaultCodec = false;
    QString output;             // the file written, for a repaired verdict
    bool copiesInput = true;    // the output holds the input's own bytes: what it lacks was skipped
    // Figures the route measured itself, sent as they stand (with either
    // outcome) instead of being read back from the output.
    bool hasFigures = false;
    RecoveredFigures figures;
    uint64_t unreadableBytes = 0;   // met by a stage that read the file through a reader of its own

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
    // The same verdict with the figures of what the route wrote: frames of
    // its video stream, seconds of its sound. A route that counts these as it
    // writes spares the muxer's read-back of the output, a second pass over
    // the whole file.
    Verdict withFigures(uint64_t videoFrames, double audioSeconds, uint64_t inputSize, uint64_t outputSize) const
    {
        Verdict v = *this;
        v.hasFigures = true;
        v.figures = {videoFrames, audioSeconds, copiesInput ? SkippedBytes(inputSize, outputSize) : 0};
        return v;
    }
    // The same verdict, sent as WriteAVIFileStatus.
    Verdict viaAviSignal() const
    {
        Verdict v = *this;
        v.aviSignal = true;
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
