// ASF / WMV repair: the header objects are taken from the start of the file
// (or of a healthy sample), a new Header Object is written from them, and every
// data packet that a byte scan finds in the damaged file goes into a new Data
// Object behind it. Integers are little-endian; GUIDs are in ASF byte order.
#include "containers/output_checks.h"
#include "core/thread_video_repair.h"

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

bool IsGuid(const uint8_t* p, const Guid& g) { return std::memcmp(p, g.data(), g.size()) == 0; }

// Copies the object at pos when its size covers its fixed fields and fits
// both the file and the copy limit. False leaves copy unchanged.
bool TakeObject(ByteReader& in, uint64_t pos, uint64_t minSize, ThreadVideoRepair::AsfObjectCopy& copy)
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

void WriteGuid(FileWriter& w, const Guid& g) { w.write(g.data(), g.size()); }

void WriteCopy(FileWriter& w, const ThreadVideoRepair::AsfObjectCopy& copy)
{
    if (copy.found)
        w.write(copy.bytes);
}

// A packet counts when the bytes at its successor begin like a packet too:
// with 0x82 (error correction present), or with 0x01 or 0x02.
bool StartsPacket(const uint8_t* p) { return p[0] == 0x82 || p[0] == 0x01 || p[0] == 0x02; }
bool IsPacketHead(const uint8_t* p) { return p[0] == 0x82 && p[1] == 0 && p[2] == 0; }

} // namespace

void ThreadVideoRepair::ReadAsfHeaderObjects()
{
    m_asf = AsfHeaderCopy();
    m_asfHeadersFound = false;
    if (!m_file)
        return;
    ByteReader& in = *m_file;
    g_inputSize = in.size();

    for (uint64_t pos = 0; pos < g_inputSize && pos < kHeaderWalkLimit && !g_stopRequested; ++pos) {
        const uint8_t* id = in.view(pos, 16);
        // Each object taken moves the position to its last byte but one; the
        // loop's step then reaches its last byte, and the next object after it.
        uint64_t taken = 0;
        if (IsGuid(id, kDataObject)) {
            m_asf.dataFound = true;
            m_asf.dataTail.resize(kDataTailSize);
            in.read(pos + kDataTailOffset, m_asf.dataTail.data(), kDataTailSize);
        } else if (IsGuid(id, kFilePropertiesObject)) {
            const uint32_t packetSize = in.le32(pos + kPacketSizeOffset);
            if (packetSize >= kMinPacketSize && packetSize <= kMaxPacketSize
                && TakeObject(in, pos, kMinFileProperties, m_asf.fileProperties)) {
                m_asf.packetSize = packetSize;
                taken = m_asf.fileProperties.size;
            }
        } else if (IsGuid(id, kExtendedContentDescriptionObject)) {
            if (TakeObject(in, pos, kMinExtendedContentDescription, m_asf.extendedContent))
                taken = m_asf.extendedContent.size;
        } else if (IsGuid(id, kStreamPropertiesObject)) {
            // Video and audio may stand in either order; the first of each counts.
            const uint8_t* type = in.view(pos + kStreamTypeOffset, 16);
            AsfObjectCopy* stream = nullptr;
            if (IsGuid(type, kVideoMedia) && !m_asf.videoStream.found)
                stream = &m_asf.videoStream;
            else if (IsGuid(type, kAudioMedia) && !m_asf.audioStream.found)
                stream = &m_asf.audioStream;
            if (stream && TakeObject(in, pos, kMinStreamProperties, *stream))
                taken = stream->size;
        } else if (IsGuid(id, kCodecListObject)) {
            if (TakeObject(in, pos, kMinCodecList, m_asf.codecList))
                taken = m_asf.codecList.size;
        } else if (IsGuid(id, kContentDescriptionObject) && !m_asf.contentDescription.found) {
            if (TakeObject(in, pos, kMinContentDescription, m_asf.contentDescription))
                taken = m_asf.contentDescription.size;
        }
        if (taken)
            pos += taken - 2;

        // Optional objects are not waited for.
        if (m_asf.fileProperties.found && m_asf.dataFound && m_asf.videoStream.found && m_asf.codecList.found) {
            g_moovRead = true;
            m_asfHeadersFound = true;
            return;
        }
    }
}

void ThreadVideoRepair::RewriteAsfFile(const QString& workDir)
{
    AsfHeaderCopy header = std::move(m_asf);
    m_asf = AsfHeaderCopy();
    const QString outPath = workDir + QLatin1Char('/') + m_fileName;
    // The walk may have run over a sample: the packets come from the damaged file.
    g_inputSize = m_file ? m_file->size() : 0;
    const bool complete = header.fileProperties.found && header.videoStream.found && header.codecList.found
                       && header.dataFound && header.packetSize >= kMinPacketSize;
    if (!m_file || !complete || outputcheck::SameFile(outPath, g_sourceFullPath)
        || outputcheck::SameFile(outPath, g_referencePath)) {
        g_passFailed = true;
        m_logHandle.close();
        return;
    }
    if (!m_outFile.open(outPath)) {
        qWarning() << "Can't create" << outPath;
        g_passFailed = true;
        m_logHandle.close();
        return;
    }
    g_repairedPaths << outPath;
    FileWriter& w = m_outFile;

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
    header = AsfHeaderCopy();                  // the copies are no longer needed

    // The packet walk: a packet begins 82 00 00 and is followed by another
    // packet head one packet size later; everything else is passed over.
    ByteReader& in = *m_file;
    const uint64_t size = g_inputSize;
    Q_EMIT SetProgressBarRange(size < 0x6400000 ? 5000000 : 0x6400000);
    constexpr uint64_t kProgressStep = 1u << 20;
    constexpr size_t kScanBlock = 1u << 20;
    uint64_t nextProgress = 0;
    uint32_t latestSendTime = 0;
    uint64_t packetBytes = 0;
    uint64_t pos = 0;
    while (pos < size && !g_stopRequested) {
        if (!IsPacketHead(in.view(pos, 4))) {
            // Jump to the next 0x82 in this block instead of testing each byte.
            const size_t n = size_t(std::min<uint64_t>(kScanBlock, size - pos));
            const uint8_t* b = in.view(pos, n);
            const void* hit = n > 1 ? std::memchr(b + 1, 0x82, n - 1) : nullptr;
            pos += hit ? uint64_t(static_cast<const uint8_t*>(hit) - b) : n;
            continue;
        }
        if (pos >= nextProgress) {
            Q_EMIT setProgressvalue(ulong(pos));
            nextProgress = pos + kProgressStep;
        }
        // Bytes past the end read as zero and fail this test: a packet cut by
        // the end of the file, or the last one before it, is never taken.
        if (!StartsPacket(in.view(pos + ps, 4))) {
            pos += 2;
            continue;
        }
        w.write(in.view(pos, ps), ps);
        latestSendTime = in.le32(pos + kSendTimeOffset);
        packetBytes += ps;
        pos += ps;
    }

    w.patchLe32(16, uint32_t(headerSize));                     // Header Object size
    w.patchLe64(kPlayDurationAt, uint64_t(latestSendTime) * 10000u);   // milliseconds to 100 ns
    w.patchLe64(dataSizeAt, packetBytes);                      // packets only
    m_logHandle.close();
    if (!m_outFile.close()) {
        qWarning() << "Writing" << outPath << "failed; it is removed.";
        QFile::remove(outPath);
        g_repairedPaths.removeAll(outPath);
        g_passFailed = true;
    }
}
