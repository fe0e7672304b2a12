// VideoRepairWindow, page 2: the state of each result row. Columns 10, 11
// and 13 hold the true state ("0" waiting / "1" taken up / "2" done by the
// first pass; verdict "1" repaired / "0" needs Advance Repair; queue mark
// "4" / "5" / "-1"); column 8 shows the word for it.
#include "workspace/video_repair_window.h"

#include "containers/output_checks.h"
#include "core/repair_globals.h"
#include "workspace/custom_button.h"
#include "workspace/info_dlg.h"
#include "workspace/my_tree_widget.h"
#include "workspace/workspace_globals.h"

#include <QFileInfo>

CustomButton* VideoRepairWindow::RowButton(QTreeWidgetItem* row) const
{
    return qobject_cast<CustomButton*>(m_resultList->itemWidget(row, ResAction));
}

void VideoRepairWindow::SetRowStatus(QTreeWidgetItem* row, const QString& word, const char* colour)
{
    row->setText(ResStatus, word);
    if (colour)
        row->setForeground(ResStatus, QColor(QLatin1String(colour)));
    row->setFont(ResStatus, QFont(QStringLiteral("Segoe UI Semibold"), 10));
}

namespace {

void ShowButton(CustomButton* button, const QString& text, Qt::GlobalColor colour)
{
    if (!button)
        return;
    if (!text.isNull())
        button->setText(text);
    QFont font(QStringLiteral("Segoe UI Semibold"), 10);
    font.setUnderline(true);
    button->setFont(font);
    QPalette palette = button->palette();
    palette.setColor(QPalette::ButtonText, colour);
    button->setPalette(palette);
    // The palette carries the colour for the skin; the style sheet makes it
    // show while the window's own sheet is in force.
    button->setStyleSheet(QStringLiteral("text-align:left; border: none; color: %1;")
                              .arg(QColor(colour).name()));
    button->show();
    button->setEnabled(true);
}

} // namespace

void VideoRepairWindow::OnWriteProcessingStatus(QString)
{
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        if (g_stopRequested)
            return;
        QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        if (row->text(ResQueue) != QLatin1String("4"))
            continue;
        SetRowStatus(row, tr("Processing"), "gray");
        row->setText(ResStage, QStringLiteral("1"));
        row->setText(ResQueue, QStringLiteral("5"));
        if (CustomButton* b = RowButton(row))
            b->hide();
        return;
    }
}

void VideoRepairWindow::OnWriteStatus(bool repaired, bool reserved, QString fileName, bool defaultCodec)
{
    int last = -1;
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        if (g_stopRequested)
            break;
        last = i;
        QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        if (row->text(ResName) != fileName)
            continue;
        if (row->text(ResStage) == QLatin1String("1") && row->text(ResVerdict).isEmpty()) {
            // First-pass verdict. A row that awaits Advance Repair keeps its
            // stage "1" but has verdict "0"; its verdict comes below.
            row->setText(ResDefaultCodec, defaultCodec ? QStringLiteral("1") : QStringLiteral("0"));
            MarkFirstPassVerdict(row, repaired || reserved);
            break;
        }
        if (row->text(ResVerdict) == QLatin1String("0") && (repaired || reserved)) {
            // Reference-pass verdict; a negative one leaves the row waiting.
            MarkReferencePassCompleted(row);
            row->setText(ResDefaultCodec, defaultCodec ? QStringLiteral("1") : QStringLiteral("0"));
        }
    }
    for (int i = 0; i < last; ++i)
        if (CustomButton* b = RowButton(m_resultList->topLevelItem(i)))
            b->setEnabled(true);
}

// A first pass's verdict: "Completed" with Preview, or "Awaiting Action"
// with Advance Repair (and the row no longer ticked).
void VideoRepairWindow::MarkFirstPassVerdict(QTreeWidgetItem* row, bool repaired)
{
    if (repaired) {
        SetRowStatus(row, tr("Completed"), "gray");
        row->setTextAlignment(ResStatus, Qt::Alignment(128));
        row->setText(ResStage, QStringLiteral("2"));
        row->setText(ResVerdict, QStringLiteral("1"));
        ShowButton(RowButton(row), tr("Preview"), Qt::gray);
    } else {
        SetRowStatus(row, tr("Awaiting Action"), "gray");
        row->setTextAlignment(ResStatus, Qt::Alignment(32));
        row->setText(ResVerdict, QStringLiteral("0"));
        row->setCheckState(ResName, Qt::Unchecked);
        ShowButton(RowButton(row), tr("Advance Repair"), Qt::gray);
    }
}

// A positive verdict of a reference pass. The button stays hidden until the
// end of the pass has tested the output.
void VideoRepairWindow::MarkReferencePassCompleted(QTreeWidgetItem* row)
{
    SetRowStatus(row, tr("Completed"), nullptr);
    row->setTextAlignment(ResStatus, Qt::Alignment(128));
    row->setText(ResVerdict, QStringLiteral("1"));
    if (CustomButton* b = RowButton(row)) {
        b->setText(tr("Preview"));
        b->hide();
    }
}

