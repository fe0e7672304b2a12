#pragma once
// The file suffixes the program takes as videos, compared exactly ("Mov" is
// not one of them). The window's add dialog filters by them, its file list
// admits by them, and the batch runner picks a folder's videos by them.
#include <QString>
#include <QStringList>

const QStringList& VideoSuffixes();
bool IsVideoSuffix(const QString& suffix);
