#pragma once
// Download of the installer: QDownloadThread fetches it on a worker thread,
// QDownloadApp shows the progress by watching the download folder, then
// starts the installer and ends the program.
#include "workspace/frameless_dialog.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QThread>
#include <QWaitCondition>

class QLabel;
class QProgressBar;
class QPushButton;
class QTimer;

class QDownloadThread : public QThread {
    Q_OBJECT
public:
    explicit QDownloadThread(QObject* parent = nullptr);
    ~QDownloadThread() override;

    void StartDownload(QString url, QString fileName, quint64 expectedSize);

Q_SIGNALS:
    void OnDownloadStart();
    void OnDownloadFailed();
    void OnDownloadFinish(QString strDownloadPath);

protected:
    void run() override;

private:
    QString m_url;
    QString m_fileName;
    quint64 m_expectedSize = 0;
    QMutex m_mutex;
    QWaitCondition m_wakeCondition;
};

class QDownloadApp : public FramelessDialog {
    Q_OBJECT
public:
    // Starts the download at once. Deletes itself when closed.
    explicit QDownloadApp(QWidget* parent = nullptr);
    ~QDownloadApp() override;

    quint64 expectedSize() const { return m_expectedSize; }

public Q_SLOTS:
    void OnDownloadStart();
    void OnDownloadFailed();
    void OnDownloadFinish(QString strDownloadPath);
    void OnTimerLoadSlot();
    void OnDownloadProgress(qlonglong bytesReceived, qlonglong bytesTotal);
    void downloadFinished();
    void downloadReadyRead();

private:
    void HideProgress();

    QLabel* m_titleLabel;
    QLabel* m_downloadingLabel;
    QProgressBar* m_progressBar;
    QLabel* m_sizeLabel;
    QLabel* m_timeLabel;
    QLabel* m_rateLabel;
    QLabel* m_messageLabel;
    QPushButton* m_okBtn;

    quint64 m_expectedSize = 0;
    QElapsedTimer m_elapsed;
    QTimer* m_pollTimer;
    QDownloadThread m_thread;

protected:
    void Retranslate() override;
};
