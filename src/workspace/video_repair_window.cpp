// VideoRepairWindow: construction, the two pages, window drag, fade-in,
// toolbar animation, geometry memory and the Back button.
#include "workspace/video_repair_window.h"

#include "core/muxer.h"
#include "core/repair_globals.h"
#include "core/platform_core.h"
#include "shell/scale.h"
#include "workspace/confirm_dlg.h"
#include "workspace/custom_button.h"
#include "workspace/file_dialogs.h"
#include "workspace/info_dlg.h"
#include "workspace/my_tree_widget.h"
#include "workspace/advanced_repair_dlg.h"
#include "workspace/reference_file_dlg.h"
#include "workspace/reference_repaired_dlg.h"
#include "workspace/repair_finish_dlg.h"
#include "workspace/save_dlg.h"
#include "workspace/stop_dlg.h"
#include "workspace/workspace_globals.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QMimeData>
#include <QMouseEvent>
#include <QSettings>
#include <QShortcut>
#include <QTimer>

VideoRepairWindow::VideoRepairWindow(QWidget* parent)
    : QWidget(parent), m_fileDialogs(std::make_unique<SystemFileDialogs>())
{
    setupUi(this);

    g_uiScale = g_dpiScale;
    {
        QSettings settings(g_settingsPath, QSettings::IniFormat);
        if (!settings.contains(QStringLiteral("ResizeAppforDPI")))
            settings.setValue(QStringLiteral("ResizeAppforDPI"), true);
        if (!settings.value(QStringLiteral("ResizeAppforDPI"), true).toBool())
            g_uiScale = 1.0f;
    }
    ApplyScaleToForm();

    QFont buttonFont(QStringLiteral("Segoe UI Semibold"), 10);
    buttonFont.setBold(true);
    for (QPushButton* b : {pushButton, AddFileBtn, RemoveBtn, RepairBtn, stopBtn, BackBtn, saveBtn, PreviewBtn})
        b->setFont(buttonFont);

    pushButton->setText(tr("Add Videos"));
    RepairBtn->setText(tr("Repair"));
    saveBtn->setText(tr("Save Repaired Files"));
    stopBtn->setText(tr("Stop"));
    AddFileBtn->setText(tr("Add"));
    RemoveBtn->setText(tr("Remove"));
    BackBtn->setText(tr("Back"));
    label_5->setText(tr("Add Your Corrupt Videos to Repair"));
    label_6->setText(tr("Repair Your Videos"));
    label_7->setText(tr("Click 'Repair' button to fix corrupted videos. This may take a while depending on the "
                        "number of videos and their size"));

    m_resultList = new MyTreeWidget(frame_2);
    m_resultList->setObjectName(QStringLiteral("m_resultList"));
    m_resultList->hide();

    m_toolbarPos = 0.0f;
    m_toolbarInterval = 15;
    m_toolbarStep = 0.05f;
    MenuBtn_1->setCheckable(true);
    MenuBtn_2->setCheckable(true);
    MenuBtn_1->setChecked(false);
    MenuBtn_2->setChecked(false);

    Init();
    MoreTool();

    // Keys: Ctrl+O adds, Delete removes the selected rows, Ctrl+A ticks all,
    // Enter starts the repair; each only where its button would act.
    auto onPage1 = [this] { return AddFile_frame->isVisible() && !g_repairRunning; };
    auto key = [this](const QKeySequence& sequence, const std::function<void()>& action) {
        auto* shortcut = new QShortcut(sequence, this);
        shortcut->setContext(Qt::WindowShortcut);
        connect(shortcut, &QShortcut::activated, this, action);
    };
    key(QKeySequence::Open, [this, onPage1] {
        if (onPage1())
            OnAddMOVFile();
    });
    key(QKeySequence(Qt::Key_Delete), [this, onPage1] {
        if (!onPage1() || !m_fileList->isVisible())
            return;
        for (QTreeWidgetItem* row : m_fileList->selectedItems())
            delete row;
        OnItemClicked(nullptr, 0);
        SelectAllBtn->setEnabled(m_fileList->topLevelItemCount() > 0);
    });
    key(QKeySequence::SelectAll, [this, onPage1] {
        if (onPage1() && SelectAllBtn->isVisible() && SelectAllBtn->isEnabled())
            OnCheckBoxbtnClicked(true);
        else if (frame_2->isVisible() && Select_All->isVisible() && Select_All->isEnabled())
            OnSelectAllClicked(true);
    });
    for (const auto enter : {Qt::Key_Return, Qt::Key_Enter})
        key(QKeySequence(enter), [this, onPage1] {
            if (onPage1() && RepairBtn->isVisible() && RepairBtn->isEnabled())
                RepairBtn->click();
        });

    // Files dropped on page 1 are added as if chosen in the file dialog.
    setAcceptDrops(true);
    m_listNote = new QLabel(AddFile_frame);
    m_listNote->setObjectName(QStringLiteral("ListNoteLabl"));
    m_listNote->setGeometry(Scaled(22), Scaled(505), Scaled(805), Scaled(20));
    m_listNote->hide();

    connect(m_resultList, &QTreeWidget::itemClicked, this, &VideoRepairWindow::OnRepairItemClicked);
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::CustomizeWindowHint);
    m_nextFileId = 2;
    InitControls();
    CreateMenuBar();
    CreateSecondMenuBar();
    for (QPushButton* b : findChildren<QPushButton*>())
        b->setCursor(Qt::PointingHandCursor);
    RetranslateWindow();   // texts, tool tips, skin and layout of the language
    resize(Scaled(850), Scaled(600));
    FitToScreen();
}

