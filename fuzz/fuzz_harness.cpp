#include "fuzz_harness.h"

#include "core/byte_reader.h"
#include "core/repair_globals.h"
#include "core/thread_video_repair.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
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

// A small healthy H.264/AAC clip, made once per process by ffmpeg, as the
// sample of the routes that fuzz the damaged file of an Advance Repair.
QString FixedSample()
{
    static QString path;
    if (path.isEmpty()) {
        path = g_root + QStringLiteral("/sample.mov");
        const QByteArray cmd = "ffmpeg -y -v error -nostdin -f lavfi -i testsrc2=size=64x48:rate=25:duration=1 "
                               "-f lavfi -i sine=sample_rate=48000:duration=1 -c:v libx264 -preset ultrafast "
                               "-c:a aac -b:a 32k '" + path.toUtf8() + "'";
        if (std::system(cmd.constData()) != 0 || !QFileInfo(path).isFile())
            Violation("can't make the fixed sample", path);
    }
    return path;
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

int FuzzThroughDriver(const uint8_t* data, size_t size, const FuzzOptions& options)
{
    if (g_root.isEmpty())
        FuzzSetUp();
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
            sample = FixedSample();
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
    static const struct { const char* name; const char* suffix; bool reference; bool fixedSample = false; } routes[] = {
        {"mov", "mov", false}, {"mov-reference", "mov", true}, {"avi", "avi", false},
        {"avi-reference", "avi", true}, {"wmv", "wmv", false}, {"wmv-reference", "wmv", true},
        {"flv", "flv", false}, {"mts", "mts", false}, {"mkv", "mkv", false},
        {"mkv-reference", "mkv", true}, {"mpg", "mpg", false}, {"mpg-reference", "mpg", true},
        {"mov-scan", "mov", false, true},
    };
    for (const auto& r : routes) {
        if (route == QLatin1String(r.name)) {
            options.suffix = r.suffix;
            options.asReference = r.reference;
            options.fixedSample = r.fixedSample;
            return true;
        }
    }
    return false;
}
