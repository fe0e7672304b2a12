#pragma once
// Small checks around the files that the container routines and the muxer
// leave in the Repaired folder.
#include <QFileInfo>
#include <QString>

namespace outputcheck {

// True when both paths name the same existing file (links resolved). An
// output must never be written over its own input: with a work root chosen
// above a Repaired folder, a file inside it would be its own output.
inline bool SameFile(const QString& a, const QString& b)
{
    const QString ca = QFileInfo(a).canonicalFilePath();
    return !ca.isEmpty() && ca == QFileInfo(b).canonicalFilePath();
}

// True when path is a regular file holding at least one byte.
inline bool NonEmptyFile(const QString& path)
{
    const QFileInfo info(path);
    return info.isFile() && info.size() > 0;
}

} // namespace outputcheck
