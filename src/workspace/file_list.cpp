// VideoRepairWindow, page 1: the list of videos to repair. Everything a run
// needs lives in the row's columns, hidden ones included.
#include "workspace/video_repair_window.h"

#include "core/repair_globals.h"
#include "core/video_suffixes.h"
#include "shell/scale.h"
#include "shell/startup.h"
#include "workspace/file_dialogs.h"
#include "workspace/info_dlg.h"
#include "workspace/my_tree_widget.h"
#include "workspace/workspace_globals.h"

#include <QApplication>
#include <QDateTime>
#include <QDirIterator>
#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QHeaderView>

namespace {

// "Video (*.MOV *.mov ...)": the add dialog's filter.
QString AddFilter()
{
    QStringList patterns;
    for (const QString& suffix : VideoSuffixes())
        patterns << QStringLiteral("*.") + suffix;
    return QStringLiteral("Video (%1)").arg(patterns.join(QLatin1Char(' ')));
}

// Widths of the visible columns 0, 1, 2, 7, 8 in design pixels, by language.
struct ListWidths { int c0, c1, c2, c7, c8; };
ListWidths FileListWidths(int language)
{
    switch (language) {
    case 1: return {160, 130, 110, 130, 130};   // DE
    case 2: case 4: return {160, 150, 90, 130, 130};   // FR, ES
    case 3: return {160, 150, 130, 130, 130};   // IT
    case 7: return {160, 150, 70, 140, 140};    // KO
    case 8: return {180, 150, 100, 130, 130};   // DU
    case 9: return {180, 130, 123, 130, 130};   // BR
    default: return {180, 150, 70, 130, 130};   // EN, JA, CN, HI
    }
}

} // namespace

QString VideoRepairWindow::FormatDate(const QDateTime& when, const QLocale& locale)
{
    return locale.toString(when, QLocale::ShortFormat);
}

QString VideoRepairWindow::FormatSize(qint64 bytes, const QLocale& locale)
{
    // Truncated, not rounded, to hundredths; no trailing zeros.
    const qint64 hundredths = bytes / (1 << 20) * 100 + bytes % (1 << 20) * 100 / (1 << 20);
    const int decimals = hundredths % 100 == 0 ? 0 : hundredths % 10 == 0 ? 1 : 2;
    return locale.toString(double(hundredths) / 100.0, 'f', decimals);
}

void VideoRepairWindow::ReformatRows()
{
    const QLocale locale = LanguageLocale();
    for (int i = 0; i < m_fileList->topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = m_fileList->topLevelItem(i);
        row->setText(FileSize, FormatSize(row->text(FileBytes).toLongLong(), locale));
        for (int c : {int(FileModified), int(FileCreated)})
            row->setText(c, FormatDate(row->data(c, Qt::UserRole).toDateTime(), locale));
    }
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        row->setText(ResSize, FormatSize(row->data(ResSize, Qt::UserRole).toLongLong(), locale));
        for (int c : {int(ResModified), int(ResCreated)})
            row->setText(c, FormatDate(row->data(c, Qt::UserRole).toDateTime(), locale));
    }
}

void VideoRepairWindow::SetUpFileList()
{
    m_fileList->setGeometry(Scaled(22), Scaled(200), Scaled(805), Scaled(245));
    m_fileList->setColumnCount(9);
    m_fileList->setHeaderLabels({tr(" File Name"), tr(" Path"), tr(" Size (MB)"), QStringLiteral("FileID"),
                                 QStringLiteral("ParentID"), QStringLiteral("Status"),
                                 QStringLiteral("TemporaryPath"), tr(" Modified Date"), tr(" Created Date")});
    for (int c : {int(FileId), int(FileParentId), int(FileBytes), int(FileTempPath)})
        m_fileList->setColumnHidden(c, true);
    m_fileList->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    m_fileList->setAlternatingRowColors(true);
    m_fileList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_fileList->setTextElideMode(Qt::ElideMiddle);
    m_fileList->setFocusPolicy(Qt::NoFocus);
    m_fileList->setHeaderHidden(false);
    m_fileList->setRootIsDecorated(false);
    m_fileList->setIconSize(QSize(Scaled(16), Scaled(16)));
    if (g_languageType == 5)
        m_fileList->setFont(QFont(QStringLiteral("Segoe UI"), 10));
    const ListWidths w = FileListWidths(g_languageType);
    m_fileList->setColumnWidth(FileName, Scaled(w.c0));
    m_fileList->setColumnWidth(FilePath, Scaled(w.c1));
    m_fileList->setColumnWidth(FileSize, Scaled(w.c2));
    m_fileList->setColumnWidth(FileModified, Scaled(w.c7));
    m_fileList->setColumnWidth(FileCreated, Scaled(w.c8));
}

void VideoRepairWindow::OnAddMOVFile()
{
    const QStringList paths =
        m_fileDialogs->getOpenFileNames(this, tr("Add File"), QString(), AddFilter());
    if (!paths.isEmpty())
        AddPaths(paths);
}

