// VideoRepairWindow: from the press of Repair to the end of the thread. The
// checked rows of the file list become the rows of the result list and the
// path list of the run; the thread's signals drive the bars and the label.
#include "workspace/video_repair_window.h"

#include "core/muxer.h"
#include "core/repair_globals.h"
#include "shell/scale.h"
#include "shell/startup.h"
#include "workspace/custom_button.h"
#include "workspace/file_dialogs.h"
#include "workspace/info_dlg.h"
#include "workspace/my_tree_widget.h"
#include "workspace/repair_finish_dlg.h"
#include "workspace/stop_dlg.h"
#include "workspace/workspace_globals.h"

#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QProcess>

namespace {

// Widths of the visible columns 0, 1, 2, 6, 7, 8, 9 in design pixels, by language.
struct ResultWidths { int c0, c1, c2, c6, c7, c8, c9; };
ResultWidths ResultListWidths(int language)
{
    switch (language) {
    case 1: return {120, 100, 80, 110, 110, 120, 100};   // DE
    case 2: return {120, 100, 70, 125, 110, 130, 100};   // FR
    case 3: return {120, 70, 120, 110, 110, 120, 110};   // IT
    case 4: return {120, 100, 80, 125, 110, 120, 110};   // ES
    case 5: case 7: return {130, 100, 80, 120, 120, 110, 110};   // JA, KO
    case 6: return {130, 100, 80, 120, 120, 100, 110};   // CN
    case 9: return {120, 100, 110, 120, 120, 110, 110};  // BR
    default: return {120, 100, 80, 120, 120, 110, 110};  // EN, DU, HI
    }
}

void EmptyAndRemoveFolder(const QString& path)
{
    QDir folder = QFileInfo(path).absoluteDir();
    for (const QString& name : folder.entryList({QStringLiteral("*.*")}, QDir::Files))
        folder.remove(name);
    folder.rmdir(folder.absolutePath());
}

} // namespace

void VideoRepairWindow::SetUpResultList()
{
    m_resultList->setColumnCount(14);
    m_resultList->setGeometry(Scaled(22), Scaled(170), Scaled(805), Scaled(265));
    SetResultListHeader();
    for (int c : {3, 4, 5, int(ResStage), int(ResVerdict), int(ResSource), int(ResQueue)})
        m_resultList->setColumnHidden(c, true);
    m_resultList->setRootIsDecorated(false);
    m_resultList->setAlternatingRowColors(true);
    m_resultList->setFocusPolicy(Qt::NoFocus);
    m_resultList->setSelectionMode(QAbstractItemView::SingleSelection);
    m_resultList->setTextElideMode(Qt::ElideMiddle);
    m_resultList->setFont(QFont(QStringLiteral("Segoe UI Semibold"), 10));
}

// Header words and column widths of the language; again at each language change.
void VideoRepairWindow::SetResultListHeader()
{
    m_resultList->setHeaderLabels({tr(" File Name"), tr("  Path"), tr(" Size (MB)"), QStringLiteral("FileID"),
                                   QStringLiteral("ParentID"), QStringLiteral("TemporaryPath"),
                                   tr(" Modified Date"), tr(" Created Date"), tr(" Status"), tr(" Action"),
                                   QStringLiteral(" Action2"), QStringLiteral("Repairing status"),
                                   QStringLiteral("Source Path"), QString()});
    const ResultWidths w = ResultListWidths(g_languageType);
    const int widths[][2] = {{0, w.c0}, {1, w.c1}, {2, w.c2}, {6, w.c6}, {7, w.c7}, {8, w.c8}, {9, w.c9}};
    for (const auto& cw : widths)
        m_resultList->setColumnWidth(cw[0], Scaled(cw[1]));
}

