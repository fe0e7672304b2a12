#include "support/route_job.h"

#include "core/repair_globals.h"

#include <QFileInfo>

namespace testvideo {

RouteRun::RouteRun(const QString& dir, const QString& fileName, std::unique_ptr<ByteReader> in)
    : input(std::move(in))
{
    job.inputPath = dir + QStringLiteral("/source/") + fileName;
    job.fileName = fileName;
    job.suffix = QFileInfo(fileName).suffix();
    job.workDir = dir;
    job.logPath = dir + QStringLiteral("/logFile.txt");
    job.input = input.get();
    job.log = &log;
    job.stop = &stop;
    job.outputs = &g_repairedPaths;
    log.open(job.logPath);
}

Verdict RouteRun::run() { return run(*RouteForSuffix(job.suffix)); }

Verdict RouteRun::run(Route& route)
{
    // The sample is opened for the route, as the driver does.
    const std::unique_ptr<ByteReader> sample =
        job.referencePath.isEmpty() || job.sample ? nullptr : FileReader::open(job.referencePath);
    if (sample)
        job.sample = sample.get();
    const Verdict v = route.repair(job, *this);
    if (sample)
        job.sample = nullptr;
    sendVerdict(job, v);
    log.close();
    return v;
}

void RouteRun::sendVerdict(const RepairJob& j, const Verdict& v)
{
    if (v.outcome != Verdict::Outcome::Repaired && v.outcome != Verdict::Outcome::Failed)
        return;
    verdicts << QStringLiteral("%1 %2").arg(int(v.outcome == Verdict::Outcome::Repaired)).arg(j.fileName);
    signalNames << QLatin1String(v.aviSignal ? "WriteAVIFileStatus" : "WriteStatus");
}

} // namespace testvideo
