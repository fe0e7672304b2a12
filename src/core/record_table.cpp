#include "core/record_table.h"

#include <QFile>

SpillFile::SpillFile(const QString& path) : m_path(path)
{
    // A file that can't be made leaves the writer failed: seal() says so.
    m_writer.open(path);
}

SpillFile::~SpillFile()
{
    m_reader.reset();
    // Closing renames the partial file to the path, or removes it after a
    // failure; the path then goes too.
    m_writer.close();
    QFile::remove(m_path);
}

bool SpillFile::seal(size_t window)
{
    if (m_reader)
        return !failed();
    if (m_writer.close())
        m_reader = FileReader::open(m_path, window);
    return !failed();
}

