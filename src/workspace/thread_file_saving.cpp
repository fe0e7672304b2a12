#include "workspace/thread_file_saving.h"

#include "core/repair_globals.h"
#include "core/thread_join.h"

#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>

ThreadFileSaving::ThreadFileSaving(QObject* parent)
    : QThread(parent)
{
}

ThreadFileSaving::~ThreadFileSaving()
{
    wait();
    threadjoin::Joined(this);
}

void ThreadFileSaving::StartSaving(QStringList files, QString destPath)
{
    if (isRunning()) {
        // The window keeps its list disabled during a save, so this is a
        // second press that should not happen; it only asks the copy to stop.
        g_stopRequested = true;
        m_wakeCondition.wakeAll();
        return;
    }
    QMutexLocker lock(&m_mutex);
    threadjoin::Joined(this);   // the last save has left run()
    m_files = files;
    m_destPath = destPath;
    m_failed = 0;
    start(QThread::LowPriority);
}

void ThreadFileSaving::run()
{
    QMutexLocker lock(&m_mutex);
    const threadjoin::RunEnd end(this);
    for (int i = 0; i < m_files.size(); ++i) {
        emit ProgressValue(unsigned(i));
        const QString& source = m_files.at(i);
        const QString target = m_destPath + QLatin1Char('/') + QFileInfo(source).fileName();
        // QFile::copy leaves an existing target alone; that is what we want
        // when two results of the same name land in one folder.
        if (QFileInfo::exists(target))
            continue;
        if (!QFile::copy(source, target))
            ++m_failed;
    }
    emit ProgressFinish();
}