VideoRepairWindow::~VideoRepairWindow()
{
    g_stopRequested = true;
    m_repairThread.wait();
    m_saveThread.wait();
    qDeleteAll(m_rowActions);
    delete m_confirmDlg;
    delete m_doneDlg;
    if (g_referenceDlg && g_referenceDlg->parent() == this) {
        delete g_referenceDlg;
        g_referenceDlg = nullptr;
    }
}

int VideoRepairWindow::Scaled(int designPixels) const
{
    return int(designPixels * g_uiScale);
}

// The form is laid out in design pixels; every child takes the scale once.
void VideoRepairWindow::ApplyScaleToForm()
{
    if (g_uiScale == 1.0f)
        return;
    for (QWidget* w : findChildren<QWidget*>()) {
        const QRect r = w->geometry();
        w->setGeometry(Scaled(r.x()), Scaled(r.y()), Scaled(r.width()), Scaled(r.height()));
    }
}

void VideoRepairWindow::Init()
{
    MenuBtn_1->setChecked(true);
    StartToolbarTimer(&VideoRepairWindow::OnToolBarTimerSlot);
    MenuBtn_2->setChecked(true);
    StartToolbarTimer(&VideoRepairWindow::OnToolBarTimerSlot2);
}

void VideoRepairWindow::InitControls()
{
    m_fileListReady = false;
    g_referenceMode = false;
    m_fileList = new MyTreeWidget(AddFile_frame);
    m_fileList->setObjectName(QStringLiteral("m_fileList"));
    m_fileList->hide();
    label_6->hide();
    label_7->hide();
    g_onHomePage = true;

    m_finishDlg = new repairFinishDialog(this);
    m_stopDlg = new StopDlg(this);
    m_infoDlg = new InfoDlgClass(this);
    m_confirmDlg = new ConfirmDlgClass();
    m_saveDlg = new SaveDlgClass(this);
    m_doneDlg = new ReferenceRepairedDlg();
    delete g_referenceDlg;
    g_referenceDlg = new ReferenceFileDlg(this, QString());
    m_saveDlg->SetFileDialogs(m_fileDialogs.get());
    g_referenceDlg->SetFileDialogs(m_fileDialogs.get());

    for (QWidget* w : {static_cast<QWidget*>(MainString_labl), static_cast<QWidget*>(chnageLoc_Labl),
                       static_cast<QWidget*>(ChnageLoc_Btn), static_cast<QWidget*>(maximaBtn),
                       static_cast<QWidget*>(MaximiazeBtn_2), static_cast<QWidget*>(SelectAllBtn),
                       static_cast<QWidget*>(frame_2), static_cast<QWidget*>(AddFileBtn),
                       static_cast<QWidget*>(RemoveBtn), static_cast<QWidget*>(RepairBtn),
                       static_cast<QWidget*>(Frame1_ListLabl_2)})
        w->hide();
    RemoveBtn->setEnabled(false);
    RepairBtn->setEnabled(false);
    PercentLabl->setText(QStringLiteral("0%"));
    m_fileList->setGeometry(Scaled(22), Scaled(200), Scaled(805), Scaled(300));

    connect(add_filebtn, &QPushButton::clicked, this, &VideoRepairWindow::OnAddMOVFile);
    connect(AddFileBtn, &QPushButton::clicked, this, &VideoRepairWindow::OnAddMOVFile);
    connect(pushButton, &QPushButton::clicked, this, &VideoRepairWindow::OnAddMOVFile);
    connect(RemoveBtn, &QPushButton::clicked, this, &VideoRepairWindow::OnRemoveMOVFile);
    connect(RepairBtn, &QPushButton::clicked, this, &VideoRepairWindow::OnRepairMOVFiles);
    connect(ChnageLoc_Btn, &QPushButton::clicked, this, &VideoRepairWindow::ChangeDestPath);
    connect(stopBtn, &QPushButton::clicked, this, &VideoRepairWindow::OnStop);
    connect(MenuBtn_1, &QPushButton::clicked, this, &VideoRepairWindow::OnMenuProduct);
    connect(MenuBtn_2, &QPushButton::clicked, this, &VideoRepairWindow::OnSecondMenuProduct);
    connect(UpdateBtn_1, &QPushButton::clicked, this, &VideoRepairWindow::onUpdateWizard);
    connect(UpdateBtn_2, &QPushButton::clicked, this, &VideoRepairWindow::onUpdateWizard);
    connect(closeBtn, &QPushButton::clicked, this, &VideoRepairWindow::CloseProcess);
    connect(closeBtn_2, &QPushButton::clicked, this, &VideoRepairWindow::CloseProcess);
    connect(MiniMaBtn, &QPushButton::clicked, this, &VideoRepairWindow::MinimiseWin);
    connect(MiniMiseBtn2, &QPushButton::clicked, this, &VideoRepairWindow::MinimiseWin);
    connect(BackBtn, &QPushButton::clicked, this, &VideoRepairWindow::OnBackBtnClicked);
    connect(SelectAllBtn, &QCheckBox::clicked, this, &VideoRepairWindow::OnCheckBoxbtnClicked);
    connect(Select_All, &QCheckBox::clicked, this, &VideoRepairWindow::OnSelectAllClicked);
    connect(m_fileList, &QTreeWidget::itemClicked, this, &VideoRepairWindow::OnItemClicked);
    connect(m_stopDlg->yesButton(), &QPushButton::clicked, this, &VideoRepairWindow::OnStopProcess);
    connect(m_stopDlg->noButton(), &QPushButton::clicked, this, &VideoRepairWindow::OnRunProcess);
    connect(saveBtn, &QPushButton::clicked, this, &VideoRepairWindow::OnClickedSaveButton);
    connect(m_saveDlg, &SaveDlgClass::CustomLocation, this, &VideoRepairWindow::OnCustomLocation);
    connect(m_saveDlg, &SaveDlgClass::SavedMsg, this, &VideoRepairWindow::OnSavedMsg);
    connect(g_referenceDlg->RefRepairBtn, &QPushButton::clicked, this, &VideoRepairWindow::OnRepairRefrenceFile);
    connect(g_referenceDlg->refe_CheckBox, &QCheckBox::clicked, this, &VideoRepairWindow::OnRefe_CheckBoxClicked);
    connect(&m_saveThread, &ThreadFileSaving::ProgressValue, this, &VideoRepairWindow::OnProgressValue,
            Qt::QueuedConnection);
    connect(&m_saveThread, &ThreadFileSaving::ProgressFinish, this, &VideoRepairWindow::OnProgressFinish,
            Qt::QueuedConnection);
    InitClosingAndHelp();

    // The thread's signals cross threads: queued, so rows change on this
    // thread in the order the thread sent them.
    const auto q = Qt::QueuedConnection;
    ThreadVideoRepair* t = &m_repairThread;
    connect(t, &ThreadVideoRepair::ShowProgressBar, this, &VideoRepairWindow::OnShowProgressBar, q);
    connect(t, &ThreadVideoRepair::SetProgressBarRange, this, &VideoRepairWindow::OnSetProgressBarRange, q);
    connect(t, &ThreadVideoRepair::setProgressvalue, this, &VideoRepairWindow::OnsetProgressvalue, q);
    connect(t, &ThreadVideoRepair::ShowOverAllProgressBar, this, &VideoRepairWindow::OnShowOverAllProgressBar, q);
    connect(t, &ThreadVideoRepair::OverAllProgressBarMax, this, &VideoRepairWindow::OnOverAllProgressBarMax, q);
    connect(t, &ThreadVideoRepair::OverAllProgressValue, this, &VideoRepairWindow::OnOverAllProgressValue, q);
    connect(t, &ThreadVideoRepair::FileNamelabel, this, &VideoRepairWindow::OnFileNameLabel, q);
    connect(t, &ThreadVideoRepair::WriteProcessingStatus, this, &VideoRepairWindow::OnWriteProcessingStatus, q);
    connect(t, &ThreadVideoRepair::OutputWritten, this, &VideoRepairWindow::OnOutputWritten, q);
    connect(t, &ThreadVideoRepair::RecoveryFigures, this, &VideoRepairWindow::OnRecoveryFigures, q);
    connect(t, &ThreadVideoRepair::ReadDamage, this, &VideoRepairWindow::OnReadDamage, q);
    connect(t, &ThreadVideoRepair::VerdictReason, this, &VideoRepairWindow::OnVerdictReason, q);
    connect(t, &ThreadVideoRepair::WriteStatus, this, &VideoRepairWindow::OnWriteStatus, q);
    connect(t, &ThreadVideoRepair::WriteAVIFileStatus, this, &VideoRepairWindow::OnWriteAVIFileStatus, q);
    connect(t, &ThreadVideoRepair::disableAddReferenceBtn, this, &VideoRepairWindow::OndisableAddReferenceBtn, q);
    connect(t, &ThreadVideoRepair::RepairFinish, this, &VideoRepairWindow::OnRepairFinish, q);
    connect(t, &ThreadVideoRepair::ProcessAborted, this, &VideoRepairWindow::OnProcessAborted, q);
}

