// Files of a camera format marked IMKH at their start are no QuickTime files:
// the external muxer copies their streams into Matroska, and the result takes
// the file's own name in the Repaired folder.
#include "containers/output_checks.h"
#include "core/muxer.h"
#include "core/quicktime_route.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>

void QuickTimeRoute::RemuxCameraFile(const QString& path)
{
    const QFileInfo info(path);
    m_inputSize = m_fileSize = uint64_t(std::max<qint64>(info.size(), 0));
    const ulong half = ulong(m_fileSize / 2);
    m_report->setRange(ulong(m_fileSize));

    m_remuxed = true;
    g_remuxRan = true;
    g_muxerBusy = true;
    const QString workDir = m_workDir;
    QDir().mkpath(workDir);
    m_report->setValue(half);

    const QString muxedName = QStringLiteral("1_") + m_fileName + QStringLiteral(".mkv");
    const QString muxedPath = workDir + QLatin1Char('/') + muxedName;
    const QString target = workDir + QLatin1Char('/') + m_fileName;
    if (outputcheck::SameFile(target, path)) {
        qWarning() << "The output" << target << "would replace its own input; not run.";
        g_muxerBusy = false;
        m_passFailed = true;
        return;
    }
    QFile::remove(muxedPath);   // a stale file would count as this run's output
    RunMuxer(MuxerPrefix() + QStringLiteral(" -r 25 -i \"") + path + QStringLiteral("\" -map 0 -c copy \"")
                 + muxedName + QLatin1Char('"'),
             workDir);
    g_muxerBusy = false;

    // The muxer's exit code is not read: the remux counts only when it left a
    // non-empty file, else the driver's verdict for the file is negative.
    if (!outputcheck::NonEmptyFile(muxedPath)) {
        qWarning() << "The muxer left no output for" << m_fileName;
        QFile::remove(muxedPath);
        m_passFailed = true;
        g_moovRead = false;
        return;
    }
    QFile::remove(target);
    if (!QFile::rename(muxedPath, target)) {
        qWarning() << "Can't rename" << muxedPath << "to" << target;
        m_passFailed = true;
        return;
    }
    g_repairedPaths << target;
}
