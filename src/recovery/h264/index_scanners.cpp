// Frame index scanners: the damaged file of an H.264 recording with sowt or
// twos sound is walked once, and each stretch of pictures, sound and zero
// padding becomes a line of logFile.txt, from which the QuickTime rebuild
// copies the media into a new file.
//
// Positions. Inside this file a position on a frame is the position of its
// four-byte length field (not the bytes behind it), in the main loops and in
// the zero runs alike, so that a run can hand over to the main loop without
// an adjustment. A sound run ends where the next frame's length field starts,
// and starts where the last unit before it ended: its line covers exactly the
// bytes between two pictures.
//
// Lines. The rebuild makes one video sample of each "AVC(Vide)" line, so a
// line is one picture: a chain of units is cut into access units where a
// delimiter, a parameter set, an SEI or a slice that starts a new picture
// follows a slice (an encoder may put its SEI ahead of the first delimiter). Units whose length runs past the end of the file are
// left out, since the rebuild takes complete frames only.
#include "recovery/h264/index_scanners.h"

#include "core/byte_reader.h"
#include "core/log_cipher.h"
#include "core/quicktime_route.h"
#include "recovery/h264/nal_sets.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QFile>
#include <algorithm>
#include <cstring>

namespace {

// NAL header bytes that may follow a delimiter in a twos file, and the units
// that may continue a twos picture.
constexpr uint8_t kAfterAud[] = {0x01, 0x06, 0x21, 0x25, 0x27, 0x28, 0x41, 0x65, 0x68};
constexpr uint8_t kTwosUnit[] = {0x06, 0x21, 0x25, 0x27, 0x28, 0x41, 0x65};

bool OneOf(uint8_t b, const uint8_t* set, size_t n)
{
    return std::find(set, set + n, b) != set + n;
}

bool IsAud(const uint8_t* p)
{
    return p[0] == 0 && p[1] == 0 && p[2] == 0 && p[3] == 2 && p[4] == 0x09;
}

// Timecode and maker samples that cameras put between the media data.
bool IsGapMarker(const uint8_t* p, bool twos)
{
    static const uint8_t kkad[8] = {0x00, 0x00, 0x00, 0xB8, 'k', 'k', 'a', 'd'};
    if (p[0] != 0)
        return false;
    if (p[2] == 0x01 && p[3] == 0x00 && (p[1] == 0x1C || p[1] == 0x08 || (twos && p[1] == 0x60)))
        return true;
    return std::memcmp(p, kkad, 8) == 0;
}

bool IsClur(const uint8_t* p)
{
    static const uint8_t clur[8] = {0x00, 0x80, 0x00, 0x00, 'c', 'l', 'u', 'r'};
    return std::memcmp(p, clur, 8) == 0;
}

} // namespace

QString IndexLine::text() const
{
    const char* word = kind == Video ? "AVC(Vide)" : kind == Audio ? "AAC(soun)" : "Zero(Zero)";
    return QStringLiteral("%1 at = %2 Size = %3").arg(QLatin1String(word)).arg(pos).arg(size);
}

IndexScanner::IndexScanner(ByteReader& in, Sink sink) : m_in(in), m_sink(std::move(sink)), m_size(in.size()) {}

void IndexScanner::emitLine(IndexLine::Kind kind, uint64_t pos, uint64_t size)
{
    if (kind == IndexLine::Video) {
        const unsigned percent = m_size ? unsigned(std::min(pos, m_size) * 100 / m_size) : 0;
        if (percent != m_lastPercent && m_progress)
            m_progress(percent);
        m_lastPercent = percent;
        m_videoSeen = true;
        ++m_videoLines;
    } else if (kind == IndexLine::Audio) {
        ++m_audioLines;
    } else {
        ++m_zeroLines;
    }
    if (m_sink)
        m_sink({kind, pos, size});
}

// A sound run is indexed only behind the first picture, and only when it is
// long enough not to be a stray piece between units.
void IndexScanner::audio(uint64_t start, uint64_t end)
{
    if (m_videoSeen && end > start && end - start >= kMinAudioRun)
        emitLine(IndexLine::Audio, start, end - start);
}

