#pragma once
#include <QString>
#include <QStringList>
#include <functional>

extern QString g_playerPath;     // the external preview player
extern int g_playerKind;         // PlayerKind of g_playerPath
extern int g_languageType;       // LanguageType, 0 to 10
extern QString g_systemLanguage;

// Step of start-up that needs no toolkit object: settings at the first store,
// and the display scale put into the environment. Returns g_dpiScale.
float PrepareDisplayScale();

// The process entry of the window program.
int RunWindowProgram(int argc, char** argv);

// The files named on the command line: every argument the toolkit left that
// is not an option, as an absolute path.
QStringList FileArguments(const QStringList& arguments);

// One instance per user and settings folder: the single-instance guard's
// key carries a digest of the settings folder.
QString InstanceKey();

// Hand-over of files to the instance that runs: the name of its local
// socket (one per user and settings folder), the sending side (true once the
// running instance took them) and the listening side.
QString HandOverName();
bool HandOverFiles(const QString& name, const QStringList& files);
class QLocalServer;
class QObject;
QLocalServer* ListenForHandOver(const QString& name, QObject* parent,
                                const std::function<void(const QStringList&)>& onFiles);
