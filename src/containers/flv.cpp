// FLV repair: a byte scan takes every audio and video tag whose DataSize
// agrees with the PreviousTagSize behind it, from the first usable video tag
// on; a new FLV header and onMetaData tag are written, and the tags are copied
// behind them as found. Numbers in FLV are big-endian.
#include "containers/output_checks.h"
#include "core/log_cipher.h"
#include "core/repair_globals.h"
#include "core/route.h"

#include <QDebug>
#include <QFile>
#include <QtEndian>
#include <algorithm>
#include <cstring>
#include <vector>

namespace {

constexpr uint8_t kAudioTag = 8;
constexpr uint8_t kVideoTag = 9;
constexpr uint8_t kScriptTag = 18;
constexpr uint32_t kTagHeaderSize = 11;
// Only script tags that start in the first 15000 bytes are read, and only
// from inputs longer than that.
constexpr uint64_t kMetadataWindow = 15000;
// Where the key search starts behind a script tag's first byte.
constexpr uint64_t kMetadataKeysFrom = 45;

// The onMetaData entries copied from an old script tag, in output order.
constexpr const char* kMetadataKeys[] = {"width",        "height",        "videodatarate", "framerate",
                                          "videocodecid", "audiodatarate", "audiocodecid"};
constexpr int kMetadataKeyCount = int(sizeof(kMetadataKeys) / sizeof(kMetadataKeys[0]));

// DataSize of the new script tag: with the seven copied entries, and without.
constexpr uint32_t kScriptDataLong = 208;
constexpr uint32_t kScriptDataShort = 61;

// A video tag is the first usable one when its first data byte written in
// base 2 has 5 or 7 digits (0x10..0x1F, 0x40..0x7F): a key frame of any codec,
// or frame types 4 to 7.
bool IsFirstUsableVideo(uint8_t b) { return (b >= 0x10 && b <= 0x1F) || (b >= 0x40 && b <= 0x7F); }

// What the scans read of the input: a buffer that holds a tag's header and
// every byte its DataSize can point to, up to 16 MiB further on. Testing a
// candidate straight on the reader would move the reader's window to the far
// PreviousTagSize and back for each 8, 9 or 18 in garbage; here the input is
// read once, in large sequential pieces, however many candidates it holds.
class TagWindow {
public:
    explicit TagWindow(ByteReader& in)
        : m_in(in), m_size(in.size()), m_buf(size_t(std::min<uint64_t>(kBlock + kReach, in.size() + kMargin)))
    {
    }
    uint64_t size() const { return m_size; }

    // The bytes from pos to pos + kReach (or to the end of the file and
    // kMargin zeros behind it), read past the end as zero.
    const uint8_t* at(uint64_t pos)
    {
        const uint64_t need = std::min(pos + kReach, m_size + kMargin);
        if (!m_filled || pos < m_start || need > m_start + m_buf.size())
            fill(pos);
        return m_buf.data() + (pos - m_start);
    }
    // How many bytes from pos on at() can serve without moving.
    uint64_t runFrom(uint64_t pos) const { return m_start + m_buf.size() - pos; }

    // The tag at pos: its PreviousTagSize when that stands whole inside the
    // file and equals DataSize + 11, else 0.
    uint32_t agreeingTagSize(uint64_t pos)
    {
        const uint8_t* p = at(pos);
        const uint32_t dataSize = uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
        const uint64_t sizeAt = pos + kTagHeaderSize + dataSize;
        if (sizeAt + 4 > m_size || ByteReader::loadBe32(p + kTagHeaderSize + dataSize) != dataSize + kTagHeaderSize)
            return 0;
        return dataSize + kTagHeaderSize;
    }

private:
    static constexpr uint64_t kBlock = 8u << 20;
    static constexpr uint64_t kReach = kTagHeaderSize + 0xFFFFFF + 4;   // farthest byte a tag refers to
    static constexpr uint64_t kMargin = 16;                               // a header that starts at the end

    void fill(uint64_t pos)
    {
        // Moving forward keeps what is already read.
        size_t keep = 0;
        if (m_filled && pos > m_start && pos < m_start + m_buf.size()) {
            keep = size_t(m_start + m_buf.size() - pos);
            std::memmove(m_buf.data(), m_buf.data() + (pos - m_start), keep);
        }
        m_in.read(pos + keep, m_buf.data() + keep, m_buf.size() - keep);
        m_start = pos;
        m_filled = true;
    }

