// Unique sequence files: the distinct three-byte records that the sample's
// frames and audio chunks begin with, and the stages of the chain that make
// them before handing on.
#include "recovery/h264/h264_recovery.h"

#include "core/byte_reader.h"
#include "core/quicktime_route.h"

#include <QFile>

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
    const bool inOpen = in.open(QIODevice::ReadOnly);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate) || !inOpen) {
        EngineMessage("Error opening file.\n");
        return;   // the source counts as empty; the target stays empty
    }
    // Membership in a bit table of all 2^24 values keeps this linear in the
    // source, however many distinct records it holds.
    PatternSet seen;
    QByteArray unique;
    const qint64 block = 3 * 65536;
    for (;;) {
        const QByteArray chunk = in.read(block);
        const int whole = chunk.size() - chunk.size() % 3;   // a short tail is ignored
        const auto* p = reinterpret_cast<const uint8_t*>(chunk.constData());
        for (int i = 0; i < whole; i += 3) {
            const uint32_t t = uint32_t(p[i]) << 16 | uint32_t(p[i + 1]) << 8 | p[i + 2];
            if (seen.has(t))
                continue;
            seen.add(t);
            unique.append(chunk.constData() + i, 3);
            if (seen.count() == kMaxUniqueRecords) {
                EngineMessage("Maximum unique sequences reached.\n");
                out.write(unique);
                return;
            }
        }
        if (chunk.size() < block)
            break;
    }
    out.write(unique);
}

bool PatternSet::load(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
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

void QuickTimeRoute::WriteVideoUniqueFileIndex(const ChainPaths& p)
{
    ReduceToUnique(p.videoText, p.videoUnique);
    ScanIndexSowt(p.input, p.videoUnique);
    // The index lines are all the rebuild needs.
    RemoveChainFiles(p);
}
