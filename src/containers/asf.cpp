// ASF / WMV repair: the header objects are taken from the start of the file
// (or of a healthy sample), a new Header Object is written from them, and every
// data packet that a byte scan finds in the damaged file goes into a new Data
// Object behind it. Integers are little-endian; GUIDs are in ASF byte order.
#include "containers/output_checks.h"
#include "core/repair_globals.h"
#include "core/route.h"

#include <QDebug>
#include <QFile>
#include <algorithm>
#include <array>
#include <cstring>

namespace {

using Guid = std::array<uint8_t, 16>;

constexpr uint8_t HexDigit(char c)
{
    return uint8_t(c >= '0' && c <= '9' ? c - '0' : c >= 'A' && c <= 'F' ? c - 'A' + 10 : c - 'a' + 10);
}
constexpr uint8_t HexByte(const char* s, int i) { return uint8_t(HexDigit(s[i]) << 4 | HexDigit(s[i + 1])); }

// "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX" as it stands in a file: the first
// three groups little-endian, the last two in the order written.
constexpr Guid MakeGuid(const char (&s)[37])
{
    return Guid{HexByte(s, 6),  HexByte(s, 4),  HexByte(s, 2),  HexByte(s, 0),  HexByte(s, 11), HexByte(s, 9),
                HexByte(s, 16), HexByte(s, 14), HexByte(s, 19), HexByte(s, 21), HexByte(s, 24), HexByte(s, 26),
                HexByte(s, 28), HexByte(s, 30), HexByte(s, 32), HexByte(s, 34)};
}

constexpr Guid kHeaderObject = MakeGuid("75B22630-668E-11CF-A6D9-00AA0062CE6C");
constexpr Guid kDataObject = MakeGuid("75B22636-668E-11CF-A6D9-00AA0062CE6C");
constexpr Guid kFilePropertiesObject = MakeGuid("8CABDCA1-A947-11CF-8EE4-00C00C205365");
constexpr Guid kStreamPropertiesObject = MakeGuid("B7DC0791-A9B7-11CF-8EE6-00C00C205365");
constexpr Guid kVideoMedia = MakeGuid("BC19EFC0-5B4D-11CF-A8FD-00805F5C442B");
constexpr Guid kAudioMedia = MakeGuid("F8699E40-5B4D-11CF-A8FD-00805F5C442B");
constexpr Guid kCodecListObject = MakeGuid("86D15240-311D-11D0-A3A4-00A0C90348F6");
constexpr Guid kExtendedContentDescriptionObject = MakeGuid("D2D0A440-E307-11D2-97F0-00A0C95EA850");
constexpr Guid kContentDescriptionObject = MakeGuid("75B22633-668E-11CF-A6D9-00AA0062CE6C");
constexpr Guid kHeaderExtensionObject = MakeGuid("5FBF03B5-A92E-11CF-8EE3-00C00C205365");
constexpr Guid kHeaderExtensionReserved1 = MakeGuid("ABD3D211-A9BA-11CF-8EE6-00C00C205365");

static_assert(kHeaderObject[0] == 0x30 && kHeaderObject[3] == 0x75 && kHeaderObject[4] == 0x8E
                  && kHeaderObject[8] == 0xA6 && kHeaderObject[15] == 0x6C,
              "GUIDs are stored in ASF byte order");

// The header walk stops at the first object that begins at or beyond 1 MiB.
constexpr uint64_t kHeaderWalkLimit = 0x100000;
// Offsets inside the objects and the new file.
constexpr uint64_t kObjectSizeOffset = 16;
constexpr uint64_t kStreamTypeOffset = 24;
constexpr uint64_t kDataTailOffset = 24;
constexpr int kDataTailSize = 26;            // File ID, Total Data Packets, Reserved
constexpr uint64_t kPacketSizeOffset = 96;   // File Properties: Maximum Data Packet Size
constexpr uint64_t kPlayDurationAt = 94;     // output: File Properties at 30, Play Duration at +64
constexpr uint64_t kSendTimeOffset = 7;      // inside a packet
// Smallest objects that hold their own fixed fields; a shorter size is damage.
constexpr uint64_t kMinFileProperties = 104;
constexpr uint64_t kMinStreamProperties = 78;
constexpr uint64_t kMinCodecList = 44;
constexpr uint64_t kMinExtendedContentDescription = 26;
constexpr uint64_t kMinContentDescription = 34;
// A header object larger than this is taken for a damaged size and passed
// over byte by byte rather than copied to the heap.
constexpr uint64_t kMaxObjectCopy = 64u << 20;
// Packet sizes outside this range can't belong to a real file: 0 would stall
// the packet walk and billions would ask for a buffer of that size, so such a
// File Properties Object isn't taken (the walk looks for another one).
constexpr uint32_t kMinPacketSize = 16;
constexpr uint32_t kMaxPacketSize = 1u << 20;

// Copies of the header objects found by the walk, for the new Header Object.
struct ObjectCopy {
    bool found = false;
    uint32_t size = 0;         // low 32 bits of Object Size
    QByteArray bytes;          // the whole object
};
struct HeaderCopy {
    ObjectCopy fileProperties, videoStream, audioStream, codecList, extendedContent, contentDescription;
    bool dataFound = false;
    QByteArray dataTail;       // Data Object: File ID, Total Data Packets, Reserved (26 bytes)
    uint32_t packetSize = 0;   // File Properties: Maximum Data Packet Size
};

bool IsGuid(const uint8_t* p, const Guid& g) { return std::memcmp(p, g.data(), g.size()) == 0; }

// Copies the object at pos when its size covers its fixed fields and fits
// both the file and the copy limit. False leaves copy unchanged.
bool TakeObject(ByteReader& in, uint64_t pos, uint64_t minSize, ObjectCopy& copy)
{
    const uint64_t size = in.le64(pos + kObjectSizeOffset);
    if (size < minSize || size > kMaxObjectCopy || size > in.size() - pos)
        return false;
    copy.bytes.resize(int(size));
    in.read(pos, copy.bytes.data(), size_t(size));
    copy.size = uint32_t(size);
    copy.found = true;
    return true;
}

// The sound codecs whose figures the route can tell: WMA versions 1 and 2,
// cut into blocks of nBlockAlign bytes that each last the same time.
constexpr uint16_t kWma1 = 0x160;
constexpr uint16_t kWma2 = 0x161;
// Stream Properties: Flags (stream number in the low 7 bits) and the
// type-specific data (a WAVEFORMATEX for sound).
constexpr uint64_t kStreamFlagsOffset = 72;
constexpr uint64_t kTypeSpecificOffset = 78;
constexpr uint64_t kMinSoundStream = kTypeSpecificOffset + 14;

// What the written packets hold of the video stream and the sound stream of
// the new header, counted as a player assembles them: a media object counts
// once its fragments have come in order from offset 0 to its size; one that a
// lost packet left incomplete doesn't. Sound objects are cut into blocks of
// nBlockAlign bytes, each timed in whole milliseconds (the time base of ASF
// presentation times, rounded down), so that the sum is the one a player
// adds up.
class PayloadTally {
public:
    PayloadTally(const ObjectCopy& video, const ObjectCopy& sound)
    {
        m_videoStream = StreamNumber(video);
        if (!sound.found)
            return;
        m_soundStream = StreamNumber(sound);
        if (sound.bytes.size() < int(kMinSoundStream)) {
            m_known = false;
            return;
        }
        const auto* t = reinterpret_cast<const uint8_t*>(sound.bytes.constData()) + kTypeSpecificOffset;
        const uint16_t format = uint16_t(t[0] | t[1] << 8);
        const uint32_t bytesPerSecond = ByteReader::loadLe32(t + 8);
        m_blockAlign = uint16_t(t[12] | t[13] << 8);
        m_known = (format == kWma1 || format == kWma2) && bytesPerSecond && m_blockAlign;
        if (m_known)
            m_blockMs = uint64_t(m_blockAlign) * 1000 / bytesPerSecond;
    }

