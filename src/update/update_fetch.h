#pragma once
// Pieces of the update check that need no dialog: the process-wide state of
// the check, the local paths, the two independent ways of fetching a URL to a
// file, and the compare of version strings A.B.C.D.
#include <QString>

class QNetworkAccessManager;

extern bool g_updateByUser;          // the check was started by the Update button
extern bool g_newMajor;              // the descriptor names a higher A
extern bool g_newMinor;              // the descriptor names a higher B, C or D
extern QString g_minorVersionText;   // line 1 of the descriptor, when it raised g_newMinor
extern QString g_majorVersionText;   // line 2 of the descriptor, when it raised a flag
extern QString g_descriptorPath;     // <temp>/updatetmp/Reelwright.txt
extern QString g_installerPath;      // <temp>/updatetmp/Reelwright.run

// Bounds of every network wait of the update code, in milliseconds. "Idle" is
// the longest silence of a transfer by the toolkit; "total" the longest run of
// the curl process. Tests shorten them.
struct UpdateTimeouts {
    int descriptorIdleMs = 10000;
    int descriptorTotalMs = 20000;
    int installerIdleMs = 30000;
    int installerTotalMs = 30 * 60 * 1000;
};
extern UpdateTimeouts g_updateTimeouts;

// Whether the system reports a network connection; the check ends without a
// word when it doesn't. Replaceable so that tests on a machine without
// network interfaces can still talk to their loopback server.
extern bool (*g_networkAvailable)();
bool SystemHasNetwork();

// Called after the installer has been started, to end the program so that the
// installer can replace it. Tests replace it: a quit outside the main loop
// would stop every later event loop of the test process.
extern void (*g_quitForInstaller)();

extern const char kDescriptorName[];   // "Reelwright.txt"
extern const char kInstallerName[];    // "Reelwright.run"

QString UpdateFolder();            // QDir::tempPath() + "/updatetmp"
QString UpdateFallbackFolder();    // QDir::tempPath() + "/updatetmp-fallback", target of the curl way

// Settings group of the update link for a LanguageType value: EN, DE, FR, IT,
// ES, JA, CN, KO, DU, BR, HI; EN for a value outside 0 to 10.
QString UpdateLanguageCode(int languageType);

// The base address of the update folder for the language in use: the key
// <code>/UpdateNewLink of the store at g_settingsPath, or the build-time
// default when the key is missing.
QString UpdateLink();

// First way: a blocking fetch by the toolkit's network stack in a local event
// loop. Gives up after idleMs without data. True when the server answered
// with success and the whole body is in target; a failed target is removed.
// why, when given, gets the reason of a failure in the user's words.
bool FetchByNetwork(QNetworkAccessManager& manager, const QString& url, const QString& target, int idleMs,
                    QString* why = nullptr);

// Second, independent way: `curl -fsSL -o TARGET URL`, killed after totalMs.
// True when curl ended with code 0.
bool FetchByCurl(const QString& url, const QString& target, int totalMs, QString* why = nullptr);

// Result of comparing one descriptor line with the installed version.
struct VersionRaise {
    bool major = false;   // A of the line above A of the installed version
    bool minor = false;   // B, C or D of the line above its own counterpart
};

// A version string as it is compared: trimmed and cut to 8 characters.
QString CutVersion(const QString& text);

// Length of the first component: 1 or 2, else 0.
int FirstComponentLength(const QString& version);

// Compares each component on its own: A is the first L characters, B, C and D
// the single characters at L + 1, L + 3 and L + 5. A slice that doesn't parse
// counts as 0.
VersionRaise CompareVersion(const QString& line, const QString& installed);
