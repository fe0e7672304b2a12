#pragma once
// One positioned reader for every scanner and parser of the engine.
//
// Bytes are served from two large windows refilled on demand, so a read inside
// either costs a memory access. Two, because scanners look far ahead (to where
// a length says the next unit starts) and come back: the look ahead fills the
// other window instead of throwing away the one being walked. Bytes past the
// end of the data read as zero, which matches no four-character code or start
// code: damaged sizes that point past the end simply find nothing, and a view
// wholly past the end moves neither window. Each call that copies returns
// how many real (not zero-filled) bytes it served.
#include <QByteArray>
#include <QString>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <vector>

class ByteReader {
public:
    static constexpr size_t kDefaultWindow = 8u << 20;   // 8 MiB
    static constexpr size_t kAlign = 4096;
    // What a jump away from both windows reads (see slowView).
    static constexpr size_t kProbeFill = 64u << 10;
    // From this size on read() bypasses the windows.
    static constexpr size_t kDirectRead = 1u << 20;

    virtual ~ByteReader() = default;
    ByteReader(const ByteReader&) = delete;
    ByteReader& operator=(const ByteReader&) = delete;

    uint64_t size() const { return m_size; }
    // A real read error happened (not a short read at the end).
    bool ioError() const { return m_ioError; }
    // The ranges [start, end) that could not be read (a bad sector, a
    // failing card) and were served as zeros, merged and in order.
    const std::map<uint64_t, uint64_t>& unreadable() const { return m_unreadable; }
    uint64_t unreadableBytes() const;
    // Bytes fetched from the source so far (what the windows cost).
    uint64_t fetchedBytes() const { return m_fetched; }
    // The open file behind the reader, for copies from file to file; -1
    // when the bytes are in memory.
    virtual int fileDescriptor() const { return -1; }

    // Copies n bytes at pos into dst, zero-filled past the end.
    size_t read(uint64_t pos, void* dst, size_t n);
    // Pointer to n bytes at pos, valid until the next call on this reader.
    // n must not exceed maxView(); past the end the bytes are zero.
    const uint8_t* view(uint64_t pos, size_t n)
    {
        const Window& w = m_windows[m_recent];
        if (pos >= w.start && n <= w.len && pos - w.start <= w.len - n)
            return w.buf.get() + (pos - w.start);
        return slowView(pos, n);
    }
    size_t maxView() const { return m_window - kAlign; }
    // Pointer to between 1 and want bytes at pos (0 < want <= maxView()),
    // their count in got: what a window holds from pos on already, else a
    // fresh fill of want. For scans that take any amount at a time: a short
    // search near the end of a window then costs no refill of the bytes
    // the window has.
    const uint8_t* viewSome(uint64_t pos, size_t want, size_t& got)
    {
        for (const int i : {m_recent, 1 - m_recent}) {
            const Window& w = m_windows[i];
            if (w.len && pos >= w.start && pos - w.start < w.len) {
                m_recent = i;
                got = size_t(std::min<uint64_t>(want, w.len - (pos - w.start)));
                return w.buf.get() + (pos - w.start);
            }
        }
        got = want;
        return slowView(pos, want);
    }

    // view() for a look at a few bytes where a walk expects a header, far
    // from where it read last: a miss reads only the pages that hold them,
    // not a probe's worth, so a walk that jumps over large payloads reads
    // little more than its headers.
    const uint8_t* peek(uint64_t pos, size_t n)
    {
        const Window& w = m_windows[m_recent];
        if (pos >= w.start && n <= w.len && pos - w.start <= w.len - n)
            return w.buf.get() + (pos - w.start);
        return slowView(pos, n, true);
    }

    uint8_t u8(uint64_t pos) { return *view(pos, 1); }
    uint16_t be16(uint64_t pos) { const uint8_t* p = view(pos, 2); return uint16_t(p[0] << 8 | p[1]); }
    uint32_t be24(uint64_t pos) { const uint8_t* p = view(pos, 3); return uint32_t(p[0]) << 16 | uint32_t(p[1]) << 8 | p[2]; }
    uint32_t be32(uint64_t pos) { return loadBe32(view(pos, 4)); }
    uint64_t be64(uint64_t pos) { const uint8_t* p = view(pos, 8); return uint64_t(loadBe32(p)) << 32 | loadBe32(p + 4); }
    uint16_t le16(uint64_t pos) { const uint8_t* p = view(pos, 2); return uint16_t(p[1] << 8 | p[0]); }
    uint32_t le32(uint64_t pos) { return loadLe32(view(pos, 4)); }
    uint64_t le64(uint64_t pos) { const uint8_t* p = view(pos, 8); return uint64_t(loadLe32(p + 4)) << 32 | loadLe32(p); }
    // True when the four bytes at pos are the four characters of code.
    bool is4cc(uint64_t pos, const char* code) { return be32(pos) == fourcc(code); }