void VideoRepairWindow::SetFileDialogs(std::unique_ptr<FileDialogs> dialogs)
{
    if (!dialogs)
        return;
    m_fileDialogs = std::move(dialogs);
    m_saveDlg->SetFileDialogs(m_fileDialogs.get());
    g_referenceDlg->SetFileDialogs(m_fileDialogs.get());
}

// ---- Fade-in ----

void VideoRepairWindow::StartFadeIn()
{
    m_opacity = 0.0f;
    setWindowOpacity(0.0);
    setWindowIcon(QIcon(QStringLiteral(":/images/img_Product.png")));
    delete m_fadeTimer;
    m_fadeTimer = new QTimer(this);
    connect(m_fadeTimer, &QTimer::timeout, this, &VideoRepairWindow::OnTimerSlot);
    m_fadeTimer->start(30);
}

void VideoRepairWindow::OnTimerSlot()
{
    setWindowOpacity(m_opacity);
    m_opacity += 0.1f;
    // Ten steps of 0.1 in float land a hair off 1.0; the last one counts.
    if (m_opacity >= 0.999f) {
        setWindowOpacity(1.0);
        m_fadeTimer->stop();
        m_fadeTimer->deleteLater();
        m_fadeTimer = nullptr;
    }
}

// ---- Toolbar ----

