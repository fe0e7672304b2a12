#pragma once
// The recovery of a QuickTime-family file from its codecs' own syntax: learn
// the tracks from a movie (the sample's, or the damaged file's own), scan the
// damaged media data, write a new file around the original bytes.
#include "recovery/syntax/media_scan.h"
#include "recovery/syntax/movie_writer.h"

#include <QString>

namespace syntax {

struct SyntaxOutcome {
    bool written = false;       // outPath holds a file with at least one video frame
    MovieFigures figures;
    uint64_t mediaBytes = 0;    // size of the media data scanned
    uint64_t skippedBytes = 0;  // bytes no track's syntax explained
    uint64_t skippedRanges = 0;
    uint64_t unreadableBytes = 0;   // bytes of the damaged file that could not be read (served as zeros)
    QString reason;             // why nothing was written, for the log
};

// Recovers damagedPath into outPath with what a movie teaches: the sample's
// (already open), or with sample null the damaged file's own. The input
// files are only read.
SyntaxOutcome RecoverBySyntax(const QString& damagedPath, ByteReader* sample, const QString& outPath,
                              const ScanControl& control);

} // namespace syntax
