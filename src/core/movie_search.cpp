// Locating the movie of a QuickTime-family file: a walk over the top-level
// atoms by their sizes, then byte-wise searches in windows near the end of
// the file and in its first MiB. Every position is read through the cached
// reader; long stretches are scanned a block at a time.
#include "core/quicktime_route.h"

#include <QFileInfo>
#include <algorithm>

namespace {

constexpr uint32_t kMoov = ByteReader::fourcc("moov");
constexpr uint32_t kMvhd = ByteReader::fourcc("mvhd");
constexpr uint32_t kMdat = ByteReader::fourcc("mdat");
constexpr uint32_t kImkh = ByteReader::fourcc("IMKH");

constexpr uint64_t kSmallFile = 0x300000;     // under this the windows start at 0
constexpr uint64_t kFirstMiB = 0x100000;

bool IsSkippableTopLevel(uint32_t code)
{
    static constexpr uint32_t codes[] = {ByteReader::fourcc("ftyp"), ByteReader::fourcc("free"),
                                         ByteReader::fourcc("meta"), ByteReader::fourcc("wide"),
                                         ByteReader::fourcc("uuid")};
    return std::find(std::begin(codes), std::end(codes), code) != std::end(codes);
}

// First position in [from, to) whose word is code, or to. Words past the end
// of the data are zero and match nothing, so the scan stops at the size.
uint64_t FindWord(ByteReader& r, uint64_t from, uint64_t to, uint32_t code)
{
    const uint64_t end = std::min(to, r.size());
    const size_t block = std::min<size_t>(1u << 20, r.maxView() - 4);
    for (uint64_t pos = from; pos < end && !g_stopRequested; pos += block) {
        const size_t n = size_t(std::min<uint64_t>(block, end - pos));
        const uint8_t* p = r.view(pos, n + 3);
        for (size_t i = 0; i < n; ++i)
            if (ByteReader::loadBe32(p + i) == code)
                return pos + i;
    }
    return to;
}

} // namespace

// One byte-wise window: positions start, start+1, ... (modulo 2^64, as the
// unsigned position arithmetic wraps for files smaller than the window's
// offset from the end) while steps <= stepLimit. Only positions inside the
// file can hold a word; the others are counted, given progress, and skipped.
// Returns true when the movie reader ran (the search is over).
bool QuickTimeRoute::SearchMovieWindow(ByteReader& r, bool& movieFound, uint64_t& steps,
                                          uint64_t stepLimit, ulong range, bool progress,
                                          bool reference)
{
    const uint64_t size = r.size();
    const size_t block = std::min<size_t>(1u << 20, r.maxView() - 4);
    while (steps <= stepLimit && !g_stopRequested) {
        // The reference search also ends when its position passes the size.
        if (reference && m_pos > size)
            return false;
        if (progress && steps < range) {
            // Positions that still send progress go one at a time.
            const uint32_t w = m_pos < size ? r.be32(m_pos) : 0;
            if (w == kMoov) {
                movieFound = true;
                m_moovSize = r.be32(m_pos - 4);
                m_moovPos = m_pos;
            } else if (w == kMvhd && movieFound) {
                if (reference)
                    ReadReferenceMovieHeader();
                else
                    ReadMovieHeader();
                m_report->setValue(range);
                return true;
            }
            m_report->setValue(ulong(steps));
            ++steps;
            ++m_pos;
            continue;
        }
        const uint64_t left = stepLimit - steps + 1;
        if (m_pos >= size) {
            // Nothing to read here: jump to where the position wraps to 0,
            // or to the end of the window. The reference stops instead, once
            // its position has passed the size: the step at the size itself
            // counts, so that its second window ends where the first began.
            if (reference) {
                if (m_pos == size) {
                    ++steps;
                    ++m_pos;
                }
                return false;
            }
            // An empty file has m_pos 0 here: nothing wraps, the window is done.
            const uint64_t toWrap = uint64_t(0) - m_pos;
            const uint64_t skip = toWrap ? std::min(left, toWrap) : left;
            steps += skip;
            m_pos += skip;
            continue;
        }
        const size_t n = size_t(std::min<uint64_t>({left, uint64_t(block), size - m_pos}));
        const uint8_t* p = r.view(m_pos, n + 3);
        for (size_t i = 0; i < n; ++i) {
            const uint32_t w = ByteReader::loadBe32(p + i);
            if (w == kMoov) {
                movieFound = true;
                m_pos += i;
                steps += i;
                m_moovSize = r.be32(m_pos - 4);
                m_moovPos = m_pos;
                ++m_pos;
                ++steps;
                p = nullptr;
                break;
            }
            if (w == kMvhd && movieFound) {
                m_pos += i;
                steps += i;
                if (reference)
                    ReadReferenceMovieHeader();
                else
                    ReadMovieHeader();
                if (progress)
                    m_report->setValue(range);
                return true;
            }
        }
        if (p) {
            m_pos += n;
            steps += n;
        }
    }
    return false;
}

