#pragma once
#include <QString>

extern QString g_playerPath;     // the external preview player
extern int g_playerKind;         // 3: mplayer-style player (the only kind on Linux)
extern int g_languageType;       // LanguageType, 0 to 10
extern QString g_systemLanguage;

// Step of start-up that needs no toolkit object: settings at the first store,
// and the display scale put into the environment. Returns g_dpiScale.
float PrepareDisplayScale();

// The process entry of the window program.
int RunWindowProgram(int argc, char** argv);
