#include "shell/startup.h"

#include "core/repair_globals.h"
#include "shell/languages.h"
#include "shell/platform_core.h"
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
#include <QSharedMemory>

QString g_playerPath;
int g_playerKind = 3;
int g_languageType = 0;
QString g_systemLanguage;

namespace {
const char kInstanceKey[] = "62d60669-bb94-4a94-88bb-b964890a7e10";
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

    // On Linux the product name never names a Windows release: the preview
    // player is always an mplayer-style program.
    g_playerPath = FindPreviewPlayer(QCoreApplication::applicationDirPath());
    g_playerKind = 3;

    g_programDir = QCoreApplication::applicationDirPath();
    g_settingsPath = SettingsFilePath(SettingsStore::PhotoRecovery);
    EnsureResizeAppforDPI(g_settingsPath);
    g_appDir = g_programDir + QStringLiteral("/Libmp4");

    {
        QSettings settings(g_settingsPath, QSettings::IniFormat);
        g_languageType = settings.value(QStringLiteral("LanguageType"), 0).toInt();
    }
    SelectTranslators(g_languageType);

    auto guard = AcquireInstanceGuard(QString::fromLatin1(kInstanceKey));
    if (!guard) {
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
    const int result = app.exec();
    delete window;
    return result;
}
