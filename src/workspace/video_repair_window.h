#pragma once
// The only top-level window: page 1 (AddFile_frame) collects videos, page 2
// (frame_2) runs the repair and shows its results. The class is split by
// concern: this file's .cpp holds construction, pages and window behaviour;
// file_list.cpp the list of page 1; run_control.cpp the run; result_rows.cpp
// the rows of page 2; closing.cpp the exit; help_tools.cpp help, About and
// More Tools.
#include "core/thread_video_repair.h"
#include "workspace/row_action.h"
#include "workspace/thread_file_saving.h"

#include "ui_VideoRepairWin.h"

#include <QList>
#include <QPoint>
#include <QSet>
#include <QStringList>
#include <QWidget>
#include <memory>

class AboutDlg;
class AdvancedRepairDlg;
class CloseApplicationDlg;
class ConfirmDlgClass;
class CustomButton;
class FileDialogs;
class InfoDlgClass;
class MyTreeWidget;
class QAction;
class QDateTime;
class QLocale;
class QDirIterator;
class QLabel;
class QMenu;
class PopupMenu;
class QTimer;
class QTreeWidgetItem;
class ReferenceRepairedDlg;
class SaveDlgClass;
class StopDlg;
class repairFinishDialog;

class VideoRepairWindow : public QWidget, public Ui::VideoRepairWin {
    Q_OBJECT
public:
    explicit VideoRepairWindow(QWidget* parent = nullptr);
    ~VideoRepairWindow() override;

    // Starts the fade-in; called by start-up after the window is centred.
    void StartFadeIn();

    // The file choosers in use; the window owns them. The default shows the
    // toolkit's dialogs.
    void SetFileDialogs(std::unique_ptr<FileDialogs> dialogs);

    // Text of a size column: bytes / 2^20, truncated to two decimals, in
    // the number format of locale.
    static QString FormatSize(qint64 bytes, const QLocale& locale);
    // Text of a date column, in the conventions of the chosen language.
    static QString FormatDate(const QDateTime& when, const QLocale& locale);
    // The tooltip of a result row: frames, seconds of sound and damaged
    // bytes skipped, in the numbers of the chosen language.
    QTreeWidgetItem* LatestRow(const QString& fileName) const;
    static QString FiguresText(qulonglong videoFrames, double audioSeconds, qulonglong skippedBytes);

    // Column indexes of the file list (page 1).
    enum FileColumn {
        FileName = 0, FilePath = 1, FileSize = 2, FileId = 3, FileParentId = 4,
        FileBytes = 5, FileTempPath = 6, FileModified = 7, FileCreated = 8
    };
    // Column indexes of the result list (page 2); 10, 11 and 13 hold the
    // row's true state.
    enum ResultColumn {
        ResName = 0, ResRepairedPath = 1, ResSize = 2, ResModified = 6, ResCreated = 7,
        ResStatus = 8, ResAction = 9, ResStage = 10, ResVerdict = 11, ResSource = 12,
        ResQueue = 13, ResDefaultCodec = 14
    };

    MyTreeWidget* fileList() const { return m_fileList; }
    MyTreeWidget* resultList() const { return m_resultList; }
    const QList<RowAction*>& rowActions() const { return m_rowActions; }
    ThreadVideoRepair& repairThread() { return m_repairThread; }
    ThreadFileSaving& saveThread() { return m_saveThread; }
    SaveDlgClass* saveDlg() const { return m_saveDlg; }
    ReferenceRepairedDlg* doneDlg() const { return m_doneDlg; }
    QStringList repairList() const { return m_repairList; }
    CloseApplicationDlg* closeDlg() const { return m_closeDlg; }
    AboutDlg* aboutDlg() const { return m_aboutDlg; }
    QPushButton* moreToolsButton() const { return m_moreToolsButton; }

    // Adds files to the list of page 1 as the file dialog does; a folder adds
    // the videos below it, in batches from the event loop. Unknown files and
    // paths that can't be found are skipped with a note under the list.
    void AddPaths(const QStringList& paths);
    // True while the videos of a folder are still being added.
    bool AddingFolders() const { return !m_folderQueue.isEmpty() || m_folderWalk; }
    QLabel* listNote() const { return m_listNote; }

    // Exit: removes the Repaired folders of the run unless a save at the
    // source location keeps them; deletes the kept dialogs.
    void RemoveRepairedFolders();
    void DeleteDialogs();

Q_SIGNALS:
    void OnBack(bool);

public Q_SLOTS:
    void OnThisPage(bool maximised);

