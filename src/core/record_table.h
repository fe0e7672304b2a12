#pragma once
// An append-only table of fixed-size records, read back in order, whose
// memory does not grow with its length: one block of records stays in
// memory, and each block that fills goes to a file of the table's own,
// from which the records are read back in order. A table that never fills
// more than a block touches no disk.
#include "core/byte_reader.h"
#include "core/file_writer.h"

#include <QString>
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

// The file of a table's full blocks: written until sealed, then read.
// Removed with the object.
class SpillFile {
public:
    explicit SpillFile(const QString& path);
    ~SpillFile();
    SpillFile(const SpillFile&) = delete;
    SpillFile& operator=(const SpillFile&) = delete;

    void append(const void* data, size_t n) { m_writer.write(data, n); }
    // Ends the writing and opens the file for reading through windows of
    // window bytes. False when a write failed (a full disk) or the file
    // can't be read.
    bool seal(size_t window);
    // The records are not all readable: a write failed, the file could not
    // be opened for reading (or was not sealed yet), or a read failed.
    bool failed() const { return m_writer.failed() || !m_reader || m_reader->ioError(); }
    // n bytes at pos, valid until the next call (null before seal()).
    const uint8_t* view(uint64_t pos, size_t n) const { return m_reader ? m_reader->view(pos, n) : nullptr; }

private:
    QString m_path;
    FileWriter m_writer;
    std::unique_ptr<FileReader> m_reader;
};

template <typename Record>
class RecordTable {
    static_assert(std::is_trivially_copyable<Record>::value, "records are kept as their bytes");

public:
    static constexpr size_t kBlockBytes = 256u << 10;

    // A table that stays in memory whole (small scans, tests).
    RecordTable() = default;
    // path: the file full blocks go to.
    explicit RecordTable(QString path, size_t blockBytes = kBlockBytes)
        : m_path(std::move(path)), m_blockRecords(std::max<size_t>(blockBytes / sizeof(Record), 1))
    {
    }

    void push_back(const Record& r)
    {
        // A block is written when the record behind it comes, so that a
        // table of exactly one block stays in memory.
        if (!m_path.isEmpty() && m_tail.size() >= m_blockRecords) {
            if (!m_spill)
                m_spill = std::make_unique<SpillFile>(m_path);
            m_spill->append(m_tail.data(), m_tail.size() * sizeof(Record));
            m_spilled += m_tail.size();
            m_tail.clear();
        }
        m_tail.push_back(r);
    }
    uint64_t size() const { return m_spilled + m_tail.size(); }
    bool empty() const { return size() == 0; }
    // After the last record, before the first read: false when the records
    // could not be kept.
    bool seal() { return !m_spill || m_spill->seal(m_blockRecords * sizeof(Record) + ByteReader::kAlign); }
    // A record could not be kept or read back: the table is not whole.
    bool failed() const { return m_spill && m_spill->failed(); }

    // Reads the records in order, from the first. The readers of one table
    // share the two windows of its file's reader: two at a time each keep a
    // window of their own.
    class Reader {
    public:
        explicit Reader(const RecordTable& t) : m_table(t) {}
        // The next record into r; false at the end (or when the table is not sealed).
        bool next(Record& r)
        {
            const RecordTable& t = m_table;
            if (m_index >= t.size())
                return false;
            if (m_index >= t.m_spilled) {
                r = t.m_tail[size_t(m_index - t.m_spilled)];
            } else {
                const uint8_t* p = t.m_spill->view(m_index * sizeof(Record), sizeof(Record));
                if (!p)
                    return false;
                std::memcpy(&r, p, sizeof(Record));
            }
            ++m_index;
            return true;
        }

    private:
        const RecordTable& m_table;
        uint64_t m_index = 0;
    };
    Reader reader() const { return Reader(*this); }

private:
    QString m_path;
    size_t m_blockRecords = kBlockBytes / sizeof(Record);
    std::vector<Record> m_tail;     // the records behind the last full block
    uint64_t m_spilled = 0;         // records in the file
    std::unique_ptr<SpillFile> m_spill;
};

