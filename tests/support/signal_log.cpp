#include "support/signal_log.h"

#include "core/thread_join.h"

// Functor connections without a context object run on the emitting thread.
SignalLog::SignalLog(ThreadVideoRepair& t)
{
    using T = ThreadVideoRepair;
    QObject::connect(&t, &T::RepairFinish, [this] { add(QStringLiteral("RepairFinish")); });
    QObject::connect(&t, &T::ProcessAborted, [this] { add(QStringLiteral("ProcessAborted")); });
    QObject::connect(&t, &T::disableAddReferenceBtn, [this] { add(QStringLiteral("disableAddReferenceBtn")); });
    QObject::connect(&t, &T::ShowOverAllProgressBar, [this] { add(QStringLiteral("ShowOverAllProgressBar")); });
    QObject::connect(&t, &T::OverAllProgressBarMax, [this](uint n) { add(QStringLiteral("OverAllProgressBarMax %1").arg(n)); });
    QObject::connect(&t, &T::OverAllProgressValue, [this](uint c, uint p) { add(QStringLiteral("OverAllProgressValue %1 %2").arg(c).arg(p)); });
    QObject::connect(&t, &T::WriteProcessingStatus, [this](QString n) { add(QStringLiteral("WriteProcessingStatus ") + n); });
    QObject::connect(&t, &T::WriteStatus, [this](bool r, bool, QString n, bool d) {
        add(QStringLiteral("WriteStatus %1 %2 %3").arg(int(r)).arg(n).arg(int(d)));
    });
    QObject::connect(&t, &T::WriteAVIFileStatus, [this](bool r, QString n) {
        add(QStringLiteral("WriteAVIFileStatus %1 %2").arg(int(r)).arg(n));
    });
    QObject::connect(&t, &T::FileNamelabel, [this](QString n) { add(QStringLiteral("FileNamelabel ") + n); });
}

void SignalLog::add(const QString& s)
{
    QMutexLocker lock(&m_lock);
    m_lines << s;
}

QStringList SignalLog::all() const
{
    QMutexLocker lock(&m_lock);
    return m_lines;
}

QStringList SignalLog::matching(const QString& prefix) const
{
    QStringList out;
    for (const QString& s : all())
        if (s.startsWith(prefix))
            out << s;
    return out;
}

void SignalLog::runAndWait(ThreadVideoRepair& t, const QStringList& files, bool option)
{
    t.StartRepair(files, option);
    t.wait();
    threadjoin::Joined(&t);
}