bool IndexScanner::sowtUnit(uint64_t pos) const
{
    if (!IsNalStart(m_in, pos, NalStartSet::IndexScanBytes))
        return false;
    const uint32_t length = m_in.be32(pos);
    return length != 0 && pos + 4 + length <= m_size;
}

bool IndexScanner::twosUnit(uint64_t pos) const
{
    const uint8_t* p = m_in.view(pos, 6);
    uint8_t b[6];
    std::memcpy(b, p, 6);
    if (b[0] != 0)
        return false;
    const bool header = IsAud(b) || OneOf(b[4], kTwosUnit, sizeof kTwosUnit) || (b[4] == 0x01 && b[1] <= 1);
    if (!header)
        return false;
    const uint32_t length = ByteReader::loadBe32(b);
    return length != 0 && pos + 4 + length <= m_size;
}

bool IndexScanner::audAt(uint64_t pos) const
{
    uint8_t b[11];
    std::memcpy(b, m_in.view(pos, 11), 11);
    return IsAud(b) && b[6] == 0 && OneOf(b[10], kAfterAud, sizeof kAfterAud) && pos + 6 <= m_size;
}

// A frame of a sowt file: its first bytes are a sample pattern, its length
// lies in the file, and where it ends another unit begins (or the file ends).
bool IndexScanner::sowtFrameAt(uint64_t pos) const
{
    if (!m_patterns->matchAt(m_in, pos + 4))
        return false;
    const uint32_t length = m_in.be32(pos);
    if (length == 0 || pos + 4 + length > m_size)
        return false;
    const uint64_t next = pos + 4 + length;
    return next == m_size || chainUnit(next);
}

// A unit of an HEVC chain: a length inside the file ahead of a header byte of
// a picture, an SEI or a delimiter. Parameter sets end a chain, as cameras
// with lpcm sound repeat them only in the sample's description.
bool IndexScanner::hevcUnit(uint64_t pos) const
{
    if (!IsNalStart(m_in, pos, NalStartSet::HevcLpcmBytes))
        return false;
    const uint32_t length = m_in.be32(pos);
    return length != 0 && pos + 4 + length <= m_size;
}

// The first HEVC frame: a sample pattern whose unit is followed by another.
bool IndexScanner::hevcFirstFrameAt(uint64_t pos) const
{
    if (!m_patterns->matchAt(m_in, pos + 4))
        return false;
    const uint32_t length = m_in.be32(pos);
    return length != 0 && pos + 4 + length < m_size && hevcUnit(pos + 4 + length);
}

// Whether the unit at pos opens a new picture behind one that already has a
// slice; slice tells whether the unit is one.
bool IndexScanner::newPictureAt(uint64_t pos, bool pictureHasSlice, bool* slice) const
{
    const uint8_t* p = m_in.view(pos + 4, 3);
    if (m_hevc) {
        const unsigned type = (p[0] >> 1) & 0x3F;
        *slice = type < 32;
        // first_slice_segment_in_pic_flag is the first bit behind the header.
        const bool firstSlice = *slice && (p[2] & 0x80);
        const bool prefix = (type >= 32 && type <= 35) || type == 39 || (type >= 41 && type <= 44)
                            || (type >= 48 && type <= 55);
        return pictureHasSlice && (prefix || firstSlice);
    }
    const unsigned type = p[0] & 0x1F;
    *slice = type >= 1 && type <= 5;
    // first_mb_in_slice of 0 is coded as a single 1 bit.
    const bool firstSlice = *slice && (p[1] & 0x80);
    const bool prefix = type == 6 || type == 7 || type == 8 || (type >= 14 && type <= 18);
    return pictureHasSlice && (type == 9 || prefix || firstSlice);
}

