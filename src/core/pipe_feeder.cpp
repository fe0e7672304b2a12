#include "core/pipe_feeder.h"

#include "core/repair_globals.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {
constexpr int kPollMs = 20;   // one wait for room, before a stop is looked at again
}

PipeFeeder::PipeFeeder(std::chrono::milliseconds stall) : m_stall(stall) {}

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
    m_fd = ::open(native.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (m_fd < 0) {
        m_failed = true;
        return false;
    }
    ::fcntl(m_fd, F_SETPIPE_SZ, 1 << 20);   // fewer waits; the default is kept when refused
    m_lastProgress = std::chrono::steady_clock::now();
    return true;
}

bool PipeFeeder::keepWaiting(bool progress)
{
    const auto now = std::chrono::steady_clock::now();
    if (progress)
        m_lastProgress = now;
    if (g_stopRequested || m_readerGone || now - m_lastProgress > m_stall)
        m_failed = true;   // nobody takes the rest
    return !m_failed;
}

void PipeFeeder::push(const uint8_t* data, size_t n)
{
    if (m_fd < 0 || m_failed)
        return;
    bool progress = true;
    while (n > 0) {
        const ssize_t w = ::write(m_fd, data, n);
        if (w > 0) {
            data += w;
            n -= size_t(w);
            m_written += uint64_t(w);
            progress = true;
            continue;
        }
        if (w < 0 && errno != EAGAIN && errno != EINTR) {
            m_failed = true;
            return;
        }
        // Full: the reader's turn.
        if (!keepWaiting(std::exchange(progress, false)))
            return;
        pollfd p{m_fd, POLLOUT, 0};
        ::poll(&p, 1, kPollMs);
    }
}

void PipeFeeder::finish()
{
    if (m_fd < 0 || m_failed)
        return;
    if (m_written == 0) {
        // The pipe stays open, without bytes, until the stop: closing now
        // could leave a reader that hasn't opened it yet waiting for a
        // writer for ever.
        m_failed = true;
        return;
    }
    // The pipe holds its bytes only while it is open: it is closed once the
    // reader has taken them all.
    // The naps start short, for a reader that is about to take the rest.
    int unread = 0;
    int before = -1;
    useconds_t nap = 100;
    while (::ioctl(m_fd, FIONREAD, &unread) == 0 && unread > 0) {
        if (!keepWaiting(std::exchange(before, unread) != unread))
            return;
        ::usleep(nap);
        nap = std::min<useconds_t>(nap * 2, 2000);
    }
    m_drained = unread == 0;
    ::close(m_fd);
    m_fd = -1;
}

void PipeFeeder::stop()
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}
