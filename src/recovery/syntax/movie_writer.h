#pragma once
// Writes a new QuickTime-family file around the samples a scan found: the
// chunks are copied byte for byte from the damaged file into one mdat (so
// every recovered picture is the original), and a new moov describes them
// with the sample descriptions and timing learnt from the model.
#include "recovery/syntax/media_scan.h"

#include "core/file_writer.h"

#include <QString>
#include <atomic>
#include <memory>
#include <thread>

namespace syntax {

struct MovieFigures {
    uint64_t videoFrames = 0;
    double videoSeconds = 0;
    double audioSeconds = 0;
};

// Figures of the movie that would be written for scan.
MovieFigures FiguresOf(const MovieModel& model, const ScanResult& scan);

// The new file: the file type, then the damaged file's whole media range as
// one mdat, copied on a thread of its own while the scan runs (the bytes the
// scan passes over stay in it, unreferenced), then the movie of what the
// scan found.
class MovieOutput {
public:
    MovieOutput() = default;
    ~MovieOutput();
    MovieOutput(const MovieOutput&) = delete;
    MovieOutput& operator=(const MovieOutput&) = delete;

    // Creates path and starts the copy of range of the file at srcPath; ftyp
    // opens the file (empty: a QuickTime one). False when path can't be made.
    bool start(const QString& path, const QString& srcPath, MediaRange range, const QByteArray& ftyp,
               const std::atomic<bool>* stop);
    // Waits for the copy and writes the movie. False, with nothing left at
    // path, when no video sample was found, writing failed or a stop came.
    bool finish(const MovieModel& model, const ScanResult& scan);
    // Ends the copy and removes the file.
    void abandon();
    // The reader the copy takes the damaged file's bytes from (null before start).
    const ByteReader* source() const { return m_src.get(); }

private:
    void join();
    FileWriter m_out;
    std::unique_ptr<FileReader> m_src;
    std::thread m_copier;
    MediaRange m_range;
    uint64_t m_dataStart = 0;   // where the copied range begins in the new file
    bool m_quickTime = true;
    const std::atomic<bool>* m_stop = nullptr;
};

// Figures of a finished file, read from its own movie: the first video
// track's sample count and duration, the first sound track's duration.
MovieFigures ReadFigures(const QString& path);

} // namespace syntax
