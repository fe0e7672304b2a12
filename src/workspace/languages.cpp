// VideoRepairWindow: the two language menus, a switch at run time, the
// retranslation on QEvent::LanguageChange, the skin of the scale's image set,
// the per-language rectangles and the fit to the screen.
#include "workspace/video_repair_window.h"

#include "core/repair_globals.h"
#include "shell/languages.h"
#include "core/platform_core.h"
#include "shell/scale.h"
#include "shell/startup.h"
#include "workspace/custom_button.h"
#include "workspace/my_tree_widget.h"
#include "workspace/skin.h"
#include "workspace/workspace_globals.h"

#include <QAction>
#include <QEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QSettings>

namespace {

// Widths in design pixels of the buttons whose words differ in length; the
// rest of the layout is the same in every language.
struct LanguageLayout {
    int add, remove, repair, addVideos, back, preview, save, stop, selectAll;
};
const LanguageLayout kLayouts[kLanguageCount] = {
    // add remove repair addVideos back preview save stop selectAll
    {110, 110, 140, 160, 120, 120, 200, 120, 150},   // English
    {120, 120, 140, 180, 120, 120, 250, 120, 190},   // German
    {110, 120, 140, 180, 120, 120, 280, 120, 190},   // French
    {110, 110, 140, 160, 120, 120, 200, 130, 190},   // Italian
    {110, 110, 140, 160, 120, 130, 240, 120, 190},   // Spanish
    {110, 110, 140, 160, 120, 120, 220, 120, 150},   // Japanese
    {110, 110, 140, 160, 120, 120, 200, 120, 150},   // Chinese
    {110, 110, 140, 160, 120, 120, 200, 120, 150},   // Korean
    {120, 120, 140, 170, 120, 120, 260, 120, 190},   // Dutch
    {110, 110, 140, 170, 120, 120, 230, 120, 190},   // Portuguese Brazil
    {110, 110, 140, 160, 120, 130, 240, 120, 150},   // Hindi
};

// The LanguageType of the sibling program's store written at each switch:
// the Data Recovery store of the same family (the program's own store is the
// Photo Recovery one), so both pick up the user's language.
void WriteLanguageType(int language)
{
    for (const QString& path : {g_settingsPath, SettingsFilePath(SettingsStore::DataRecovery)}) {
        if (path.isEmpty())
            continue;
        QSettings store(path, QSettings::IniFormat);
        store.setValue(QStringLiteral("LanguageType"), language);
    }
}

void TickLanguage(const QList<QAction*>& actions, int language)
{
    for (int i = 0; i < actions.size(); ++i)
        actions[i]->setChecked(i == language);
}

} // namespace

// ---- Menus ----

QMenu* VideoRepairWindow::BuildLanguageMenu(QPushButton* button, QList<QAction*>& actions, bool second)
{
    using Slot = void (VideoRepairWindow::*)();
    static const Slot first[kLanguageCount] = {
        &VideoRepairWindow::LoadEnglishLanguages, &VideoRepairWindow::LoadGermanLanguages,
        &VideoRepairWindow::LoadFrenchLanguages, &VideoRepairWindow::LoadItalianLanguages,
        &VideoRepairWindow::LoadSpanishLanguages, &VideoRepairWindow::LoadJapaneseLanguages,
        &VideoRepairWindow::LoadChineseLanguages, &VideoRepairWindow::LoadKoreanLanguages,
        &VideoRepairWindow::LoadDutchLanguages, &VideoRepairWindow::LoadBrazilLanguages,
        &VideoRepairWindow::LoadHindiLanguages};
    static const Slot other[kLanguageCount] = {
        &VideoRepairWindow::LoadEnglishLanguages2, &VideoRepairWindow::LoadGermanLanguages2,
        &VideoRepairWindow::LoadFrenchLanguages2, &VideoRepairWindow::LoadItalianLanguages2,
        &VideoRepairWindow::LoadSpanishLanguages2, &VideoRepairWindow::LoadJapaneseLanguages2,
        &VideoRepairWindow::LoadChineseLanguages2, &VideoRepairWindow::LoadKoreanLanguages2,
        &VideoRepairWindow::LoadDutchLanguages2, &VideoRepairWindow::LoadBrazilLanguages2,
        &VideoRepairWindow::LoadHindiLanguages2};

    button->setToolTip(tr("Languages"));
    button->setCursor(Qt::PointingHandCursor);
    auto* menu = new QMenu(button);
    actions.clear();
    // The entries name each language in English, as the table of languages has them.
    for (int i = 0; i < kLanguageCount; ++i) {
        auto* action = new QAction(QLatin1String(kLanguages[i].menuText), menu);
        action->setCheckable(true);
        action->setChecked(false);
        menu->addAction(action);
        actions << action;
    }
    button->setMenu(menu);
    for (int i = 0; i < kLanguageCount; ++i)
        connect(actions[i], &QAction::triggered, this, second ? other[i] : first[i]);
    {
        QSettings store(g_settingsPath, QSettings::IniFormat);
        SetLanguageFlag(store.value(QStringLiteral("LanguageType"), 0).toInt());
    }
    TickLanguage(actions, CurrentLanguage());
    return menu;
}

