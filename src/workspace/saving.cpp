// VideoRepairWindow: saving the results. At the source location the files
// stay in Repaired beside their sources and that folder is made visible; at
// a custom location m_saveThread copies the checked results there.
#include "workspace/video_repair_window.h"

#include "core/repair_globals.h"
#include "shell/platform_gui.h"
#include "workspace/custom_button.h"
#include "workspace/my_tree_widget.h"
#include "workspace/reference_repaired_dlg.h"
#include "workspace/save_dlg.h"
#include "workspace/workspace_globals.h"

#include <QDir>
#include <QFileInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QTextEdit>

void VideoRepairWindow::ShowDone(const QString& text)
{
    m_doneDlg->setText(text);
    m_doneDlg->CentreOn(this);
    m_doneDlg->exec();
}

void VideoRepairWindow::OnClickedSaveButton()
{
    g_onSavePage = g_savePressed = true;
    g_advancePending = g_onRepairPage = g_onHomePage = g_onListPage = false;
    m_saveDlg->Reset();
    m_saveDlg->CentreOn(this);
    m_saveDlg->exec();
}

void VideoRepairWindow::OnUnhide()
{
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        const QString repaired = m_resultList->topLevelItem(i)->text(ResRepairedPath);
        if (repaired.isEmpty())
            continue;
        // .../source folder/Repaired/name: the entry to show is "Repaired"
        // in the source folder.
        QDir folder = QFileInfo(repaired).absoluteDir();
        const QString name = folder.dirName();
        if (folder.cdUp())
            ShowEntryToUser(folder.absolutePath(), name);
    }
}

void VideoRepairWindow::OnSavedMsg()
{
    g_keepRepaired = true;
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        if (row->checkState(ResName) == Qt::Checked && row->text(ResVerdict) == QLatin1String("1")
            && !g_keptResults.contains(row->text(ResRepairedPath)))
            g_keptResults << row->text(ResRepairedPath);
    }
    OnUnhide();
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i)
        m_resultList->topLevelItem(i)->setCheckState(ResName, Qt::Unchecked);
    Select_All->setTristate(false);
    Select_All->setChecked(false);
    saveBtn->setEnabled(false);
    m_saveDlg->close();
    ShowDone(tr("Repaired files saved successfully."));
}

void VideoRepairWindow::OnCustomLocation(QString folder)
{
    const QString caption = tr("Wait while repaired files are being saved.");
    int checked = 0;
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i)
        if (m_resultList->topLevelItem(i)->checkState(ResName) == Qt::Checked)
            ++checked;
    m_saveDlg->close();

    if (!QFileInfo(folder).isDir()) {
        ShowDone(tr("The chosen folder can't be found. Choose another folder."));
        return;
    }

    RestyleRowsForPass();
    m_resultList->setEnabled(false);
    BackBtn->setEnabled(false);
    FileProgress->reset();
    FileProgress->setMaximum(checked);
    FileProgress->show();
    FileNameLabl->setToolTip(QString());
    FileNameLabl->setText(caption);
    FileNameLabl->show();
    Select_All->setEnabled(false);

    QStringList files;
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        if (row->text(ResVerdict) == QLatin1String("1") && row->checkState(ResName) == Qt::Checked)
            files << row->text(ResRepairedPath);
    }
    m_saveThread.StartSaving(files, folder);
}

void VideoRepairWindow::OnProgressValue(unsigned int value)
{
    FileProgress->setValue(int(qMin<unsigned>(value, unsigned(INT_MAX))));
    saveBtn->setEnabled(false);
}

void VideoRepairWindow::OnProgressFinish()
{
    m_saveThread.wait();
    SettleRowsAfterRun();
    BackBtn->setEnabled(true);
    Select_All->setEnabled(true);
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i)
        m_resultList->topLevelItem(i)->setCheckState(ResName, Qt::Unchecked);
    Select_All->setTristate(false);
    Select_All->setChecked(false);
    FileNameLabl->hide();
    FileProgress->hide();
    saveBtn->setEnabled(false);
    const int failed = m_saveThread.failedCount();
    if (failed == 0)
        ShowDone(tr("Repaired files saved successfully."));
    else
        ShowDone(tr("%n repaired file(s) could not be saved in the chosen folder. "
                    "Check that the folder can be written to, or choose another one.",
                    nullptr, failed));
    m_resultList->setEnabled(true);
}

bool VideoRepairWindow::TwoRepairedValidFilesCreated(QString strRepairedPath)
{
    const QFileInfo given(strRepairedPath);
    const QString name = given.fileName();
    const QDir folder = given.absoluteDir();
    const QFileInfoList entries = folder.entryInfoList(
        {QStringLiteral("*.M4V"), QStringLiteral("*.m4v"), QStringLiteral("*.MP4"), QStringLiteral("*.MOV"),
         QStringLiteral("*.mov"), QStringLiteral("*.mp4")},
        QDir::Files | QDir::Hidden);
    int count = 0;
    for (const QFileInfo& entry : entries) {
        const QString n = entry.fileName();
        const bool matches = n.compare(name, Qt::CaseInsensitive) == 0 ||
                             n.compare(QStringLiteral("1_") + name, Qt::CaseInsensitive) == 0;
        if (matches && entry.size() > 0)
            ++count;
    }
    return count == 2;
}
