#include "workspace/workspace_globals.h"

#include "shell/startup.h"

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
QStringList g_keptResults;

QLocale LanguageLocale()
{
    // In the order of LanguageType: EN DE FR IT ES JA CN KO DU BR HI.
    static const QLocale locales[] = {
        QLocale(QLocale::English, QLocale::UnitedStates), QLocale(QLocale::German, QLocale::Germany),
        QLocale(QLocale::French, QLocale::France),        QLocale(QLocale::Italian, QLocale::Italy),
        QLocale(QLocale::Spanish, QLocale::Spain),        QLocale(QLocale::Japanese, QLocale::Japan),
        QLocale(QLocale::Chinese, QLocale::China),        QLocale(QLocale::Korean, QLocale::SouthKorea),
        QLocale(QLocale::Dutch, QLocale::Netherlands),    QLocale(QLocale::Portuguese, QLocale::Brazil),
        QLocale(QLocale::Hindi, QLocale::India)};
    return g_languageType >= 0 && g_languageType <= 10 ? locales[g_languageType] : locales[0];
}
