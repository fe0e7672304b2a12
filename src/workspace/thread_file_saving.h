#pragma once
// Copies the checked results into a folder the user chose. One object serves
// every save of the process; a save is one start of the thread.
#include <QMutex>
#include <QStringList>
#include <QThread>
#include <QWaitCondition>
#include <atomic>

class ThreadFileSaving : public QThread {
    Q_OBJECT
public:
    explicit ThreadFileSaving(QObject* parent = nullptr);
    ~ThreadFileSaving() override;

    void StartSaving(QStringList files, QString destPath);

    // Files of the last save that are not in the folder: the copy failed
    // and no file of that name was there before. A target that already
    // existed is left as it was and does not count.
    int failedCount() const { return m_failed; }

Q_SIGNALS:
    void ProgressValue(unsigned int value);
    void ProgressFinish();

protected:
    void run() override;

private:
    QStringList m_files;
    QString m_destPath;
    QMutex m_mutex;
    QWaitCondition m_wakeCondition;
    std::atomic<int> m_failed{0};
};