void VideoRepairWindow::OnWriteAVIFileStatus(bool hasVideo_Strh, QString FileName)
{
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        if (g_stopRequested)
            return;
        QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        if (row->text(ResName) != FileName)
            continue;
        if (row->text(ResVerdict) == QLatin1String("0")) {
            // Reference pass: only a positive verdict changes the row.
            if (hasVideo_Strh)
                MarkReferencePassCompleted(row);
            continue;
        }
        if (row->text(ResStage) != QLatin1String("1") || !row->text(ResVerdict).isEmpty())
            continue;
        MarkFirstPassVerdict(row, hasVideo_Strh);
        return;
    }
}

QTreeWidgetItem* VideoRepairWindow::RowAwaitingVerdict(const QString& fileName) const
{
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        if (row->text(ResName) != fileName)
            continue;
        const QString verdict = row->text(ResVerdict);
        if ((row->text(ResStage) == QLatin1String("1") && verdict.isEmpty()) || verdict == QLatin1String("0"))
            return row;
    }
    return nullptr;
}

void VideoRepairWindow::OnOutputWritten(QString fileName, QString outputPath)
{
    if (QTreeWidgetItem* row = RowAwaitingVerdict(fileName)) {
        row->setText(ResRepairedPath, outputPath);
        row->setToolTip(ResRepairedPath, outputPath);
    }
}

QString VideoRepairWindow::FiguresText(qulonglong videoFrames, double audioSeconds, qulonglong skippedBytes)
{
    const QLocale locale = LanguageLocale();
    QStringList parts{tr("%1 frames").arg(locale.toString(videoFrames))};
    const qulonglong seconds = qulonglong(audioSeconds + 0.5);
    if (seconds >= 60)
        parts << tr("%1 min %2 s of sound").arg(locale.toString(seconds / 60), locale.toString(seconds % 60));
    else if (audioSeconds > 0)
        parts << tr("%1 s of sound").arg(locale.toString(seconds));
    if (skippedBytes > 0)
        parts << tr("%1 damaged bytes skipped").arg(locale.toString(skippedBytes));
    return parts.join(QStringLiteral(" · "));
}

void VideoRepairWindow::OnRecoveryFigures(QString fileName, qulonglong videoFrames, double audioSeconds,
                                          qulonglong skippedBytes)
{
    QTreeWidgetItem* row = RowAwaitingVerdict(fileName);
    if (!row)
        return;
    const QString text = FiguresText(videoFrames, audioSeconds, skippedBytes);
    row->setToolTip(ResStatus, text);
}

// The latest row of the file: what the engine says after a verdict belongs to it.
QTreeWidgetItem* VideoRepairWindow::LatestRow(const QString& fileName) const
{
    for (int i = m_resultList->topLevelItemCount() - 1; i >= 0; --i)
        if (m_resultList->topLevelItem(i)->text(ResName) == fileName)
            return m_resultList->topLevelItem(i);
    return nullptr;
}

void VideoRepairWindow::OnReadDamage(QString fileName, qulonglong unreadableBytes)
{
    QTreeWidgetItem* row = LatestRow(fileName);
    if (!row)
        return;
    const QString text = tr("%1 unreadable bytes read as zeros").arg(LanguageLocale().toString(unreadableBytes));
    const QString figures = row->toolTip(ResStatus);
    row->setToolTip(ResStatus, figures.isEmpty() ? text : figures + QStringLiteral(" · ") + text);
}

// A file that failed for want of room: no sample can help it, so the row
// says Failed, with the engine's reason as its tooltip.
void VideoRepairWindow::OnVerdictReason(QString fileName, QString reason)
{
    QTreeWidgetItem* row = LatestRow(fileName);
    if (!row)
        return;
    row->setData(ResStatus, Qt::UserRole, reason);
    row->setToolTip(ResStatus, reason);
}

void VideoRepairWindow::OndisableAddReferenceBtn()
{
    m_resultList->setEnabled(false);
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        if (row->text(ResStatus) == QLatin1String("Failed"))
            if (CustomButton* b = RowButton(row))
                b->setEnabled(false);
    }
}

