#include "update/download_app.h"

#include "core/thread_join.h"
#include "core/platform_core.h"
#include "shell/scale.h"
#include "update/update_fetch.h"

#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QMutexLocker>
#include <QNetworkAccessManager>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

#include <climits>

namespace {
// Installer size assumed when the store gives none.
constexpr quint64 kDefaultUpdateSize = 0xA00000;
constexpr int kPollIntervalMs = 50;

int Scaled(int designPixels)
{
    return int(designPixels * g_uiScale);
}

// The progress bar counts in ints: sizes beyond that range go in KiB.
int BarValue(quint64 bytes, quint64 expected)
{
    const quint64 unit = expected > quint64(INT_MAX) ? 1024 : 1;
    const quint64 v = bytes / unit;
    return v > quint64(INT_MAX) ? INT_MAX : int(v);
}

QString MebibyteText(quint64 bytes)
{
    return QString::number(double(bytes) / (1024.0 * 1024.0), 'f', 2);
}
} // namespace

QDownloadThread::QDownloadThread(QObject* parent)
    : QThread(parent)
{
}

QDownloadThread::~QDownloadThread()
{
    // Every wait of run() is bounded, so this ends.
    wait();
    threadjoin::Joined(this);
}

void QDownloadThread::StartDownload(QString url, QString fileName, quint64 expectedSize)
{
    QMutexLocker lock(&m_mutex);
    threadjoin::Joined(this);   // run() holds the lock to its end
    m_url = url;
    m_fileName = fileName;
    m_expectedSize = expectedSize;
    if (isRunning())
        m_wakeCondition.wakeOne();
    else
        start(QThread::LowPriority);
}

void QDownloadThread::run()
{
    QMutexLocker lock(&m_mutex);
    const threadjoin::RunEnd end(this);
    emit OnDownloadStart();

    const QString folder = UpdateFolder();
    QDir().mkpath(folder);
    QString target = folder + QLatin1Char('/') + m_fileName;
    // Without a whole address (no link in the store) neither way is tried:
    // curl would take the bare file name for a host and look it up.
    const QUrl url(m_url, QUrl::StrictMode);
    const bool usable = url.isValid() && !url.isRelative();
    bool fetched = false;
    if (usable) {
        QNetworkAccessManager manager;
        fetched = FetchByNetwork(manager, m_url, target, g_updateTimeouts.installerIdleMs);
    }
    if (usable && !fetched) {
        QDir().mkpath(UpdateFallbackFolder());
        target = UpdateFallbackFolder() + QLatin1Char('/') + m_fileName;
        QFile::remove(target);
        FetchByCurl(m_url, target, g_updateTimeouts.installerTotalMs);
    }

    // The size is the only test of the download: a file smaller than the
    // expected size is taken as cut off, even when it is whole.
    const QFileInfo info(target);
    if (info.exists() && quint64(info.size()) >= m_expectedSize) {
        emit OnDownloadFinish(target);
    } else {
        QFile::remove(target);
        emit OnDownloadFailed();
    }
}

QDownloadApp::QDownloadApp(QWidget* parent)
    : FramelessDialog(parent), m_titleLabel(new QLabel(tr("Software Update"), this)),
      m_downloadingLabel(new QLabel(tr("Downloading Files"), this)), m_progressBar(new QProgressBar(this)),
      m_sizeLabel(new QLabel(this)), m_timeLabel(new QLabel(this)), m_rateLabel(new QLabel(this)),
      m_messageLabel(new QLabel(this)), m_okBtn(new QPushButton(tr("OK"), this)), m_pollTimer(new QTimer(this))
{
    setObjectName(QStringLiteral("DownloadUpdate"));
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(false);
    setWindowTitle(tr("Software Update"));
    m_titleLabel->setObjectName(QStringLiteral("titleLabel"));
    m_downloadingLabel->setObjectName(QStringLiteral("downloadingLabel"));
    m_progressBar->setObjectName(QStringLiteral("progressBar"));
    m_progressBar->setTextVisible(false);
    m_sizeLabel->setObjectName(QStringLiteral("sizeLabel"));
    m_timeLabel->setObjectName(QStringLiteral("timeLabel"));
    m_rateLabel->setObjectName(QStringLiteral("rateLabel"));
    m_messageLabel->setObjectName(QStringLiteral("messageLabel"));
    m_messageLabel->setWordWrap(true);
    m_okBtn->setObjectName(QStringLiteral("OkBtn"));
    connect(m_okBtn, &QPushButton::clicked, this, &QWidget::hide);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Scaled(16), Scaled(12), Scaled(16), Scaled(12));
    layout->addWidget(m_titleLabel);
    layout->addWidget(m_downloadingLabel);
    layout->addWidget(m_progressBar);
    layout->addWidget(m_sizeLabel);
    layout->addWidget(m_timeLabel);
    layout->addWidget(m_rateLabel);
    layout->addWidget(m_messageLabel);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(m_okBtn);
    layout->addLayout(row);
    setFixedSize(Scaled(420), Scaled(220));

    const QString folder = UpdateFolder();
    QDir().mkpath(folder);
    if (!g_installerPath.isEmpty())
        QFile::remove(g_installerPath);
    if (!g_descriptorPath.isEmpty())
        QFile::remove(g_descriptorPath);

    const QString link = UpdateLink();
    {
        QSettings settings(g_settingsPath, QSettings::IniFormat);
        m_expectedSize = settings.value(QStringLiteral("AverageUpdateSize"), 0).toULongLong();
    }
    if (m_expectedSize == 0)
        m_expectedSize = kDefaultUpdateSize;

    connect(&m_thread, &QDownloadThread::OnDownloadStart, this, &QDownloadApp::OnDownloadStart);
    connect(&m_thread, &QDownloadThread::OnDownloadFailed, this, &QDownloadApp::OnDownloadFailed);
    connect(&m_thread, &QDownloadThread::OnDownloadFinish, this, &QDownloadApp::OnDownloadFinish);
    connect(m_pollTimer, &QTimer::timeout, this, &QDownloadApp::OnTimerLoadSlot);

    const QString fileName = QLatin1String(kInstallerName);
    // The target must be writable; say why not in the dialog itself.
    QFile probe(folder + QLatin1Char('/') + fileName);
    const bool existed = probe.exists();
    if (!probe.open(QIODevice::WriteOnly | QIODevice::Append)) {
        HideProgress();
        m_messageLabel->setText(fileName + QStringLiteral(": ") + probe.errorString());
    } else {
        probe.close();
        if (!existed && probe.size() == 0)
            probe.remove();
    }
    // Probed before the start, so that the probe never races the fetch for
    // the file.
    m_thread.StartDownload(link + fileName, fileName, m_expectedSize);
}