void VideoRepairWindow::OnRepairMOVFiles()
{
    if (AddingFolders() || g_repairRunning)
        return;
    // Files that went away since they were added leave the list, with a word.
    QStringList gone;
    for (int i = m_fileList->topLevelItemCount() - 1; i >= 0; --i) {
        const QTreeWidgetItem* source = m_fileList->topLevelItem(i);
        if (source->checkState(FileName) == Qt::Checked && !QFileInfo::exists(source->text(FilePath))) {
            gone.prepend(source->text(FileName));
            delete m_fileList->takeTopLevelItem(i);
        }
    }
    if (!gone.isEmpty()) {
        InfoDlgClass dlg(this);
        dlg.setText(tr("These files can no longer be found and are left out: %1").arg(gone.join(QStringLiteral(", "))));
        dlg.CentreOn(this);
        dlg.exec();
        bool anyChecked = false;
        for (int i = 0; i < m_fileList->topLevelItemCount() && !anyChecked; ++i)
            anyChecked = m_fileList->topLevelItem(i)->checkState(FileName) == Qt::Checked;
        if (!anyChecked) {
            OnItemClicked(nullptr, 0);
            return;
        }
    }
    g_stopRequested = false;
    g_resultsShown = true;
    g_onRepairPage = true;
    g_onHomePage = g_onListPage = g_backPending = false;

    AddFile_frame->hide();
    frame_2->show();
    BackBtn->show();
    BackBtn->setEnabled(false);
    UpdateBtn_1->setEnabled(false);
    UpdateBtn_2->setEnabled(false);
    m_repairList.clear();
    for (QWidget* w : {static_cast<QWidget*>(ChnageLoc_Btn_2), static_cast<QWidget*>(chnageLoc_Labl_2),
                       static_cast<QWidget*>(MainString_labl_2), static_cast<QWidget*>(referenceLinkBtn),
                       static_cast<QWidget*>(Frame2_ListLabl)})
        w->hide();
    Select_All->setTristate(false);
    Select_All->setChecked(true);
    Select_All->setEnabled(false);
    stringLabl->setText(tr("Repairing selected videos"));
    stringLabl_2->setText(tr("This may take a while, depending on the number of videos and their file size. "
                             "Please wait while the process is completed."));

    CreateSecondMenuBar();
    m_resultList->show();
    connect(m_resultList, &QTreeWidget::itemDoubleClicked, this, &VideoRepairWindow::OnDoubleClicked,
            Qt::UniqueConnection);
    SetUpResultList();

    const QFont rowFont(QStringLiteral("Segoe UI"), 10);
    const bool customRoot = !g_customWorkRoot.isEmpty() && QFileInfo(g_customWorkRoot).isDir();
    for (int i = 0; i < m_fileList->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* source = m_fileList->topLevelItem(i);
        if (source->checkState(FileName) != Qt::Checked)
            continue;
        const QString name = source->text(FileName);
        const QString sourcePath = source->text(FilePath);
        auto* row = new QTreeWidgetItem(m_resultList);
        row->setText(ResName, name);
        row->setCheckState(ResName, Qt::Checked);
        QString folder = customRoot ? g_customWorkRoot : QFileInfo(sourcePath).absolutePath();
        if (folder.endsWith(QLatin1Char('/')))
            folder.chop(1);
        row->setText(ResRepairedPath, folder + QStringLiteral("/Repaired/") + name);
        row->setText(ResSource, sourcePath);
        row->setText(ResStage, QStringLiteral("0"));
        row->setText(ResSize, source->text(FileSize));
        row->setData(ResSize, Qt::UserRole, source->text(FileBytes).toLongLong());
        for (const auto& c : {std::pair<int, int>{ResModified, FileModified}, {ResCreated, FileCreated}}) {
            row->setText(c.first, source->text(c.second));
            row->setData(c.first, Qt::UserRole, source->data(c.second, Qt::UserRole));
        }
        // Names and paths are cut in the middle when the column is narrow.
        row->setToolTip(ResName, name);
        row->setToolTip(ResRepairedPath, row->text(ResRepairedPath));
        row->setText(ResStatus, tr("Queued"));
        row->setText(ResQueue, QStringLiteral("4"));

        auto* button = new CustomButton(m_resultList);
        button->setFixedSize(Scaled(g_languageType == 0 ? 110 : 100), Scaled(20));
        button->setCursor(Qt::PointingHandCursor);
        button->m_id = unsigned(i);
        m_resultList->setItemWidget(row, ResAction, button);
        m_rowActions.append(new RowAction{unsigned(i), sourcePath, button});
        connect(button, &CustomButton::MousePressed, this, &VideoRepairWindow::OnClickPreviewBtn);

        for (int c : {0, 1, 2, 3, 6, 7, 8, 9})
            row->setSizeHint(c, QSize(Scaled(20), Scaled(20)));
        for (int c : {0, 1, 2, 3, 6, 7})
            row->setFont(c, rowFont);
        m_repairList.append(sourcePath);
    }

    PreviewBtn->hide();
    saveBtn->hide();
    m_resultList->show();
    m_resultList->setEnabled(false);
    m_repairThread.StartRepair(QStringList(m_repairList), false);
}

