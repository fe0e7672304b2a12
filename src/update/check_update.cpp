#include "update/check_update.h"

#include "core/platform_core.h"
#include "shell/scale.h"
#include "update/download_app.h"
#include "update/update_fetch.h"
#include "workspace/info_dlg.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QEvent>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QProgressBar>
#include <QRegularExpression>
#include <QPushButton>
#include <QSettings>
#include <QTextEdit>
#include <QUrl>
#include <QVBoxLayout>

namespace {
// A descriptor line longer than this is garbage; reading stops there so that a
// wrong file of any size costs nothing.
constexpr qint64 kMaxLineLength = 256;

int Scaled(int designPixels)
{
    return int(designPixels * g_uiScale);
}
} // namespace

QCheckUpdate::QCheckUpdate(QWidget* parent)
    : QDialog(parent), progressBar(new QProgressBar(this)), label(new QLabel(this)),
      m_manager(new QNetworkAccessManager(this))
{
    setObjectName(QStringLiteral("QCheckUpdate"));
    setModal(true);
    setWindowTitle(tr("Software Update"));
    progressBar->setObjectName(QStringLiteral("progressBar"));
    progressBar->setRange(0, 0);
    label->setObjectName(QStringLiteral("label"));
    label->setText(tr("Checking for updates..."));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(progressBar);
    setFixedSize(Scaled(300), Scaled(90));

    const QString folder = UpdateFolder();
    QDir().mkpath(folder);
    g_descriptorPath = folder + QLatin1Char('/') + QLatin1String(kDescriptorName);
    g_installerPath = folder + QLatin1Char('/') + QLatin1String(kInstallerName);

    // Without a network the check ends here; after the button it says so.
    if (!g_networkAvailable()) {
        if (g_updateByUser)
            SayCheckFailed(tr("there is no network connection"));
        return;
    }
    qDebug() << "System has a network connection.";

    g_newMajor = false;
    g_newMinor = false;
    g_minorVersionText.clear();
    g_majorVersionText.clear();
    hide();
    QFile::remove(g_descriptorPath);
    RunCheck();
}

void QCheckUpdate::SayNoUpdate()
{
    if (g_updateByUser) {
        InfoDlgClass dlg(parentWidget());
        dlg.setText(tr("No update available."));
        dlg.CentreOn(parentWidget());
        dlg.exec();
        g_updateByUser = false;
    }
    emit NoUpdates();
    close();
}

void QCheckUpdate::SayCheckFailed(const QString& why)
{
    qDebug() << "Update: the check failed:" << why;
    if (g_updateByUser) {
        InfoDlgClass dlg(parentWidget());
        dlg.setText(tr("The update check failed: %1").arg(why));
        dlg.CentreOn(parentWidget());
        dlg.exec();
        g_updateByUser = false;
    }
    emit NoUpdates();
    close();
}

