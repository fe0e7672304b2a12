#include "core/byte_reader.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// A window larger than the data and a page either side would only hold
// zeros: a small file gets a small window (many small files are read
// through several readers at once).
ByteReader::ByteReader(uint64_t size, size_t window)
    : m_size(size),
      m_window(std::max(size < window ? std::min(window, roundUp(size_t(size)) + 2 * kAlign) : window, 2 * kAlign))
{
    // The windows' buffers are made on first use.
}

const uint8_t* ByteReader::slowView(uint64_t pos, size_t n, bool pagesOnly)
{
    if (n > maxView()) {
        // Callers should stay within maxView(); a larger request grows the
        // windows rather than hand out a short buffer.
        m_window = n + 2 * kAlign;
        for (Window& w : m_windows) {
            w.buf.reset();
            w.capacity = 0;
            w.len = 0;
        }
    }
    const int other = 1 - m_recent;
    Window& o = m_windows[other];
    if (pos >= o.start && n <= o.len && pos - o.start <= o.len - n) {
        m_recent = other;
        return o.buf.get() + (pos - o.start);
    }
    // Wholly past the end: zeros, and both windows stay where they are.
    if (pos >= m_size) {
        if (m_zeros.size() < n)
            m_zeros.assign(std::max(n, size_t(kAlign)), 0);
        return m_zeros.data();
    }
    // Refill the window used less recently, starting at pos rounded down.
    // A walk that runs on from where a window ends gets a whole window. A
    // jump elsewhere is most often a probe of a few bytes (where a length
    // says the next unit stands, in data that is no unit at all) and gets
    // a short fill; should the walk go on from there, its next miss runs on
    // from that short window and fills a whole one.
    const bool runsOn = runsOnFrom(m_windows[m_recent], pos) || runsOnFrom(o, pos);
    Window& w = o;
    if (w.capacity != m_window) {
        w.buf.reset(new uint8_t[m_window]);
        w.capacity = m_window;
    }
    const uint64_t start = pos - pos % kAlign;
    const size_t needed = size_t(pos - start) + n;
    const size_t fill = pagesOnly ? roundUp(needed)
                      : runsOn  ? m_window
                                : std::min(m_window, std::max(kProbeFill, roundUp(needed)));
    w.start = start;
    w.len = fill;
    const size_t want = size_t(std::min<uint64_t>(fill, m_size - start));
    size_t got = 0;
    while (got < want) {
        const size_t r = fetchOrZero(start + got, w.buf.get() + got, want - got);
        if (r == 0)
            break;
        got += r;
    }
    m_fetched += got;
    std::memset(w.buf.get() + got, 0, fill - got);
    m_recent = other;
    return w.buf.get() + (pos - start);
}

size_t ByteReader::read(uint64_t pos, void* dst, size_t n)
{
    uint8_t* out = static_cast<uint8_t*>(dst);
    const size_t real = pos < m_size ? size_t(std::min<uint64_t>(n, m_size - pos)) : 0;
    // A large block goes from the source straight into dst: through a window
    // it would cost a second copy and evict what the window held.
    if (n >= kDirectRead) {
        size_t got = 0;
        while (got < real) {
            const size_t r = fetchOrZero(pos + got, out + got, real - got);
            if (r == 0)
                break;
            got += r;
        }
        m_fetched += got;
        std::memset(out + got, 0, n - got);
        return real;
    }
    const size_t step = maxView();
    size_t done = 0;
    while (done < n) {
        const size_t chunk = std::min(step, n - done);
        std::memcpy(out + done, view(pos + done, chunk), chunk);
        done += chunk;
    }
    return real;
}

uint64_t ByteReader::unreadableBytes() const
{
    return UnreadableBytes({this});
}

size_t ByteReader::fetchOrZero(uint64_t pos, uint8_t* dst, size_t n)
{
    for (int failures = 0; failures < 2; ++failures) {
        const ptrdiff_t r = fetch(pos, dst, n);
        if (r >= 0)
            return size_t(r);
    }
    m_ioError = true;
    const size_t block = size_t(std::min<uint64_t>({uint64_t(n), kAlign - pos % kAlign, m_size - pos}));
    std::memset(dst, 0, block);
    uint64_t start = pos, end = pos + block;
    // Merge with the ranges it touches (a block read again adds nothing).
    auto it = m_unreadable.upper_bound(start);
    if (it != m_unreadable.begin() && std::prev(it)->second >= start)
        --it;
    while (it != m_unreadable.end() && it->first <= end) {
        start = std::min(start, it->first);
        end = std::max(end, it->second);
        it = m_unreadable.erase(it);
    }
    m_unreadable.emplace(start, end);
    return block;
}