void VideoRepairWindow::AddPaths(const QStringList& paths)
{
    QStringList files;
    for (const QString& path : paths) {
        const QFileInfo info(path);
        if (info.isDir())
            m_folderQueue << info.absoluteFilePath();
        else if (info.exists())
            files << info.absoluteFilePath();
        else
            m_notFound << info.fileName();   // gone, or a link that leads nowhere (or in a circle)
    }
    int duplicates = 0;
    AddFileRows(files, duplicates, m_skippedUnknown);
    if (duplicates > 0) {
        InfoDlgClass dlg(this);
        dlg.setText(tr("Files already added to list will be skipped."));
        dlg.CentreOn(this);
        dlg.exec();
    }
    if (AddingFolders()) {
        if (!m_folderTimer) {
            m_folderTimer = new QTimer(this);
            m_folderTimer->setInterval(0);
            connect(m_folderTimer, &QTimer::timeout, this, &VideoRepairWindow::WalkFoldersStep);
        }
        m_folderTimer->start();
    }
    ShowListNote();
}

// One batch of a folder walk: up to 200 entries, then back to the event loop
// so that the window answers while a large folder is added. Links to
// folders are not followed, so a link loop ends like any other folder.
void VideoRepairWindow::WalkFoldersStep()
{
    QStringList batch;
    while (batch.size() < 200) {
        if (!m_folderWalk) {
            if (m_folderQueue.isEmpty())
                break;
            m_folderWalk = std::make_unique<QDirIterator>(m_folderQueue.takeFirst(), QDir::Files | QDir::Hidden,
                                                          QDirIterator::Subdirectories);
        }
        if (!m_folderWalk->hasNext()) {
            m_folderWalk.reset();
            continue;
        }
        batch << m_folderWalk->next();
    }
    int duplicates = 0;
    AddFileRows(batch, duplicates, m_skippedUnknown);
    if (!AddingFolders()) {
        m_folderTimer->stop();
        OnItemClicked(nullptr, 0);
    }
    ShowListNote();
}

void VideoRepairWindow::ShowListNote()
{
    if (!m_listNote)
        return;
    QStringList parts;
    if (AddingFolders())
        parts << tr("Adding videos: %1 in the list").arg(LanguageLocale().toString(m_fileList->topLevelItemCount()));
    if (m_skippedUnknown > 0)
        parts << tr("Skipped, not videos this program repairs: %1").arg(LanguageLocale().toString(m_skippedUnknown));
    if (!m_notFound.isEmpty())
        parts << tr("Not found: %1").arg(m_notFound.join(QStringLiteral(", ")));
    const QString text = parts.join(QStringLiteral(" · "));
    m_listNote->setToolTip(text);
    m_listNote->setText(QFontMetrics(m_listNote->font()).elidedText(text, Qt::ElideRight, m_listNote->width()));
    m_listNote->setVisible(!text.isEmpty());
    if (!AddingFolders()) {
        // The note stays until the next add.
        m_skippedUnknown = 0;
        m_notFound.clear();
    }
}

void VideoRepairWindow::ShowFileList()
{
    if (m_fileListReady)
        return;
    add_filebtn->hide();
    m_fileList->show();
    m_fileListReady = true;
    g_onHomePage = false;
    g_onListPage = true;
    SetUpFileList();
}

