#pragma once
// Small checks around the files that the container routines and the muxer
// leave in the Repaired folder.
#include <QFileInfo>
#include <QString>
#include <QStringList>

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

// The name a repaired DAT file gets: the first non-empty piece of the name
// between dots, with ".mov" behind it (clip.v2.dat gives clip.mov).
inline QString DatOutputName(const QString& fileName)
{
    const QStringList pieces = fileName.split(QLatin1Char('.'), Qt::SkipEmptyParts);
    return (pieces.isEmpty() ? QString() : pieces.first()) + QStringLiteral(".mov");
}

} // namespace outputcheck
