#include "core/file_writer.h"

#include <QDebug>
#include <QFileInfo>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {
constexpr size_t kBufferLimit = 1u << 20;
// Ranges from this size on are copied by the kernel: a frame of video, not a
// frame of sound or a transport packet. Below it the buffer is cheaper than
// the system call and the flush it needs.
constexpr uint64_t kKernelCopyFrom = 32 * 1024;

std::atomic<unsigned> g_outOfSpace{0};

bool writeAll(int fd, const uint8_t* p, size_t n, int64_t at)
{
    while (n > 0) {
        const ssize_t w = at < 0 ? ::write(fd, p, n) : ::pwrite(fd, p, n, off_t(at));
        if (w < 0) {
            if (errno == EINTR)
                continue;
            if (errno == ENOSPC || errno == EDQUOT)
                ++g_outOfSpace;
            return false;
        }
        p += w;
        n -= size_t(w);
        if (at >= 0)
            at += w;
    }
    return true;
}
}

QString PartialPath(const QString& path)
{
    const QFileInfo f(path);
    return f.path() + QStringLiteral("/.partial-") + f.fileName();
}

bool IsPartialName(const QString& fileName)
{
    return fileName.startsWith(QLatin1String(".partial-"));
}

unsigned FileWriter::outOfSpaceFailures()
{
    return g_outOfSpace;
}

void FileWriter::noteOutOfSpace()
{
    ++g_outOfSpace;
}

FileWriter::~FileWriter()
{
    if (m_fd >= 0)
        close();
}