void VideoRepairWindow::OnShowProgressBar()
{
    FileProgress->show();
    stopBtn->show();
    for (QWidget* w : {static_cast<QWidget*>(PreviewBtn), static_cast<QWidget*>(MainString_labl_2),
                       static_cast<QWidget*>(chnageLoc_Labl_2), static_cast<QWidget*>(ChnageLoc_Btn_2),
                       static_cast<QWidget*>(saveBtn)})
        w->hide();
    BackBtn->setEnabled(false);
    PercentLabl->show();
}

// The bar counts in int: a range past that (the bytes of a file over 2 GiB)
// is counted in units of 2^shift bytes.
void VideoRepairWindow::OnSetProgressBarRange(ulong maximum)
{
    FileProgress->reset();
    m_progressShift = 0;
    while ((maximum >> m_progressShift) > ulong(INT_MAX))
        ++m_progressShift;
    FileProgress->setMaximum(int(maximum >> m_progressShift));
    if (g_repairRunning)
        Select_All->setEnabled(false);
}

void VideoRepairWindow::OnsetProgressvalue(ulong value)
{
    FileProgress->setValue(int(qMin<ulong>(value >> m_progressShift, ulong(FileProgress->maximum()))));
}

void VideoRepairWindow::OnShowOverAllProgressBar()
{
    OverAllProgessLabl->show();
    overAllProgess_2->show();
    PercentLabl->show();
}

void VideoRepairWindow::OnOverAllProgressBarMax(uint maximum)
{
    overAllProgess_2->reset();
    overAllProgess_2->setMaximum(int(qMin<uint>(maximum, uint(INT_MAX))));
}

void VideoRepairWindow::OnOverAllProgressValue(uint value, uint percent)
{
    overAllProgess_2->setValue(int(qMin<uint>(value, uint(INT_MAX))));
    PercentLabl->setText(QString::number(percent) + QLatin1Char('%'));
}

void VideoRepairWindow::OnFileNameLabel(QString name)
{
    FileNameLabl->show();
    const QString text = tr("Repairing ") + name;
    const QFontMetrics metrics(FileNameLabl->font());
    if (metrics.horizontalAdvance(text) > FileNameLabl->width()) {
        FileNameLabl->setToolTip(text);
        FileNameLabl->setText(metrics.elidedText(text, Qt::ElideMiddle, FileNameLabl->width()));
    } else {
        // A name that fits needs no tip; a tip left by the previous file would mislead.
        FileNameLabl->setToolTip(QString());
        FileNameLabl->setText(text);
    }
    const bool overall = !g_referenceMode;
    overAllProgess_2->setVisible(overall);
    OverAllProgessLabl->setVisible(overall);
    PercentLabl->setVisible(overall);
}

void VideoRepairWindow::OnStop()
{
    m_stopDlg->CentreOn(this);
    if (g_muxerBusy)
        m_stopDlg->SetTexts(tr("This process will stop after processing the current file."),
                            tr("Do you want to stop the process?"));
    else
        m_stopDlg->SetTexts(tr("Do you want to stop the current process?"),
                            tr("You can't resume the process from this point. All the changes will be discarded. "));
    m_stopDlg->yesButton()->setText(tr("Yes"));
    m_stopDlg->noButton()->setText(tr("No"));
    m_stopDlg->exec();
}

