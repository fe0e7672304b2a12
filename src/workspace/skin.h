#pragma once
// The main window's skin: one style sheet constant per widget and image set,
// picked by object name. Every image the window asks for is named here.
#include "shell/scale.h"

#include <QStringList>

class QWidget;

namespace skin {

struct WidgetSheets {
    const char* objectName;
    const char* sheets[3];   // by SkinSet: 96-DPI, 125-DPI, 144-DPI
};

// The widgets of the main window's form, and of its language buttons.
extern const WidgetSheets kWindowSheets[];
extern const int kWindowSheetCount;

// The big add card of page 1: its image carries the text of each language.
const char* AddCardSheet(SkinSet set, int language);
// The window's frame and text colours (no images).
extern const char* const kWindowBaseSheet;
// The result and file lists (header arrows, scroll bars), by set.
extern const char* const kListSheets[3];
// Dialogs: panel, labels and the button faces, by set (plain for None).
const char* DialogSheet(SkinSet set);
// The title icon beside the window's name, by set.
QString TitleIconPath(SkinSet set);
// An image of set by its file name ("Info.png"); empty for SkinSet::None.
QString ImagePath(SkinSet set, const QString& name);

// Every style sheet and image path above, for checks that each image exists.
QStringList AllSheetsAndPaths();

// Sets the sheets of set on root's children (by object name) and on root;
// for SkinSet::None clears them, which leaves the form's plain look.
void ApplyWindowSkin(QWidget* root, SkinSet set, int language);

} // namespace skin
