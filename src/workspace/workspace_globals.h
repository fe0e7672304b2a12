#pragma once
// Process-wide flags of the window. Main thread only: they record which page
// is up and how the last question was answered, and drive the help topic and
// the exit question.
#include <QLocale>
#include <QStringList>

class QProcess;
class ReferenceFileDlg;

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

// Advance Repair.
extern QString g_advanceFile;       // column 0 of the row whose "Advance Repair" was pressed
extern QString g_advanceTarget;     // source path of that row
extern QString g_referenceBrowsed;  // last path the browse dialog returned
extern QString g_referenceChosen;   // the same, once the dialog took it
extern bool g_referenceRun;         // a reference pass was started
extern QStringList g_sameFormatFiles;   // awaiting sources that share the sample's suffix
extern ReferenceFileDlg* g_referenceDlg;

// Preview and saving.
extern QProcess* g_previewProcess;  // the one player process; made at the first preview
extern bool g_keepRepaired;         // some result was saved at its source: exit keeps it
extern QStringList g_keptResults;   // the results saved at their source; nothing removes them

// The conventions (numbers, dates) of the program's language g_languageType.
QLocale LanguageLocale();
