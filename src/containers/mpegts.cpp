// MTS repair: BDAV transport streams of 192-byte units. A byte scan finds the
// units by their packet heads. A file whose own start is intact is copied
// unit by unit; any other file is rebuilt behind fresh system units (PAT,
// PMT, SIT, PCR), which are repeated at a steady rate between the media
// units. The input is only read.
#include "containers/mpegts.h"

#include "containers/output_checks.h"
#include "core/repair_globals.h"
#include "core/route.h"

#include <QDebug>
#include <QFile>
#include <algorithm>
#include <cstring>

namespace {

using mts::HeadClass;

constexpr uint64_t kLargeInput = 0x6400000;        // 100 MiB: the progress range grows above it
constexpr uint64_t kRebuildStart = 750;            // first scan position when rebuilding
constexpr uint64_t kCopyStart = 4;                 // sync byte of the first unit
constexpr uint64_t kFourthSync = 3 * mts::kUnitSize + mts::kExtraHeaderSize;   // 580
constexpr uint64_t kBehindMedia = 188;             // from a sync byte to the next unit's extra header
constexpr uint64_t kBehindSystem = 191;            // from a sync byte to one byte short of the next
constexpr uint32_t kUnitsPerSet = 7;               // counted media units between two system sets
constexpr uint32_t kSetsPerSit = 10;               // every tenth set carries the SIT
constexpr uint64_t kProgressStep = 1u << 20;       // progress at most once per MiB of input
constexpr size_t kSkipBlock = 64 * 1024;           // look-ahead when searching a sync byte

struct ScanResult {
    uint64_t mediaUnits = 0;       // video and audio units written
    uint64_t writtenBytes = 0;     // bytes of copied units
    bool stopped = false;
};

// Position of the next byte 0x47 behind pos, or size when there is none. Only
// a sync byte can start a recognised head, so this is the same as stepping one
// byte at a time over unrecognised bytes, without testing each of them.
uint64_t NextSyncCandidate(ByteReader& in, uint64_t pos, uint64_t size, const RepairJob& job)
{
    for (uint64_t at = pos + 1; at < size;) {
        if (job.stopped())
            return at;
        const size_t n = size_t(std::min<uint64_t>(kSkipBlock, size - at));
        const uint8_t* p = in.view(at, n);
        const void* hit = std::memchr(p, 0x47, n);
        if (hit)
            return at + uint64_t(static_cast<const uint8_t*>(hit) - p);
        at += n;
    }
    return size;
}

void WriteUnit(FileWriter& out, const mts::Unit& unit)
{
    out.write(unit.data(), unit.size());
}

class MtsRoute : public Route {
public:
    Verdict repair(RepairJob& job, Reporter& report) override;

private:
    ScanResult copyIntactUnits(const RepairJob& job, Reporter& report, FileWriter& out);
    ScanResult rebuildUnits(const RepairJob& job, Reporter& report, FileWriter& out);