// Follows the chain of units from pos (a unit the caller has accepted) and
// writes one line per picture. Returns the position behind the last unit.
uint64_t IndexScanner::walkVideo(uint64_t pos, UnitTest unit)
{
    uint64_t pictureStart = pos;
    bool pictureHasSlice = false;
    bool first = true;
    while (pos < m_size && !g_stopRequested) {
        if (!first && !(this->*unit)(pos))
            break;
        const uint32_t length = m_in.be32(pos);
        if (length == 0 || pos + 4 + length > m_size)
            break;
        bool slice = false;
        const bool newPicture = newPictureAt(pos, pictureHasSlice, &slice);
        if (newPicture && pos != pictureStart) {
            emitLine(IndexLine::Video, pictureStart, pos - pictureStart);
            pictureStart = pos;
            pictureHasSlice = false;
        }
        pictureHasSlice = pictureHasSlice || slice;
        pos += 4 + uint64_t(length);
        first = false;
    }
    if (pos > pictureStart)
        emitLine(IndexLine::Video, pictureStart, pos - pictureStart);
    return pos;
}

// Every structure that can end a stretch of sound starts with a zero byte (a
// length field, an atom size, a marker), so the search looks only at the
// zero bytes of the block and asks the test there.
uint64_t IndexScanner::findNext(uint64_t from, uint64_t to, PositionTest test) const
{
    const uint64_t end = std::min(to, m_size);
    const size_t block = std::min<size_t>(1u << 20, m_in.maxView() - 16);
    for (uint64_t base = from; base < end; base += block) {
        if (g_stopRequested)
            return end;
        const size_t n = size_t(std::min<uint64_t>(block, end - base));
        const uint8_t* p = m_in.view(base, n);
        size_t i = 0;
        while (i < n) {
            const void* z = std::memchr(p + i, 0, n - i);
            if (!z)
                break;
            i = size_t(static_cast<const uint8_t*>(z) - p);
            if ((this->*test)(base + i))
                return base + i;
            p = m_in.view(base, n);   // the test may have moved the window
            ++i;
        }
    }
    return end;
}

// An atom header between media data: a further mdat (by its small size
// word), or a free or moov atom.
bool IndexScanner::atomHeaderAt(uint64_t pos) const
{
    const uint32_t size = m_in.be32(pos);
    const uint32_t code = m_in.be32(pos + 4);
    if (code == "mdat"_4cc)
        return size == 1 || size >= 8;
    return (code == "free"_4cc || code == "moov"_4cc) && size >= 8;
}

bool IndexScanner::sowtSoundEnds(uint64_t pos) const
{
    return atomHeaderAt(pos) || sowtFrameAt(pos);
}

bool IndexScanner::twosSoundEnds(uint64_t pos) const
{
    uint8_t b[8];
    std::memcpy(b, m_in.view(pos, 8), 8);
    if (IsGapMarker(b, true))
        return true;
    return atomHeaderAt(pos) || audAt(pos);
}

bool IndexScanner::audMarkerAt(uint64_t pos) const
{
    return IsAud(m_in.view(pos, 5));
}

// A run of zero bytes behind a picture (pos: four zero bytes). It ends at a
// unit, whose length field starts with zero bytes of its own, or at a gap
// marker; a "clur" block inside the run is passed over without a line.
uint64_t IndexScanner::zeroRun(uint64_t pos)
{
    const uint64_t zeroStart = pos;
    while (pos < m_size && !g_stopRequested) {
        uint64_t z = findNonZero(pos);
        if (z >= m_size) {
            emitLine(IndexLine::Zero, zeroStart, m_size - zeroStart);
            return m_size;
        }
        // The run's last zero bytes may belong to what follows it. Markers
        // are the more specific test, so they are looked for first.
        const uint64_t first = std::max(pos, z >= 3 ? z - 3 : 0);
        bool passedClur = false;
        for (uint64_t s = first; s <= z && !passedClur; ++s) {
            uint8_t b[8];
            std::memcpy(b, m_in.view(s, 8), 8);
            if (!m_hevc && IsGapMarker(b, false)) {
                if (s > zeroStart)
                    emitLine(IndexLine::Zero, zeroStart, s - zeroStart);
                return s;
            }
            if (!m_hevc && IsClur(b)) {
                pos = s + 8;
                passedClur = true;
            }
        }
        for (uint64_t s = first; s <= z && !passedClur; ++s) {
            if (chainUnit(s)) {
                if (s > zeroStart)
                    emitLine(IndexLine::Zero, zeroStart, s - zeroStart);
                return s;
            }
        }
        if (!passedClur) {
            emitLine(IndexLine::Zero, zeroStart, z - zeroStart);
            return z;
        }
    }
    return pos;
}

