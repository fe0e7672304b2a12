#pragma once
// Shared by the container tests: reelwright-batch on a set of inputs, with
// what every run must keep (exit code 0, no input changed).
#include "core/output_figures.h"
#include "support/test_videos.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <sys/stat.h>

namespace containers {

inline QString repairedPath(const QString& input, const QString& name = QString())
{
    const QFileInfo f(input);
    return f.absolutePath() + "/Repaired/" + (name.isEmpty() ? f.fileName() : name);
}

struct Batch {
    QString fault;            // empty when the run kept every rule above
    QList<bool> repaired;     // the verdicts, in order
    QStringList signalNames;  // the signal that carried each verdict
    QStringList outputs;      // as the closing line lists them
    QList<QJsonObject> verdicts;
    bool ok(int i = 0) const { return repaired.value(i); }
};

// What shows that a file was left alone: its hash, or for a file past
// 1 GiB (a sparse one, whose hole a hash would read twice) its size and time.
inline QString fingerprint(const QString& path)
{
    const QFileInfo f(path);
    if (f.size() <= (1 << 30))
        return testvideo::sha256(path);
    return QString::number(f.size()) + ' ' + QString::number(f.lastModified().toMSecsSinceEpoch());
}

// Runs the batch runner on inputs already on disk, with args in front.
inline Batch repairFiles(const QStringList& inputs, const QStringList& args = {}, int timeoutMs = 120000)
{
    QStringList hashes;
    for (const QString& in : inputs)
        hashes << fingerprint(in);
    const testvideo::BatchResult r = testvideo::runBatch(args + QStringList{"--quiet"} + inputs, timeoutMs);
    Batch b;
    for (const QJsonObject& v : r.verdicts()) {
        b.repaired << v.value("repaired").toBool();
        b.signalNames << v.value("signal").toString();
        b.verdicts << v;
    }
    for (const QJsonValue& o : r.end().value("outputs").toArray())
        b.outputs << o.toString();
    if (r.exitCode != 0)
        b.fault = QString("exit code %1: %2").arg(r.exitCode).arg(QString::fromUtf8(r.stderrText));
    for (int i = 0; i < inputs.size(); ++i)
        if (fingerprint(inputs[i]) != hashes[i])
            b.fault = inputs[i] + " changed";
    return b;
}

// Media past 4 GiB at no cost in disk: head, a hole of `hole` bytes (they
// read as zeros and take no space), then tail.
constexpr qint64 kPast4GiB = (qint64(1) << 32) + 12345;
inline bool writeSparse(const QString& path, const QByteArray& head, qint64 hole, const QByteArray& tail)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(head) == head.size() && f.seek(head.size() + hole)
        && f.write(tail) == tail.size();
}

// Whether the file system of dir keeps holes: else a sparse input would
// take its whole size on disk.
inline bool keepsHoles(const QString& dir)
{
    const QString probe = dir + "/hole-probe";
    struct stat st {};
    const bool holes = writeSparse(probe, "x", 64 << 20, "x") && ::stat(QFile::encodeName(probe).constData(), &st) == 0
                    && st.st_blocks * 512 < (1 << 20);
    QFile::remove(probe);
    return holes;
}

inline Batch repairBytes(const QString& path, const QByteArray& bytes, const QStringList& args = {})
{
    if (!testvideo::writeAll(path, bytes)) {
        Batch b;
        b.fault = "cannot write " + path;
        return b;
    }
    return repairFiles({path}, args);
}

// What verdict i says its output holds against what the muxer reads back
// from that output: empty when the frames agree and the seconds of sound lie
// within a frame of sound (0.05 s) of each other.
inline QString figuresFault(const Batch& b, int i = 0)
{
    const QJsonObject v = b.verdicts.value(i);
    const QString output = v.value("output").toString();
    const OutputFigures back = MeasureOutput(output);
    if (!back.measured)
        return "no read-back of " + output;
    const uint64_t frames = uint64_t(v.value("videoFrames").toDouble());
    const double seconds = v.value("audioSeconds").toDouble();
    if (frames == back.videoFrames && qAbs(seconds - back.audioSeconds) < 0.05)
        return {};
    return QString("%1 says %2 frames, %3 s; the read-back %4 frames, %5 s")
        .arg(output).arg(frames).arg(seconds).arg(back.videoFrames).arg(back.audioSeconds);
}

} // namespace containers
