#include "recovery/syntax/syntax_route.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QFile>

namespace syntax {

SyntaxOutcome RecoverBySyntax(const QString& damagedPath, ByteReader* sample, const QString& outPath,
                              const ScanControl& control)
{
    SyntaxOutcome out;
    // A reader's windows are new memory, whose first touch costs more than
    // the reads into it, and small ones stay in the cache from the read to
    // the scan: a MiB and two pages hold a picture and more, and the longest
    // view asked for (a block of 1 MiB searched for a lost movie, from the
    // page its start lies in).
    constexpr size_t kWindow = (1u << 20) + 2 * ByteReader::kAlign;
    std::unique_ptr<FileReader> damaged = FileReader::open(damagedPath, kWindow);
    ByteReader* modelSource = sample ? sample : damaged.get();
    if (!damaged) {
        out.reason = QStringLiteral("can't open the file");
        return out;
    }
    MovieModel model;
    if (!LearnMovie(*modelSource, model) || model.videoTrack < 0) {
        out.reason = QStringLiteral("no video track whose codec can be read");
        return out;
    }
    const MediaRange range = LocateMediaData(*damaged);
    out.mediaBytes = range.end > range.begin ? range.end - range.begin : 0;
    if (out.mediaBytes == 0) {
        out.reason = QStringLiteral("no media data");
        return out;
    }
    // The damaged file's own file type, where it has one, keeps its brand.
    QByteArray ftyp = model.ftyp;
    if (damaged->is4cc(4, "ftyp")) {
        const uint32_t size = damaged->be32(0);
        if (size >= 8 && size <= 256) {
            ftyp = QByteArray(int(size), '\0');
            damaged->read(0, ftyp.data(), size);
        }
    }
    MovieOutput output;
    if (!output.start(outPath, damagedPath, range, ftyp, control.stop)) {
        out.reason = QStringLiteral("can't write %1").arg(outPath);
        return out;
    }
    QElapsedTimer clock;
    clock.start();
    // Two threads cut the sound: the scan leaves the cores to them early on.
    // They read one stretch of sound at a time (often less than a KiB, one
    // behind each picture), so each window fill costs little more than it.
    // Under a MiB of media data the scan's own thread cuts it sooner than
    // threads start.
    constexpr size_t kSoundWindow = 16u << 10;
    constexpr uint64_t kThreadedSound = 1u << 20;
    std::unique_ptr<FileReader> soundReaders[2];
    if (out.mediaBytes >= kThreadedSound)
        for (auto& reader : soundReaders)
            reader = FileReader::open(damagedPath, kSoundWindow);
    ScanControl scanControl = control;
    for (const auto& reader : soundReaders)
        if (reader)
            scanControl.soundReaders.push_back(reader.get());
    // The frame tables of a long scan wait beside the output, under names
    // that a later run's clean-up of the folder removes too.
    scanControl.spillPath = outPath;
    const ScanResult scan = ScanMedia(*damaged, model, range, scanControl);
    const double seconds = std::max<qint64>(clock.nsecsElapsed(), 1) / 1e9;
    qDebug().noquote() << QStringLiteral("Syntax scan: %1 MB in %2 s (%3 MB/s), %4 video frames, %5 bytes skipped")
                              .arg(out.mediaBytes / 1e6, 0, 'f', 1).arg(seconds, 0, 'f', 3)
                              .arg(out.mediaBytes / 1e6 / seconds, 0, 'f', 0).arg(scan.video.frames.size())
                              .arg(scan.skippedBytes);
    out.skippedBytes = scan.skippedBytes;
    out.skippedRanges = scan.skippedRanges;
    out.written = output.finish(model, scan);
    out.unreadableBytes = UnreadableBytes({damaged.get(), soundReaders[0].get(), soundReaders[1].get(), output.source()});
    if (out.written)
        out.figures = FiguresOf(model, scan);
    else
        out.reason = scan.stopped ? QStringLiteral("stopped")
                   : scan.video.frames.empty() ? QStringLiteral("no video frame found")
                                              : QStringLiteral("can't write %1").arg(outPath);
    return out;
}

} // namespace syntax
