#pragma once
// Feeds a stream into a named pipe from a thread of its own, so that a reader
// (the muxer) can take the stream while it is still being written.
//
// Bytes are queued in memory; a writer that gets ahead of the reader by more
// than the queue's limit waits for it. When the reader takes nothing for
// kStall, or the pipe can't be made, the feeder gives up (failed()) and drops
// what it holds; the caller then uses the finished file instead. The pipe is opened for reading and writing, so that a reader
// that never comes, or one that goes away, can block neither side: the feeder
// waits for room with a timeout and watches for a stop.
#include <QString>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

class PipeFeeder {
public:
    explicit PipeFeeder(size_t limit = kDefaultLimit);
    ~PipeFeeder();   // stops, joins and removes the pipe
    PipeFeeder(const PipeFeeder&) = delete;
    PipeFeeder& operator=(const PipeFeeder&) = delete;

    // Makes the pipe at path (replacing a file there) and starts the thread.
    bool start(const QString& path);
    void push(const uint8_t* data, size_t n);
    // No more bytes: the thread writes what is queued, then closes the pipe
    // so that the reader sees the end of the stream.
    void finish();
    // Drops what is queued, closes the pipe and joins the thread.
    void stop();
    bool failed() const;
    // True once the reader has taken every byte of a finished stream.
    bool drained() const;
    const QString& path() const { return m_path; }

    static constexpr size_t kDefaultLimit = 32u << 20;
    static constexpr std::chrono::seconds kStall{5};

private:
    void run(int fd);

    const size_t m_limit;
    QString m_path;
    std::thread m_thread;
    mutable std::mutex m_mutex;
    std::condition_variable m_wake;   // to the thread: bytes, the finish, the stop
    std::condition_variable m_room;   // to the writer: the queue shrank
    std::deque<std::vector<uint8_t>> m_queue;
    size_t m_queued = 0;
    bool m_finished = false;
    bool m_stopped = false;
    bool m_failed = false;
    bool m_drained = false;
    std::atomic<uint64_t> m_written{0};   // bytes in the pipe so far
};