QDownloadApp::~QDownloadApp()
{
    m_pollTimer->stop();
    m_thread.wait();
}

void QDownloadApp::HideProgress()
{
    for (QLabel* l : {m_sizeLabel, m_timeLabel, m_rateLabel}) {
        l->clear();
        l->hide();
    }
    m_progressBar->hide();
}

void QDownloadApp::OnDownloadStart()
{
    m_elapsed.restart();
    m_progressBar->reset();
    m_progressBar->setRange(0, BarValue(m_expectedSize, m_expectedSize));
    m_pollTimer->start(kPollIntervalMs);
}

void QDownloadApp::OnTimerLoadSlot()
{
    // The fetch reports no progress: the size of the download folder does.
    quint64 total = 0;
    QDirIterator it(UpdateFolder(), QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        total += quint64(it.fileInfo().size());
    }
    m_progressBar->setValue(qMin(BarValue(total, m_expectedSize), m_progressBar->maximum()));
    m_timeLabel->setText(tr("Time Elapsed: ") + QString::number(m_elapsed.elapsed() / 1000) + tr(" sec ") +
                         QStringLiteral("(") + MebibyteText(total) + tr(" MB copied) "));
}

void QDownloadApp::OnDownloadProgress(qlonglong bytesReceived, qlonglong bytesTotal)
{
    const qint64 ms = qMax<qint64>(1, m_elapsed.elapsed());
    m_progressBar->setMaximum(BarValue(quint64(qMax<qlonglong>(bytesTotal, 0)), quint64(qMax<qlonglong>(bytesTotal, 0))));
    m_progressBar->setValue(BarValue(quint64(qMax<qlonglong>(bytesReceived, 0)), quint64(qMax<qlonglong>(bytesTotal, 0))));
    m_timeLabel->setText(tr("Time Elapsed: ") + QString::number(ms / 1000) + tr(" sec ") + QStringLiteral("(") +
                         MebibyteText(quint64(qMax<qlonglong>(bytesReceived, 0))) + tr(" MB copied) "));
    m_rateLabel->setText(tr("Transfer Rate: ") + QString::number(bytesReceived / ms * 1000 / 1024) + tr(" KB/sec "));
}

// The two slots of a transfer by the toolkit that this dialog doesn't start;
// the thread's fetch owns its reply.
void QDownloadApp::downloadFinished() {}
void QDownloadApp::downloadReadyRead() {}

void QDownloadApp::OnDownloadFinish(QString strDownloadPath)
{
    m_pollTimer->stop();
    HideProgress();
    close();

    QFile::setPermissions(strDownloadPath, QFile::permissions(strDownloadPath) | QFileDevice::ExeOwner |
                                               QFileDevice::ExeUser | QFileDevice::ReadOwner);
    if (!QProcess::startDetached(strDownloadPath, {})) {
        // Quitting without a running installer would leave the user with
        // nothing: keep the program and say why.
        qDebug() << "Update: cannot start" << strDownloadPath;
        QMessageBox::information(parentWidget(), tr("Software Update"),
                                 tr("The installer could not be started: ") + strDownloadPath);
        return;
    }
    g_quitForInstaller();
}

void QDownloadApp::OnDownloadFailed()
{
    m_pollTimer->stop();
    HideProgress();
    QMessageBox::information(parentWidget(), tr("Software Update"),
                             tr("Update failed \n\n Update failed due to partial download."));
    close();
}

void QDownloadApp::Retranslate()
{
    setWindowTitle(tr("Software Update"));
    m_titleLabel->setText(tr("Software Update"));
    m_downloadingLabel->setText(tr("Downloading Files"));
    m_okBtn->setText(tr("OK"));
}