    static constexpr uint32_t fourcc(const char* c)
    {
        return uint32_t(uint8_t(c[0])) << 24 | uint32_t(uint8_t(c[1])) << 16
             | uint32_t(uint8_t(c[2])) << 8 | uint32_t(uint8_t(c[3]));
    }
    static uint32_t loadBe32(const uint8_t* p)
    {
        return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
    }
    static uint32_t loadLe32(const uint8_t* p)
    {
        return uint32_t(p[3]) << 24 | uint32_t(p[2]) << 16 | uint32_t(p[1]) << 8 | p[0];
    }

protected:
    ByteReader(uint64_t size, size_t window);
    // Reads up to n raw bytes at pos (pos < size): how many it got (0 at the
    // end of the data), or -1 when the read failed.
    virtual ptrdiff_t fetch(uint64_t pos, uint8_t* dst, size_t n) = 0;


private:
    const uint8_t* slowView(uint64_t pos, size_t n, bool pagesOnly = false);
    // fetch() where a failed read is tried once more; then its block (up to
    // the next 4 KiB boundary) reads as zeros and is noted as unreadable,
    // so reading goes on behind it and one bad sector costs its own bytes.
    size_t fetchOrZero(uint64_t pos, uint8_t* dst, size_t n);

    struct Window {
        // Not cleared when made: only the pages that fills write are ever
        // touched (a short probe into a large window touches a few).
        std::unique_ptr<uint8_t[]> buf;
        size_t capacity = 0;
        uint64_t start = 0;
        size_t len = 0;        // bytes of buf that are valid (real or zero fill): a window or a short probe
    };

    // True when pos lies in w or right behind it: the walk runs on.
    static bool runsOnFrom(const Window& w, uint64_t pos) { return w.len && pos >= w.start && pos - w.start <= w.len; }
    static size_t roundUp(size_t n) { return (n + kAlign - 1) / kAlign * kAlign; }

    uint64_t m_size;
    size_t m_window;
    Window m_windows[2];
    int m_recent = 0;          // the window that served the last view
    std::vector<uint8_t> m_zeros;   // served for views wholly past the end
    bool m_ioError = false;
    uint64_t m_fetched = 0;
    std::map<uint64_t, uint64_t> m_unreadable;   // start -> end
};

// "moov"_4cc: a four-character code as the big-endian word the file holds.
constexpr uint32_t operator""_4cc(const char* c, size_t) { return ByteReader::fourcc(c); }

// The first position in [from, end) that holds a byte other than zero; end
// when there is none. Runs of zeros (holes, zeroed clusters) are passed a
// word at a time, the holes of a sparse file at once.
uint64_t NextNonZero(ByteReader& r, uint64_t from, uint64_t end);

// The bytes that the readers (of the same file) could not read, each counted
// once however many of them tried.
uint64_t UnreadableBytes(std::initializer_list<const ByteReader*> readers);

// A reader over a file opened read-only. The file is never written.
class FileReader final : public ByteReader {
public:
    // Null when the path can't be opened for reading or isn't a regular file.
    // A window of 0 takes the process-wide default.
    static std::unique_ptr<FileReader> open(const QString& path, size_t window = 0);
    // The window of readers opened without one, and the largest any reader
    // gets (fuzzing uses small windows so that window edges are crossed
    // often, and an input costs no large buffers).
    static void setDefaultWindow(size_t window);
    ~FileReader() override;
    const QString& path() const { return m_path; }
    int fileDescriptor() const override { return m_fd; }

private:
    FileReader(int fd, uint64_t size, const QString& path, size_t window);
    ptrdiff_t fetch(uint64_t pos, uint8_t* dst, size_t n) override;
    int m_fd;
    QString m_path;
};

// A reader over bytes in memory, for tests and fuzzing.
class MemoryReader final : public ByteReader {
public:
    explicit MemoryReader(QByteArray data, size_t window = kDefaultWindow);

private:
    ptrdiff_t fetch(uint64_t pos, uint8_t* dst, size_t n) override;
    QByteArray m_data;
};