bool FileWriter::open(const QString& path)
{
    if (m_fd >= 0)
        close();
    m_path = path;
    m_flushed = 0;
    m_failed = false;
    m_kernelCopyFails = false;
    m_buf.clear();
    m_boxes.clear();
    m_partialPath = PartialPath(path);
    m_fd = ::open(m_partialPath.toUtf8().constData(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    return m_fd >= 0;
}

bool FileWriter::close()
{
    if (m_fd < 0)
        return !m_failed;
    flush();
    m_tap = nullptr;
    m_tapOnly = false;
    m_flushAt = kBufferLimit;
    if (::close(m_fd) != 0)
        m_failed = true;
    m_fd = -1;
    const QByteArray partial = m_partialPath.toUtf8();
    if (!m_failed && ::rename(partial.constData(), m_path.toUtf8().constData()) != 0)
        m_failed = true;
    if (m_failed)
        ::unlink(partial.constData());
    return !m_failed;
}

void FileWriter::setTap(Tap tap, size_t flushAt, bool fileToo)
{
    m_tap = std::move(tap);
    m_tapOnly = m_tap && !fileToo;
    m_flushAt = m_tap ? std::max<size_t>(flushAt, 1) : kBufferLimit;
    if (m_buf.size() >= m_flushAt)
        flush();
}

void FileWriter::flush()
{
    if (m_fd < 0 || m_buf.empty())
        return;
    if (!m_tapOnly && !writeAll(m_fd, m_buf.data(), m_buf.size(), -1))
        m_failed = true;
    if (m_tap)
        m_tap(m_buf.data(), m_buf.size());
    m_flushed += m_buf.size();
    m_buf.clear();
}

void FileWriter::write(const void* data, size_t n)
{
    if (m_fd < 0) {
        m_failed = true;
        return;
    }
    const uint8_t* p = static_cast<const uint8_t*>(data);
    if (n >= m_flushAt) {
        flush();
        if (!m_tapOnly && !writeAll(m_fd, p, n, -1))
            m_failed = true;
        if (m_tap)
            m_tap(p, n);
        m_flushed += n;
        return;
    }
    if (m_buf.size() + n > m_flushAt)
        flush();
    m_buf.insert(m_buf.end(), p, p + n);
}

void FileWriter::zeros(size_t n)
{
    static const uint8_t block[4096] = {};
    while (n > 0) {
        const size_t k = std::min(n, sizeof block);
        write(block, k);
        n -= k;
    }
}

void FileWriter::hole(uint64_t n)
{
    if (m_tap || m_fd < 0) {
        for (uint64_t k; n > 0; n -= k) {
            k = std::min<uint64_t>(n, 1u << 20);
            zeros(size_t(k));
        }
        return;
    }
    // The file ends at m_flushed: it grows by n, and appends go on behind.
    flush();
    const off_t end = off_t(m_flushed + n);
    if (::ftruncate(m_fd, end) != 0 || ::lseek(m_fd, end, SEEK_SET) != end)
        m_failed = true;
    m_flushed += n;
}

void FileWriter::be16(uint16_t v) { const uint8_t b[2] = {uint8_t(v >> 8), uint8_t(v)}; write(b, 2); }
void FileWriter::be24(uint32_t v) { const uint8_t b[3] = {uint8_t(v >> 16), uint8_t(v >> 8), uint8_t(v)}; write(b, 3); }
void FileWriter::be32(uint32_t v) { const uint8_t b[4] = {uint8_t(v >> 24), uint8_t(v >> 16), uint8_t(v >> 8), uint8_t(v)}; write(b, 4); }
void FileWriter::be64(uint64_t v) { be32(uint32_t(v >> 32)); be32(uint32_t(v)); }
void FileWriter::le16(uint16_t v) { const uint8_t b[2] = {uint8_t(v), uint8_t(v >> 8)}; write(b, 2); }
void FileWriter::le32(uint32_t v) { const uint8_t b[4] = {uint8_t(v), uint8_t(v >> 8), uint8_t(v >> 16), uint8_t(v >> 24)}; write(b, 4); }
void FileWriter::le64(uint64_t v) { le32(uint32_t(v)); le32(uint32_t(v >> 32)); }

void FileWriter::patch(uint64_t at, const void* data, size_t n)
{
    // Flushed bytes of a tap-only stream are in no file to patch.
    if (m_fd < 0 || at + n > pos() || (m_tapOnly && at < m_flushed)) {
        m_failed = true;
        return;
    }
    const uint8_t* p = static_cast<const uint8_t*>(data);
    // Part of the range may be on disk, part still in the buffer.
    while (n > 0 && at < m_flushed) {
        const size_t k = size_t(std::min<uint64_t>(n, m_flushed - at));
        if (!writeAll(m_fd, p, k, int64_t(at)))
            m_failed = true;
        at += k;
        p += k;
        n -= k;
    }
    if (n > 0)
        std::memcpy(m_buf.data() + (at - m_flushed), p, n);
}

void FileWriter::patchBe32(uint64_t at, uint32_t v)
{
    const uint8_t b[4] = {uint8_t(v >> 24), uint8_t(v >> 16), uint8_t(v >> 8), uint8_t(v)};
    patch(at, b, 4);
}
void FileWriter::patchBe64(uint64_t at, uint64_t v)
{
    patchBe32(at, uint32_t(v >> 32));
    patchBe32(at + 4, uint32_t(v));
}
void FileWriter::patchLe32(uint64_t at, uint32_t v)
{
    const uint8_t b[4] = {uint8_t(v), uint8_t(v >> 8), uint8_t(v >> 16), uint8_t(v >> 24)};
    patch(at, b, 4);
}
void FileWriter::patchLe64(uint64_t at, uint64_t v)
{
    patchLe32(at, uint32_t(v));
    patchLe32(at + 4, uint32_t(v >> 32));
}

void FileWriter::copyFrom(ByteReader& src, uint64_t pos, uint64_t n)
{
    // What the source's file system keeps as holes (the never written parts
    // of a sparse file, which read as zeros) stays a hole in the copy: a
    // hole of gigabytes costs neither time nor disk. Short copies don't ask.
    const int fd = n >= kKernelCopyFrom && !m_tap ? src.fileDescriptor() : -1;
    while (fd >= 0 && n > 0) {
        // Where data starts again (ENXIO: nowhere before the file's end;
        // other errors: the system can't tell, so it's data).
        off_t data = ::lseek(fd, off_t(pos), SEEK_DATA);
        if (data < 0)
            data = errno == ENXIO ? off_t(pos + n) : off_t(pos);
        uint64_t k = std::min(n, uint64_t(data) - pos);
        if (k > 0) {
            hole(k);
        } else {
            const off_t end = ::lseek(fd, off_t(pos), SEEK_HOLE);
            k = end > off_t(pos) ? std::min(n, uint64_t(end) - pos) : n;
            copyData(src, pos, k);
        }
        pos += k;
        n -= k;
    }
    if (n > 0)
        copyData(src, pos, n);
}

void FileWriter::copyData(ByteReader& src, uint64_t pos, uint64_t n)
{
    // A tap must see the bytes, so they take the buffer then. So do bytes
    // that land elsewhere within a page than they lie in the source: the
    // kernel would write each page of the output in two pieces, which is
    // slower to copy and far slower to write back to the disk.
    bool kernel = n >= kKernelCopyFrom && !m_tap && m_fd >= 0 && src.fileDescriptor() >= 0
               && pos % ByteReader::kAlign == this->pos() % ByteReader::kAlign;
    const size_t step = std::min<size_t>(src.maxView(), 1u << 20);
    while (n > 0) {
        if (kernel && !m_kernelCopyFails && pos < src.size()) {
            flush();
            bool readError = false;
            const uint64_t done = copyInKernel(src.fileDescriptor(), pos, std::min(n, src.size() - pos), readError);
            pos += done;
            n -= done;
            // Behind a block the source could not give, which the reader
            // serves (as zeros, noted), the kernel copies on.
            kernel = readError;
            if (n == 0)
                break;
        }
        const uint64_t blockEnd = ByteReader::kAlign - pos % ByteReader::kAlign;
        const size_t k = size_t(std::min<uint64_t>(n, kernel ? blockEnd : step));
        write(src.view(pos, k), k);
        pos += k;
        n -= k;
    }
}

uint64_t FileWriter::copyInKernel(int fd, uint64_t pos, uint64_t n, bool& readError)
{
    // The output's file offset is always m_flushed: appends go through it,
    // patches are positioned writes.
    uint64_t done = 0;
    loff_t in = loff_t(pos);
    while (done < n) {
        const ssize_t c = ::copy_file_range(fd, &in, m_fd, nullptr, size_t(std::min<uint64_t>(n - done, 1u << 30)), 0);
        if (c > 0) {
            done += uint64_t(c);
            m_flushed += uint64_t(c);
            continue;
        }
        if (c < 0 && errno == EINTR)
            continue;
        // The end of a file that shrank, or an error: the buffer takes the
        // rest, and reports a real write error as it always does. Files the
        // kernel can't copy between aren't tried again.
        if (c < 0 && (errno == EXDEV || errno == ENOSYS || errno == EINVAL || errno == EOPNOTSUPP || errno == EBADF))
            m_kernelCopyFails = true;
        readError = c < 0 && errno == EIO;
        break;
    }
    return done;
}

void FileWriter::beginBox(const char* code, bool wide)
{
    Box b{pos(), wide, {code[0], code[1], code[2], code[3], 0}};
    m_boxes.push_back(b);
    if (wide) {
        be32(1);
        fourcc(code);
        be64(0);   // 64-bit size, patched by endBox
    } else {
        be32(0);   // size, patched by endBox
        fourcc(code);
    }
}

void FileWriter::endBox()
{
    if (m_boxes.empty()) {
        m_failed = true;
        return;
    }
    const Box b = m_boxes.back();
    const uint64_t size = pos() - b.start;
    if (b.wide) {
        patchBe64(b.start + 8, size);
    } else if (size > 0xFFFFFFFFu) {
        qWarning() << "box too large for a 32-bit size:" << boxPath();
        m_failed = true;
    } else {
        patchBe32(b.start, uint32_t(size));
    }
    m_boxes.pop_back();
}

QString FileWriter::boxPath() const
{
    QStringList parts;
    for (const Box& b : m_boxes)
        parts << QString::fromLatin1(b.code);
    return parts.join(QLatin1Char('/'));
}