void VideoRepairWindow::StartToolbarTimer(void (VideoRepairWindow::*tick)())
{
    delete m_toolbarTimer;
    m_toolbarPos = 0.0f;
    m_toolbarTimer = new QTimer(this);
    connect(m_toolbarTimer, &QTimer::timeout, this, tick);
    m_toolbarTimer->start(m_toolbarInterval);
}

void VideoRepairWindow::OnMenuProduct()
{
    StartToolbarTimer(&VideoRepairWindow::OnToolBarTimerSlot);
}

void VideoRepairWindow::OnSecondMenuProduct()
{
    StartToolbarTimer(&VideoRepairWindow::OnToolBarTimerSlot2);
}

void VideoRepairWindow::OnToolBarTimerSlot()
{
    StepToolbar(MenuBtn_1, {SeperateLbl_1, AbutBtn_1, SeperateLbl_3, HelpBtn_1, SeperateLbl_4, UpdateBtn_1});
}

void VideoRepairWindow::OnToolBarTimerSlot2()
{
    StepToolbar(MenuBtn_2, {SeperateLbl_5, AbutBtn_2, SeperateLbl_6, HelpBtn_2, SeperateLbl_7, UpdateBtn_2});
}

// One tick: the position grows by a twentieth; at each tenth one item is
// shown (menu open, nearest first) or hidden (menu closed, farthest first).
// The sum is compared as six-digit text so that 0.05 + 0.05 counts as 0.1.
void VideoRepairWindow::StepToolbar(QPushButton* menuButton, const QList<QWidget*>& items)
{
    m_toolbarPos += m_toolbarStep;
    const double pos = QString::number(double(m_toolbarPos), 'g', 6).toDouble();
    const int tenth = int(pos * 10.0 + 1e-9);
    const bool onTenth = QString::number(tenth / 10.0, 'g', 6) == QString::number(pos, 'g', 6);
    if (onTenth && tenth >= 1 && tenth <= items.size()) {
        if (menuButton->isChecked())
            items.at(tenth - 1)->show();
        else
            items.at(items.size() - tenth)->hide();
    }
    if (pos >= 0.9 && m_toolbarTimer) {
        m_toolbarTimer->stop();
        m_toolbarTimer->deleteLater();
        m_toolbarTimer = nullptr;
    }
}

