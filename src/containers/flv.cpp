// FLV repair: a byte scan takes every audio and video tag whose DataSize
// agrees with the PreviousTagSize behind it, from the first usable video tag
// on; a new FLV header and onMetaData tag are written, and the tags are copied
// behind them as found. Numbers in FLV are big-endian.
#include "containers/audio_frames.h"
#include "containers/output_checks.h"
#include "core/log_cipher.h"
#include "core/repair_globals.h"
#include "core/route.h"

#include <QDebug>
#include <QFile>
#include <QtEndian>
#include <algorithm>
#include <cstring>
#include <memory>
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
// From this many bytes of tags on, the script tag is padded so that the
// tags keep their offset within a page (see below).
constexpr uint64_t kAlignTagsFrom = 1u << 20;

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
        : m_in(in), m_size(in.size()), m_capacity(size_t(std::min<uint64_t>(kBlock + kReach, in.size() + kMargin))),
          m_buf(new uint8_t[m_capacity])
    {
    }
    uint64_t size() const { return m_size; }

    // The bytes from pos to pos + kReach (or to the end of the file and
    // kMargin zeros behind it), read past the end as zero.
    const uint8_t* at(uint64_t pos)
    {
        const uint64_t need = std::min(pos + kReach, m_size + kMargin);
        if (!m_filled || pos < m_start || need > m_start + m_capacity)
            fill(pos);
        return m_buf.get() + (pos - m_start);
    }
    // True when at(pos) is served without a read.
    bool holds(uint64_t pos) const
    {
        return m_filled && pos >= m_start && std::min(pos + kReach, m_size + kMargin) <= m_start + m_capacity;
    }
    // How many bytes from pos on at() can serve without moving.
    uint64_t runFrom(uint64_t pos) const { return m_start + m_capacity - pos; }

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
        if (m_filled && pos > m_start && pos < m_start + m_capacity) {
            keep = size_t(m_start + m_capacity - pos);
            std::memmove(m_buf.get(), m_buf.get() + (pos - m_start), keep);
        }
        m_in.read(pos + keep, m_buf.get() + keep, m_capacity - keep);
        m_start = pos;
        m_filled = true;
    }

    ByteReader& m_in;
    const uint64_t m_size;
    const size_t m_capacity;
    // Not cleared when made: every fill writes the whole of it.
    std::unique_ptr<uint8_t[]> m_buf;
    uint64_t m_start = 0;
    bool m_filled = false;
};

// What the copied tags hold of the video and the sound, counted as a player
// reads them back: the video tags that carry a frame, and the seconds of the
// sound frames, each timed in whole milliseconds (the FLV time base, rounded
// down) so that the sum is the one a player adds up. Sound is told for MP3
// (every frame in the tags) and AAC (one frame of 1024 samples, or 960, per
// raw tag); for other sound formats the figures are unknown.
class TagTally {
public:
    bool known() const { return m_known && (m_aacFrames == 0 || m_aacFrameMs); }
    uint64_t videoFrames() const { return m_videoFrames; }
    double soundSeconds() const { return double(m_soundMs + m_aacFrames * m_aacFrameMs) / 1000; }

    // A tag taken: its type and its data; of a video tag's data no more
    // than the first 8 bytes are read.
    void addTag(uint8_t type, const uint8_t* d, uint32_t size)
    {
        if (type == kVideoTag)
            addVideo(d, size);
        else if (size > 0)
            addSound(d, size);
    }

private:
    static constexpr int kAvc = 7, kHevc = 12;
    static constexpr int kMp3 = 2, kAac = 10, kMp3At8kHz = 14;

    void addVideo(const uint8_t* d, uint32_t size)
    {
        if (size == 0)
            return;
        if (d[0] & 0x80) {
            m_known = false;   // an extended header: not read here
            return;
        }
        const int frameType = d[0] >> 4, codec = d[0] & 0x0F;
        if (frameType == 5)
            return;            // a command frame, no picture
        if (codec == kAvc || codec == kHevc) {
            // Only NAL units count, not a sequence header or its end.
            if (size > 5 && d[1] == 1)
                ++m_videoFrames;
        } else if (size > 1) {
            ++m_videoFrames;
        }
    }