    // Page 1: the file list.
    void OnAddMOVFile();
    void OnRemoveMOVFile();
    void OnCheckBoxbtnClicked(bool checked);
    void OnItemClicked(QTreeWidgetItem* item, int column);

    // The run.
    void OnRepairMOVFiles();
    void OnShowProgressBar();
    void OnSetProgressBarRange(ulong maximum);
    void OnsetProgressvalue(ulong value);
    void OnShowOverAllProgressBar();
    void OnOverAllProgressBarMax(uint maximum);
    void OnOverAllProgressValue(uint value, uint percent);
    void OnFileNameLabel(QString name);
    void OnRepairFinish();
    void OnProcessAborted();
    void OnStop();
    void OnStopProcess();
    void OnRunProcess();
    void OnInfo(QString);
    void ChangeDestPath();

    // Rows of page 2.
    void OnWriteProcessingStatus(QString);
    void OnWriteStatus(bool repaired, bool reserved, QString fileName, bool defaultCodec);
    void OnWriteAVIFileStatus(bool hasVideo_Strh, QString FileName);
    // Ahead of a positive verdict: the file the engine wrote, and what it holds.
    void OnOutputWritten(QString fileName, QString outputPath);
    void OnRecoveryFigures(QString fileName, qulonglong videoFrames, double audioSeconds, qulonglong skippedBytes);
    void OnReadDamage(QString fileName, qulonglong unreadableBytes);
    void OnVerdictReason(QString fileName, QString reason);
    void OndisableAddReferenceBtn();
    void OnRepairItemClicked(QTreeWidgetItem* item, int column);
    void OnSelectAllClicked(bool checked);
    void OnClickPreviewBtn(unsigned int id);
    void OnDoubleClicked(QTreeWidgetItem* item, int column);
    void PlayVideo(QString path);

    // Advance Repair.
    void OnRepairRefrenceFile();
    void OnRefe_CheckBoxClicked();

    // Saving.
    void OnClickedSaveButton();
    void OnCustomLocation(QString folder);
    void OnSavedMsg();
    void OnUnhide();
    void OnProgressValue(unsigned int value);
    void OnProgressFinish();
    bool TwoRepairedValidFilesCreated(QString strRepairedPath);

    // Window.
    void OnBackBtnClicked();
    void CloseProcess();
    void MinimiseWin();
    void OnMenuProduct();
    void OnSecondMenuProduct();
    void onUpdateWizard();   // Update buttons: checks for a newer version (src/update)

    // Languages (languages.cpp): the two menus and their twenty-two slots.
    void CreateMenuBar();
    void CreateSecondMenuBar();
    void LoadEnglishLanguages();
    void LoadGermanLanguages();
    void LoadFrenchLanguages();
    void LoadItalianLanguages();
    void LoadSpanishLanguages();
    void LoadJapaneseLanguages();
    void LoadChineseLanguages();
    void LoadKoreanLanguages();
    void LoadDutchLanguages();
    void LoadBrazilLanguages();
    void LoadHindiLanguages();
    void LoadEnglishLanguages2();
    void LoadGermanLanguages2();
    void LoadFrenchLanguages2();
    void LoadItalianLanguages2();
    void LoadSpanishLanguages2();
    void LoadJapaneseLanguages2();
    void LoadChineseLanguages2();
    void LoadKoreanLanguages2();
    void LoadDutchLanguages2();
    void LoadBrazilLanguages2();
    void LoadHindiLanguages2();
    // Help, About and More Tools.
    void OpenHelp();
    void OnAboutBtnClicked();
    void MoreTool();
    void LaunchDataRecovery();
    void LaunchPhotoRepair();
    void LaunchPhotoRecovery();
    void LaunchDriveMonitor();
    // Shows the More Tools entries of the installed siblings only.
    void OfferInstalledTools();

public:
    // Skin and layout (languages.cpp): images and sheets of the scale's set,
    // the rectangles of the stored language, and the fit to the screen.
    void ApplySkin();
    void ApplyLanguageLayout();
    void FitToScreen();
    QPushButton* languageButton(int menu) const { return menu == 2 ? m_langButton2 : m_langButton1; }
    QMenu* languageMenu(int menu) const { return menu == 2 ? m_langMenu2 : m_langMenu1; }

private Q_SLOTS:
    void OnTimerSlot();
    void OnToolBarTimerSlot();
    void OnToolBarTimerSlot2();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    unsigned m_progressShift = 0;   // the file bar's unit: 2^shift (see OnSetProgressBarRange)
    void Init();
    void InitControls();
    void ApplyScaleToForm();
    void StartToolbarTimer(void (VideoRepairWindow::*tick)());
    void StepToolbar(QPushButton* menuButton, const QList<QWidget*>& items);
    void ReturnToFirstPage(bool repairPage);
    void SetUpFileList();
    // Sizes and dates of both lists again, in the language now chosen.
    void ReformatRows();
    void ShowFileList();
    // Adds a row per accepted path; counts duplicates and unknown files.
    void AddFileRows(const QStringList& paths, int& duplicates, int& unknown);
    void WalkFoldersStep();
    void ShowListNote();
    void UpdateSelectAllState();
    void SetUpResultList();
    void SetResultListHeader();
    void SetRowStatus(QTreeWidgetItem* row, const QString& word, const char* colour);
    void MarkFirstPassVerdict(QTreeWidgetItem* row, bool repaired);
    void MarkReferencePassCompleted(QTreeWidgetItem* row);
    // The row of fileName whose verdict is due: taken up by this pass, or
    // waiting for the reference pass now running. Null when none.
    QTreeWidgetItem* RowAwaitingVerdict(const QString& fileName) const;
    void SettleRowsAfterRun();
    bool SettleRowsAfterAbort();   // true when a completed row exists
    void RestyleRowsForPass();
    // Starts the preview player on target; says so when it can't.
    void StartPlayer(const QString& target, bool doubleClick);
    void ShowDone(const QString& text);
    void StartAdvanceRepair(const QString& sourcePath);
    CustomButton* RowButton(QTreeWidgetItem* row) const;
    int Scaled(int designPixels) const;
    QMenu* BuildLanguageMenu(QPushButton* button, QList<QAction*>& actions, bool second);
    void SwitchLanguage(int language, int menu);
    void RetranslateWindow();
    void InitClosingAndHelp();
    void RetranslateMoreTools();
    void LaunchSibling(const QString& name);
    // The exit question (or the word that a run holds the program); true
    // when the answer is to exit. awaiting: rows still wait for Advance Repair.
    bool ExitConfirmed(bool& awaiting);
    // What an accepted exit does: results never saved go, the player ends.
    void FinishExit(bool awaiting);