uint64_t IndexScanner::findNonZero(uint64_t from) const
{
    const size_t block = std::min<size_t>(1u << 20, m_in.maxView());
    for (uint64_t base = from; base < m_size; base += block) {
        const size_t n = size_t(std::min<uint64_t>(block, m_size - base));
        const uint8_t* p = m_in.view(base, n);
        for (size_t i = 0; i < n; ++i)
            if (p[i] != 0)
                return base + i;
        if (g_stopRequested)
            return m_size;
    }
    return m_size;
}

void IndexScanner::runSowt(const PatternSet& patterns, bool audFirst)
{
    m_patterns = &patterns;
    if (patterns.empty())
        return;
    const uint64_t limit = std::min(kFirstFrameLimit, m_size);
    uint64_t pos = audFirst ? findNext(0, limit, &IndexScanner::audMarkerAt)
                            : findNext(0, limit, &IndexScanner::sowtFrameAt);
    if (pos >= limit)
        return;
    // The delimiter found by its marker is a frame without the pattern test.
    if (audFirst)
        pos = walkVideo(pos, &IndexScanner::sowtUnit);
    sowtLoop(pos);
}

// From the first frame on: pictures by pattern and chain, padding behind
// them, and sound in between.
void IndexScanner::sowtLoop(uint64_t pos)
{
    const UnitTest unit = m_hevc ? &IndexScanner::hevcUnit : &IndexScanner::sowtUnit;
    while (pos < m_size && !g_stopRequested) {
        const uint32_t size = m_in.be32(pos);
        const uint32_t code = m_in.be32(pos + 4);
        if ((IsInterleavedAtom(code, true) || code == "moov"_4cc) && size >= 8) {
            pos += size;
            continue;
        }
        if (code == "mdat"_4cc && (size == 1 || size >= 8)) {
            pos += size == 1 ? 16 : 8;   // the scan goes on inside it
            continue;
        }
        if (sowtFrameAt(pos)) {
            pos = walkVideo(pos, unit);
            // Sound may open with a few zero samples: only a longer stretch
            // is padding. Taking a short one out would shift every sample
            // of the run behind it.
            if (pos + 4 <= m_size && m_in.be32(pos) == 0 && findNonZero(pos) - pos >= kMinZeroRun)
                pos = zeroRun(pos);
            continue;
        }
        const uint64_t next = findNext(pos + 1, m_size, &IndexScanner::sowtSoundEnds);
        audio(pos, next);
        pos = next;
    }
}

// The atoms ahead of the media data are passed by their sizes; the search
// for the first frame starts inside the first mdat.
uint64_t IndexScanner::skipLeadingAtoms() const
{
    static const uint32_t kLeading[] = {"ftyp"_4cc, "free"_4cc, "wide"_4cc, "pict"_4cc, "meta"_4cc,
                                        "meco"_4cc, "uuid"_4cc, "pdin"_4cc, "skip"_4cc};
    uint64_t pos = 0;
    while (pos + 8 <= m_size && !g_stopRequested) {
        const uint32_t size = m_in.be32(pos);
        const uint32_t code = m_in.be32(pos + 4);
        if (code == "mdat"_4cc)
            return pos + (size == 1 ? 16 : 8);
        if (size < 8 || std::find(std::begin(kLeading), std::end(kLeading), code) == std::end(kLeading))
            return pos;
        pos += size;
    }
    return std::min(pos, m_size);
}