// ---- Window drag and geometry ----

void VideoRepairWindow::mousePressEvent(QMouseEvent* event)
{
    const QRect strip(0, 0, Scaled(602), Scaled(30));
    if (event->button() == Qt::LeftButton && strip.contains(event->pos())) {
        m_dragging = true;
        m_dragOffset = event->globalPos() - frameGeometry().topLeft();
    }
    QWidget::mousePressEvent(event);
}

void VideoRepairWindow::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragging && (event->buttons() & Qt::LeftButton)) {
        move(event->globalPos() - m_dragOffset);
        event->accept();
        return;
    }
    QWidget::mouseMoveEvent(event);
}

void VideoRepairWindow::mouseReleaseEvent(QMouseEvent* event)
{
    m_dragging = false;
    QWidget::mouseReleaseEvent(event);
}

void VideoRepairWindow::resizeEvent(QResizeEvent* event)
{
    QSettings store(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Corvane"),
                    QStringLiteral("ReelwrightVideoRepair"));
    store.setValue(QStringLiteral("geometry"), saveGeometry());
    QWidget::resizeEvent(event);
}

void VideoRepairWindow::OnThisPage(bool maximised)
{
    m_fileList->clear();
    StartFadeIn();
    g_maximised = maximised;
    if (maximised) {
        showMaximized();
        return;
    }
    QSettings store(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Corvane"),
                    QStringLiteral("CorvaneVideoGeometrySettings"));
    restoreGeometry(store.value(QStringLiteral("geometry")).toByteArray());
    show();
}

void VideoRepairWindow::CloseProcess()
{
    close();
}