    // False when a packet or the sound format couldn't be read: the figures
    // are then unknown.
    bool known() const { return m_known; }
    uint64_t videoFrames() const { return m_videoFrames; }
    double soundSeconds() const { return double(m_soundMs) / 1000; }

    // One data packet of size bytes as written.
    void addPacket(const uint8_t* p, uint32_t size)
    {
        if (m_known && !readPacket(p, size))
            m_known = false;
    }

private:
    struct Assembly {
        bool open = false;
        uint32_t object = 0, size = 0, have = 0;
    };

    static int StreamNumber(const ObjectCopy& stream)
    {
        if (!stream.found || stream.bytes.size() < int(kStreamFlagsOffset + 2))
            return -1;
        return uint8_t(stream.bytes.at(int(kStreamFlagsOffset))) & 0x7F;
    }
    // A field of 0, 1, 2 or 4 bytes, as a two-bit length type gives it.
    static bool Field(const uint8_t* p, uint32_t end, uint32_t& i, int type, uint32_t& v)
    {
        static constexpr uint32_t kBytes[] = {0, 1, 2, 4};
        const uint32_t n = kBytes[type & 3];
        if (end - i < n)
            return false;
        v = n == 0 ? 0 : n == 1 ? p[i] : n == 2 ? uint32_t(p[i] | p[i + 1] << 8) : ByteReader::loadLe32(p + i);
        i += n;
        return true;
    }

