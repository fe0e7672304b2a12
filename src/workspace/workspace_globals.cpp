#include "workspace/workspace_globals.h"

bool g_onHomePage = true;
bool g_onListPage = false;
bool g_onRepairPage = false;
bool g_advancePending = false;
bool g_onSavePage = false;
bool g_resultsShown = false;
bool g_repairDone = false;
bool g_backPending = false;
bool g_savePressed = false;
bool g_maximised = false;

bool g_confirmYes = false;
bool g_confirmClosed = false;
bool g_applyToAll = false;

QStringList g_workFolders;
