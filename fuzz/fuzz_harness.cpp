#include "fuzz_harness.h"

#include "core/byte_reader.h"
#include "core/muxer.h"
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

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
QString g_root;        // private workspace
QString g_inputDir;    // where the input file lives

[[noreturn]] void Violation(const char* what, const QString& detail)
{
    std::fprintf(stderr, "fuzz harness: %s: %s\n", what, qPrintable(detail));
    std::abort();
}

// A small healthy clip of the given kind, made by ffmpeg, as the sample of
// the routes that fuzz the damaged file of an Advance Repair: each kind leads
// the driver into another scanner. The clips are kept in the folder named by
// REELWRIGHT_FUZZ_SAMPLES when it is set, so that only the first run of a
// target pays for the encoding; else they are made once per process.
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
    const QString kept = qEnvironmentVariable("REELWRIGHT_FUZZ_SAMPLES");
    const QString dir = kept.isEmpty() ? g_root : kept;
    for (const auto& s : kSamples) {
        if (key != QLatin1String(s.kind))
            continue;
        const QString path = dir + QStringLiteral("/") + QLatin1String(s.file);
        if (!QFileInfo(path).isFile()) {
            // Made under a name of this process's own, then renamed: targets
            // run side by side may make the same clip.
            QDir().mkpath(dir);
            const QString part = dir + QStringLiteral("/%1-").arg(QCoreApplication::applicationPid())
                               + QLatin1String(s.file);
            const QByteArray cmd = QByteArray("ffmpeg -y -v error -nostdin -f lavfi -i testsrc2=size=64x48:rate=25:duration=0.4 "
                                              "-f lavfi -i sine=sample_rate=48000:duration=0.4 ")
                                   + s.codecs + " '" + part.toUtf8() + "'";
            if (std::system(cmd.constData()) != 0 || !QFile::rename(part, path)) {
                QFile::remove(part);
                if (!QFileInfo(path).isFile())
                    Violation("can't make the fixed sample", path);
            }
        }
        made.insert(key, path);
        return path;
    }
    Violation("unknown sample kind", key);
}

// The harness's own file work goes straight to the system: through Qt's
// file classes it cost as much as a small repair.
bool WriteBytes(const QString& path, const uint8_t* data, size_t size)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        return false;
    size_t done = 0;
    while (done < size) {
        const ssize_t n = ::write(fd, data + done, size - done);
        if (n <= 0)
            break;
        done += size_t(n);
    }
    ::close(fd);
    return done == size;
}

// True when the file at path holds exactly the size bytes at data.
bool HoldsBytes(const QString& path, const uint8_t* data, size_t size)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    struct stat st {};
    bool same = ::fstat(fd, &st) == 0 && uint64_t(st.st_size) == size;
    char buffer[65536];
    for (size_t at = 0; same && at < size;) {
        const ssize_t n = ::pread(fd, buffer, std::min(sizeof buffer, size - at), off_t(at));
        same = n > 0 && memcmp(buffer, data + at, size_t(n)) == 0;
        at += n > 0 ? size_t(n) : 0;
    }
    ::close(fd);
    return same;
}

// Removes the entry name of the folder dirFd, and all it holds.
void RemoveEntry(int dirFd, const char* name)
{
    if (::unlinkat(dirFd, name, 0) == 0 || (errno != EISDIR && errno != EPERM))
        return;
    const int fd = ::openat(dirFd, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
    if (fd >= 0) {
        if (DIR* dir = ::fdopendir(fd)) {
            while (const dirent* e = ::readdir(dir))
                if (strcmp(e->d_name, ".") != 0 && strcmp(e->d_name, "..") != 0)
                    RemoveEntry(::dirfd(dir), e->d_name);
            ::closedir(dir);
        } else {
            ::close(fd);
        }
    }
    ::unlinkat(dirFd, name, AT_REMOVEDIR);
}

// Checks each name in the input folder against allowed, and removes it.
void CheckAndEmptyInputFolder(const QStringList& allowed)
{
    DIR* dir = ::opendir(QFile::encodeName(g_inputDir).constData());
    if (!dir)
        Violation("input folder vanished", g_inputDir);
    while (const dirent* e = ::readdir(dir)) {
        if (strcmp(e->d_name, ".") == 0 || strcmp(e->d_name, "..") == 0)
            continue;
        if (!allowed.contains(QFile::decodeName(e->d_name)))
            Violation("written beside Repaired", QFile::decodeName(e->d_name));
        RemoveEntry(::dirfd(dir), e->d_name);
    }
    ::closedir(dir);
}

// The input being run, for the stand-in muxer.
const uint8_t* g_data = nullptr;
size_t g_size = 0;
unsigned g_muxerRuns = 0;

// Reads a named pipe to its end, as the muxer reads a stream fed during a
// scan; a cancel ends it early.
void DrainPipe(const QString& path, const std::atomic<bool>* cancel)
{
    struct stat st {};
    const QByteArray native = QFile::encodeName(path);
    if (::stat(native.constData(), &st) != 0 || !S_ISFIFO(st.st_mode))
        return;
    const int fd = ::open(native.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return;
    char buffer[65536];
    while (!(cancel && *cancel)) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n == 0)
            break;   // the writer has closed it
        if (n < 0) {
            pollfd p{fd, POLLIN, 0};
            ::poll(&p, 1, 20);
        }
    }
    ::close(fd);
}

