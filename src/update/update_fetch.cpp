#include "update/update_fetch.h"

#include "core/platform_core.h"
#include "shell/startup.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkConfigurationManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QProcess>
#include <QSettings>
#include <QTimer>
#include <QUrl>

// The update server's folder when the store names none, set by the build
// (REELWRIGHT_UPDATE_LINK in src/CMakeLists.txt); empty makes the check fail
// with "no update address is set".
#ifndef REELWRIGHT_UPDATE_LINK
#define REELWRIGHT_UPDATE_LINK ""
#endif

bool g_updateByUser = false;
bool g_newMajor = false;
bool g_newMinor = false;
QString g_minorVersionText;
QString g_majorVersionText;
QString g_descriptorPath;
QString g_installerPath;
UpdateTimeouts g_updateTimeouts;

const char kDescriptorName[] = "Reelwright.txt";
const char kInstallerName[] = "Reelwright.run";

namespace {
void QuitApplication()
{
    QCoreApplication::quit();
}
} // namespace

bool (*g_networkAvailable)() = &SystemHasNetwork;
void (*g_quitForInstaller)() = &QuitApplication;

bool SystemHasNetwork()
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    QNetworkConfigurationManager manager;
    const QNetworkConfiguration config = manager.defaultConfiguration();
    const bool discovered = (config.state() & QNetworkConfiguration::Discovered) != 0;
    return discovered || manager.isOnline();
    QT_WARNING_POP
}

QString UpdateFolder()
{
    return QDir::tempPath() + QStringLiteral("/updatetmp");
}

QString UpdateFallbackFolder()
{
    return QDir::tempPath() + QStringLiteral("/updatetmp-fallback");
}

QString UpdateLanguageCode(int languageType)
{
    static const char* const codes[] = {"EN", "DE", "FR", "IT", "ES", "JA", "CN", "KO", "DU", "BR", "HI"};
    if (languageType < 0 || languageType > 10)
        return QStringLiteral("EN");
    return QString::fromLatin1(codes[languageType]);
}

QString UpdateLink()
{
    QSettings settings(g_settingsPath, QSettings::IniFormat);
    const QString key = UpdateLanguageCode(g_languageType) + QStringLiteral("/UpdateNewLink");
    return settings.value(key, QStringLiteral(REELWRIGHT_UPDATE_LINK)).toString().trimmed();
}

bool FetchByNetwork(QNetworkAccessManager& manager, const QString& url, const QString& target, int idleMs,
                    QString* why)
{
    QFile file(target);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        qDebug() << "Update: cannot write" << target << file.errorString();
        return false;
    }
    QNetworkRequest request{QUrl(url)};
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    QNetworkReply* reply = manager.get(request);

    QEventLoop loop;
    QTimer idle;
    idle.setSingleShot(true);
    bool timedOut = false;
    bool writeFailed = false;
    QObject::connect(&idle, &QTimer::timeout, &loop, [&] {
        timedOut = true;
        reply->abort();
    });
    QObject::connect(reply, &QNetworkReply::readyRead, &loop, [&] {
        idle.start(idleMs);
        const QByteArray data = reply->readAll();
        if (file.write(data) != data.size() && !writeFailed) {
            writeFailed = true;
            reply->abort();
        }
    });
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    idle.start(idleMs);
    if (!reply->isFinished())
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    idle.stop();

    const QByteArray rest = reply->isOpen() ? reply->readAll() : QByteArray();
    if (!rest.isEmpty() && file.write(rest) != rest.size())
        writeFailed = true;
    file.close();

    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const bool httpOk = status == 0 || (status >= 200 && status < 300);
    const bool ok = !timedOut && !writeFailed && reply->error() == QNetworkReply::NoError && httpOk;
    if (!ok) {
        const QString reason = timedOut ? QCoreApplication::translate("QCheckUpdate", "the server gave no answer")
                                        : reply->errorString();
        qDebug() << "Update: fetch of" << url << "failed:" << reason;
        if (why)
            *why = reason;
    }
    reply->deleteLater();
    if (!ok)
        QFile::remove(target);
    return ok;
}

bool FetchByCurl(const QString& url, const QString& target, int totalMs, QString* why)
{
    QProcess curl;
    curl.setProcessChannelMode(QProcess::MergedChannels);
    // Waited for in a local loop rather than by waitForFinished, so that the
    // window still paints while curl runs on the main thread.
    QEventLoop loop;
    QTimer limit;
    limit.setSingleShot(true);
    bool timedOut = false;
    QObject::connect(&curl, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &loop, &QEventLoop::quit);
    QObject::connect(&curl, &QProcess::errorOccurred, &loop, [&](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            loop.quit();
    });
    QObject::connect(&limit, &QTimer::timeout, &loop, [&] {
        timedOut = true;
        loop.quit();
    });
    curl.start(QStringLiteral("curl"), {QStringLiteral("-fsSL"), QStringLiteral("-o"), target, url});
    limit.start(totalMs);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    limit.stop();

    if (curl.error() == QProcess::FailedToStart) {
        qDebug() << "Update: curl could not be started:" << curl.errorString();
        return false;
    }
    if (timedOut) {
        qDebug() << "Update: curl gave no result within" << totalMs << "ms";
        if (why)
            *why = QCoreApplication::translate("QCheckUpdate", "the server gave no answer");
        curl.kill();
        curl.waitForFinished(2000);
        QFile::remove(target);
        return false;
    }
    const bool ok = curl.exitStatus() == QProcess::NormalExit && curl.exitCode() == 0;
    if (!ok) {
        const QString said = QString::fromLocal8Bit(curl.readAll()).trimmed();
        qDebug() << "Update: curl failed:" << said;
        if (why && !said.isEmpty())
            *why = said.section(QLatin1Char('\n'), -1).remove(QStringLiteral("curl: "));
    }
    return ok;
}

QString CutVersion(const QString& text)
{
    return text.trimmed().left(8);
}

int FirstComponentLength(const QString& version)
{
    const int length = version.section(QLatin1Char('.'), 0, 0).length();
    return (length == 1 || length == 2) ? length : 0;
}

namespace {
struct Components {
    int a = 0, b = 0, c = 0, d = 0;
};

// Digits at fixed places behind the first component; an unparsable slice
// (toInt fails) is 0.
Components Split(const QString& version)
{
    const int l = FirstComponentLength(version);
    Components v;
    v.a = version.left(l).toInt();
    v.b = version.mid(l + 1, 1).toInt();
    v.c = version.mid(l + 3, 1).toInt();
    v.d = version.mid(l + 5, 1).toInt();
    return v;
}
} // namespace

VersionRaise CompareVersion(const QString& line, const QString& installed)
{
    const Components n = Split(CutVersion(line));
    const Components i = Split(CutVersion(installed));
    VersionRaise r;
    r.major = n.a > i.a;
    // Each of B, C and D on its own, with no early stop: 6.0.5.0 counts as
    // newer than 6.1.0.0.
    if (n.b > i.b)
        r.minor = true;
    if (n.c > i.c)
        r.minor = true;
    if (n.d > i.d)
        r.minor = true;
    return r;
}
