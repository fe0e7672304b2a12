#include "core/platform_core.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QSysInfo>
#include <QTextStream>

#ifdef __GLIBC__
#include <malloc.h>
#endif

QString g_settingsPath;

QString SettingsFilePath(SettingsStore store)
{
    const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const QString group = store == SettingsStore::DataRecovery ? QStringLiteral("Data Recovery")
                                                               : QStringLiteral("Photo Recovery");
    return base + QStringLiteral("/Corvane Labs/") + group + QStringLiteral("/Reelwright.ini");
}

bool EnsureResizeAppforDPI(const QString& path)
{
    QSettings settings(path, QSettings::IniFormat);
    if (!settings.contains(QStringLiteral("ResizeAppforDPI"))) {
        settings.setValue(QStringLiteral("ResizeAppforDPI"), true);
        settings.sync();
    }
    return settings.value(QStringLiteral("ResizeAppforDPI"), true).toBool();
}

bool SetHiddenInFolder(const QString& folder, const QString& name, bool hidden)
{
    const QString listPath = folder + QStringLiteral("/.hidden");
    QStringList lines;
    {
        QFile in(listPath);
        if (in.open(QIODevice::ReadOnly | QIODevice::Text)) {
            QTextStream ts(&in);
            ts.setCodec("UTF-8");
            while (!ts.atEnd())
                lines << ts.readLine();
        }
    }
    const bool present = lines.contains(name);
    if (hidden == present)
        return true;
    if (hidden)
        lines << name;
    else
        lines.removeAll(name);
    while (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    if (lines.isEmpty())
        return QFile::remove(listPath);
    QFile out(listPath);
    // The stream buffers the text: the file needs no buffer of its own.
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text | QIODevice::Unbuffered))
        return false;
    QTextStream ts(&out);
    ts.setCodec("UTF-8");
    for (const QString& l : lines)
        ts << l << '\n';
    return true;
}

QString ProductName()
{
    return QSysInfo::prettyProductName();
}

// The repair thread takes and frees a few hundred KiB for every line of its
// frame index (the compression of the line). With the C library's default a
// thread's freed memory goes back to the system at once, and the next line
// faults it in and clears it again: a fifth of the time of an FLV repair.
// Up to 64 MiB of freed memory is kept for reuse instead.
void KeepFreedMemoryForReuse()
{
#ifdef __GLIBC__
    mallopt(M_TRIM_THRESHOLD, 64 << 20);
#endif
}
