#pragma once
// Forward searches for four-character codes, a block at a time through the
// cached reader rather than a word read per position.
#include "core/byte_reader.h"
#include "core/repair_globals.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <initializer_list>
#include <vector>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// First position in [from, to) where one of the codes starts, or -1. Words
// past the end of the data are zero and match nothing. A stop request ends
// the search with -1. A code that holds a byte other than zero starts at most
// three bytes before the first such byte, so runs of zeros (and the holes of
// a sparse file) are passed without looking at each position.
inline int64_t FindAnyCode(ByteReader& r, uint64_t from, uint64_t to, std::initializer_list<uint32_t> codes,
                           const std::atomic<bool>* stop = &g_stopRequested)
{
    const uint64_t end = std::min(to, r.size());
    const uint64_t reach = std::min(end + 3, r.size());
    const bool skipZeros = std::find(codes.begin(), codes.end(), 0u) == codes.end();
    const size_t block = std::min<size_t>(1u << 20, r.maxView() - 4);
    for (uint64_t pos = from; pos < end; pos += block) {
        if (stop && stop->load(std::memory_order_relaxed))
            return -1;
        if (skipZeros) {
            const uint64_t data = NextNonZero(r, pos, reach);
            if (data >= reach || data >= end + 3)
                return -1;
            pos = std::max(pos, data < 3 ? 0 : data - 3);
            if (pos >= end)
                return -1;
        }
        const size_t n = size_t(std::min<uint64_t>(block, end - pos));
        const uint8_t* p = r.view(pos, n + 3);
        for (size_t i = 0; i < n; ++i) {
            const uint32_t w = ByteReader::loadBe32(p + i);
            for (uint32_t c : codes)
                if (w == c)
                    return int64_t(pos + i);
        }
    }
    return -1;
}

// First position in [from, end) at which test(bytes, left) holds, or end
// when none does. The bytes are viewed a block of 1 KiB at a time, with two
// more behind each position (zeros past the file), so a test of up to three
// bytes costs no read call of its own; left counts the bytes from the
// position to the end of the file.
template <typename Test>
uint64_t FindFirstWhere(ByteReader& r, uint64_t from, uint64_t end, Test test)
{
    end = std::min(end, r.size());
    const size_t block = std::min<size_t>(1024, r.maxView() - 2);
    for (uint64_t pos = from; pos < end;) {
        const size_t n = size_t(std::min<uint64_t>(block, end - pos));
        const uint8_t* p = r.view(pos, n + 2);
        const uint64_t left = r.size() - pos;
        for (size_t i = 0; i < n; ++i)
            if (test(p + i, left - i))
                return pos + i;
        pos += n;
    }
    return std::max(from, end);
}

// The same search up to the end of the file, remembering its last answer: a
// hostile file full of the words that start a search would otherwise search
// the same stretch again for each of them.
class CodeSearch {
public:
    CodeSearch(std::initializer_list<uint32_t> codes) : m_codes(codes) {}
    int64_t next(ByteReader& r, uint64_t from)
    {
        if (m_valid && from >= m_from && (m_hit < 0 || from <= uint64_t(m_hit)))
            return m_hit;
        m_hit = -1;
        const uint64_t end = r.size();
        // One code list at a time keeps FindAnyCode's signature simple.
        for (uint32_t code : m_codes) {
            const int64_t hit = FindAnyCode(r, from, m_hit < 0 ? end : uint64_t(m_hit), {code});
            if (hit >= 0)
                m_hit = hit;
        }
        m_from = from;
        m_valid = !g_stopRequested;
        return m_hit;
    }

private:
    std::vector<uint32_t> m_codes;
    bool m_valid = false;
    uint64_t m_from = 0;
    int64_t m_hit = -1;
};

// The first position in [from, limit) of b where 00 00 01 starts, or limit;
// b holds two bytes behind limit. Sixteen positions are tried at once where
// the processor can: in coded video a byte of 1 comes every few dozen bytes,
// a start code every few hundred.
inline size_t NextStartCode(const uint8_t* b, size_t from, size_t limit)
{
    size_t i = from;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128(), one = _mm_set1_epi8(1);
    for (; i + 16 <= limit; i += 16) {
        const __m128i b0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i));
        const __m128i b1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i + 1));
        const __m128i b2 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i + 2));
        const __m128i hit = _mm_and_si128(_mm_and_si128(_mm_cmpeq_epi8(b0, zero), _mm_cmpeq_epi8(b1, zero)),
                                          _mm_cmpeq_epi8(b2, one));
        const int mask = _mm_movemask_epi8(hit);
        if (mask)
            return i + size_t(__builtin_ctz(unsigned(mask)));
    }
#endif
    for (; i < limit; ++i)
        if (b[i] == 0 && b[i + 1] == 0 && b[i + 2] == 1)
            return i;
    return limit;
}