    bool readPacket(const uint8_t* p, uint32_t size)
    {
        uint32_t i = 0;
        if (p[0] & 0x80)
            i = 1 + (p[0] & 0x0F);                  // error correction data
        if (size < i + 2)
            return false;
        const uint8_t lengthFlags = p[i], propertyFlags = p[i + 1];
        i += 2;
        uint32_t packetLength = 0, sequence = 0, padding = 0;
        if (!Field(p, size, i, lengthFlags >> 5, packetLength) || !Field(p, size, i, lengthFlags >> 1, sequence)
            || !Field(p, size, i, lengthFlags >> 3, padding) || size - i < 6)
            return false;
        i += 6;                                     // Send Time, Duration
        uint32_t end = packetLength && packetLength < size ? packetLength : size;
        if (end < i || padding > end - i)
            return false;
        end -= padding;
        uint32_t payloads = 1;
        int payloadLengthType = 0;
        const bool multiple = lengthFlags & 1;
        if (multiple) {
            if (i >= end)
                return false;
            payloads = p[i] & 0x3F;
            payloadLengthType = p[i] >> 6;
            ++i;
        }
        for (uint32_t k = 0; k < payloads; ++k) {
            if (i >= end)
                return false;
            const int stream = p[i++] & 0x7F;
            uint32_t object = 0, offset = 0, replicated = 0, length = 0;
            if (!Field(p, end, i, propertyFlags >> 4, object) || !Field(p, end, i, propertyFlags >> 2, offset)
                || !Field(p, end, i, propertyFlags, replicated) || end - i < replicated)
                return false;
            const uint8_t* rep = p + i;
            i += replicated;
            if (multiple) {
                if (!Field(p, end, i, payloadLengthType, length))
                    return false;
            } else {
                length = end - i;
            }
            if (length > end - i)
                return false;
            if (replicated == 1) {
                // Compressed: whole objects, each behind a one-byte size.
                for (uint32_t j = i; j < i + length; j += 1 + p[j]) {
                    if (p[j] > i + length - j - 1)
                        return false;
                    addObject(stream, p[j]);
                }
            } else if (replicated >= 4) {
                addFragment(stream, object, offset, ByteReader::loadLe32(rep), length);
            }
            i += length;
        }
        return true;
    }

    void addFragment(int stream, uint32_t object, uint32_t offset, uint32_t objectSize, uint32_t length)
    {
        if (stream != m_videoStream && stream != m_soundStream)
            return;
        Assembly& a = stream == m_videoStream ? m_video : m_sound;
        if (offset == 0)
            a = Assembly{true, object, objectSize, 0};
        else if (!a.open || a.object != object || a.size != objectSize || a.have != offset) {
            a.open = false;
            return;
        }
        a.have += length;
        if (a.have >= a.size) {
            a.open = false;
            if (a.have == a.size)
                addObject(stream, a.size);
        }
    }

    void addObject(int stream, uint32_t size)
    {
        if (stream == m_videoStream)
            ++m_videoFrames;
        else if (stream == m_soundStream && m_blockAlign)
            m_soundMs += uint64_t(size / m_blockAlign) * m_blockMs;
    }

