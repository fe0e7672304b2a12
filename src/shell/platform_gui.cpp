#include "shell/platform_gui.h"

#include "core/platform_core.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QSharedMemory>
#include <QStandardPaths>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xresource.h>
#include <cstdlib>
#include <cstring>

namespace {

bool OpenWithDesktop(const QUrl& url)
{
    return QDesktopServices::openUrl(url);
}

bool StartDetachedProcess(const QString& program, const QStringList& args, const QString& folder)
{
    return QProcess::startDetached(program, args, folder);
}

} // namespace

bool (*g_openUrl)(const QUrl& url) = OpenWithDesktop;
bool (*g_startDetached)(const QString&, const QStringList&, const QString&) = StartDetachedProcess;

ScreenFacts ReadScreenFacts()
{
    ScreenFacts facts;
    const char* platform = std::getenv("QT_QPA_PLATFORM");
    if ((platform && std::strncmp(platform, "xcb", 3) != 0) || !std::getenv("DISPLAY"))
        return facts;
    Display* dpy = XOpenDisplay(nullptr);
    if (!dpy)
        return facts;
    const int screen = DefaultScreen(dpy);
    const int widthPx = DisplayWidth(dpy, screen);
    const int heightPx = DisplayHeight(dpy, screen);
    facts.workWidth = widthPx;
    facts.workHeight = heightPx;

    bool haveDpi = false;
    if (char* rms = XResourceManagerString(dpy)) {
        XrmInitialize();
        XrmDatabase db = XrmGetStringDatabase(rms);
        char* type = nullptr;
        XrmValue value;
        if (db && XrmGetResource(db, "Xft.dpi", "Xft.Dpi", &type, &value) && value.addr) {
            const int dpi = std::atoi(value.addr);
            if (dpi > 0) {
                facts.dpi = dpi;
                haveDpi = true;
            }
        }
        if (db)
            XrmDestroyDatabase(db);
    }
    if (!haveDpi) {
        const int widthMm = DisplayWidthMM(dpy, screen);
        if (widthMm > 0)
            facts.dpi = int(double(widthPx) * 25.4 / widthMm + 0.5);
    }

    const Atom workArea = XInternAtom(dpy, "_NET_WORKAREA", True);
    if (workArea != None) {
        Atom type;
        int format;
        unsigned long items = 0, after = 0;
        unsigned char* data = nullptr;
        if (XGetWindowProperty(dpy, RootWindow(dpy, screen), workArea, 0, 4, False, XA_CARDINAL, &type,
                               &format, &items, &after, &data) == Success
            && data && items >= 4 && format == 32) {
            const long* v = reinterpret_cast<const long*>(data);
            if (v[2] > 0 && v[3] > 0) {
                facts.workWidth = int(v[2]);
                facts.workHeight = int(v[3]);
            }
        }
        if (data)
            XFree(data);
    }
    XCloseDisplay(dpy);
    return facts;
}

std::unique_ptr<QSharedMemory> AcquireInstanceGuard(const QString& key)
{
    {
        // Attaching to and detaching from an orphaned segment (its creator
        // died) destroys it; a living owner keeps it attached and alive.
        QSharedMemory orphan(key);
        if (orphan.attach())
            orphan.detach();
    }
    auto guard = std::make_unique<QSharedMemory>(key);
    if (!guard->create(512, QSharedMemory::ReadWrite))
        return nullptr;
    return guard;
}

QString FindPreviewPlayer(const QString& appFolder)
{
    static const char* const players[] = {"mpv", "mplayer", "ffplay", "xdg-open"};
    for (const char* name : players) {
        const QString local = appFolder + QLatin1Char('/') + QLatin1String(name);
        if (QFileInfo(local).isExecutable())
            return local;
        const QString found = QStandardPaths::findExecutable(QString::fromLatin1(name));
        if (!found.isEmpty())
            return found;
    }
    return QString();
}

int PlayerKindOf(const QString& playerPath)
{
    const QString name = QFileInfo(playerPath).fileName();
    if (name == QLatin1String("mpv"))
        return PlayerMpv;
    if (name == QLatin1String("mplayer"))
        return PlayerMplayer;
    if (name == QLatin1String("ffplay"))
        return PlayerFfplay;
    return PlayerPlain;
}

QStringList PreviewArguments(int kind, const QString& target, bool)
{
    switch (kind) {
    case PlayerMpv:
        // A window even for a file without pictures, so that it can be closed.
        return {QStringLiteral("--force-window=yes"), QStringLiteral("--"), target};
    case PlayerMplayer:
        return {QStringLiteral("--"), target};
    case PlayerFfplay:
        return {QStringLiteral("-autoexit"), target};
    default:
        return {target};
    }
}

bool ShowEntryToUser(const QString& folder, const QString& name)
{
    return SetHiddenInFolder(folder, name, false);
}