void IndexScanner::runHevcPcm(const PatternSet& patterns)
{
    m_patterns = &patterns;
    m_hevc = true;
    if (patterns.empty())
        return;
    const uint64_t pos = findNext(skipLeadingAtoms(), m_size, &IndexScanner::hevcFirstFrameAt);
    if (pos < m_size)
        sowtLoop(pos);
}

void IndexScanner::runTwos(uint32_t gapSkip)
{
    gapSkip = std::max<uint32_t>(gapSkip, 1);
    uint64_t pos = findNext(0, m_size, &IndexScanner::audAt);
    while (pos < m_size && !g_stopRequested) {
        uint8_t b[8];
        std::memcpy(b, m_in.view(pos, 8), 8);
        const uint32_t size = ByteReader::loadBe32(b);
        const uint32_t code = ByteReader::loadBe32(b + 4);
        if ((IsInterleavedAtom(code, true) || code == "moov"_4cc) && size >= 8) {
            pos += size;
        } else if (code == "mdat"_4cc) {
            pos += size == 1 ? 16 : 8;
        } else if (IsGapMarker(b, true)) {
            pos += gapSkip;
        } else if (IsAud(b) && twosUnit(pos)) {
            pos = walkVideo(pos, &IndexScanner::twosUnit);
        } else {
            // Sound, up to the next picture, marker or movie. The run is
            // searched rather than jumped over by the last run's length: a
            // camera's sound runs vary from one gap to the next, and a jump
            // past the next delimiter would file pictures as sound.
            const uint64_t next = findNext(pos + 1, m_size, &IndexScanner::twosSoundEnds);
            audio(pos, next);
            pos = next;
        }
    }
}

void QuickTimeRoute::ScanIndexSowt(const QString& inputPath, const QString& videoUniquePath)
{
    PatternSet patterns;
    patterns.load(videoUniquePath);
    bool audFirst = false;
    {
        QFile unique(videoUniquePath);
        char first = 0;
        audFirst = unique.open(QIODevice::ReadOnly) && unique.getChar(&first) && uint8_t(first) == 0x09;
    }
    RunIndexScan(inputPath, [&](IndexScanner& s) { s.runSowt(patterns, audFirst); });
}

void QuickTimeRoute::ScanIndexHevcPcm(const QString& inputPath, const QString& videoUniquePath)
{
    PatternSet patterns;
    patterns.load(videoUniquePath);
    RunIndexScan(inputPath, [&](IndexScanner& s) { s.runHevcPcm(patterns); });
}

void QuickTimeRoute::ScanIndexTwos(const QString& inputPath)
{
    const uint32_t skip = m_chainFacts.nullTrackSampleSize ? m_chainFacts.nullTrackSampleSize : 1024;
    RunIndexScan(inputPath, [&](IndexScanner& s) { s.runTwos(skip); });
}

void QuickTimeRoute::RunIndexScan(const QString&, const std::function<void(IndexScanner&)>& scan)
{
    m_remuxed = false;
    if (!m_file) {
        H264PassFailed();
        return;
    }
    m_fileSize = m_inputSize = m_file->size();
    m_report->setRange(100);
    LogCipher cipher;
    IndexScanner scanner(*m_file, [&](const IndexLine& line) { WriteLogLine(cipher, line.text()); });
    scanner.setProgress([this](unsigned percent) { m_report->setValue(percent); });
    QElapsedTimer clock;
    clock.start();
    scan(scanner);
    const double seconds = std::max<qint64>(clock.elapsed(), 1) / 1000.0;
    qDebug().noquote() << QStringLiteral("Index scan: %1 pictures, %2 sound runs, %3 zero runs, %4 MB in %5 s (%6 MB/s)")
                              .arg(scanner.videoLines()).arg(scanner.audioLines()).arg(scanner.zeroLines())
                              .arg(m_fileSize / 1e6, 0, 'f', 1).arg(seconds, 0, 'f', 3)
                              .arg(m_fileSize / 1e6 / seconds, 0, 'f', 0);
    // Without a single picture the rebuild has nothing to make a file of.
    if (scanner.videoLines() == 0 && !g_stopRequested)
        H264PassFailed();
}
