#pragma once
// What the batch runner repairs and where each result goes: the arguments
// expanded into files (a folder gives its videos, recursively), checked
// before anything is written.
#include <QString>
#include <QStringList>

struct BatchInputs {
    QStringList files;   // absolute paths, in the order of the arguments and, within a folder, by name
    QString error;       // why the arguments can't be run; empty when they can
};

// A folder contributes every file below it whose suffix is a video suffix,
// sorted by name at each level; folders named Repaired (earlier results) and
// the runner's scratch folders are left out, and links are followed. An argument that isn't a folder is taken
// as a file even when it doesn't exist (its verdict says so). Errors: a
// folder that can't be read, one without videos, a link that leads back into
// a folder it is inside, and a file reached twice.
BatchInputs ExpandInputs(const QStringList& arguments);

// The folder each file's result goes to, in the order of files: Repaired
// beside the file, or, with a work root, below workRoot/Repaired at the
// file's place relative to the folder all inputs share, so that same-named
// files of different folders stay apart. With all files in one folder that
// is workRoot/Repaired itself.
QStringList ResultFolders(const QStringList& files, const QString& workRoot);
