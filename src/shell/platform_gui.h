#pragma once
// Platform layer, part for the window program: screen facts read before the
// toolkit starts, the single-instance guard and the preview player.
#include <QString>
#include <QStringList>
#include <memory>

class QSharedMemory;

struct ScreenFacts {
    int dpi = 96;
    int workWidth = 1920;
    int workHeight = 1080;
};

// The primary screen's dots per inch (Xft.dpi, else pixels per millimetre)
// and work area (_NET_WORKAREA, else the screen size), read from X11 before
// the QApplication exists. Without a display (offscreen, pure Wayland):
// 96 dpi and 1920 x 1080.
ScreenFacts ReadScreenFacts();

// Creates the guard segment under key. A segment left by a crashed instance
// is cleared first (on Unix it outlives its process). Null when another
// living instance holds it.
std::unique_ptr<QSharedMemory> AcquireInstanceGuard(const QString& key);

// The preview player: the first of mpv, mplayer, ffplay and xdg-open that is
// in the application folder or on PATH. Empty when none is there.
QString FindPreviewPlayer(const QString& appFolder);

// The kinds of player, told apart by the program's name; xdg-open and any
// other program get the file alone.
enum PlayerKind { PlayerPlain = 2, PlayerMplayer = 3, PlayerMpv = 4, PlayerFfplay = 5 };
int PlayerKindOf(const QString& playerPath);

// The arguments that player kind takes to play target in a window.
QStringList PreviewArguments(int kind, const QString& target, bool doubleClick);

// Makes folder/name visible to the desktop's file managers again: removes
// its line from folder/.hidden, and that file when it becomes empty.
bool ShowEntryToUser(const QString& folder, const QString& name);

class QUrl;

// Opens an address (a web page or a local file) with the desktop's handler;
// false when nothing took it. Tests put their own function here, so that no
// browser or viewer is opened.
extern bool (*g_openUrl)(const QUrl& url);

// Starts program with args in folder, not waited for and not tied to this
// process; false when it could not be started. Tests replace it as well.
extern bool (*g_startDetached)(const QString& program, const QStringList& args, const QString& folder);
