#pragma once
// Runs one route on bytes in memory, as the driver would: a RepairJob over a
// work folder, a reporter that keeps the verdicts. Outputs are listed in
// g_repairedPaths, as in a run.
#include "core/route.h"

#include <QList>
#include <QStringList>

namespace testvideo {

struct RouteRun : Reporter {
    RouteRun(const QString& dir, const QString& fileName, std::unique_ptr<ByteReader> input);
    // Runs the route of the file's suffix; the verdict it returns is kept
    // with those sent before it, as "1 clip.flv" or "0 clip.flv".
    Verdict run();
    Verdict run(Route& route);   // a route made by the test

    RepairJob job;
    std::unique_ptr<ByteReader> input;
    FileWriter log;
    std::atomic<bool> stop{false};   // this run's own stop request
    QStringList verdicts;
    QStringList signalNames;   // the signal each verdict goes by: WriteStatus or WriteAVIFileStatus

    void showFileProgress(const QString&) override {}
    void setLabel(const QString&) override {}
    void setRange(ulong) override {}
    void setValue(ulong) override {}
    void sendVerdict(const RepairJob& j, const Verdict& v) override;
};

// A reporter that keeps the progress ranges and counts the values.
struct ProgressRecorder : Reporter {
    QList<ulong> ranges;
    int values = 0;
    void showFileProgress(const QString&) override {}
    void setLabel(const QString&) override {}
    void setRange(ulong maximum) override { ranges << maximum; }
    void setValue(ulong) override { ++values; }
    void sendVerdict(const RepairJob&, const Verdict&) override {}
};

} // namespace testvideo