void QCheckUpdate::RunCheck()
{
    const QString link = UpdateLink();
    const QString address = link + QLatin1String(kDescriptorName);
    const QUrl url(address, QUrl::StrictMode);
    if (link.isEmpty()) {
        SayCheckFailed(tr("no update address is set"));
        return;
    }
    if (!url.isValid() || url.isRelative()) {
        SayCheckFailed(tr("the update address is not valid"));
        return;
    }

    QString target = g_descriptorPath;
    QString why;
    bool fetched = FetchByNetwork(*m_manager, address, target, g_updateTimeouts.descriptorIdleMs, &why);
    if (!fetched) {
        QDir().mkpath(UpdateFallbackFolder());
        target = UpdateFallbackFolder() + QLatin1Char('/') + QLatin1String(kDescriptorName);
        QFile::remove(target);
        fetched = FetchByCurl(address, target, g_updateTimeouts.descriptorTotalMs, &why);
    }
    if (!fetched) {
        QFile::remove(target);
        QDir(UpdateFolder()).removeRecursively();
        hide();
        SayCheckFailed(why.isEmpty() ? tr("the server gave no answer") : why);
        return;
    }

    // Under 4 bytes is no answer.
    if (QFileInfo(target).size() < 4) {
        QFile::remove(target);
        QDir(UpdateFolder()).removeRecursively();
        hide();
        SayCheckFailed(tr("the server's answer holds no version"));
        return;
    }

    m_descriptor = new QFile(target, this);
    if (!m_descriptor->open(QIODevice::ReadOnly | QIODevice::Text)) {
        SayCheckFailed(m_descriptor->errorString());
        return;
    }
    QString installed;
    {
        QSettings settings(g_settingsPath, QSettings::IniFormat);
        installed = settings.value(QStringLiteral("Version")).toString().trimmed();
    }
    if (installed.isEmpty()) {
        m_descriptor->close();
        SayCheckFailed(tr("this copy does not know its own version"));
        return;
    }

    const QString line1 = CutVersion(QString::fromUtf8(m_descriptor->readLine(kMaxLineLength)));
    const QString line2 = CutVersion(QString::fromUtf8(m_descriptor->readLine(kMaxLineLength)));
    static const QRegularExpression version(QStringLiteral("^\\d{1,2}(\\.\\d+){1,3}$"));
    if (!version.match(line1).hasMatch() && !version.match(line2).hasMatch()) {
        m_descriptor->close();
        SayCheckFailed(tr("the server's answer holds no version"));
        return;
    }
    m_minorVersion = line1;
    m_majorVersion = line2;

    const VersionRaise first = CompareVersion(line1, installed);
    if (first.major)
        g_newMajor = true;
    if (first.minor) {
        g_newMinor = true;
        g_minorVersionText = line1;
    }
    const VersionRaise second = CompareVersion(line2, installed);
    if (second.major)
        g_newMajor = true;
    if (second.minor)
        g_newMinor = true;
    if (second.major || second.minor)
        g_majorVersionText = line2;
    // A higher A on line 1 alone would name no version in the offer: name
    // line 1 then.
    if (g_newMajor && g_majorVersionText.isEmpty())
        g_majorVersionText = line1;

    if (!g_newMajor && !g_newMinor) {
        m_descriptor->close();
        SayNoUpdate();
        return;
    }

    g_updateByUser = false;
    hide();
    auto* offer = new QShowUpdate(parentWidget());
    offer->CentreOn(parentWidget());
    offer->exec();
    offer->deleteLater();
    m_descriptor->close();
}

QShowUpdate::QShowUpdate(QWidget* parent)
    : FramelessDialog(parent), m_text(new QTextEdit(this)), m_updateBtn(new QPushButton(tr("Update"), this)),
      m_cancelBtn(new QPushButton(tr("Cancel"), this))
{
    setObjectName(QStringLiteral("ShowUpdateAvail"));
    m_text->setObjectName(QStringLiteral("textEdit"));
    m_text->setReadOnly(true);
    m_updateBtn->setObjectName(QStringLiteral("UpdateBtn"));
    m_cancelBtn->setObjectName(QStringLiteral("CancelBtn"));
    m_updateBtn->setCursor(Qt::PointingHandCursor);
    m_cancelBtn->setCursor(Qt::PointingHandCursor);
    connect(m_updateBtn, &QPushButton::clicked, this, &QShowUpdate::DownloadApp);
    connect(m_cancelBtn, &QPushButton::clicked, this, &QShowUpdate::CancelDownload);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Scaled(16), Scaled(16), Scaled(16), Scaled(12));
    layout->addWidget(m_text, 1);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(m_updateBtn);
    row->addWidget(m_cancelBtn);
    layout->addLayout(row);
    setFixedSize(Scaled(400), Scaled(170));

    if (g_newMinor)
        m_text->append(tr("A new minor update ") + g_minorVersionText +
                       tr(" is available. Click Update to proceed further.") + QLatin1Char('\n'));
    else if (g_newMajor)
        m_text->append(tr("A new major release ") + g_majorVersionText +
                       tr(" is available. Click Update to proceed further.") + QLatin1Char('\n'));
}

QString QShowUpdate::message() const
{
    return m_text->toPlainText();
}

void QShowUpdate::DownloadApp()
{
    hide();
    // The download outlives this offer: it belongs to the window.
    auto* download = new QDownloadApp(parentWidget());
    download->CentreOn(parentWidget());
    download->show();
}

void QShowUpdate::CancelDownload()
{
    close();
}

void QShowUpdate::Retranslate()
{
    m_updateBtn->setText(tr("Update"));
    m_cancelBtn->setText(tr("Cancel"));
}

void QCheckUpdate::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        setWindowTitle(tr("Software Update"));
        label->setText(tr("Checking for updates..."));
    }
    QDialog::changeEvent(event);
}