// The last byte of the input decides each muxer run in turn, one bit a run.
bool NextRunSucceeds()
{
    const unsigned bit = g_muxerRuns++ % 8;
    return g_size > 0 && ((g_data[g_size - 1] >> bit) & 1);
}

// Stands in for ffmpeg, so that an input costs no process start: either the
// muxer reads its piped inputs and writes the input's first bytes as its
// output, or it fails at once and writes nothing. Both ways the engine's
// handling of the outcome is exercised.
MuxerResult StandInMuxer(const QString&, const QStringList& args, const QString& workDir, int,
                         const std::atomic<bool>* cancel)
{
    MuxerResult result;
    result.started = true;
    result.finished = true;
    if (!NextRunSucceeds()) {
        result.exitCode = 1;
        return result;
    }
    const QDir dir(workDir);
    for (int i = 0; i + 1 < args.size(); ++i)
        if (args[i] == QLatin1String("-i"))
            DrainPipe(dir.absoluteFilePath(args[i + 1]), cancel);
    if (cancel && *cancel) {
        result.finished = false;
        return result;
    }
    if (!args.isEmpty() && !args.last().startsWith(QLatin1Char('-')))
        WriteBytes(dir.absoluteFilePath(args.last()), g_data, std::min<size_t>(g_size, 4096));
    result.exitCode = 0;
    return result;
}

// The frame listing of an output: a video and a sound stream with as many
// packets as the input's first byte says, or no listing at all.
bool StandInListing(const QString&, const QStringList&, QByteArray& output)
{
    if (!NextRunSucceeds())
        return false;
    output = "#tb 0: 1/25\n#media_type 0: video\n#tb 1: 1/48000\n#media_type 1: audio\n";
    for (int i = 0; i < g_data[0]; ++i)
        output += QByteArray::number(i % 2) + ", " + QByteArray::number(i) + ", " + QByteArray::number(i)
                  + ", 1024, 100, 0x00000000\n";
    return true;
}
}

void FuzzSetUp()
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    if (!QCoreApplication::instance())
        new QCoreApplication(argc, argv);
    // In memory where the system offers it: each input makes and removes a
    // dozen files, which costs a disk file system more than the repair itself.
    static QTemporaryDir root(QFileInfo(QStringLiteral("/dev/shm")).isWritable()
                                  ? QStringLiteral("/dev/shm/reelwright-fuzz-XXXXXX")
                                  : QDir::tempPath() + QStringLiteral("/reelwright-fuzz-XXXXXX"));
    g_root = root.path();
    g_inputDir = g_root + QStringLiteral("/input");
    QDir().mkpath(g_inputDir);
    QDir().mkpath(g_root + QStringLiteral("/tmp"));
    // The driver clears TMPDIR/Repaired on a first pass: keep that ours.
    qputenv("TMPDIR", (g_root + QStringLiteral("/tmp")).toUtf8());
    // The stand-in muxer runs in place of the program; the program's file
    // is still looked for, so one that does nothing is made.
    SetMuxerRunner({StandInMuxer, StandInListing});
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
    g_data = data;
    g_size = size;
    g_muxerRuns = 0;
    // Small, input-dependent windows make the reader cross window edges often.
    FileReader::setDefaultWindow(size_t(8192) + (size % 5) * 4096);

    const QString suffix = QString::fromLatin1(options.suffix);
    const QString input = g_inputDir + QStringLiteral("/input.") + suffix;
    QString sample;
    QStringList allowed{QStringLiteral("input.") + suffix, QStringLiteral(".hidden"), QStringLiteral("Repaired")};
    if (options.asReference) {
        // The bytes are the sample; the damaged file is a fixed block of noise,
        // larger than the largest window but small, since every input scans it.
        sample = g_inputDir + QStringLiteral("/sample.") + suffix;
        allowed << QStringLiteral("sample.") + suffix;
        QByteArray noise(32768, '\0');
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
    if (!HoldsBytes(watched, data, size))
        Violation("input changed or vanished", watched);
    for (const QString& out : g_repairedPaths)
        if (!QFileInfo(out).absoluteFilePath().startsWith(g_inputDir + QStringLiteral("/Repaired/")))
            Violation("output outside Repaired", out);
    CheckAndEmptyInputFolder(allowed);
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
