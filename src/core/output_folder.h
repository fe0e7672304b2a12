#pragma once
// Where a file's results go, what a killed run left there, and whether there
// is room for a file's results.
#include <QString>
#include <cstdint>

struct OutputFolder {
    QString dir;            // the folder the results go to (made)
    bool fallback = false;  // not where it was asked for: it could not be written
};

// The Repaired folder for a file in sourceFolder: under customRoot when that
// is set, else beside the file. When that folder can't be made or written (a
// write-protected card, a read-only mount, a disc), the results go to
// $XDG_DATA_HOME/Reelwright/Repaired/<source folder name> instead
// (~/.local/share when XDG_DATA_HOME is unset). Empty dir when no folder at
// all can be written.
OutputFolder ChooseOutputFolder(const QString& sourceFolder, const QString& customRoot);

// Removes what a run that was killed left in folder: partial outputs, the
// muxer's pipes and the unfinished files of the syntax recovery. Results and
// other files stay.
void RemoveStaleWork(const QString& folder);

// What a repair of a file of inputSize bytes writes, about: its size and a
// tenth (the syntax recovery writes the size; the other routes less).
uint64_t SpaceNeeded(uint64_t inputSize);
// "not enough space in FOLDER, about N MB needed".
QString SpaceMessage(const QString& folder, uint64_t inputSize);
// Bytes that an unprivileged writer may still put on folder's file system;
// -1 when that can't be told (the folder doesn't exist).
int64_t FreeBytes(const QString& folder);
// SpaceMessage when folder's free space is below SpaceNeeded, else empty.
QString SpaceShortage(const QString& folder, uint64_t inputSize);