    void addSound(const uint8_t* d, uint32_t size)
    {
        const int format = d[0] >> 4;
        if (m_soundFormat < 0)
            m_soundFormat = format;
        if (format != m_soundFormat) {
            m_known = false;   // a second format in one stream
            return;
        }
        if (format == kAac) {
            if (size > 2 && d[1] == 1)
                ++m_aacFrames;
            else if (size > 3 && d[1] == 0 && !m_aacFrameMs)
                readAacConfig(d + 2, size - 2);
        } else if (format == kMp3 || format == kMp3At8kHz) {
            addMp3(d + 1, size - 1);
        } else {
            m_known = false;
        }
    }

    // AudioSpecificConfig: object type, sampling rate, frame length.
    void readAacConfig(const uint8_t* c, uint32_t n)
    {
        static constexpr uint32_t kRates[] = {96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                              22050, 16000, 12000, 11025, 8000,  7350};
        uint64_t bits = 0;
        for (uint32_t i = 0; i < 8; ++i)
            bits = bits << 8 | (i < n ? c[i] : 0);
        int used = 0;
        const auto take = [&](int count) {
            used += count;
            return uint32_t(bits >> (64 - used)) & ((1u << count) - 1);
        };
        uint32_t objectType = take(5);
        if (objectType == 31)
            objectType = 32 + take(6);
        const uint32_t rateIndex = take(4);
        const uint32_t rate = rateIndex == 15 ? take(24) : rateIndex < 13 ? kRates[rateIndex] : 0;
        take(4);   // channel configuration
        const bool shortFrames = take(1);
        // Only the plain object types keep one frame per tag at this rate.
        if (objectType < 1 || objectType > 4 || rate == 0 || n < uint32_t(used + 7) / 8) {
            m_known = false;
            return;
        }
        m_aacFrameMs = (shortFrames ? 960u : 1024u) * 1000 / rate;
    }

    // The MP3 frames that begin in this tag; a frame that runs on into the
    // next tag is passed over there.
    void addMp3(const uint8_t* d, uint32_t size)
    {
        uint32_t i = std::min(m_mp3Carry, size);
        m_mp3Carry -= i;
        while (i < size) {
            AudioFrame f;
            if (size - i < 4 || !MpegAudioFrameAt(d + i, f)) {
                m_known = false;
                return;
            }
            const uint32_t length = f.bytes;
            // The read-back times each frame in whole milliseconds.
            m_soundMs += f.samples * 1000 / f.rate;
            if (length > size - i) {
                m_mp3Carry = length - (size - i);
                return;
            }
            i += length;
        }
    }

    bool m_known = true;
    uint64_t m_videoFrames = 0;
    int m_soundFormat = -1;
    uint64_t m_soundMs = 0;        // MP3
    uint32_t m_mp3Carry = 0;
    uint64_t m_aacFrames = 0;
    uint64_t m_aacFrameMs = 0;     // 0 until a configuration is read
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

    TagWindow tags(in);
    // Metadata search: every agreeing script tag in the first 15000 bytes;
    // a later one overwrites what an earlier one gave. They are found before
    // the tag scan, while the window still holds the start of the file.
    struct ScriptTag { uint64_t from; uint32_t steps; };
    std::vector<ScriptTag> scripts;
    uint64_t regionEnd = 0;
    for (uint64_t q = 0; q < kMetadataWindow && q < size && !job.stopped(); ++q) {
        if (tags.at(q)[0] != kScriptTag)
            continue;
        if (const uint32_t tagSize = tags.agreeingTagSize(q)) {
            scripts.push_back({q + kMetadataKeysFrom, tagSize});
            regionEnd = std::max(regionEnd, std::min<uint64_t>(size, q + kMetadataKeysFrom + tagSize + 16));
        }
    }

