#include "fuzz_harness.h"

#include "core/byte_reader.h"
#include "core/repair_globals.h"
#include "core/thread_video_repair.h"
#include "recovery/h264/index_scanners.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {
QString g_root;        // private workspace
QString g_inputDir;    // where the input file lives

[[noreturn]] void Violation(const char* what, const QString& detail)
{
    std::fprintf(stderr, "fuzz harness: %s: %s\n", what, qPrintable(detail));
    std::abort();
}

// A small healthy clip of the given kind, made once per process by ffmpeg,
// as the sample of the routes that fuzz the damaged file of an Advance
// Repair: each kind leads the driver into another scanner.
QString FixedSample(const char* kind)
{
    static const struct { const char* kind; const char* file; const char* codecs; } kSamples[] = {
        {"h264-aac", "sample.mov", "-c:v libx264 -preset ultrafast -c:a aac -b:a 32k"},
        {"h264-sowt", "sample_sowt.mov", "-c:v libx264 -preset ultrafast -c:a pcm_s16le"},
        {"h264-twos", "sample_twos.mov", "-c:v libx264 -preset ultrafast -c:a pcm_s16be"},
        {"h264-lpcm", "sample_lpcm.mov", "-c:v libx264 -preset ultrafast -c:a pcm_s24le"},
        {"hevc-aac", "sample_hevc.mov",
         "-c:v libx265 -preset ultrafast -x265-params log-level=error:info=0 -tag:v hvc1 -c:a aac -b:a 32k"},
        {"hevc-lpcm", "sample_hevc_lpcm.mov",
         "-c:v libx265 -preset ultrafast -x265-params log-level=error:info=0 -tag:v hvc1 -c:a pcm_s24le"},
    };
    static QMap<QString, QString> made;
    const QString key = QString::fromLatin1(kind);
    if (made.contains(key))
        return made.value(key);
    for (const auto& s : kSamples) {
        if (key != QLatin1String(s.kind))
            continue;
        const QString path = g_root + QStringLiteral("/") + QLatin1String(s.file);
        const QByteArray cmd = QByteArray("ffmpeg -y -v error -nostdin -f lavfi -i testsrc2=size=64x48:rate=25:duration=1 "
                                          "-f lavfi -i sine=sample_rate=48000:duration=1 ")
                               + s.codecs + " '" + path.toUtf8() + "'";
        if (std::system(cmd.constData()) != 0 || !QFileInfo(path).isFile())
            Violation("can't make the fixed sample", path);
        made.insert(key, path);
        return path;
    }
    Violation("unknown sample kind", key);
}

bool WriteBytes(const QString& path, const uint8_t* data, size_t size)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return f.write(reinterpret_cast<const char*>(data), qint64(size)) == qint64(size);
}
}

void FuzzSetUp()
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    if (!QCoreApplication::instance())
        new QCoreApplication(argc, argv);
    static QTemporaryDir root;
    g_root = root.path();
    g_inputDir = g_root + QStringLiteral("/input");
    QDir().mkpath(g_inputDir);
    QDir().mkpath(g_root + QStringLiteral("/tmp"));
    // The driver clears TMPDIR/Repaired on a first pass: keep that ours.
    qputenv("TMPDIR", (g_root + QStringLiteral("/tmp")).toUtf8());
    // A muxer that does nothing keeps each input fast; what it would write
    // is ffmpeg's business, not the engine's.
    const QString muxerDir = g_root + QStringLiteral("/Libmp4");
    QDir().mkpath(muxerDir);
    QFile fake(muxerDir + QStringLiteral("/ffmpeg"));
    fake.open(QIODevice::WriteOnly);
    fake.write("#!/bin/sh\nexit 0\n");
    fake.close();
    fake.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    g_appDir = muxerDir;
    g_programDir = g_root;
}

// The index scanners straight on the bytes, since the driver hands files to
// some of them only from 100 MiB on. The first byte picks the scan, the next
// three are the sample pattern; every line must lie inside the data.
int FuzzIndexScanners(const uint8_t* data, size_t size)
{
    if (size < 4)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data + 4), int(size - 4));
    MemoryReader reader(bytes, size_t(8192) + (size % 5) * 4096);
    IndexScanner scanner(reader, [&](const IndexLine& line) {
        if (line.size == 0 || line.pos > uint64_t(bytes.size()) || line.size > uint64_t(bytes.size()) - line.pos)
            Violation("index line outside the file", line.text());
    });
    PatternSet patterns;
    patterns.add((uint32_t(data[1]) << 16) | (uint32_t(data[2]) << 8) | data[3]);
    g_stopRequested = false;
    switch (data[0] % 3) {
    case 0: scanner.runSowt(patterns, data[0] & 0x80); break;
    case 1: scanner.runTwos(data[0]); break;
    default: scanner.runHevcPcm(patterns); break;
    }
    return 0;
}