    int m_videoStream = -1, m_soundStream = -1;
    uint16_t m_blockAlign = 0;
    uint64_t m_blockMs = 0;
    bool m_known = true;
    Assembly m_video, m_sound;
    uint64_t m_videoFrames = 0;
    uint64_t m_soundMs = 0;
};

void WriteGuid(FileWriter& w, const Guid& g) { w.write(g.data(), g.size()); }

void WriteCopy(FileWriter& w, const ObjectCopy& copy)
{
    if (copy.found)
        w.write(copy.bytes);
}

// A packet counts when the bytes at its successor begin like a packet too:
// with 0x82 (error correction present), or with 0x01 or 0x02.
bool StartsPacket(const uint8_t* p) { return p[0] == 0x82 || p[0] == 0x01 || p[0] == 0x02; }
bool IsPacketHead(const uint8_t* p) { return p[0] == 0x82 && p[1] == 0 && p[2] == 0; }

// The header walk fills what it finds; the packet walk writes the new file.
class AsfRoute : public Route {
public:
    Verdict repair(RepairJob& job, Reporter& report) override;

private:
    bool readHeaderObjects(ByteReader& in, const RepairJob& job);
    // The figures are filled when the packets could all be read.
    struct Written {
        bool known = false;
        uint64_t videoFrames = 0;
        double soundSeconds = 0;
        uint64_t bytes = 0;
    };
    bool rewrite(RepairJob& job, Reporter& report, const QString& outPath, Written& written);

