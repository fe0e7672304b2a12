#include "core/repair_globals.h"

std::atomic<bool> g_stopRequested{false};
std::atomic<bool> g_repairRunning{false};
std::atomic<bool> g_referenceMode{false};
std::atomic<bool> g_forgetReference{false};
QString g_referencePath;
QString g_customWorkRoot;

std::atomic<bool> g_moovRead{false};
QStringList g_repairedPaths;

QString g_programDir;
QString g_appDir;