void VideoRepairWindow::MinimiseWin()
{
    showMinimized();
}

// ---- Back ----

void VideoRepairWindow::OnBackBtnClicked()
{
    g_onRepairPage = false;
    g_backPending = true;
    g_applyToAll = false;
    g_confirmClosed = false;
    StopMuxer();

    auto ask = [this](const QString& text) {
        m_confirmDlg->setText(QString());
        m_confirmDlg->label()->setFont(QFont(QStringLiteral("Segoe UI Semibold"), 10));
        m_confirmDlg->CentreOn(this);
        m_confirmDlg->setText(text);
        m_confirmDlg->exec();
    };

    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        if (m_resultList->topLevelItem(i)->text(ResVerdict) != QLatin1String("0"))
            continue;
        ask(tr("Do you want to run advance repair on the severely corrupted video before leaving this page?"));
        if (g_confirmYes || g_confirmClosed)
            return;
        ReturnToFirstPage(false);
        return;
    }
    ask(tr("This action will clear repair results.\nDo you want to go back to previous screen?"));
    if (!g_confirmYes || g_confirmClosed)
        return;
    ReturnToFirstPage(true);
}

void VideoRepairWindow::ReturnToFirstPage(bool repairPage)
{
    g_onRepairPage = repairPage;
    g_onSavePage = g_advancePending = g_onHomePage = g_resultsShown = g_confirmClosed = false;
    g_onListPage = true;
    frame_2->hide();
    AddFile_frame->show();
    for (QWidget* w : {static_cast<QWidget*>(AddFileBtn), static_cast<QWidget*>(m_fileList),
                       static_cast<QWidget*>(RemoveBtn), static_cast<QWidget*>(RepairBtn),
                       static_cast<QWidget*>(SelectAllBtn)})
        w->show();
    for (QWidget* w : {static_cast<QWidget*>(pushButton), static_cast<QWidget*>(ChnageLoc_Btn),
                       static_cast<QWidget*>(Frame1_ListLabl_2), static_cast<QWidget*>(MainString_labl),
                       static_cast<QWidget*>(chnageLoc_Labl), static_cast<QWidget*>(BackBtn)})
        w->hide();
    m_resultList->clear();
    qDeleteAll(m_rowActions);
    m_rowActions.clear();
    m_repairList.clear();
    g_moovRead = false;
    PercentLabl->setText(QStringLiteral("0%"));
    g_referenceMode = false;
    if (g_remuxRan && !g_savePressed) {
        // Results nobody saved: their folders go.
        for (const QString& path : g_repairedPaths) {
            QDir folder = QFileInfo(path).absoluteDir();
            for (const QString& name : folder.entryList({QStringLiteral("*.*")}, QDir::Files))
                folder.remove(name);
            folder.rmdir(folder.absolutePath());
        }
    }
}

namespace {

// The local files of a drag; empty when it brings none.
QStringList DroppedPaths(const QMimeData* data)
{
    QStringList paths;
    if (data && data->hasUrls())
        for (const QUrl& url : data->urls())
            if (url.isLocalFile())
                paths << url.toLocalFile();
    return paths;
}

} // namespace

void VideoRepairWindow::dragEnterEvent(QDragEnterEvent* event)
{
    // Only page 1 takes files, and not while a run holds the list.
    if (AddFile_frame->isVisible() && !g_repairRunning && !DroppedPaths(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void VideoRepairWindow::dragMoveEvent(QDragMoveEvent* event)
{
    if (AddFile_frame->isVisible() && !g_repairRunning)
        event->acceptProposedAction();
}

void VideoRepairWindow::dropEvent(QDropEvent* event)
{
    const QStringList paths = DroppedPaths(event->mimeData());
    if (!AddFile_frame->isVisible() || g_repairRunning || paths.isEmpty())
        return;
    event->acceptProposedAction();
    // The dialog about duplicates must not run inside the drag's own loop.
    QTimer::singleShot(0, this, [this, paths] { AddPaths(paths); });
}
