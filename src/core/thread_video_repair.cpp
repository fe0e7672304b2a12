#include "core/thread_video_repair.h"

#include "core/output_figures.h"
#include "core/thread_join.h"
#include "core/platform_core.h"

#include <QDebug>
#include <QFileInfo>
#include <QMutexLocker>

ThreadVideoRepair::ThreadVideoRepair(QObject* parent)
    : QThread(parent)
{
    g_stopRequested = false;
    KeepFreedMemoryForReuse();
}

ThreadVideoRepair::~ThreadVideoRepair()
{
    g_stopRequested = true;
    m_wakeCondition.wakeAll();
    wait();
    threadjoin::Joined(this);
}

void ThreadVideoRepair::StartRepair(const QStringList& files, bool)
{
    if (g_repairRunning) {
        // A run is active and holds m_mutex for its whole extent: ask it to
        // stop instead of waiting for the lock on the window's thread.
        g_stopRequested = true;
        m_wakeCondition.wakeAll();
        return;
    }
    wait();   // a run that has just sent its last signal is leaving run()
    threadjoin::Joined(this);
    QMutexLocker lock(&m_mutex);
    m_fileList = files;
    start(QThread::LowPriority);
}

void ThreadVideoRepair::run()
{
    QMutexLocker lock(&m_mutex);
    const threadjoin::RunEnd end(this);
    g_repairRunning = true;
    if (!g_stopRequested) {
        RepairFiles(m_fileList, g_referencePath);
        if (!g_stopRequested) {
            Q_EMIT RepairFinish();
            g_stopRequested = false;
            g_repairRunning = false;
            return;
        }
    }
    Q_EMIT ProcessAborted();
    g_stopRequested = false;
    g_repairRunning = false;
}

void ThreadVideoRepair::AnnounceOutput(const QString& outPath, bool copiesInput)
{
    Q_EMIT OutputWritten(m_fileName, outPath);
    const OutputFigures f = MeasureOutput(outPath);
    const uint64_t outSize = uint64_t(std::max<qint64>(QFileInfo(outPath).size(), 0));
    Q_EMIT RecoveryFigures(m_fileName, f.videoFrames, f.audioSeconds, copiesInput ? SkippedBytes(m_fileSize, outSize) : 0);
}