uint64_t NextNonZero(ByteReader& r, uint64_t from, uint64_t end)
{
    end = std::min(end, r.size());
    const size_t block = std::min<size_t>(1u << 20, r.maxView());
    for (uint64_t pos = from; pos < end;) {
        size_t n = 0;
        const uint8_t* p = r.viewSome(pos, size_t(std::min<uint64_t>(block, end - pos)), n);
        size_t i = 0;
        for (uint64_t word; i + 8 <= n; i += 8) {
            std::memcpy(&word, p + i, 8);
            if (word)
                break;
        }
        for (; i < n; ++i)
            if (p[i])
                return pos + i;
        pos += n;
        // A long run of zeros may be a hole of a sparse file: its file system
        // tells where data starts again (ENXIO: nowhere).
        if (r.fileDescriptor() >= 0 && pos < end) {
            const off_t data = ::lseek(r.fileDescriptor(), off_t(pos), SEEK_DATA);
            if (data < 0 && errno == ENXIO)
                return end;
            pos = std::max(pos, std::min(end, uint64_t(std::max<off_t>(data, 0))));
        }
    }
    return end;
}

uint64_t UnreadableBytes(std::initializer_list<const ByteReader*> readers)
{
    std::map<uint64_t, uint64_t> all;   // start -> end, overlapping
    for (const ByteReader* r : readers)
        if (r)
            for (const auto& range : r->unreadable())
                all[range.first] = std::max(all[range.first], range.second);
    uint64_t total = 0, reached = 0;
    for (const auto& range : all) {
        const uint64_t from = std::max(range.first, reached);
        if (range.second > from)
            total += range.second - from;
        reached = std::max(reached, range.second);
    }
    return total;
}

namespace {
std::atomic<size_t> g_defaultWindow{ByteReader::kDefaultWindow};
}

void FileReader::setDefaultWindow(size_t window)
{
    g_defaultWindow = window ? window : kDefaultWindow;
}

std::unique_ptr<FileReader> FileReader::open(const QString& path, size_t window)
{
    if (window == 0 || window > g_defaultWindow)
        window = g_defaultWindow;
    const QByteArray native = path.toUtf8();
    const int fd = ::open(native.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return nullptr;
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return nullptr;
    }
    return std::unique_ptr<FileReader>(new FileReader(fd, uint64_t(st.st_size), path, window));
}

FileReader::FileReader(int fd, uint64_t size, const QString& path, size_t window)
    : ByteReader(size, window), m_fd(fd), m_path(path)
{
}

FileReader::~FileReader()
{
    ::close(m_fd);
}

namespace {
// The bytes at pos that lie in a hole of a sparse file (a range that holds
// no data) are zeros without a read, so that a hole of gigabytes fills no
// page cache. 0 when pos holds data, the hole is short, or the file system
// doesn't tell.
size_t ZerosOfHole(int fd, uint64_t pos, uint8_t* dst, size_t n)
{
    constexpr size_t kMinHole = 64 * 1024;
    if (n < kMinHole)
        return 0;
    const off_t data = ::lseek(fd, off_t(pos), SEEK_DATA);
    if (data < 0 && errno != ENXIO)   // ENXIO: no data from pos to the end
        return 0;
    const size_t zeros = data < 0 ? n : size_t(std::min<uint64_t>(n, uint64_t(data) - pos));
    if (zeros < kMinHole)
        return 0;
    std::memset(dst, 0, zeros);
    return zeros;
}
} // namespace

ptrdiff_t FileReader::fetch(uint64_t pos, uint8_t* dst, size_t n)
{
    if (const size_t zeros = ZerosOfHole(m_fd, pos, dst, n))
        return ptrdiff_t(zeros);
    for (;;) {
        const ssize_t r = ::pread(m_fd, dst, n, off_t(pos));
        if (r >= 0 || errno != EINTR)
            return r;
    }
}

MemoryReader::MemoryReader(QByteArray data, size_t window)
    : ByteReader(uint64_t(data.size()), window), m_data(std::move(data))
{
}

ptrdiff_t MemoryReader::fetch(uint64_t pos, uint8_t* dst, size_t n)
{
    if (pos >= uint64_t(m_data.size()))
        return 0;
    const size_t len = size_t(std::min<uint64_t>(n, uint64_t(m_data.size()) - pos));
    std::memcpy(dst, m_data.constData() + pos, len);
    return ptrdiff_t(len);
}
