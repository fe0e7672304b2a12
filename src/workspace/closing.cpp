// VideoRepairWindow: the exit. A close is refused during a run; otherwise the
// user is asked, and an accepted close removes the Repaired folders nobody
// saved and ends the player and the muxer.
#include "workspace/video_repair_window.h"

#include "core/muxer.h"
#include "core/repair_globals.h"
#include "core/platform_core.h"
#include "workspace/about_dlg.h"
#include "workspace/close_application_dlg.h"
#include "workspace/confirm_dlg.h"
#include "workspace/info_dlg.h"
#include "workspace/my_tree_widget.h"
#include "workspace/reference_file_dlg.h"
#include "workspace/reference_repaired_dlg.h"
#include "workspace/repair_finish_dlg.h"
#include "workspace/save_dlg.h"
#include "workspace/stop_dlg.h"
#include "workspace/workspace_globals.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QProcess>
#include <QPushButton>

void VideoRepairWindow::closeEvent(QCloseEvent* event)
{
    bool awaiting = false;
    if (!ExitConfirmed(awaiting)) {
        event->ignore();
        return;
    }
    FinishExit(awaiting);
    event->accept();
}

bool VideoRepairWindow::ExitConfirmed(bool& awaiting)
{
    awaiting = false;
    if (g_repairRunning) {
        repairFinishDialog running(this);
        running.repairedLabl()->setText(tr("Application Running! \nPlease halt the current process to Exit."));
        if (auto* reference = running.findChild<QPushButton*>(QStringLiteral("referenceBtn")))
            reference->hide();
        running.CentreOn(this);
        running.exec();
        return false;
    }
    // The dialogs are gone once an exit was accepted; a later close request
    // has nothing left to ask.
    if (!m_closeDlg)
        return true;

    if (g_resultsShown)
        for (int i = 0; i < m_resultList->topLevelItemCount() && !awaiting; ++i)
            awaiting = m_resultList->topLevelItem(i)->text(ResVerdict) == QLatin1String("0");
    m_closeDlg->setText(awaiting ? tr("Do you want to run advance repair on the severely corrupted files before exiting?")
                                 : tr("Are you sure you want to exit?"));
    m_closeDlg->CentreOn(this);
    m_closeDlg->exec();
    const bool yes = g_closeAnswer == QLatin1String("YesBtn");

    // Plain question: Yes exits. Advance question: Yes stays, so that the
    // user can press "Advance Repair"; No exits.
    return yes != awaiting;
}

void VideoRepairWindow::FinishExit(bool awaiting)
{
    if (!m_closeDlg)
        return;   // done by an earlier exit
    // A copy to a custom folder that is still under way reads from the
    // Repaired folders: it ends before they go.
    m_saveThread.wait();
    RemoveRepairedFolders();
    DeleteDialogs();
    if (g_previewProcess)
        g_previewProcess->kill();
    if (!awaiting)
        StopMuxer();
}

void VideoRepairWindow::RemoveRepairedFolders()
{
    for (const QString& path : g_repairedPaths) {
        QDir folder = QFileInfo(path).absoluteDir();
        // Outputs sit directly in a Repaired folder; a path anywhere else
        // never takes its folder with it.
        if (!folder.exists() || folder.dirName() != QLatin1String("Repaired"))
            continue;
        bool keeps = false;
        for (const QString& kept : g_keptResults)
            keeps = keeps || QFileInfo(kept).absoluteDir() == folder;
        if (!keeps) {
            folder.removeRecursively();
            if (folder.cdUp())
                SetHiddenInFolder(folder.absolutePath(), QStringLiteral("Repaired"), false);
            continue;
        }
        // A folder with a saved result keeps it and loses the rest.
        for (const QFileInfo& entry : folder.entryInfoList(QDir::Files | QDir::Hidden))
            if (!g_keptResults.contains(entry.absoluteFilePath()))
                QFile::remove(entry.absoluteFilePath());
    }
}

void VideoRepairWindow::DeleteDialogs()
{
    delete m_aboutDlg;
    m_aboutDlg = nullptr;
    delete m_stopDlg;
    m_stopDlg = nullptr;
    delete m_saveDlg;
    m_saveDlg = nullptr;
    delete m_doneDlg;
    m_doneDlg = nullptr;
    delete m_confirmDlg;
    m_confirmDlg = nullptr;
    delete m_infoDlg;
    m_infoDlg = nullptr;
    delete m_closeDlg;
    m_closeDlg = nullptr;
    delete g_referenceDlg;
    g_referenceDlg = nullptr;
}