    uint32_t m_unitCount = 0;   // payload-start media units since the last system set
    uint32_t m_setCount = 0;    // system sets written since the last SIT
};

// Copies each unit whose head is recognised, system units included.
ScanResult MtsRoute::copyIntactUnits(const RepairJob& job, Reporter& report, FileWriter& out)
{
    ByteReader& in = *job.input;
    ScanResult r;
    const uint64_t size = in.size();
    uint64_t nextProgress = 0;
    for (uint64_t pos = kCopyStart; pos < size;) {
        if (job.stopped()) {
            r.stopped = true;
            break;
        }
        if (pos >= nextProgress) {
            report.setValue(ulong(r.writtenBytes));
            nextProgress = pos + kProgressStep;
        }
        const HeadClass c = mts::ClassifyHead(in.be32(pos));
        if (c == HeadClass::None) {
            pos = NextSyncCandidate(in, pos, size, job);
            continue;
        }
        // The unit is taken from where its head was found, not from the running
        // output offset: both agree on a sound file, and only this keeps later units whole behind a hole.
        out.copyFrom(in, pos - mts::kExtraHeaderSize, mts::kUnitSize);
        r.writtenBytes += mts::kUnitSize;
        if (c != HeadClass::System)
            ++r.mediaUnits;
        pos += kBehindMedia;
    }
    return r;
}

// Copies the media units behind the templates; system units of the file are
// dropped and fresh ones follow every seventh payload start.
ScanResult MtsRoute::rebuildUnits(const RepairJob& job, Reporter& report, FileWriter& out)
{
    ByteReader& in = *job.input;
    ScanResult r;
    const uint64_t size = in.size();
    WriteUnit(out, mts::PatUnit);
    WriteUnit(out, mts::PmtUnit);
    WriteUnit(out, mts::SitUnit);
    WriteUnit(out, mts::PcrUnit);
    uint64_t nextProgress = 0;
    for (uint64_t pos = kRebuildStart; pos < size;) {
        if (job.stopped()) {
            r.stopped = true;
            break;
        }
        if (pos >= nextProgress) {
            report.setValue(ulong(r.writtenBytes));
            nextProgress = pos + kProgressStep;
        }
        const HeadClass c = mts::ClassifyHead(in.be32(pos));
        switch (c) {
        case HeadClass::None:
            pos = NextSyncCandidate(in, pos, size, job);
            break;
        case HeadClass::System:
            pos += kBehindSystem;
            break;
        case HeadClass::Media:
        case HeadClass::MediaCounted:
            out.copyFrom(in, pos - mts::kExtraHeaderSize, mts::kUnitSize);
            r.writtenBytes += mts::kUnitSize;
            ++r.mediaUnits;
            pos += kBehindMedia;
            if (c == HeadClass::MediaCounted && ++m_unitCount == kUnitsPerSet) {
                m_unitCount = 0;
                ++m_setCount;
                WriteUnit(out, mts::PatUnit);
                WriteUnit(out, mts::PmtUnit);
                if (m_setCount == kSetsPerSit) {
                    m_setCount = 0;
                    WriteUnit(out, mts::SitUnit);
                }
                WriteUnit(out, mts::PcrUnit);
            }
            break;
        }
    }
    return r;
}

Verdict MtsRoute::repair(RepairJob& job, Reporter& report)
{
    report.showFileProgress(job.fileName);
    // A file that can't be opened gets no verdict from this route.
    if (!job.input)
        return Verdict::stopped();
    ByteReader& in = *job.input;
    const uint64_t size = in.size();
    report.setRange(size < kLargeInput ? 50000 : 5000000);

    const QString outPath = job.outputPath();
    FileWriter out;
    if (outputcheck::SameFile(outPath, job.inputPath) || !out.open(outPath)) {
        qWarning() << "Can't write the repaired stream" << outPath;
        job.log->close();
        return Verdict::failed();
    }
    *job.outputs << outPath;

    // The start is intact when the first unit is a PAT and the fourth a PCR unit.
    const bool intact = (in.be32(kCopyStart) >> 8) == 0x474000u && in.be32(kFourthSync) == 0x47100120u;
    const ScanResult r = intact ? copyIntactUnits(job, report, out) : rebuildUnits(job, report, out);
    report.setValue(ulong(r.writtenBytes));

    const bool written = out.close();
    job.log->close();
    // Without a single video or audio unit the output would hold system units
    // alone: that is no repair, so it is removed and the verdict is negative.
    if (!written || r.mediaUnits == 0) {
        qWarning() << (written ? "No transport stream packets found in" : "Writing failed for") << job.fileName;
        QFile::remove(outPath);
        job.outputs->removeAll(outPath);
        g_moovRead = false;
        return Verdict::failed();
    }
    g_moovRead = true;
    // A stopped stream is still told "not repaired" (the driver removes its output).
    if (r.stopped || job.stopped())
        return Verdict::failed();
    return Verdict::repaired(outPath);
}

} // namespace

std::unique_ptr<Route> MakeMtsRoute() { return std::make_unique<MtsRoute>(); }