    bool m_dragging = false;
    // Adding from folders: the folders left, the walk under way, and what
    // the add skipped so far (for the note under the list).
    QStringList m_folderQueue;
    std::unique_ptr<QDirIterator> m_folderWalk;
    QTimer* m_folderTimer = nullptr;
    int m_skippedUnknown = 0;
    QStringList m_notFound;
    QLabel* m_listNote = nullptr;
    QPoint m_dragOffset;
    bool m_fileListReady = false;

    MyTreeWidget* m_fileList = nullptr;
    MyTreeWidget* m_resultList = nullptr;

    QTimer* m_fadeTimer = nullptr;
    float m_opacity = 0.0f;
    QTimer* m_toolbarTimer = nullptr;
    float m_toolbarPos = 0.0f;
    float m_toolbarStep = 0.05f;
    int m_toolbarInterval = 15;

    int m_nextFileId = 2;

    ThreadVideoRepair m_repairThread;
    ThreadFileSaving m_saveThread;

    ConfirmDlgClass* m_confirmDlg = nullptr;
    InfoDlgClass* m_infoDlg = nullptr;
    repairFinishDialog* m_finishDlg = nullptr;
    StopDlg* m_stopDlg = nullptr;
    SaveDlgClass* m_saveDlg = nullptr;
    AdvancedRepairDlg* m_advancedDlg = nullptr;
    ReferenceRepairedDlg* m_doneDlg = nullptr;
    CloseApplicationDlg* m_closeDlg = nullptr;
    AboutDlg* m_aboutDlg = nullptr;

    QPushButton* m_moreToolsButton = nullptr;
    PopupMenu* m_moreToolsMenu = nullptr;
    QAction* m_dataRecoveryAction = nullptr;
    QAction* m_photoRepairAction = nullptr;
    QAction* m_photoRecoveryAction = nullptr;
    QAction* m_driveMonitorAction = nullptr;

    QStringList m_repairList;
    QList<RowAction*> m_rowActions;
    RowAction m_scratchAction;

    std::unique_ptr<FileDialogs> m_fileDialogs;

    QPushButton* m_langButton1 = nullptr;
    QPushButton* m_langButton2 = nullptr;
    QMenu* m_langMenu1 = nullptr;
    QMenu* m_langMenu2 = nullptr;
    QList<QAction*> m_langActions1;
    QList<QAction*> m_langActions2;
    QLabel* m_titleIcon1 = nullptr;
    QLabel* m_titleIcon2 = nullptr;
};
