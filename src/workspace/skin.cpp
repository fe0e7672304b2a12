#include "workspace/skin.h"

#include <QWidget>

// The images come from the resource "skin", rendered at build time from
// resources/svg by src/tools/skin_render.
static void InitSkinResources()
{
    static const bool done = [] {
        Q_INIT_RESOURCE(skin);
        return true;
    }();
    (void)done;
}

namespace skin {
namespace {

#define RW_IMG(S, N) "url(:/images/" S "/" N ")"
// A button face: the corners (slice SL, in image and widget pixels) stay
// sharp whatever width the language layout gives the button.
#define RW_FACE(S, SL, N) "border-image:" RW_IMG(S, N) " " SL " " SL " " SL " " SL " stretch stretch;border-width:" SL "px;"
#define RW_BUTTON(S, SL, N, H, P, D, INK)                                                                        \
    "QPushButton:enabled{" RW_FACE(S, SL, N) "color:" INK ";padding:0px;}"                                         \
    "QPushButton:hover{" RW_FACE(S, SL, H) "}"                                                                   \
    "QPushButton:pressed{" RW_FACE(S, SL, P) "}"                                                                 \
    "QPushButton:disabled{" RW_FACE(S, SL, D) "color:#8a96a8;padding:0px;}"
// An icon the size of its button.
#define RW_ICON(S, N, H, D)                                                                                      \
    "QPushButton:enabled{border-image:" RW_IMG(S, N) ";border:none;}"                                             \
    "QPushButton:hover{border-image:" RW_IMG(S, H) ";}"                                                          \
    "QPushButton:pressed{border-image:" RW_IMG(S, H) ";}"                                                        \
    "QPushButton:disabled{border-image:" RW_IMG(S, D) ";}"
#define RW_CHECK(S)                                                                                              \
    "QCheckBox{color:#334155;spacing:6px;}"                                                                      \
    "QCheckBox::indicator{width:" S##_CHECK "px;height:" S##_CHECK "px;}"                                       \
    "QCheckBox::indicator:checked{image:" RW_IMG(S##_DIR, "img_SelectCheckBox.png") ";}"                       \
    "QCheckBox::indicator:unchecked{image:" RW_IMG(S##_DIR, "img_UnSelectCheckBox.png") ";}"                   \
    "QCheckBox::indicator:indeterminate{image:" RW_IMG(S##_DIR, "img_PartiallyCheckBox.png") ";}"

#define D96_DIR "96-DPI"
#define D125_DIR "125-DPI"
#define D144_DIR "144-DPI"
#define D96_CHECK "16"
#define D125_CHECK "20"
#define D144_CHECK "24"

#define RW_THREE(MACRO, ...) {MACRO("96-DPI", "8", __VA_ARGS__), MACRO("125-DPI", "10", __VA_ARGS__), MACRO("144-DPI", "12", __VA_ARGS__)}
#define RW_THREE_ICON(...) {RW_ICON("96-DPI", __VA_ARGS__), RW_ICON("125-DPI", __VA_ARGS__), RW_ICON("144-DPI", __VA_ARGS__)}
#define RW_THREE_LABEL(N) {"border-image:" RW_IMG("96-DPI", N) ";", "border-image:" RW_IMG("125-DPI", N) ";", \
                           "border-image:" RW_IMG("144-DPI", N) ";"}

#define RW_PRIMARY(S, SL, X) RW_BUTTON(S, SL, "Repair.png", "Repair-Hover.png", "Repair-Pressed.png", "Repair- Disable.png", "#ffffff")
#define RW_ADD(S, SL, X) RW_BUTTON(S, SL, "img_Add.png", "img_AddHover.png", "img_AddHover.png", "Remove_Disable.png", "#1e3a8a")
#define RW_REMOVE(S, SL, X) RW_BUTTON(S, SL, "Remove_Normal.png", "Remove_selected.png", "Remove_selected.png", "Remove_Disable.png", "#b42318")
#define RW_SAVE(S, SL, X) RW_BUTTON(S, SL, "Save Repaired Files2.png", "Save Repaired Files.png", "Save Repaired Files.png", "Save-Disable.png", "#ffffff")
#define RW_STOP(S, SL, X) RW_BUTTON(S, SL, "stop.png", "stop-Hover.png", "stop-Hover.png", "Repair- Disable.png", "#ffffff")
#define RW_BACK(S, SL, X) RW_BUTTON(S, SL, "Back_Nor.bmp", "Back_H.bmp", "Back_H.bmp", "Back-Disable.bmp", "#1e3a8a")

// The language button's images differ in name between the sets.
#define RW_LANG96 RW_ICON("96-DPI", "Lang- FlagNormal.bmp", "Lang- Flag 1.bmp", "Lang- Flag disable.bmp")
#define RW_LANG125 RW_ICON("125-DPI", "Lang- Flag N.bmp", "Lang- Flag 125 hot.bmp", "Lang- Flag N.bmp")
#define RW_LANG144 RW_ICON("144-DPI", "Lang- Flag N.bmp", "Lang- Flag 150 hot.bmp", "Lang- Flag disable 150 hot.bmp")

#define RW_WINDOW_CONTROL(S, N, H)                                                                               \
    "QPushButton{border-image:" RW_IMG(S, N) ";border:none;}QPushButton:hover{border-image:" RW_IMG(S, H) ";}"
#define RW_THREE_CONTROL(N, H) {RW_WINDOW_CONTROL("96-DPI", N, H), RW_WINDOW_CONTROL("125-DPI", N, H), \
                                RW_WINDOW_CONTROL("144-DPI", N, H)}

#define RW_ADD_CARD(S, C) "QPushButton{border-image:" RW_IMG(S, "Add file" C ".png") ";border:none;}" \
                          "QPushButton:hover,QPushButton:pressed{border-image:" RW_IMG(S, "Add filepress" C ".png") ";}"
#define RW_ADD_CARDS(S) {RW_ADD_CARD(S, "EN"), RW_ADD_CARD(S, "GR"), RW_ADD_CARD(S, "FR"), RW_ADD_CARD(S, "IT"), \
                         RW_ADD_CARD(S, "ES"), RW_ADD_CARD(S, "JN"), RW_ADD_CARD(S, "CN"), RW_ADD_CARD(S, "KO"), \
                         RW_ADD_CARD(S, "DU"), RW_ADD_CARD(S, "BR"), RW_ADD_CARD(S, "HI")}

const char* const kAddCards[3][11] = {RW_ADD_CARDS("96-DPI"), RW_ADD_CARDS("125-DPI"), RW_ADD_CARDS("144-DPI")};

#define RW_LIST(S, BAR)                                                                                          \
    "QTreeWidget{background:#ffffff;alternate-background-color:#f6f8fc;border:1px solid #dbe2ed;"                \
    "border-radius:6px;color:#1e293b;}"                                                                          \
    "QHeaderView::section{background:#eef2f8;color:#475569;border:none;border-right:1px solid #dbe2ed;"          \
    "padding:4px;}"                                                                                              \
    "QHeaderView::down-arrow{image:" RW_IMG(S, "img_down_arrow.png") ";}"                                       \
    "QHeaderView::up-arrow{image:" RW_IMG(S, "img_up_arrow.png") ";}"                                           \
    "QScrollBar:vertical{background:transparent;width:" BAR "px;margin:0px;}"                                    \
    "QScrollBar::handle:vertical{border-image:" RW_IMG(S, "ScrollBar/scrollbar_body.png") ";min-height:30px;}"  \
    "QScrollBar::handle:vertical:hover{border-image:" RW_IMG(S, "ScrollBar/scrollbar_body_hover.png") ";}"     \
    "QScrollBar::handle:vertical:pressed{border-image:" RW_IMG(S, "ScrollBar/scrollbar_body_pressed.png") ";}" \
    "QScrollBar::add-line:vertical,QScrollBar::sub-line:vertical{height:0px;}"                                   \
    "QScrollBar::add-page:vertical,QScrollBar::sub-page:vertical{background:transparent;}"

#define RW_DIALOG(S, SL, MW, MH)                                                                                 \
    "QDialog{background:#ffffff;border:1px solid #c7d2e4;border-radius:0px;}"                                     \
    "QLabel{color:#1e293b;}"                                                                                     \
    "QPushButton{" RW_FACE(S, SL, "OK- Normal.png") "color:#ffffff;min-width:" MW "px;min-height:" MH "px;padding:0px 6px;}" \
    "QPushButton:hover{" RW_FACE(S, SL, "OK- Hot.png") "}"                                                       \
    "QPushButton:pressed{" RW_FACE(S, SL, "OK _select.png") "}"                                                  \
    "QPushButton:disabled{" RW_FACE(S, SL, "Repair- Disable.png") "color:#8a96a8;}"                              \
    "QPushButton#YesBtn{" RW_FACE(S, SL, "Yes.png") "}"                                                         \
    "QPushButton#YesBtn:hover{" RW_FACE(S, SL, "OK- Hot.png") "}"                                               \
    "QPushButton#cancle,QPushButton#CancelBtn,QPushButton#NoBtn{" RW_FACE(S, SL, "Cancel- Normal.png") "color:#1e3a8a;}" \
    "QPushButton#cancle:hover,QPushButton#CancelBtn:hover,QPushButton#NoBtn:hover{" RW_FACE(S, SL, "No_select.png") "}" \
    "QPushButton#RefBrowse_Btn,QPushButton#LocBrowse_Btn{" RW_FACE(S, SL, "Browser 2.png") "color:#1e3a8a;}"   \
    "QPushButton#RefBrowse_Btn:hover,QPushButton#LocBrowse_Btn:hover{" RW_FACE(S, SL, "Browser 1.png") "}"     \
    "QPushButton#closeBtn{border:none;border-image:none;background:transparent;color:#475569;min-width:0px;"     \
    "min-height:0px;padding:0px;}"                                                                               \
    "QPushButton#LearnMoreLink,QPushButton#referenceBtn,QPushButton#SupportBtn,QPushButton#LicenseBtn{"          \
    "border:none;border-image:none;background:transparent;color:#2563eb;text-decoration:underline;"            \
    "min-width:0px;padding:0px;}"                                                                                \
    "QProgressBar{border:none;border-radius:4px;background:#e2e8f0;}QProgressBar::chunk{border-radius:4px;"      \
    "background:#2563eb;}"

// Without a set: the plain look, in the same colours.
const char kPlainDialog[] =
    "QDialog { background: white; border: 1px solid #2b579a; }"
    "QLabel { color: #202020; }"
    "QPushButton { background: #2b579a; color: white; border: none; padding: 4px 14px;"
    " min-width: 70px; min-height: 22px; }"
    "QPushButton:hover { background: #3a6cb8; }"
    "QPushButton#closeBtn { background: transparent; color: #404040; min-width: 0; padding: 0; }";

const char* const kDialogSheets[3] = {RW_DIALOG("96-DPI", "8", "64", "14"), RW_DIALOG("125-DPI", "10", "80", "18"),
                                      RW_DIALOG("144-DPI", "12", "96", "22")};

} // namespace

const char* DialogSheet(SkinSet set)
{
    InitSkinResources();
    return set == SkinSet::None ? kPlainDialog : kDialogSheets[int(set)];
}

const char* const kListSheets[3] = {RW_LIST("96-DPI", "10"), RW_LIST("125-DPI", "12"), RW_LIST("144-DPI", "15")};

const WidgetSheets kWindowSheets[] = {
    {"pushButton", RW_THREE(RW_PRIMARY, 0)},
    {"RepairBtn", RW_THREE(RW_PRIMARY, 0)},
    {"AddFileBtn", RW_THREE(RW_ADD, 0)},
    {"RemoveBtn", RW_THREE(RW_REMOVE, 0)},
    {"saveBtn", RW_THREE(RW_SAVE, 0)},
    {"stopBtn", RW_THREE(RW_STOP, 0)},
    {"BackBtn", RW_THREE(RW_BACK, 0)},
    {"PreviewBtn", RW_THREE(RW_BACK, 0)},
    {"HelpBtn_1", RW_THREE_ICON("help-N.bmp", "help-H.bmp", "help_D.bmp")},
    {"HelpBtn_2", RW_THREE_ICON("help-N.bmp", "help-H.bmp", "help_D.bmp")},
    {"AbutBtn_1", RW_THREE_ICON("Info-N.bmp", "Info-H.bmp", "Info-D.bmp")},
    {"AbutBtn_2", RW_THREE_ICON("Info-N.bmp", "Info-H.bmp", "Info-D.bmp")},
    {"UpdateBtn_1", RW_THREE_ICON("Update -N.bmp", "Update -H.bmp", "Update -D.bmp")},
    {"UpdateBtn_2", RW_THREE_ICON("Update -N.bmp", "Update -H.bmp", "Update -D.bmp")},
    {"MenuBtn_1", RW_THREE_ICON("M-N.png", "M-H.png", "M-D.png")},
    {"MenuBtn_2", RW_THREE_ICON("M-N.png", "M-H.png", "M-D.png")},
    {"m_langButton1", {RW_LANG96, RW_LANG125, RW_LANG144}},
    {"m_langButton2", {RW_LANG96, RW_LANG125, RW_LANG144}},
    {"closeBtn", RW_THREE_CONTROL("close_2.png", "close_1.png")},
    {"closeBtn_2", RW_THREE_CONTROL("close_2.png", "close_1.png")},
    {"MiniMaBtn", RW_THREE_CONTROL("m1b.png", "m1.png")},
    {"MiniMiseBtn2", RW_THREE_CONTROL("m1b.png", "m1.png")},
    {"maximaBtn", RW_THREE_CONTROL("m 2b.png", "m 2a.png")},
    {"MaximiazeBtn_2", RW_THREE_CONTROL("m 2b.png", "m 2a.png")},
    {"SelectAllBtn", {RW_CHECK(D96), RW_CHECK(D125), RW_CHECK(D144)}},
    {"Select_All", {RW_CHECK(D96), RW_CHECK(D125), RW_CHECK(D144)}},
    {"TitleBar_1", RW_THREE_LABEL("top ribbon.png")},
    {"TitleBar_2", RW_THREE_LABEL("top ribbon.png")},
    {"SeperateLbl_1", RW_THREE_LABEL("img_MenuSeperator.png")},
    {"SeperateLbl_3", RW_THREE_LABEL("img_MenuSeperator.png")},
    {"SeperateLbl_4", RW_THREE_LABEL("img_MenuSeperator.png")},
    {"SeperateLbl_5", RW_THREE_LABEL("img_MenuSeperator.png")},
    {"SeperateLbl_6", RW_THREE_LABEL("img_MenuSeperator.png")},
    {"SeperateLbl_7", RW_THREE_LABEL("img_MenuSeperator.png")},
    {"m_titleIcon1", RW_THREE_LABEL("24.png")},
    {"m_titleIcon2", RW_THREE_LABEL("24.png")},
    {"m_fileList", {kListSheets[0], kListSheets[1], kListSheets[2]}},
    {"m_resultList", {kListSheets[0], kListSheets[1], kListSheets[2]}},
};
const int kWindowSheetCount = int(sizeof(kWindowSheets) / sizeof(kWindowSheets[0]));

const char* const kWindowBaseSheet =
    "QFrame#AddFile_frame, QFrame#frame_2 { background: #f4f6fb; }"
    "QLabel#TitleLabl_1, QLabel#TitleLabl_2 { color: #e8eef8; background: transparent; }"
    "QLabel#label_5, QLabel#label_6, QLabel#stringLabl { color: #16233b; }"
    "QLabel#label_7, QLabel#stringLabl_2, QLabel#MainString_labl, QLabel#MainString_labl_2,"
    " QLabel#chnageLoc_Labl, QLabel#chnageLoc_Labl_2, QLabel#FileNameLabl, QLabel#OverAllProgessLabl,"
    " QLabel#Frame1_ListLabl_2, QLabel#Frame2_ListLabl { color: #475569; }"
    "QPushButton#ChnageLoc_Btn, QPushButton#ChnageLoc_Btn_2, QPushButton#referenceLinkBtn"
    " { border: none; color: #2563eb; text-decoration: underline; background: transparent; }"
    "QProgressBar { border: none; border-radius: 4px; background: #e2e8f0; }"
    "QProgressBar::chunk { border-radius: 4px; background: qlineargradient(x1:0, y1:0, x2:1, y2:0,"
    " stop:0 #2563eb, stop:1 #7c5cff); }";

const char* AddCardSheet(SkinSet set, int language)
{
    if (set == SkinSet::None || language < 0 || language > 10)
        return "";
    return kAddCards[int(set)][language];
}

QString TitleIconPath(SkinSet set)
{
    return ImagePath(set, QStringLiteral("24.png"));
}

QString ImagePath(SkinSet set, const QString& name)
{
    InitSkinResources();
    return set == SkinSet::None ? QString()
                                : QStringLiteral(":/images/%1/%2").arg(QLatin1String(SkinFolder(set)), name);
}

QStringList AllSheetsAndPaths()
{
    QStringList all;
    for (int i = 0; i < kWindowSheetCount; ++i)
        for (const char* sheet : kWindowSheets[i].sheets)
            all << QLatin1String(sheet);
    for (const char* sheet : kDialogSheets)
        all << QLatin1String(sheet);
    for (const auto& row : kAddCards)
        for (const char* sheet : row)
            all << QLatin1String(sheet);
    return all;
}

void ApplyWindowSkin(QWidget* root, SkinSet set, int language)
{
    InitSkinResources();
    const bool plain = set == SkinSet::None;
    root->setStyleSheet(plain ? QString() : QLatin1String(kWindowBaseSheet));
    for (int i = 0; i < kWindowSheetCount; ++i) {
        const WidgetSheets& row = kWindowSheets[i];
        if (QWidget* w = root->findChild<QWidget*>(QLatin1String(row.objectName)))
            w->setStyleSheet(plain ? QString() : QLatin1String(row.sheets[int(set)]));
    }
    if (QWidget* card = root->findChild<QWidget*>(QStringLiteral("add_filebtn")))
        card->setStyleSheet(QLatin1String(AddCardSheet(set, language)));
}

} // namespace skin
