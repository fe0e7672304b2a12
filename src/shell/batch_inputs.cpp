#include "shell/batch_inputs.h"

#include "core/video_suffixes.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace {

// Adds the videos below folder to out. ancestors holds the canonical paths
// of the folders on the way down, to catch a link back up.
QString Walk(const QString& folder, QStringList& ancestors, QStringList& out)
{
    const QFileInfo info(folder);
    if (!info.isReadable() || !info.isExecutable())
        return QStringLiteral("can't read the folder %1").arg(folder);
    const QString canonical = info.canonicalFilePath();
    if (ancestors.contains(canonical))
        return QStringLiteral("%1 leads back into %2 (a link loop)").arg(folder, canonical);
    ancestors << canonical;
    const QFileInfoList entries = QDir(folder).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                                                             QDir::Name);
    for (const QFileInfo& e : entries) {
        if (e.isDir()) {
            // Earlier results, and the scratch folder of a run that was killed.
            if (e.fileName() == QLatin1String("Repaired") || e.fileName().startsWith(QLatin1String(".reelwright-job-")))
                continue;
            const QString error = Walk(e.absoluteFilePath(), ancestors, out);
            if (!error.isEmpty())
                return error;
        } else if (e.isFile() && IsVideoSuffix(e.suffix())) {
            out << e.absoluteFilePath();
        }
    }
    ancestors.removeLast();
    return QString();
}

} // namespace

BatchInputs ExpandInputs(const QStringList& arguments)
{
    BatchInputs r;
    QSet<QString> seen;
    for (const QString& a : arguments) {
        const QFileInfo info(a);
        QStringList found;
        if (info.isDir()) {
            QStringList ancestors;
            r.error = Walk(info.absoluteFilePath(), ancestors, found);
            if (r.error.isEmpty() && found.isEmpty())
                r.error = QStringLiteral("no video files in %1").arg(a);
        } else {
            found << info.absoluteFilePath();
        }
        if (!r.error.isEmpty())
            return r;
        for (const QString& f : found) {
            const QString canonical = QFileInfo(f).canonicalFilePath();
            const QString key = canonical.isEmpty() ? QDir::cleanPath(f) : canonical;
            if (seen.contains(key)) {
                r.error = QStringLiteral("%1 is given twice").arg(f);
                return r;
            }
            seen.insert(key);
            r.files << f;
        }
    }
    return r;
}

QStringList ResultFolders(const QStringList& files, const QString& workRoot)
{
    QStringList folders;
    for (const QString& f : files)
        folders << QDir::cleanPath(QFileInfo(f).absolutePath());
    if (workRoot.isEmpty()) {
        for (QString& folder : folders)
            folder += QStringLiteral("/Repaired");
        return folders;
    }
    // The deepest folder that holds every file.
    QStringList common = folders.value(0).split(QLatin1Char('/'));
    for (const QString& folder : folders) {
        const QStringList parts = folder.split(QLatin1Char('/'));
        int n = 0;
        while (n < common.size() && n < parts.size() && common[n] == parts[n])
            ++n;
        common = common.mid(0, n);
    }
    const QDir base(common.join(QLatin1Char('/')) + QLatin1Char('/'));
    const QString target = QDir::cleanPath(QDir(workRoot).absolutePath() + QStringLiteral("/Repaired"));
    for (QString& folder : folders) {
        const QString below = base.relativeFilePath(folder);
        folder = below == QLatin1String(".") || below.isEmpty() ? target : target + QLatin1Char('/') + below;
    }
    return folders;
}
