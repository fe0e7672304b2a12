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

QString g_advanceFile;
QString g_advanceTarget;
QString g_referenceBrowsed;
QString g_referenceChosen;
bool g_referenceRun = false;
QStringList g_sameFormatFiles;
ReferenceFileDlg* g_referenceDlg = nullptr;

QProcess* g_previewProcess = nullptr;
bool g_keepRepaired = false;