int FuzzThroughDriver(const uint8_t* data, size_t size, const FuzzOptions& options)
{
    if (g_root.isEmpty())
        FuzzSetUp();
    if (options.indexScanners)
        return FuzzIndexScanners(data, size);
    // Small, input-dependent windows make the reader cross window edges often.
    FileReader::setDefaultWindow(size_t(8192) + (size % 5) * 4096);

    const QString suffix = QString::fromLatin1(options.suffix);
    const QString input = g_inputDir + QStringLiteral("/input.") + suffix;
    QString sample;
    QStringList allowed{QStringLiteral("input.") + suffix, QStringLiteral(".hidden"), QStringLiteral("Repaired")};
    if (options.asReference) {
        // The bytes are the sample; the damaged file is a fixed block of noise.
        sample = g_inputDir + QStringLiteral("/sample.") + suffix;
        allowed << QStringLiteral("sample.") + suffix;
        QByteArray noise(65536, '\0');
        uint32_t x = 12345;
        for (char& c : noise) {
            x = x * 1103515245u + 12345u;
            c = char(x >> 24);
        }
        WriteBytes(input, reinterpret_cast<const uint8_t*>(noise.constData()), size_t(noise.size()));
        WriteBytes(sample, data, size);
    } else {
        WriteBytes(input, data, size);
        if (options.fixedSample)
            sample = FixedSample(options.fixedSample);
    }

    g_stopRequested = false;
    g_referenceMode = !sample.isEmpty();
    g_referencePath = sample;
    g_customWorkRoot.clear();
    g_repairedPaths.clear();
    {
        ThreadVideoRepair repair;
        repair.RepairFiles({input}, sample);
    }

    const QString watched = options.asReference ? sample : input;
    QFile check(watched);
    if (!check.open(QIODevice::ReadOnly))
        Violation("input vanished", watched);
    const QByteArray now = check.readAll();
    if (size_t(now.size()) != size || (size && memcmp(now.constData(), data, size) != 0))
        Violation("input changed", watched);
    const QStringList entries = QDir(g_inputDir).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString& e : entries)
        if (!allowed.contains(e))
            Violation("written beside Repaired", e);
    for (const QString& out : g_repairedPaths)
        if (!QFileInfo(out).absoluteFilePath().startsWith(g_inputDir + QStringLiteral("/Repaired/")))
            Violation("output outside Repaired", out);
    QDir(g_inputDir).removeRecursively();
    QDir().mkpath(g_inputDir);
    return 0;
}

bool FuzzOptionsForRoute(const QString& route, FuzzOptions& options)
{
    static const struct { const char* name; const char* suffix; bool reference; const char* fixedSample = nullptr;
                          bool indexScanners = false; } routes[] = {
        {"mov", "mov", false}, {"mov-reference", "mov", true}, {"avi", "avi", false},
        {"avi-reference", "avi", true}, {"wmv", "wmv", false}, {"wmv-reference", "wmv", true},
        {"flv", "flv", false}, {"mts", "mts", false}, {"mkv", "mkv", false},
        {"mkv-reference", "mkv", true}, {"mpg", "mpg", false}, {"mpg-reference", "mpg", true},
        {"mov-scan", "mov", false, "h264-aac"}, {"sowt-scan", "mov", false, "h264-sowt"},
        {"twos-scan", "mov", false, "h264-twos"}, {"lpcm-scan", "mov", false, "h264-lpcm"},
        {"hevc-scan", "mov", false, "hevc-aac"}, {"hevc-lpcm-scan", "mov", false, "hevc-lpcm"},
        {"index-scan", "mov", false, nullptr, true},
    };
    for (const auto& r : routes) {
        if (route == QLatin1String(r.name)) {
            options.suffix = r.suffix;
            options.asReference = r.reference;
            options.fixedSample = r.fixedSample;
            options.indexScanners = r.indexScanners;
            return true;
        }
    }
    return false;
}
