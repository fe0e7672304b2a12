#pragma once
// Feeds a stream into a named pipe while it is being made, so that a reader
// (the muxer) can take the stream as it comes instead of from a finished
// file.
//
// The writer's own thread writes into the pipe and waits while it is full:
// the muxer is the slower of the two, and a queue or a thread of our own in
// between would only add copies and wake-ups. The pipe is opened for
// reading and writing, so that a reader that never comes, or one that goes
// away, can block neither side: every wait is a poll with a short timeout.
// When the reader takes nothing for the stall time, when the run is
// stopped, or when readerGone() says so, the feeder gives up (failed()) and
// drops the rest; the caller then makes the stream another way.
#include <QString>

#include <atomic>
#include <chrono>
#include <cstdint>

class PipeFeeder {
public:
    explicit PipeFeeder(std::chrono::milliseconds stall = kStall);
    ~PipeFeeder();   // closes and removes the pipe
    PipeFeeder(const PipeFeeder&) = delete;
    PipeFeeder& operator=(const PipeFeeder&) = delete;

    // Makes the pipe at path (replacing a file there) and opens it.
    bool start(const QString& path);
    // Writes the bytes into the pipe, waiting for room as the reader takes.
    void push(const uint8_t* data, size_t n);
    // No more bytes: waits until the reader has taken them all, then closes
    // the pipe so that the reader sees the end of the stream. A stream that
    // got no byte can't be told from one still to come, so that fails.
    void finish();
    // Closes the pipe, whatever it still holds.
    void stop();
    // From any thread: the reader has ended. A wait for it ends at once (and
    // the feeder fails); a stream already finished stays as it was.
    void readerGone() { m_readerGone = true; }
    bool failed() const { return m_failed; }
    // True once the reader has taken every byte of a finished stream.
    bool drained() const { return m_drained; }
    const QString& path() const { return m_path; }

    static constexpr std::chrono::seconds kStall{5};

private:
    // Between two waits for the reader: false once the feeder gives up (a
    // stop, the reader gone, or no progress for the stall time). progress
    // tells whether the reader took bytes since the last call.
    bool keepWaiting(bool progress);

    const std::chrono::milliseconds m_stall;
    QString m_path;
    int m_fd = -1;
    std::atomic<bool> m_failed{false};
    std::atomic<bool> m_readerGone{false};
    std::atomic<bool> m_drained{false};
    uint64_t m_written = 0;   // bytes put into the pipe so far
    std::chrono::steady_clock::time_point m_lastProgress;
};
