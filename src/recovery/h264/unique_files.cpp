// Unique sequence files: the distinct three-byte records that the sample's
// frames and audio chunks begin with, and the stages of the chain that make
// them before handing on.
#include "recovery/h264/h264_recovery.h"

#include "core/byte_reader.h"
#include "core/code_search.h"
#include "core/quicktime_route.h"

#include <QFile>

#include <algorithm>

namespace {
std::FILE* g_messageStream = nullptr;   // null: standard output
}

void SetEngineMessageStream(std::FILE* stream)
{
    g_messageStream = stream;
}

void EngineMessage(const char* text)
{
    std::FILE* out = g_messageStream ? g_messageStream : stdout;
    std::fputs(text, out);
    std::fflush(out);
}

void ReduceToUnique(const QString& source, const QString& target)
{
    QFile in(source);
    QFile out(target);
    // Unbuffered: the reads are large and the target is written once.
    const bool inOpen = in.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered) || !inOpen) {
        EngineMessage("Error opening file.\n");
        return;   // the source counts as empty; the target stays empty
    }
    // Membership in a pattern set keeps this linear in the source, however
    // many distinct records it holds.
    PatternSet seen;
    QByteArray unique;
    // One small buffer for all reads: most sources are a few records long.
    constexpr qint64 block = 3 * 4096;
    char chunk[block];
    for (;;) {
        const qint64 got = std::max<qint64>(in.read(chunk, block), 0);
        const int whole = int(got - got % 3);   // a short tail is ignored
        const auto* p = reinterpret_cast<const uint8_t*>(chunk);
        for (int i = 0; i < whole; i += 3) {
            const uint32_t t = uint32_t(p[i]) << 16 | uint32_t(p[i + 1]) << 8 | p[i + 2];
            if (seen.has(t))
                continue;
            seen.add(t);
            unique.append(chunk + i, 3);
            if (seen.count() == kMaxUniqueRecords) {
                EngineMessage("Maximum unique sequences reached.\n");
                out.write(unique);
                return;
            }
        }
        if (got < block)
            break;
    }
    out.write(unique);
}

void PatternSet::add(uint32_t triple)
{
    const uint32_t lead = triple >> 8 & 0xFFFF;
    uint64_t& leadWord = m_lead[lead >> 6];
    const uint64_t leadBit = uint64_t(1) << (lead & 63);
    std::unique_ptr<uint16_t[]>& page = m_blockOf[lead >> 8];
    if (!(leadWord & leadBit)) {
        leadWord |= leadBit;
        if (!page)
            page.reset(new uint16_t[256]);
        page[lead & 255] = uint16_t(m_blocks.size());
        m_blocks.push_back({});
    }
    m_blocks[page[lead & 255]][triple >> 6 & 3] |= uint64_t(1) << (triple & 63);
    ++m_count;
}

bool PatternSet::load(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    const QByteArray all = f.readAll();
    const auto* p = reinterpret_cast<const uint8_t*>(all.constData());
    for (int i = 0; i + 3 <= all.size(); i += 3)
        add(uint32_t(p[i]) << 16 | uint32_t(p[i + 1]) << 8 | p[i + 2]);
    return true;
}

bool PatternSet::matchAt(ByteReader& r, uint64_t pos) const
{
    // Zero fill past the end must not pass for a pattern of zeros.
    if (m_count == 0 || pos >= r.size() || r.size() - pos < 3)
        return false;
    return has(r.be24(pos));
}

uint64_t PatternSet::next(ByteReader& r, uint64_t from, uint64_t end, bool stopAtFill) const
{
    return FindFirstWhere(r, from, end, [&](const uint8_t* p, uint64_t left) {
        return (stopAtFill && (p[0] == 0x00 || p[0] == 0xFF)) || matchBytes(p, left);
    });
}

void QuickTimeRoute::WriteVideoUniqueFileIndex(const ChainPaths& p)
{
    ReduceToUnique(p.videoText, p.videoUnique);
    ScanIndexSowt(p.input, p.videoUnique);
    // The index lines are all the rebuild needs.
    RemoveChainFiles(p);
}