    // Tag scan: one line "position PreviousTagSize" per tag taken. Lines this
    // short never gain by compression; not trying spares a deflate per tag.
    LogCipher cipher;
    cipher.setCompressionMode(LogCipher::CompressionNever);
    bool videoSeen = false;
    bool taking = false;
    bool haveFirstTime = false;
    uint32_t firstTime = 0;
    uint64_t firstTagAt = 0;
    uint32_t latestTime = 0;
    uint64_t takenBytes = 0;
    uint64_t nextProgress = 0;
    constexpr uint64_t kScanBlock = 1u << 20;
    constexpr uint64_t kProgressStep = 1u << 20;
    TagTally tally;
    uint64_t pos = 0;
    // Bytes a look behind a tag takes in at most: a sound tag's data whole
    // (for the frames it holds), a video tag's first bytes.
    constexpr uint32_t kMaxLookedSound = 64u << 10;
    constexpr uint32_t kLookedVideo = 8;
    uint8_t header[kTagHeaderSize];
    // The tag at pos, whose header is h, is taken: logged, timed and passed.
    const auto takeTag = [&](const uint8_t* h, uint32_t tagSize) {
        job.writeLogLine(cipher, QStringLiteral("%1 %2").arg(pos).arg(tagSize));
        latestTime = uint32_t(h[4]) << 16 | uint32_t(h[5]) << 8 | h[6];   // without TimestampExtended
        if (!haveFirstTime) {
            firstTime = latestTime;
            firstTagAt = pos;
            haveFirstTime = true;
        }
        if (takenBytes >= nextProgress) {
            report.setValue(ulong(takenBytes));
            nextProgress = takenBytes + kProgressStep;
        }
        takenBytes += tagSize;
        pos += uint64_t(tagSize) + 4;
    };
    while (pos < size && !job.stopped()) {
        if (taking && !tags.holds(pos)) {
            // Behind a tag taken the next one mostly stands right there: a look
            // at its header, its PreviousTagSize and the data the tally reads
            // costs only their pages, where the window would read the payloads
            // in between. Anything else is left to the window, which decides
            // the same for a tag that agrees.
            std::memcpy(header, in.peek(pos, kTagHeaderSize), kTagHeaderSize);
            const uint8_t type = header[0];
            const uint32_t dataSize = uint32_t(header[1]) << 16 | uint32_t(header[2]) << 8 | header[3];
            const uint64_t sizeAt = pos + kTagHeaderSize + dataSize;
            if ((type == kAudioTag || type == kVideoTag) && sizeAt + 4 <= size
                && (type == kVideoTag || dataSize <= kMaxLookedSound)
                && ByteReader::loadBe32(in.peek(sizeAt, 4)) == dataSize + kTagHeaderSize) {
                const uint32_t looked = type == kVideoTag ? std::min(dataSize, kLookedVideo) : dataSize;
                tally.addTag(type, looked ? in.peek(pos + kTagHeaderSize, looked) : nullptr, dataSize);
                takeTag(header, dataSize + kTagHeaderSize);
                continue;
            }
        }
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
        tally.addTag(type, p + kTagHeaderSize, tagSize - kTagHeaderSize);
        takeTag(p, tagSize);
    }
    if (!videoSeen || size <= kMetadataWindow) {
        // Nothing to build a file on: no output, and a negative verdict so
        // that the row doesn't stay "Processing".
        job.log->close();
        return Verdict::failedUnlessStopped(job);
    }

    // Metadata search (continued): each key is searched in at most
    // PreviousTagSize positions from q + 45, and its value is the 8 bytes
    // behind the key and the type byte.
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
    // Zeros behind the metadata, inside the script tag, put the first tag at
    // the offset within a page that it has in the input: a run of tags is
    // then copied by the kernel instead of through memory. Up to 4 KiB of
    // padding pays only on a megabyte of tags or more.
    const uint32_t scriptContent = scriptFound ? kScriptDataLong : kScriptDataShort;
    const uint64_t tagsAt = sizeof kFileHeader + 4 + kTagHeaderSize + scriptContent + 4;
    const uint32_t pad = takenBytes >= kAlignTagsFrom ? uint32_t((firstTagAt - tagsAt) % ByteReader::kAlign) : 0;
    const uint32_t scriptData = scriptContent + pad;
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
    w.zeros(pad);
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

    const uint64_t outBytes = w.pos();
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
    if (!tally.known())
        return Verdict::repaired(outPath);
    return Verdict::repaired(outPath).withFigures(tally.videoFrames(), tally.soundSeconds(), size, outBytes);
}

} // namespace

std::unique_ptr<Route> MakeFlvRoute() { return std::make_unique<FlvRoute>(); }

