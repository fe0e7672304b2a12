#pragma once
// Records the signals of a ThreadVideoRepair run, in order, as short texts
// such as "OverAllProgressValue 1 50" or "WriteStatus 0 clip.mov 0".
#include "core/thread_video_repair.h"

#include <QMutex>
#include <QStringList>

class SignalLog {
public:
    explicit SignalLog(ThreadVideoRepair& t);
    QStringList all() const;
    QStringList matching(const QString& prefix) const;
    // Runs one repair over files and waits for its end.
    static void runAndWait(ThreadVideoRepair& t, const QStringList& files, bool option = false);

private:
    void add(const QString& s);
    mutable QMutex m_lock;
    QStringList m_lines;
};