void VideoRepairWindow::CreateMenuBar()
{
    if (!m_langButton1) {
        m_langButton1 = new QPushButton(TitleBar_1);
        m_langButton1->setObjectName(QStringLiteral("m_langButton1"));
    }
    delete m_langMenu1;
    m_langMenu1 = BuildLanguageMenu(m_langButton1, m_langActions1, false);
    ApplyLanguageLayout();
    m_langButton1->show();
}

// Built anew at every Repair press.
void VideoRepairWindow::CreateSecondMenuBar()
{
    if (!m_langButton2) {
        m_langButton2 = new QPushButton(TitleBar_2);
        m_langButton2->setObjectName(QStringLiteral("m_langButton2"));
    }
    delete m_langMenu2;
    m_langMenu2 = BuildLanguageMenu(m_langButton2, m_langActions2, true);
    ApplyLanguageLayout();
    m_langButton2->show();
}

// ---- A switch ----

void VideoRepairWindow::SwitchLanguage(int language, int menu)
{
    SetLanguageFlag(language);
    g_languageType = language;
    WriteLanguageType(language);
    ApplyLanguageLayout();
    TickLanguage(menu == 2 ? m_langActions2 : m_langActions1, language);
    InstallLanguage(language);   // sends QEvent::LanguageChange to every widget
}

void VideoRepairWindow::LoadEnglishLanguages() { SwitchLanguage(0, 1); }
void VideoRepairWindow::LoadGermanLanguages() { SwitchLanguage(1, 1); }
void VideoRepairWindow::LoadFrenchLanguages() { SwitchLanguage(2, 1); }
void VideoRepairWindow::LoadItalianLanguages() { SwitchLanguage(3, 1); }
void VideoRepairWindow::LoadSpanishLanguages() { SwitchLanguage(4, 1); }
void VideoRepairWindow::LoadJapaneseLanguages() { SwitchLanguage(5, 1); }
void VideoRepairWindow::LoadChineseLanguages() { SwitchLanguage(6, 1); }
void VideoRepairWindow::LoadKoreanLanguages() { SwitchLanguage(7, 1); }
void VideoRepairWindow::LoadDutchLanguages() { SwitchLanguage(8, 1); }
void VideoRepairWindow::LoadBrazilLanguages() { SwitchLanguage(9, 1); }
void VideoRepairWindow::LoadHindiLanguages() { SwitchLanguage(10, 1); }
void VideoRepairWindow::LoadEnglishLanguages2() { SwitchLanguage(0, 2); }
void VideoRepairWindow::LoadGermanLanguages2() { SwitchLanguage(1, 2); }
void VideoRepairWindow::LoadFrenchLanguages2() { SwitchLanguage(2, 2); }
void VideoRepairWindow::LoadItalianLanguages2() { SwitchLanguage(3, 2); }
void VideoRepairWindow::LoadSpanishLanguages2() { SwitchLanguage(4, 2); }
// Japanese and Korean from the second menu tick the first menu, as their
// first-menu twins do.
void VideoRepairWindow::LoadJapaneseLanguages2() { SwitchLanguage(5, 1); }
void VideoRepairWindow::LoadChineseLanguages2() { SwitchLanguage(6, 2); }
void VideoRepairWindow::LoadKoreanLanguages2() { SwitchLanguage(7, 1); }
void VideoRepairWindow::LoadDutchLanguages2() { SwitchLanguage(8, 2); }
void VideoRepairWindow::LoadBrazilLanguages2() { SwitchLanguage(9, 2); }
void VideoRepairWindow::LoadHindiLanguages2() { SwitchLanguage(10, 2); }

