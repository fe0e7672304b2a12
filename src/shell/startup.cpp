#include "shell/startup.h"

#include "core/repair_globals.h"
#include "shell/languages.h"
#include "core/platform_core.h"
#include "shell/platform_gui.h"
#include "shell/scale.h"
#include "workspace/info_dlg.h"
#include "workspace/video_repair_window.h"

#include <QApplication>
#include <QDebug>
#include <QDesktopWidget>
#include <QLocale>
#include <QScreen>
#include <QSettings>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSharedMemory>
#include <QStandardPaths>
#include <memory>

QString g_playerPath;
int g_playerKind = 3;
int g_languageType = 0;
QString g_systemLanguage;

namespace {
const char kInstanceKey[] = "62d60669-bb94-4a94-88bb-b964890a7e10";
}

QString InstanceKey()
{
    const QByteArray folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation).toUtf8();
    return QString::fromLatin1(kInstanceKey) + QLatin1Char('-')
         + QString::fromLatin1(QCryptographicHash::hash(folder, QCryptographicHash::Sha1).toHex().left(12));
}

QStringList FileArguments(const QStringList& arguments)
{
    QStringList files;
    for (const QString& a : arguments.mid(1))
        if (!a.startsWith(QLatin1Char('-')))
            files << QFileInfo(a).absoluteFilePath();
    return files;
}

QString HandOverName()
{
    return QStringLiteral("reelwright-") + InstanceKey();
}

bool HandOverFiles(const QString& name, const QStringList& files)
{
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(3000))
        return false;
    // One path a line, an empty line at the end; the answer is "ok".
    socket.write((files.join(QLatin1Char('\n')) + QStringLiteral("\n\n")).toUtf8());
    if (!socket.waitForBytesWritten(3000))
        return false;
    while (socket.bytesAvailable() < 2 && socket.waitForReadyRead(5000)) {
    }
    return socket.readAll().startsWith("ok");
}

QLocalServer* ListenForHandOver(const QString& name, QObject* parent,
                                const std::function<void(const QStringList&)>& onFiles)
{
    auto* server = new QLocalServer(parent);
    server->setSocketOptions(QLocalServer::UserAccessOption);
    QLocalServer::removeServer(name);   // a socket file left by a crash
    if (!server->listen(name)) {
        qWarning() << "No hand-over of files:" << server->errorString();
        delete server;
        return nullptr;
    }
    QObject::connect(server, &QLocalServer::newConnection, server, [server, onFiles] {
        while (QLocalSocket* socket = server->nextPendingConnection()) {
            QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            auto buffer = std::make_shared<QByteArray>();
            QObject::connect(socket, &QLocalSocket::readyRead, socket, [socket, buffer, onFiles] {
                *buffer += socket->readAll();
                if (buffer->size() > (1 << 20)) {
                    socket->abort();
                    return;
                }
                if (!buffer->endsWith("\n\n"))
                    return;
                socket->write("ok");
                socket->flush();
                QStringList files;
                for (const QString& line : QString::fromUtf8(*buffer).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
                    files << line;
                buffer->clear();
                onFiles(files);
            });
        }
    });
    return server;
}

float PrepareDisplayScale()
{
    g_settingsPath = SettingsFilePath(SettingsStore::DataRecovery);
    const bool resize = EnsureResizeAppforDPI(g_settingsPath);
    if (!resize) {
        qputenv("QT_SCALE_FACTOR", "1");
        qputenv("QT_AUTO_SCREEN_SCALE_FACTOR", "0");
        qputenv("QT_FONT_DPI", "102");
        g_dpiScale = 1.0f;
        return g_dpiScale;
    }
    const ScreenFacts facts = ReadScreenFacts();
    g_dpiScale = FitScale(facts.dpi, facts.workWidth, facts.workHeight);
    qputenv("QT_FONT_DPI", FontDpiText(g_dpiScale));
    return g_dpiScale;
}

int RunWindowProgram(int argc, char** argv)
{
    PrepareDisplayScale();
    g_uiScale = g_dpiScale;
    QCoreApplication::setAttribute(Qt::AA_DisableHighDpiScaling);
    QApplication app(argc, argv);
    // Ties the window to reelwright.desktop, whose icon the desktop shows.
    QGuiApplication::setDesktopFileName(QStringLiteral("reelwright"));
    QApplication::processEvents();
    g_systemLanguage = QLocale::languageToString(QLocale::system().language());

    g_playerPath = FindPreviewPlayer(QCoreApplication::applicationDirPath());
    g_playerKind = PlayerKindOf(g_playerPath);

    g_programDir = QCoreApplication::applicationDirPath();
    g_settingsPath = SettingsFilePath(SettingsStore::PhotoRecovery);
    EnsureResizeAppforDPI(g_settingsPath);
    g_appDir = g_programDir + QStringLiteral("/Libmp4");

    {
        QSettings settings(g_settingsPath, QSettings::IniFormat);
        g_languageType = settings.value(QStringLiteral("LanguageType"), 0).toInt();
        // The update check compares the server's versions with this one.
        settings.setValue(QStringLiteral("Version"), QStringLiteral(REELWRIGHT_VERSION));
    }
    SelectTranslators(g_languageType);

    const QStringList files = FileArguments(QCoreApplication::arguments());
    auto guard = AcquireInstanceGuard(InstanceKey());
    if (!guard) {
        // The files go to the window that is up; without files, or when it
        // doesn't answer, the start says that the program runs.
        if (!files.isEmpty() && HandOverFiles(HandOverName(), files))
            return 0;
        InfoDlgClass dlg;
        dlg.setText(QCoreApplication::translate("main", "Reelwright is already running."));
        dlg.exec();
        return 0;
    }
    qDebug() << "Application started successfully.";

    auto* window = new VideoRepairWindow();
    const QRect desk = QApplication::primaryScreen() ? QApplication::primaryScreen()->geometry() : QRect(0, 0, 1920, 1080);
    window->move((desk.width() - window->width()) / 2, (desk.height() - window->height()) / 2 - 25);
    window->StartFadeIn();
    window->show();
    ListenForHandOver(HandOverName(), window, [window](const QStringList& handed) {
        window->AddPaths(handed);
        window->raise();
        window->activateWindow();
    });
    if (!files.isEmpty())
        window->AddPaths(files);
    const int result = app.exec();
    delete window;
    return result;
}