void VideoRepairWindow::AddFileRows(const QStringList& paths, int& duplicates, int& unknown)
{
    if (paths.isEmpty())
        return;
    QSet<QString> listed;
    for (int i = 0; i < m_fileList->topLevelItemCount(); ++i)
        listed.insert(m_fileList->topLevelItem(i)->text(FilePath));

    QFileIconProvider icons;
    const QFont rowFont(QStringLiteral("Segoe UI"), 10, QFont::Normal);
    const QLocale locale = LanguageLocale();
    int added = 0;
    for (const QString& path : paths) {
        if (listed.contains(path)) {
            ++duplicates;
            continue;
        }
        const QFileInfo info(path);
        if (!IsVideoSuffix(info.suffix())) {
            ++unknown;
            continue;
        }
        ShowFileList();
        listed.insert(path);
        ++added;
        auto* row = new QTreeWidgetItem(m_fileList);
        row->setText(FileName, info.fileName());
        row->setIcon(FileName, icons.icon(info));
        row->setText(FilePath, path);
        row->setText(FileSize, FormatSize(info.size(), locale));
        row->setTextAlignment(FileSize, Qt::Alignment(134));
        row->setText(FileId, QString::number(m_nextFileId++));
        row->setText(FileParentId, QStringLiteral("1"));
        row->setText(FileBytes, QString::number(info.size()));
        row->setText(FileTempPath, path);
        row->setText(FileModified, FormatDate(info.lastModified(), locale));
        row->setData(FileModified, Qt::UserRole, info.lastModified());
        // Not every file system records a creation time; without one the
        // column shows the last change of the contents, the nearest fact.
        const QDateTime created = info.birthTime().isValid() ? info.birthTime() : info.lastModified();
        row->setText(FileCreated, FormatDate(created, locale));
        row->setData(FileCreated, Qt::UserRole, created);
        row->setCheckState(FileName, Qt::Checked);
        for (int c : {0, 2, 3, 4, 5, 6})
            row->setSizeHint(c, QSize(Scaled(20), Scaled(20)));
        for (int c = 0; c <= 6; ++c)
            row->setFont(c, rowFont);
        // Names and paths are cut in the middle when the column is narrow.
        row->setToolTip(FileName, info.fileName());
        row->setToolTip(FilePath, path);
    }
    if (added == 0)
        return;

    for (int i = 0; i < m_fileList->topLevelItemCount(); ++i)
        if (m_fileList->topLevelItem(i)->checkState(FileName) == Qt::Checked) {
            RepairBtn->setEnabled(true);
            break;
        }

    MainString_labl->setText(tr("Repaired files will be saved at the source file location."));
    chnageLoc_Labl->setText(tr("To change location"));
    AddFileBtn->show();
    RemoveBtn->show();
    RemoveBtn->setEnabled(true);
    RepairBtn->show();
    label_6->show();
    label_7->show();
    pushButton->hide();
    label_5->hide();

    Frame1_ListLabl_2->setGeometry(Scaled(22), Scaled(210), Scaled(141), Scaled(20));
    Frame1_ListLabl_2->setText(tr("List of video files"));
    Frame1_ListLabl_2->hide();
    SelectAllBtn->setGeometry(Scaled(22), Scaled(178), Scaled(150), Scaled(20));
    SelectAllBtn->show();
    // A list emptied by Remove left the box disabled; new rows bring it back.
    SelectAllBtn->setEnabled(true);
    UpdateSelectAllState();
    // A run may start only once the whole folder is in the list.
    if (AddingFolders())
        RepairBtn->setEnabled(false);
}

void VideoRepairWindow::UpdateSelectAllState()
{
    const int n = m_fileList->topLevelItemCount();
    int unchecked = 0;
    for (int i = 0; i < n; ++i)
        if (m_fileList->topLevelItem(i)->checkState(FileName) == Qt::Unchecked)
            ++unchecked;
    const int checked = n - unchecked;
    SelectAllBtn->setTristate(true);
    if (checked == 0)
        SelectAllBtn->setCheckState(Qt::Unchecked);
    else if (checked == n)
        SelectAllBtn->setCheckState(Qt::Checked);
    else
        SelectAllBtn->setCheckState(Qt::PartiallyChecked);
}

void VideoRepairWindow::OnItemClicked(QTreeWidgetItem*, int)
{
    if (g_repairRunning)
        return;
    int checked = 0;
    for (int i = 0; i < m_fileList->topLevelItemCount(); ++i)
        if (m_fileList->topLevelItem(i)->checkState(FileName) != Qt::Unchecked)
            ++checked;
    RepairBtn->setEnabled(checked > 0);
    RemoveBtn->setEnabled(checked > 0);
    UpdateSelectAllState();
}

void VideoRepairWindow::OnCheckBoxbtnClicked(bool checked)
{
    SelectAllBtn->setTristate(false);
    SelectAllBtn->setChecked(checked);
    for (int i = 0; i < m_fileList->topLevelItemCount(); ++i)
        m_fileList->topLevelItem(i)->setCheckState(FileName, checked ? Qt::Checked : Qt::Unchecked);
    RepairBtn->setEnabled(checked);
    RemoveBtn->setEnabled(checked);
}

void VideoRepairWindow::OnRemoveMOVFile()
{
    for (int i = 0; i < m_fileList->topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = m_fileList->topLevelItem(i);
        if (row->checkState(FileName) == Qt::Checked) {
            delete m_fileList->takeTopLevelItem(i);
            --i;
            continue;
        }
        for (int c = 0; c < row->childCount(); ++c)
            if (row->child(c)->checkState(FileName) == Qt::Checked) {
                delete row->takeChild(c);
                --c;
            }
    }
    const int left = m_fileList->topLevelItemCount();
    if (left == 0) {
        RemoveBtn->setEnabled(false);
        RepairBtn->setEnabled(false);
        SelectAllBtn->setTristate(false);
        SelectAllBtn->setChecked(false);
        SelectAllBtn->setEnabled(false);
        return;
    }
    bool anyChecked = false;
    for (int i = 0; i < left && !anyChecked; ++i)
        anyChecked = m_fileList->topLevelItem(i)->checkState(FileName) == Qt::Checked;
    if (anyChecked) {
        SelectAllBtn->setChecked(true);
        SelectAllBtn->setEnabled(true);
        RepairBtn->setEnabled(true);
    } else {
        RepairBtn->setEnabled(false);
    }
}
