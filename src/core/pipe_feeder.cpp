#include "core/pipe_feeder.h"

#include "core/repair_globals.h"

#include <QFile>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

PipeFeeder::PipeFeeder(size_t limit) : m_limit(limit) {}

PipeFeeder::~PipeFeeder()
{
    stop();
    if (!m_path.isEmpty())
        QFile::remove(m_path);
}

bool PipeFeeder::start(const QString& path)
{
    m_path = path;
    const QByteArray native = QFile::encodeName(path);
    QFile::remove(path);
    if (::mkfifo(native.constData(), 0600) != 0) {
        m_failed = true;
        return false;
    }
    // Read and write: the open doesn't wait for the reader, and a write to a
    // pipe whose reader has gone raises no signal.
    const int fd = ::open(native.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        m_failed = true;
        return false;
    }
    ::fcntl(fd, F_SETPIPE_SZ, 1 << 20);   // fewer wake-ups; the default is kept when refused
    m_thread = std::thread([this, fd] { run(fd); });
    return true;
}

void PipeFeeder::push(const uint8_t* data, size_t n)
{
    if (n == 0)
        return;
    std::unique_lock<std::mutex> lock(m_mutex);
    // A full queue holds the writer while the reader takes bytes; a reader
    // that takes none for a while has stalled, and the feeder gives up.
    uint64_t seen = m_written;
    auto since = std::chrono::steady_clock::now();
    while (!m_failed && !m_stopped && !m_finished && m_queued > 0 && m_queued + n > m_limit) {
        m_room.wait_for(lock, std::chrono::milliseconds(20));
        const auto now = std::chrono::steady_clock::now();
        if (g_stopRequested) {
            m_failed = true;   // the run ends: nobody needs the rest
            m_queue.clear();
            m_queued = 0;
        } else if (m_written != seen) {
            seen = m_written;
            since = now;
        } else if (now - since > kStall) {
            m_failed = true;
            m_queue.clear();
            m_queued = 0;
        }
    }
    if (m_failed || m_stopped || m_finished)
        return;
    m_queue.emplace_back(data, data + n);
    m_queued += n;
    m_wake.notify_one();
}

void PipeFeeder::finish()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_finished = true;
    m_wake.notify_one();
}

void PipeFeeder::stop()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stopped = true;
        m_wake.notify_one();
        m_room.notify_all();
    }
    if (m_thread.joinable())
        m_thread.join();
}

bool PipeFeeder::failed() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_failed;
}

bool PipeFeeder::drained() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_drained;
}

void PipeFeeder::run(int fd)
{
    for (;;) {
        std::vector<uint8_t> chunk;
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_wake.wait(lock, [this] { return m_stopped || m_failed || !m_queue.empty() || m_finished; });
            if (m_failed) {
                // Closing now could leave a reader that hasn't opened the
                // pipe yet waiting for a writer: the pipe stays open, without
                // bytes, until the stop.
                m_wake.wait(lock, [this] { return m_stopped; });
                break;
            }
            if (m_stopped)
                break;
            if (m_queue.empty()) {
                // Finished. The pipe holds its bytes only while it is open:
                // it is closed once the reader has taken them all (a reader
                // that hasn't opened it yet would otherwise find nothing, and
                // wait for a writer for ever).
                // A stream that got no byte can't be told from one still to
                // come: the reader would wait, so that counts as a failure.
                if (m_written == 0) {
                    m_failed = true;
                    m_wake.wait(lock, [this] { return m_stopped; });
                    break;
                }
                int unread = 0;
                while (!m_stopped && ::ioctl(fd, FIONREAD, &unread) == 0 && unread > 0)
                    m_wake.wait_for(lock, std::chrono::milliseconds(5));
                // Asked once more: a stop may have cut the wait short.
                m_drained = ::ioctl(fd, FIONREAD, &unread) == 0 && unread == 0;
                break;
            }
            chunk = std::move(m_queue.front());
            m_queue.pop_front();
            m_queued -= chunk.size();
            m_room.notify_one();
        }
        size_t done = 0;
        while (done < chunk.size()) {
            const ssize_t w = ::write(fd, chunk.data() + done, chunk.size() - done);
            if (w > 0) {
                done += size_t(w);
                m_written += uint64_t(w);
                m_room.notify_one();
                continue;
            }
            if (w < 0 && errno != EAGAIN && errno != EINTR) {
                std::lock_guard<std::mutex> lock(m_mutex);
                m_failed = true;
                break;   // the loop above waits for the stop
            }
            // The pipe is full: wait for the reader, a little at a time, so
            // that a stop is seen.
            pollfd p{fd, POLLOUT, 0};
            ::poll(&p, 1, 50);
            std::lock_guard<std::mutex> lock(m_mutex);
            if (m_stopped || m_failed)
                break;
        }
    }
    ::close(fd);
}
