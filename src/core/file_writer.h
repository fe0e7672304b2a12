#pragma once
// The one output helper of the engine: append, then patch.
//
// Bytes are appended through a buffer; a size or count that is known only at
// the end is written as a placeholder, its position remembered, and patched
// later (patchBe32 and friends work whether the bytes are still buffered or
// already on disk). QuickTime atoms use beginBox/endBox, which choose the size
// width when the box opens. Any write error is sticky and reported by close().
//
// The bytes go to a partial file beside the target (PartialPath) that close()
// renames to the target once everything is written: a run that is killed, or
// a disk that fills up, never leaves a file that looks like a result. A
// writer that failed removes its partial file and leaves the target as it was.
#include "core/byte_reader.h"

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

// Where the bytes of path go until they are complete: ".partial-" and the
// name, in the same folder (so that the final rename stays on one file
// system and the suffix still names the format).
QString PartialPath(const QString& path);
bool IsPartialName(const QString& fileName);

class FileWriter {
public:
    FileWriter() = default;
    ~FileWriter();
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;

    // Creates (or truncates) the partial file of path. False when it can't
    // be created.
    bool open(const QString& path);
    bool isOpen() const { return m_fd >= 0; }
    // Flushes, closes and renames the partial file to the path; false (and
    // nothing at the path but what was there before) when any write failed.
    bool close();
    // Writes that failed because the disk (or quota) was full, in this
    // process so far: a driver compares the count around a file's repair to
    // tell a full disk from damage.
    static unsigned outOfSpaceFailures();
    // Counts a full disk met elsewhere (the muxer's output).
    static void noteOutOfSpace();
    bool failed() const { return m_failed; }
    uint64_t pos() const { return m_flushed + m_buf.size(); }
    uint64_t flushedBytes() const { return m_flushed; }
    // Bytes go to tap as they leave the buffer for the file (a reader of the
    // growing stream); patches to bytes already flushed don't reach it. With
    // a tap the buffer is flushed every flushAt bytes, so that a reader that
    // needs a little of this stream before more of another isn't kept
    // waiting. With fileToo false the bytes go to the tap alone and the file
    // keeps only what was flushed before. The tap is dropped by close().
    using Tap = std::function<void(const uint8_t*, size_t)>;
    void setTap(Tap tap, size_t flushAt = 64 * 1024, bool fileToo = true);
    // The bytes written but not yet flushed.
    QByteArray unflushed() const { return QByteArray(reinterpret_cast<const char*>(m_buf.data()), int(m_buf.size())); }
    const QString& path() const { return m_path; }

    void write(const void* data, size_t n);
    void write(const QByteArray& b) { write(b.constData(), size_t(b.size())); }
    void zeros(size_t n);
    // n bytes of zeros that the file gets as a hole (no write, no disk
    // space) where its file system keeps holes; written out to a tap.
    void hole(uint64_t n);
    void u8(uint8_t v) { write(&v, 1); }
    void be16(uint16_t v);
    void be24(uint32_t v);
    void be32(uint32_t v);
    void be64(uint64_t v);
    void le16(uint16_t v);
    void le32(uint32_t v);
    void le64(uint64_t v);
    void fourcc(const char* code) { write(code, 4); }

    void patchBe32(uint64_t at, uint32_t v);
    void patchBe64(uint64_t at, uint64_t v);
    void patchLe32(uint64_t at, uint32_t v);
    void patchLe64(uint64_t at, uint64_t v);
    void patch(uint64_t at, const void* data, size_t n);

    // Copies n bytes at pos of src into the output (zero-filled past src's end).
    // A long range of a file that lies at the same offset within a page as
    // it lands goes from file to file inside the kernel, other ranges through
    // the buffer; holes (a sparse file's) stay holes.
    void copyFrom(ByteReader& src, uint64_t pos, uint64_t n);

    // QuickTime boxes: size placeholder (32-bit, or 1 + 64-bit when wide),
    // the code, and on endBox the size of everything written since.
    void beginBox(const char* code, bool wide = false);
    void endBox();
    // Path of the open boxes, such as "moov/trak/mdia", for messages.
    QString boxPath() const;

private:
    void flush();
    void copyData(ByteReader& src, uint64_t pos, uint64_t n);
    // Appends up to n bytes at pos of the file fd without a copy through
    // this process; returns how many. Stops early (0 when the system can't
    // copy between these two files, which then isn't tried again).
    // readError: the copy stopped at a block the source could not give.
    uint64_t copyInKernel(int fd, uint64_t pos, uint64_t n, bool& readError);
    struct Box { uint64_t start; bool wide; char code[5]; };

    int m_fd = -1;
    QString m_path;
    QString m_partialPath;
    std::vector<uint8_t> m_buf;
    uint64_t m_flushed = 0;
    bool m_failed = false;
    std::vector<Box> m_boxes;
    Tap m_tap;
    bool m_tapOnly = false;
    size_t m_flushAt = size_t(1) << 20;   // the buffer's limit
    bool m_kernelCopyFails = false;
};