bool QuickTimeRoute::FindDamagedMovie(bool& imkhMark)
{
    imkhMark = false;
    bool movieFound = false;
    if (!m_file)
        return false;
    ByteReader& r = *m_file;

    // Walk over the top-level atoms; m_pos stands on the 4CC.
    m_pos = 4;
    while (!g_stopRequested) {
        if (r.be32(m_pos - 4) == kImkh) {
            imkhMark = true;
            movieFound = true;
        }
        const uint32_t code = r.be32(m_pos);
        if (IsSkippableTopLevel(code)) {
            m_atomSize32 = r.be32(m_pos - 4);
            if (m_atomSize32 == 0)
                break;
            m_pos += m_atomSize32;
        } else if (code == kMdat) {
            m_atomSize = r.be32(m_pos - 4);
            if (m_atomSize == 1)
                m_atomSize = r.be64(m_pos + 4);
            // A 64-bit size that would wrap the position can only be damage.
            if (m_atomSize == 0 || m_atomSize > UINT64_MAX - m_pos)
                break;
            m_pos += m_atomSize;
        } else if (code == kMoov) {
            movieFound = true;
            m_moovSize = r.be32(m_pos - 4);
            m_moovPos = m_pos;
            if (m_moovSize == 0)
                break;
            const uint64_t end = m_moovPos + m_moovSize;
            m_pos = FindWord(r, m_pos, end, kMvhd);
            if (g_stopRequested)
                break;
            if (m_pos < end) {
                ReadMovieHeader();
                m_report->setValue(50000);
            }
            // The walk goes on from here: behind a moov in front of mdat.
        } else {
            break;
        }
    }
    if (movieFound || g_stopRequested)
        return movieFound;

    // Two windows near the end, counted by one step counter.
    m_fileSize = m_inputSize;
    const bool small = m_inputSize < kSmallFile;
    const ulong range = small ? 5000 : 50000;
    m_report->setRange(range);
    uint64_t steps = 0;
    m_pos = small ? 0 : m_inputSize - 0x400000;
    if (SearchMovieWindow(r, movieFound, steps, 0x500000, range, true, false) || movieFound
        || g_stopRequested)
        return movieFound;
    m_pos = small ? 0 : m_inputSize - 0xA00000;
    if (SearchMovieWindow(r, movieFound, steps, 0xA00000, range, true, false) || movieFound
        || g_stopRequested)
        return movieFound;

    // The first MiB, behind damage at the head of the file.
    if (m_inputSize <= kSmallFile)
        return false;
    m_pos = 0;
    steps = 0;
    SearchMovieWindow(r, movieFound, steps, kFirstMiB, range, false, false);
    return movieFound;
}

bool QuickTimeRoute::FindReferenceMovie(const QString& referencePath)
{
    const QFileInfo info(referencePath);
    m_referencePath = info.absolutePath() + QLatin1Char('/') + info.fileName();
    if (!Sample(m_referencePath))
        return false;
    bool movieFound = false;
    m_pos = 4;
    m_refFileSize = m_refFile->size();
    const uint64_t size = m_refFileSize;
    m_report->showFileProgress(info.fileName());
    m_moovSize = 0;
    m_moovPos = 0;
    m_report->setRange(50000);

    // Walk; it ends when the position passes the size.
    ByteReader* r = m_refFile;
    while (!g_stopRequested && m_pos <= size) {
        const uint32_t code = r->be32(m_pos);
        if (IsSkippableTopLevel(code)) {
            m_atomSize32 = r->be32(m_pos - 4);
            if (m_atomSize32 == 0)
                break;
            m_pos += m_atomSize32;
        } else if (code == kMdat) {
            m_atomSize = r->be32(m_pos - 4);
            if (m_atomSize == 1)
                m_atomSize = r->be64(m_pos + 4);
            if (m_atomSize == 0 || m_atomSize > UINT64_MAX - m_pos)
                break;
            m_pos += m_atomSize;
        } else if (code == kMoov) {
            movieFound = true;
            m_moovSize = r->be32(m_pos - 4);
            m_moovPos = m_pos;
            if (m_moovSize == 0)
                return true;
            const uint64_t end = m_moovPos + m_moovSize;
            m_pos = FindWord(*r, m_pos, end, kMvhd);
            if (m_pos < end && !g_stopRequested) {
                ReadReferenceMovieHeader();
                m_report->setValue(50000);
                return true;
            }
        } else {
            break;
        }
    }
    if (movieFound || g_stopRequested || !m_refFile)
        return movieFound;

    // Two windows near the end; a reference over 2 GiB gets a wider first one.
    const bool small = size < kSmallFile;
    const ulong range = small ? 5000 : 50000;
    uint64_t steps = 0;
    m_pos = small ? 0 : size - (size > 0x80000000ull ? 0x600000 : 0x300000);
    m_report->setRange(range);
    if (SearchMovieWindow(*r, movieFound, steps, 0x600000, range, true, true) || movieFound
        || g_stopRequested)
        return movieFound;
    m_pos = small ? 0 : size - 0xA00000;
    if (SearchMovieWindow(*r, movieFound, steps, 0xA00000, range, true, true) || movieFound
        || g_stopRequested)
        return movieFound;

    if (size > kSmallFile) {
        m_pos = 0;
        steps = 0;
        SearchMovieWindow(*r, movieFound, steps, kFirstMiB, range, false, true);
    }
    return movieFound;
}
