#include "core/output_folder.h"

#include "core/file_writer.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <cerrno>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

bool Writable(const QString& dir)
{
    return QDir().mkpath(dir) && ::access(QFile::encodeName(dir).constData(), W_OK) == 0;
}

} // namespace

OutputFolder ChooseOutputFolder(const QString& sourceFolder, const QString& customRoot)
{
    OutputFolder out;
    const QString wanted = (customRoot.isEmpty() ? sourceFolder : customRoot) + QStringLiteral("/Repaired");
    if (Writable(wanted)) {
        out.dir = wanted;
        return out;
    }
    QString data = qEnvironmentVariable("XDG_DATA_HOME");
    if (data.isEmpty())
        data = QDir::homePath() + QStringLiteral("/.local/share");
    QString name = QFileInfo(sourceFolder).fileName();
    if (name.isEmpty())
        name = QStringLiteral("root");   // a file at the top of a mount
    const QString fallback = data + QStringLiteral("/Reelwright/Repaired/") + name;
    if (Writable(fallback)) {
        out.dir = fallback;
        out.fallback = true;
    }
    return out;
}

void RemoveStaleWork(const QString& folder)
{
    QDir dir(folder);
    const QFileInfoList entries = dir.entryInfoList(QDir::Files | QDir::System | QDir::Hidden);
    for (const QFileInfo& e : entries) {
        const QString name = e.fileName();
        struct stat st {};
        const bool fifo = ::lstat(QFile::encodeName(e.absoluteFilePath()).constData(), &st) == 0 && S_ISFIFO(st.st_mode);
        // Partial outputs, the work files of the two QuickTime recoveries,
        // and pipes left by a killed run.
        const bool work = name.startsWith(QLatin1String(".syntax-")) || name.startsWith(QLatin1String(".rebuild-"));
        if (IsPartialName(name) || work || (fifo && !e.isSymLink()))
            QFile::remove(e.absoluteFilePath());
    }
}

uint64_t SpaceNeeded(uint64_t inputSize)
{
    return inputSize + inputSize / 10 + (1u << 20);
}

QString SpaceMessage(const QString& folder, uint64_t inputSize)
{
    return QStringLiteral("not enough space in %1, about %2 MB needed")
        .arg(QDir::toNativeSeparators(folder))
        .arg((SpaceNeeded(inputSize) + 999999) / 1000000);
}

int64_t FreeBytes(const QString& folder)
{
    // The folder's own file system, asked directly: no walk over the mount
    // table as a storage description would make.
    struct statvfs fs {};
    int result;
    do
        result = ::statvfs(QFile::encodeName(folder).constData(), &fs);
    while (result != 0 && errno == EINTR);
    if (result != 0)
        return -1;
    return int64_t(uint64_t(fs.f_bavail) * uint64_t(fs.f_frsize));
}

QString SpaceShortage(const QString& folder, uint64_t inputSize)
{
    const int64_t free = FreeBytes(folder);
    return free >= 0 && uint64_t(free) < SpaceNeeded(inputSize) ? SpaceMessage(folder, inputSize) : QString();
}
