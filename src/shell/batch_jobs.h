#pragma once
// The batch runner's dispatcher: every file is repaired by a process of its
// own (the runner started again for that one file, with a scratch work root),
// up to `jobs` at a time. Verdicts are printed in the order of the files,
// each finished result is moved from the scratch folder to its result
// folder, and a stop ends every job and moves nothing more.
#include <QString>
#include <QStringList>

// Set in a job's environment: the process repairs its single file and
// reports on stdout. The value "progress" keeps its progress line.
constexpr char kBatchJobVariable[] = "REELWRIGHT_BATCH_JOB";

struct BatchRun {
    QStringList files;           // absolute paths
    QStringList resultFolders;   // one per file
    QString reference;           // absolute path, or empty for a first pass
    bool besideFiles = true;     // result folders are the Repaired folders beside the files
    QString workRoot;            // absolute; where scratch folders go when not beside the files
    bool quiet = false;
    int jobs = 1;
};

// Runs the whole batch in the application's event loop; returns the exit
// status (0 finished, 1 stopped).
int RunBatchJobs(const BatchRun& run);