    HeaderCopy m_header;
};

// True when the objects a new header needs were all found.
bool AsfRoute::readHeaderObjects(ByteReader& in, const RepairJob& job)
{
    HeaderCopy& h = m_header;
    const uint64_t size = in.size();
    for (uint64_t pos = 0; pos < size && pos < kHeaderWalkLimit && !job.stopped(); ++pos) {
        const uint8_t* id = in.view(pos, 16);
        // Each object taken moves the position to its last byte but one; the
        // loop's step then reaches its last byte, and the next object after it.
        uint64_t taken = 0;
        if (IsGuid(id, kDataObject)) {
            h.dataFound = true;
            h.dataTail.resize(kDataTailSize);
            in.read(pos + kDataTailOffset, h.dataTail.data(), kDataTailSize);
        } else if (IsGuid(id, kFilePropertiesObject)) {
            const uint32_t packetSize = in.le32(pos + kPacketSizeOffset);
            if (packetSize >= kMinPacketSize && packetSize <= kMaxPacketSize
                && TakeObject(in, pos, kMinFileProperties, h.fileProperties)) {
                h.packetSize = packetSize;
                taken = h.fileProperties.size;
            }
        } else if (IsGuid(id, kExtendedContentDescriptionObject)) {
            if (TakeObject(in, pos, kMinExtendedContentDescription, h.extendedContent))
                taken = h.extendedContent.size;
        } else if (IsGuid(id, kStreamPropertiesObject)) {
            // Video and audio may stand in either order; the first of each counts.
            const uint8_t* type = in.view(pos + kStreamTypeOffset, 16);
            ObjectCopy* stream = nullptr;
            if (IsGuid(type, kVideoMedia) && !h.videoStream.found)
                stream = &h.videoStream;
            else if (IsGuid(type, kAudioMedia) && !h.audioStream.found)
                stream = &h.audioStream;
            if (stream && TakeObject(in, pos, kMinStreamProperties, *stream))
                taken = stream->size;
        } else if (IsGuid(id, kCodecListObject)) {
            if (TakeObject(in, pos, kMinCodecList, h.codecList))
                taken = h.codecList.size;
        } else if (IsGuid(id, kContentDescriptionObject) && !h.contentDescription.found) {
            if (TakeObject(in, pos, kMinContentDescription, h.contentDescription))
                taken = h.contentDescription.size;
        }
        if (taken)
            pos += taken - 2;

        // Optional objects are not waited for.
        if (h.fileProperties.found && h.dataFound && h.videoStream.found && h.codecList.found) {
            g_moovRead = true;
            return true;
        }
    }
    return false;
}

// True when the whole file was written.
bool AsfRoute::rewrite(RepairJob& job, Reporter& report, const QString& outPath, Written& written)
{
    HeaderCopy header = std::move(m_header);
    m_header = HeaderCopy();
    if (header.packetSize < kMinPacketSize || outputcheck::SameFile(outPath, job.inputPath)
        || outputcheck::SameFile(outPath, job.referencePath)) {
        job.log->close();
        return false;
    }
    FileWriter w;
    if (!w.open(outPath)) {
        qWarning() << "Can't create" << outPath;
        job.log->close();
        return false;
    }
    *job.outputs << outPath;

    WriteGuid(w, kHeaderObject);
    w.le64(0);                                 // Object Size, patched at the end
    w.le32(7);                                 // Number of Header Objects, as always written
    w.u8(1);                                   // Reserved1
    w.u8(2);                                   // Reserved2
    WriteCopy(w, header.fileProperties);       // Play Duration patched at the end
    WriteGuid(w, kHeaderExtensionObject);
    w.le64(46);                                // Object Size
    WriteGuid(w, kHeaderExtensionReserved1);
    w.le16(0);                                 // Reserved Field 2
    w.le32(0);                                 // Header Extension Data Size
    WriteCopy(w, header.extendedContent);
    WriteCopy(w, header.videoStream);
    WriteCopy(w, header.audioStream);
    WriteCopy(w, header.codecList);
    WriteCopy(w, header.contentDescription);
    const uint64_t headerSize = w.pos();
    WriteGuid(w, kDataObject);
    const uint64_t dataSizeAt = w.pos();
    w.le64(0);                                 // Object Size: the packets' bytes, patched at the end
    w.write(header.dataTail);                  // File ID, Total Data Packets, Reserved
    const uint32_t ps = header.packetSize;     // the sample's size when one gave the header
    PayloadTally tally(header.videoStream, header.audioStream);
    header = HeaderCopy();                     // the copies are no longer needed

    // The packet walk: a packet begins 82 00 00 and is followed by another
    // packet head one packet size later; everything else is passed over.
    ByteReader& in = *job.input;
    const uint64_t size = in.size();
    report.setRange(size < 0x6400000 ? 5000000 : 0x6400000);
    constexpr uint64_t kProgressStep = 1u << 20;
    constexpr size_t kScanBlock = 1u << 20;
    uint64_t nextProgress = 0;
    uint32_t latestSendTime = 0;
    uint64_t packetBytes = 0;
    uint64_t pos = 0;
    while (pos < size && !job.stopped()) {
        if (!IsPacketHead(in.view(pos, 4))) {
            // Jump to the next 0x82 in this block instead of testing each byte.
            const size_t n = size_t(std::min<uint64_t>(kScanBlock, size - pos));
            const uint8_t* b = in.view(pos, n);
            const void* hit = n > 1 ? std::memchr(b + 1, 0x82, n - 1) : nullptr;
            pos += hit ? uint64_t(static_cast<const uint8_t*>(hit) - b) : n;
            continue;
        }
        if (pos >= nextProgress) {
            report.setValue(ulong(pos));
            nextProgress = pos + kProgressStep;
        }
        // Bytes past the end read as zero and fail this test: a packet cut by
        // the end of the file, or the last one before it, is never taken.
        if (!StartsPacket(in.view(pos + ps, 4))) {
            pos += 2;
            continue;
        }
        const uint8_t* packet = in.view(pos, ps);
        tally.addPacket(packet, ps);
        w.write(packet, ps);
        latestSendTime = in.le32(pos + kSendTimeOffset);
        packetBytes += ps;
        pos += ps;
    }

    w.patchLe32(16, uint32_t(headerSize));                     // Header Object size
    w.patchLe64(kPlayDurationAt, uint64_t(latestSendTime) * 10000u);   // milliseconds to 100 ns
    w.patchLe64(dataSizeAt, packetBytes);                      // packets only
    written = {tally.known(), tally.videoFrames(), tally.soundSeconds(), w.pos()};
    job.log->close();
    if (!w.close()) {
        qWarning() << "Writing" << outPath << "failed; it is removed.";
        QFile::remove(outPath);
        job.outputs->removeAll(outPath);
        return false;
    }
    return true;
}

Verdict AsfRoute::repair(RepairJob& job, Reporter& report)
{
    report.showFileProgress(job.fileName);
    // The header objects come from the sample when one is given (a sample
    // that can't be opened gives none), else from the damaged file itself.
    ByteReader* headerSource = job.referencePath.isEmpty() ? job.input : job.sample;
    const bool found = headerSource && readHeaderObjects(*headerSource, job);
    if (!found || !job.input) {
        // A file without a header is told twice: once for the header walk,
        // once for the file.
        if (!job.stopped())
            report.sendVerdict(job, Verdict::failed());
        return Verdict::failedUnlessStopped(job);
    }
    const QString outPath = job.outputPath();
    Written written;
    const bool ok = rewrite(job, report, outPath, written);
    if (job.stopped())
        return Verdict::stopped();
    if (!ok)
        return Verdict::failed();
    if (!written.known)
        return Verdict::repaired(outPath);
    return Verdict::repaired(outPath).withFigures(written.videoFrames, written.soundSeconds, job.input->size(),
                                                  written.bytes);
}

} // namespace

std::unique_ptr<Route> MakeAsfRoute() { return std::make_unique<AsfRoute>(); }