// ---- Retranslation ----

void VideoRepairWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        RetranslateWindow();
    QWidget::changeEvent(event);
}

void VideoRepairWindow::RetranslateWindow()
{
    ReformatRows();
    retranslateUi(this);
    BackBtn->setToolTip(tr("Back"));
    for (QPushButton* b : {AbutBtn_1, AbutBtn_2})
        b->setToolTip(tr("About"));
    for (QPushButton* b : {HelpBtn_1, HelpBtn_2})
        b->setToolTip(tr("Help"));
    RemoveBtn->setToolTip(tr("Remove"));
    AddFileBtn->setToolTip(tr("Add"));
    for (QPushButton* b : {UpdateBtn_1, UpdateBtn_2})
        b->setToolTip(tr("Update"));
    for (QPushButton* b : {m_langButton1, m_langButton2})
        if (b)
            b->setToolTip(tr("Languages"));
    for (QPushButton* b : {MenuBtn_1, MenuBtn_2})
        b->setToolTip(tr("More Tools"));

    pushButton->setText(tr("Add Videos"));
    AddFileBtn->setText(tr("Add"));
    RemoveBtn->setText(tr("Remove"));
    BackBtn->setText(tr("Back"));
    saveBtn->setText(tr("Save Repaired Files"));
    stopBtn->setText(tr("Stop"));
    RepairBtn->setText(tr("Repair"));

    if (g_repairRunning && g_referenceMode) {
        stringLabl->setText(tr("Advance Repair Running"));
        stringLabl_2->setText(tr("Please wait while the 'Advance Repair' process is running."));
    } else if (g_repairRunning) {
        stringLabl->setText(tr("Repairing selected videos"));
        stringLabl_2->setText(tr("This may take a while, depending on the number of videos and their file size. "
                                 "Please wait while the process is completed."));
    } else {
        stringLabl->setText(tr("Repair Process Completed"));
        stringLabl_2->setText(tr("Click on the 'Save Repaired Files' to save all your repaired videos. Click the "
                                 "'Preview' under Action column to preview repaired videos. "));
    }

    QFont headline(QStringLiteral("Segoe UI semibold"), 14);
    headline.setBold(true);
    label_5->setFont(headline);
    label_5->setText(tr("Add Your Corrupt Videos to Repair"));
    QFont subhead(QStringLiteral("Segoe UI semibold"), 12);
    subhead.setBold(true);
    label_6->setFont(subhead);
    stringLabl->setFont(subhead);
    label_6->setText(tr("Repair Your Videos"));
    label_7->setText(tr("Click 'Repair' button to fix corrupted videos. This may take a while depending on the "
                        "number of videos and their size"));

    // The lists: header words and widths of the language.
    if (m_fileListReady)
        SetUpFileList();
    if (m_resultList->columnCount() >= 14)
        SetResultListHeader();

    // Rows keep their state; only their words change.
    for (int i = 0; i < m_resultList->topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = m_resultList->topLevelItem(i);
        const QString verdict = row->text(ResVerdict);
        if (verdict == QLatin1String("1")) {
            row->setText(ResStatus, tr("Completed"));
            if (CustomButton* b = RowButton(row))
                b->setText(tr("Preview"));
        } else if (verdict == QLatin1String("0")) {
            row->setForeground(ResStatus, QColor(QStringLiteral("blue")));
            row->setTextAlignment(ResStatus, Qt::Alignment(32));
            row->setText(ResStatus, tr("Awaiting Action"));
            if (CustomButton* b = RowButton(row))
                b->setText(tr("Advance Repair"));
        }
    }
    ApplySkin();
    ApplyLanguageLayout();
}

// ---- Skin and layout ----