void VideoRepairWindow::SettleRowsAfterRun()
{
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        CustomButton* button = RowButton(row);
        const QString verdict = row->text(ResVerdict);
        if (verdict == QLatin1String("0") && !row->data(ResStatus, Qt::UserRole).toString().isEmpty()) {
            if (button) {
                button->hide();
                button->setEnabled(false);
            }
            SetRowStatus(row, tr("Failed"), "black");
            row->setCheckState(ResName, Qt::Unchecked);
        } else if (verdict == QLatin1String("0")) {
            SetRowStatus(row, tr("Awaiting Action"), "blue");
            g_advancePending = true;
            ShowButton(button, QString(), Qt::blue);
        } else if (verdict == QLatin1String("1")) {
            const QString out = row->text(ResRepairedPath);
            if (outputcheck::NonEmptyFile(out)) {
                ShowButton(button, QString(), Qt::blue);
                SetRowStatus(row, tr("Completed"), "black");
                continue;
            }
            if (button) {
                button->hide();
                button->setEnabled(false);
            }
            SetRowStatus(row, tr("Failed"), "black");
            row->setCheckState(ResName, Qt::Unchecked);
            if (!QFileInfo::exists(out))
                row->setFlags(row->flags() & ~(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled));
        }
    }
}

bool VideoRepairWindow::SettleRowsAfterAbort()
{
    bool anyCompleted = false;
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        CustomButton* button = RowButton(row);
        const QString stage = row->text(ResStage);
        const QString verdict = row->text(ResVerdict);
        const bool waiting = stage == QLatin1String("0") || stage == QLatin1String("1");
        if (waiting) {
            SetRowStatus(row, tr("Aborted"), "red");
            row->setText(ResQueue, QStringLiteral("-1"));
            saveBtn->show();
            saveBtn->setEnabled(true);
            row->setCheckState(ResName, Qt::Unchecked);
            ShowButton(button, QString(), Qt::blue);
        }
        if (verdict == QLatin1String("0") && !waiting)
            ShowButton(button, QString(), Qt::blue);
        if (verdict == QLatin1String("0")) {
            SetRowStatus(row, tr("Awaiting Action"), "blue");
            row->setTextAlignment(ResStatus, Qt::Alignment(32));
            ShowButton(button, QString(), Qt::blue);
            saveBtn->show();
            saveBtn->setEnabled(false);
            if (!g_referenceMode) {
                stringLabl->setText(tr("Repair Process Completed"));
                stringLabl_2->setText(tr("Click on the 'Save Repaired Files' to save all your repaired videos. "
                                         "Click the 'Preview' under Action column to preview repaired videos. "));
                if (button)
                    button->setText(tr("Advance Repair"));
            }
        }
        if (verdict == QLatin1String("1")) {
            if (button) {
                button->show();
                button->setEnabled(true);
            }
            SetRowStatus(row, tr("Completed"), "black");
            anyCompleted = true;
        }
    }
    return anyCompleted;
}

void VideoRepairWindow::OnRepairItemClicked(QTreeWidgetItem* item, int)
{
    if (!item)
        return;
    if (item->text(ResVerdict) == QLatin1String("0")) {
        g_moovRead = false;
        item->setCheckState(ResName, Qt::Unchecked);
        saveBtn->show();
        saveBtn->setEnabled(false);
        InfoDlgClass dlg(this);
        dlg.setText(tr("This video is severely damaged. Run advance repair option to repair it before saving."));
        dlg.CentreOn(this);
        dlg.exec();
    } else if (item->text(ResVerdict) == QLatin1String("1") && !outputcheck::NonEmptyFile(item->text(ResRepairedPath))) {
        g_moovRead = false;
        item->setCheckState(ResName, Qt::Unchecked);
        saveBtn->show();
        saveBtn->setEnabled(false);
        InfoDlgClass dlg(this);
        dlg.setText(tr("This video is severely corrupted and cannot be repaired."));
        dlg.CentreOn(this);
        dlg.exec();
    }
    const int n = m_resultList->topLevelItemCount();
    int checked = 0;
    for (int i = 0; i < n; ++i)
        if (m_resultList->topLevelItem(i)->checkState(ResName) != Qt::Unchecked)
            ++checked;
    saveBtn->setEnabled(checked > 0);
    Select_All->setTristate(true);
    Select_All->setCheckState(checked == 0 ? Qt::Unchecked : checked == n ? Qt::Checked : Qt::PartiallyChecked);
    const QString stage = item->text(ResStage);
    if (stage == QLatin1String("1") || stage == QLatin1String("0"))
        saveBtn->setEnabled(false);
}

void VideoRepairWindow::OnSelectAllClicked(bool checked)
{
    Select_All->setTristate(false);
    Select_All->setChecked(checked);
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        if (!checked) {
            row->setCheckState(ResName, Qt::Unchecked);
        } else if (row->text(ResVerdict) == QLatin1String("1")) {
            row->setCheckState(ResName, outputcheck::NonEmptyFile(row->text(ResRepairedPath)) ? Qt::Checked : Qt::Unchecked);
        }
    }
    bool any = false;
    for (int i = 0; i < m_resultList->topLevelItemCount() && !any; ++i)
        any = m_resultList->topLevelItem(i)->checkState(ResName) == Qt::Checked;
    saveBtn->setEnabled(any);
}