void VideoRepairWindow::OnStopProcess()
{
    g_stopRequested = true;
    g_referenceMode = false;
    m_stopDlg->hide();
}

void VideoRepairWindow::OnRunProcess()
{
    m_stopDlg->hide();
}

void VideoRepairWindow::OnInfo(QString)
{
}

void VideoRepairWindow::ChangeDestPath()
{
    g_customWorkRoot = m_fileDialogs->getExistingDirectory(this, tr("Choose Location"), QStringLiteral("/root"));
}

void VideoRepairWindow::OnRepairFinish()
{
    for (QWidget* w : {static_cast<QWidget*>(FileProgress), static_cast<QWidget*>(overAllProgess_2),
                       static_cast<QWidget*>(stopBtn), static_cast<QWidget*>(OverAllProgessLabl),
                       static_cast<QWidget*>(FileNameLabl), static_cast<QWidget*>(PreviewBtn),
                       static_cast<QWidget*>(PercentLabl)})
        w->hide();
    BackBtn->show();
    BackBtn->setEnabled(true);
    if (g_previewProcess)
        g_previewProcess->close();
    g_repairDone = true;
    g_repairRunning = false;
    stringLabl->setText(tr("Repair Process Completed"));
    stringLabl_2->setText(tr("Click on the 'Save Repaired Files' to save all your repaired videos. Click the "
                             "'Preview' under Action column to preview repaired videos. "));
    Select_All->setTristate(false);
    Select_All->setChecked(true);
    Select_All->setEnabled(true);
    UpdateBtn_1->setEnabled(true);
    UpdateBtn_2->setEnabled(true);
    saveBtn->show();
    m_resultList->setEnabled(true);

    SettleRowsAfterRun();

    int checked = 0;
    const int n = m_resultList->topLevelItemCount();
    for (int i = 0; i < n; ++i)
        if (m_resultList->topLevelItem(i)->checkState(ResName) == Qt::Checked)
            ++checked;
    if (checked == 0) {
        Select_All->setChecked(false);
        saveBtn->setEnabled(false);
    } else {
        Select_All->setChecked(true);
        if (checked < n)
            saveBtn->setEnabled(true);
    }

    m_finishDlg->repairedLabl()->setText(
        tr("Repair process completed.\nCheck 'Status' column to view the repair outcome."));
    m_finishDlg->CentreOn(this);
    m_finishDlg->exec();

    saveBtn->setEnabled(checked != 0);
    BackBtn->setEnabled(true);
}

void VideoRepairWindow::OnProcessAborted()
{
    m_repairThread.quit();
    m_resultList->setEnabled(true);
    for (QWidget* w : {static_cast<QWidget*>(FileProgress), static_cast<QWidget*>(stopBtn),
                       static_cast<QWidget*>(referenceLinkBtn), static_cast<QWidget*>(PreviewBtn),
                       static_cast<QWidget*>(overAllProgess_2), static_cast<QWidget*>(FileNameLabl),
                       static_cast<QWidget*>(OverAllProgessLabl), static_cast<QWidget*>(PercentLabl)})
        w->hide();
    Select_All->show();
    Select_All->setTristate(false);
    Select_All->setChecked(true);
    Select_All->setEnabled(true);
    UpdateBtn_1->setEnabled(true);
    UpdateBtn_2->setEnabled(true);
    g_applyToAll = false;
    saveBtn->show();
    BackBtn->show();
    BackBtn->setEnabled(true);

    for (const QString& folder : g_workFolders)
        EmptyAndRemoveFolder(folder);

    const bool anyCompleted = SettleRowsAfterAbort();

    const int n = m_resultList->topLevelItemCount();
    int waiting = 0;
    for (int i = 0; i < n; ++i) {
        const QString stage = m_resultList->topLevelItem(i)->text(ResStage);
        if (stage == QLatin1String("0") || stage == QLatin1String("1"))
            ++waiting;
    }
    saveBtn->setEnabled(n != waiting && anyCompleted);
}