void VideoRepairWindow::ApplySkin()
{
    const SkinSet set = SkinSetFor(g_uiScale);
    if (!m_titleIcon1) {
        m_titleIcon1 = new QLabel(TitleBar_1);
        m_titleIcon1->setObjectName(QStringLiteral("m_titleIcon1"));
        m_titleIcon2 = new QLabel(TitleBar_2);
        m_titleIcon2->setObjectName(QStringLiteral("m_titleIcon2"));
    }
    skin::ApplyWindowSkin(this, set, CurrentLanguage());
    m_titleIcon1->setVisible(set != SkinSet::None);
    m_titleIcon2->setVisible(set != SkinSet::None);
    if (set == SkinSet::None)
        return;
    // The images say what these buttons do; their words are the tool tips.
    for (QPushButton* b : {AbutBtn_1, AbutBtn_2, HelpBtn_1, HelpBtn_2, UpdateBtn_1, UpdateBtn_2, MenuBtn_1,
                           MenuBtn_2, closeBtn, closeBtn_2, MiniMaBtn, MiniMiseBtn2, maximaBtn, MaximiazeBtn_2,
                           add_filebtn})
        b->setText(QString());
    for (QPushButton* b : {m_langButton1, m_langButton2})
        if (b)
            b->setStyleSheet(b->styleSheet() + QStringLiteral("QPushButton::menu-indicator{image:none;width:0px;}"));
}

void VideoRepairWindow::ApplyLanguageLayout()
{
    {
        QSettings store(g_settingsPath, QSettings::IniFormat);
        SetLanguageFlag(store.value(QStringLiteral("LanguageType"), g_languageType).toInt());
    }
    const LanguageLayout& l = kLayouts[CurrentLanguage()];
    auto place = [this](QWidget* w, int x, int y, int width, int height) {
        if (w)
            w->setGeometry(Scaled(x), Scaled(y), Scaled(width), Scaled(height));
    };
    // Page 1.
    place(AddFileBtn, 22, 458, l.add, 34);
    place(RemoveBtn, 22 + l.add + 10, 458, l.remove, 34);
    place(RepairBtn, 827 - l.repair, 536, l.repair, 40);
    place(pushButton, 425 - l.addVideos / 2, 370, l.addVideos, 40);
    place(SelectAllBtn, 22, 178, l.selectAll, 20);
    // Page 2: Save and Stop share the right corner, Preview stands left of Save.
    place(BackBtn, 22, 536, l.back, 40);
    place(saveBtn, 827 - l.save, 536, l.save, 40);
    place(stopBtn, 827 - l.stop, 536, l.stop, 40);
    place(PreviewBtn, 827 - l.save - 10 - l.preview, 536, l.preview, 40);
    place(Select_All, 22, 146, l.selectAll, 20);
    place(Frame2_ListLabl, 22 + l.selectAll + 8, 146, 200, 20);

    // The title strip: with the skin, the toolbar is a row of 20 x 20 icons.
    if (SkinSetFor(g_uiScale) == SkinSet::None) {
        place(m_langButton1, 530, 5, 30, 20);
        place(m_langButton2, 530, 5, 30, 20);
        return;
    }
    const struct {
        QWidget* first;
        QWidget* second;
        int x, y, w, h;
    } strip[] = {
        {m_titleIcon1, m_titleIcon2, 8, 5, 20, 20},       {TitleLabl_1, TitleLabl_2, 36, 0, 300, 30},
        {MenuBtn_1, MenuBtn_2, 752, 5, 20, 20},           {SeperateLbl_1, SeperateLbl_5, 741, 8, 1, 14},
        {AbutBtn_1, AbutBtn_2, 710, 5, 20, 20},           {SeperateLbl_3, SeperateLbl_6, 699, 8, 1, 14},
        {HelpBtn_1, HelpBtn_2, 668, 5, 20, 20},           {SeperateLbl_4, SeperateLbl_7, 657, 8, 1, 14},
        {UpdateBtn_1, UpdateBtn_2, 626, 5, 20, 20},       {m_langButton1, m_langButton2, 594, 5, 20, 20},
    };
    for (const auto& item : strip) {
        place(item.first, item.x, item.y, item.w, item.h);
        place(item.second, item.x, item.y, item.w, item.h);
    }
}

void VideoRepairWindow::FitToScreen()
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    if (screens.isEmpty() || g_uiScale == 1.0f)
        return;
    const QRect area = screens.first()->availableGeometry();
    const float fitted = FitScaleToArea(g_uiScale, 850, 600, area.width(), area.height());
    if (fitted == g_uiScale)
        return;
    g_uiScale = fitted;
    resize(Scaled(850), Scaled(600));
    ApplySkin();
    ApplyLanguageLayout();
}