    ByteReader& m_in;
    const uint64_t m_size;
    std::vector<uint8_t> m_buf;
    uint64_t m_start = 0;
    bool m_filled = false;
};

void WriteKey(FileWriter& w, const char* key)
{
    const size_t n = std::strlen(key);
    w.be16(uint16_t(n));
    w.write(key, n);
    w.u8(0);   // AMF number
}

class FlvRoute : public Route {
public:
    Verdict repair(RepairJob& job, Reporter& report) override;
};

Verdict FlvRoute::repair(RepairJob& job, Reporter& report)
{
    report.showFileProgress(job.fileName);
    if (!job.input)
        return Verdict::failedUnlessStopped(job);
    ByteReader& in = *job.input;
    const uint64_t size = in.size();
    report.setRange(ulong(size));
    report.setLabel(job.fileName);

    // Tag scan: one line "position PreviousTagSize" per tag taken. Lines this
    // short never gain by compression; not trying spares a deflate per tag.
    LogCipher cipher;
    cipher.setCompressionMode(LogCipher::CompressionNever);
    bool videoSeen = false;
    bool taking = false;
    bool haveFirstTime = false;
    uint32_t firstTime = 0;
    uint32_t latestTime = 0;
    uint64_t takenBytes = 0;
    uint64_t nextProgress = 0;
    constexpr uint64_t kScanBlock = 1u << 20;
    constexpr uint64_t kProgressStep = 1u << 20;
    TagWindow tags(in);
    uint64_t pos = 0;
    while (pos < size && !job.stopped()) {
        const uint8_t* p = tags.at(pos);
        const uint8_t type = p[0];
        if (type != kAudioTag && type != kVideoTag) {
            // Jump to the next 8 or 9 of what the window holds, at most a block
            // at a time so that a stop is seen.
            const size_t n = size_t(std::min({kScanBlock, size - pos, tags.runFrom(pos)}));
            size_t i = 1;
            while (i < n && p[i] != kAudioTag && p[i] != kVideoTag)
                ++i;
            pos += i;
            continue;
        }
        const uint32_t tagSize = tags.agreeingTagSize(pos);
        if (tagSize == 0) {
            ++pos;
            continue;
        }
        if (type == kVideoTag && !taking) {
            videoSeen = true;
            taking = IsFirstUsableVideo(p[kTagHeaderSize]);
        }
        if (!taking) {
            ++pos;   // passed over; the scan goes on inside it
            continue;
        }
        job.writeLogLine(cipher, QStringLiteral("%1 %2").arg(pos).arg(tagSize));
        latestTime = uint32_t(p[4]) << 16 | uint32_t(p[5]) << 8 | p[6];   // without TimestampExtended
        if (!haveFirstTime) {
            firstTime = latestTime;
            haveFirstTime = true;
        }
        if (takenBytes >= nextProgress) {
            report.setValue(ulong(takenBytes));
            nextProgress = takenBytes + kProgressStep;
        }
        takenBytes += tagSize;
        pos += uint64_t(tagSize) + 4;
    }
    if (!videoSeen || size <= kMetadataWindow) {
        // Nothing to build a file on: no output, and a negative verdict so
        // that the row doesn't stay "Processing".
        job.log->close();
        return Verdict::failedUnlessStopped(job);
    }

    // Metadata search: every agreeing script tag in the first 15000 bytes;
    // a later one overwrites what an earlier one gave. Each key is searched
    // in at most PreviousTagSize positions from q + 45, and its value is the
    // 8 bytes behind the key and the type byte.
    struct ScriptTag { uint64_t from; uint32_t steps; };
    std::vector<ScriptTag> scripts;
    uint64_t regionEnd = 0;
    for (uint64_t q = 0; q < kMetadataWindow && !job.stopped(); ++q) {
        if (tags.at(q)[0] != kScriptTag)
            continue;
        if (const uint32_t tagSize = tags.agreeingTagSize(q)) {
            scripts.push_back({q + kMetadataKeysFrom, tagSize});
            regionEnd = std::max(regionEnd, std::min<uint64_t>(size, q + kMetadataKeysFrom + tagSize + 16));
        }
    }
    uint8_t values[kMetadataKeyCount][8] = {};
    if (!scripts.empty() && regionEnd > kMetadataKeysFrom) {
        // The keys' places are found once over the bytes that all the script
        // tags reach, so that many overlapping tags cost no more than one.
        QByteArray region(int(regionEnd - kMetadataKeysFrom), '\0');
        in.read(kMetadataKeysFrom, region.data(), size_t(region.size()));
        for (int k = 0; k < kMetadataKeyCount && !job.stopped(); ++k) {
            std::vector<uint64_t> places;
            for (int at = region.indexOf(kMetadataKeys[k]); at >= 0; at = region.indexOf(kMetadataKeys[k], at + 1))
                places.push_back(kMetadataKeysFrom + uint64_t(at));
            const uint64_t valueOffset = std::strlen(kMetadataKeys[k]) + 1;
            for (const ScriptTag& t : scripts) {
                const auto hit = std::lower_bound(places.begin(), places.end(), t.from);
                if (hit != places.end() && *hit - t.from < t.steps)
                    in.read(*hit + valueOffset, values[k], 8);
            }
        }
    }
    const bool scriptFound = !scripts.empty();

    // Duration in whole seconds from the low 24 bits of the timestamps.
    // When the latest doesn't exceed the first (one tag, or timestamps that
    // wrapped or went back), 0 is written: players read 0 as "unknown".
    double seconds = 0;
    if (latestTime > firstTime)
        seconds = double((latestTime - firstTime) / 1000);
    uint8_t duration[8];
    qToBigEndian(seconds, duration);

    job.log->close();
    const QString outPath = job.outputPath();
    FileWriter w;
    if (outputcheck::SameFile(outPath, job.inputPath) || !w.open(outPath)) {
        qWarning() << "Can't create" << outPath;
        return Verdict::failedUnlessStopped(job);
    }
    *job.outputs << outPath;
    static const uint8_t kFileHeader[] = {'F', 'L', 'V', 1, 5, 0, 0, 0, 9};
    w.write(kFileHeader, sizeof kFileHeader);   // signature, version 1, audio and video, DataOffset 9
    w.be32(0);                                  // PreviousTagSize0
    const uint32_t scriptData = scriptFound ? kScriptDataLong : kScriptDataShort;
    w.u8(kScriptTag);
    w.be24(scriptData);                         // DataSize
    w.zeros(7);                                 // Timestamp, TimestampExtended, StreamID
    const uint64_t scriptStart = w.pos();
    w.u8(2);                                    // AMF string
    w.be16(10);
    w.write("onMetaData", 10);
    w.u8(8);                                    // ECMA array
    w.be32(15);                                 // count, as always written
    WriteKey(w, "duration");
    w.write(duration, 8);
    WriteKey(w, "starttime");
    w.zeros(8);
    if (scriptFound) {
        for (int k = 0; k < kMetadataKeyCount; ++k) {
            WriteKey(w, kMetadataKeys[k]);
            w.write(values[k], 8);
        }
    }
    static const uint8_t kArrayEnd[] = {0, 0, 0, 9};
    w.write(kArrayEnd, sizeof kArrayEnd);       // a zero byte and the object end
    bool complete = w.pos() - scriptStart == scriptData;
    w.be32(scriptData + kTagHeaderSize);        // PreviousTagSize

    // The tags, in scan order, each with its PreviousTagSize. Tags that
    // follow each other in the input are copied as one range, which the
    // writer hands to the kernel whole.
    QFile log(job.logPath);
    uint64_t runStart = 0, runEnd = 0;
    if (log.open(QIODevice::ReadOnly)) {
        while (!log.atEnd() && !job.stopped()) {
            const QByteArray line = log.readLine().trimmed();
            const QStringList parts =
                cipher.decryptToString(QString::fromLatin1(line)).split(QLatin1Char(' '));
            bool posOk = false, sizeOk = false;
            const uint64_t at = parts.value(0).toULongLong(&posOk);
            const uint32_t tagSize = parts.value(1).toUInt(&sizeOk);
            if (parts.size() != 2 || !posOk || !sizeOk || at >= size || tagSize > size - at
                || size - at - tagSize < 4)
                continue;
            if (at != runEnd) {
                w.copyFrom(in, runStart, runEnd - runStart);
                runStart = at;
            }
            runEnd = at + tagSize + 4;
        }
        if (!job.stopped())
            w.copyFrom(in, runStart, runEnd - runStart);
        log.close();
    } else {
        qWarning() << "Can't read" << job.logPath;
        complete = false;
    }

    const bool ok = w.close() && complete;
    if (job.stopped())
        return Verdict::stopped();   // the driver removes the short file
    if (!ok) {
        qWarning() << "Writing" << outPath << "failed; it is removed.";
        QFile::remove(outPath);
        job.outputs->removeAll(outPath);
        return Verdict::failed();
    }
    g_moovRead = true;
    return Verdict::repaired(outPath);
}

} // namespace

std::unique_ptr<Route> MakeFlvRoute() { return std::make_unique<FlvRoute>(); }

