// VideoRepairWindow: the press of a row's button, and Advance Repair. A row
// that awaits Advance Repair gets a second pass with a healthy sample video
// of the same camera; the rows, their buttons and the sample stay between
// passes until Back or a stop.
#include "workspace/video_repair_window.h"

#include "core/repair_globals.h"
#include "workspace/advanced_repair_dlg.h"
#include "workspace/custom_button.h"
#include "workspace/my_tree_widget.h"
#include "workspace/reference_file_dlg.h"
#include "workspace/reference_repaired_dlg.h"
#include "workspace/workspace_globals.h"

#include <QCheckBox>
#include <QFile>
#include <QFileInfo>
#include <QPushButton>
#include <QTextEdit>

void VideoRepairWindow::OnClickPreviewBtn(unsigned int id)
{
    g_advancePending = g_onRepairPage = g_onHomePage = g_onListPage = false;
    g_onSavePage = true;
    m_repairList.clear();
    const int rows = qMin(m_rowActions.size(), m_resultList->topLevelItemCount());
    for (int i = 0; i < rows; ++i) {
        const RowAction* action = m_rowActions.at(i);
        if (action->id != id)
            continue;
        QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        const QString verdict = row->text(ResVerdict);
        if (verdict == QLatin1String("1")) {
            PlayVideo(row->text(ResRepairedPath));
        } else if (verdict == QLatin1String("0")) {
            g_advanceFile = row->text(ResName);
            m_repairList.append(action->sourcePath);
        }
        break;
    }
    if (!m_repairList.isEmpty() && !m_repairList.first().isEmpty())
        StartAdvanceRepair(m_repairList.first());
}

void VideoRepairWindow::StartAdvanceRepair(const QString& sourcePath)
{
    g_referenceDlg->ResetForNewSample();
    delete m_advancedDlg;
    m_advancedDlg = new AdvancedRepairDlg(this, sourcePath);
    m_advancedDlg->CentreOn(this);
    m_advancedDlg->exec();
}

void VideoRepairWindow::OnRefe_CheckBoxClicked()
{
    g_sameFormatFiles.clear();
    g_applyToAll = g_referenceDlg->refe_CheckBox->isChecked();
    const QString suffix = QFileInfo(g_referenceChosen).suffix().toUpper();
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        if (row->text(ResVerdict) != QLatin1String("0"))
            continue;
        if (QFileInfo(row->text(ResSource)).suffix().toUpper() == suffix)
            g_sameFormatFiles.append(row->text(ResSource));
    }
}

// Rows at the start of a pass or a save: the words of their state in gray,
// buttons in gray; the state itself is not touched.
void VideoRepairWindow::RestyleRowsForPass()
{
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        if (g_stopRequested)
            return;
        QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        CustomButton* button = RowButton(row);
        auto paint = [button](const QString& text, const char* align) {
            if (!button)
                return;
            QPalette palette = button->palette();
            palette.setColor(QPalette::ButtonText, Qt::gray);
            button->setPalette(palette);
            button->setText(text);
            button->setStyleSheet(QStringLiteral("%1 border: none; color: gray;").arg(QLatin1String(align)));
            button->show();
        };
        if (row->text(ResVerdict) == QLatin1String("1")) {
            row->setTextAlignment(ResStatus, Qt::Alignment(128));
            SetRowStatus(row, tr("Completed"), "gray");
            paint(tr("Preview"), "text-align:left;");
        } else if (row->text(ResVerdict) == QLatin1String("0")) {
            SetRowStatus(row, tr("Awaiting Action"), "gray");
            row->setTextAlignment(ResStatus, Qt::Alignment(128));
            row->setCheckState(ResName, Qt::Unchecked);
            paint(tr("Advance Repair"), "text-align: left;");
        }
    }
}

void VideoRepairWindow::OnRepairRefrenceFile()
{
    // A sample that is gone or can't be read would only give a negative
    // verdict after the whole pass; say so at once and leave the dialog up.
    QFile sample(g_referencePath);
    if (g_referencePath.isEmpty() || !QFileInfo(g_referencePath).isFile() || !sample.open(QIODevice::ReadOnly)) {
        ReferenceRepairedDlg message(g_referenceDlg);
        message.setText(tr("The sample video can't be read. Choose another sample video."));
        message.CentreOn(g_referenceDlg);
        message.exec();
        return;
    }
    sample.close();

    g_referenceRun = true;
    g_stopRequested = false;
    g_referenceMode = true;
    UpdateBtn_2->setEnabled(false);
    PercentLabl->setText(QStringLiteral("0%"));
    g_referenceDlg->hide();

    QStringList list;
    if (g_applyToAll)
        list = g_sameFormatFiles;
    else if (!g_advanceTarget.isEmpty())
        list << g_advanceTarget;

    RestyleRowsForPass();
    if (g_referenceMode) {
        stringLabl->setText(tr("Advance Repair Running"));
        stringLabl_2->setText(tr("Please wait while the 'Advance Repair' process is running."));
    }
    for (const QString& path : list) {
        const QString name = QFileInfo(path).fileName();
        for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
            QTreeWidgetItem* row = m_resultList->topLevelItem(i);
            if (row->text(ResName) == name)
                row->setCheckState(ResName, Qt::Checked);
        }
    }
    if (list.isEmpty()) {
        OnRepairFinish();
        return;
    }
    m_resultList->setEnabled(false);
    saveBtn->hide();
    BackBtn->setEnabled(false);
    m_repairThread.StartRepair(list, g_referenceRun);
}
