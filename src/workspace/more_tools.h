#pragma once
// The More Tools menu: the other programs of the toolkit, each started from
// the application folder by its file name.
#include <QMenu>
#include <functional>

// File names of the sibling programs in the application folder.
extern QString g_dataRecoveryApp;
extern QString g_photoRepairApp;
extern QString g_photoRecoveryApp;
extern QString g_driveMonitorApp;

// Where the sibling name is installed: beside the program (in folder), else
// on PATH. Empty when it is neither.
QString FindSibling(const QString& folder, const QString& name);

// Starts the sibling at program; its folder becomes the current one and the
// sibling's working folder. False when it did not start.
bool StartSibling(const QString& program);

// Menu shown from a button: it opens under the button with their right
// edges lined up, so that it stays over the window, and it retranslates its
// entries through the given function when the language changes.
class PopupMenu : public QMenu {
    Q_OBJECT
public:
    explicit PopupMenu(QWidget* button);
    void SetRetranslate(std::function<void()> retranslate);

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QWidget* m_button;
    std::function<void()> m_retranslate;
};
