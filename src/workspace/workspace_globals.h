#pragma once
// Process-wide flags of the window. Main thread only: they record which page
// is up and how the last question was answered, and drive the help topic and
// the exit question.
#include <QStringList>

extern bool g_onHomePage;       // page 1 without files
extern bool g_onListPage;       // page 1 with files
extern bool g_onRepairPage;     // page 2 during a run, and after a Back answered Yes
extern bool g_advancePending;   // results hold rows that await Advance Repair
extern bool g_onSavePage;       // a preview or a save was asked for on page 2
extern bool g_resultsShown;     // page 2 is up (set by Repair, cleared by Back)
extern bool g_repairDone;       // the last run finished by itself
extern bool g_backPending;      // a Back press is being answered
extern bool g_savePressed;      // the save button was pressed in this process; never cleared
extern bool g_maximised;        // argument of the last OnThisPage

extern bool g_confirmYes;       // ConfirmDlgClass: Yes (true) or Cancel (false)
extern bool g_confirmClosed;    // ConfirmDlgClass: closed by its title control
extern bool g_applyToAll;       // "Apply to all files of same format."

extern QStringList g_workFolders;   // work files of this run; their folders are emptied on abort
