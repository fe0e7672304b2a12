#pragma once
// Base of the program's modal dialogs: frameless, of the splash-screen window
// type, and moved by dragging anywhere on them.
#include <QDialog>
#include <QPoint>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QVBoxLayout;

class FramelessDialog : public QDialog {
    Q_OBJECT
public:
    explicit FramelessDialog(QWidget* parent = nullptr);
    // Moves the dialog so that its centre lies on the centre of w.
    void CentreOn(const QWidget* w);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    // Escape answers as the dialog's Cancel or No button does (its OK when
    // it has only that), so that the answer is the same as by the mouse.
    void keyPressEvent(QKeyEvent* event) override;
    // On QEvent::LanguageChange: Retranslate().
    void changeEvent(QEvent* event) override;
    // Sets the dialog's own words anew in the installed language.
    virtual void Retranslate() {}
    // Gives the dialog its look: a white panel with a coloured border, and
    // buttons with the faces of the scale's image set (plain without one).
    // Dialogs place their widgets with box layouts, so the words of each
    // language get the room they need without a table of rectangles.
    void ApplyDialogStyle();
    // Lays the dialog out as a column that starts with its title row: the
    // title in bold at the left, the close control at the right (it rejects
    // the dialog). Returns the column for the rest of the dialog.
    QVBoxLayout* AddTitleRow(QLabel* title, QPushButton* close);
    // The title line of a message: the program's icon and name, then close
    // when given (it rejects the dialog). Added to the top of layout.
    void AddTitleLine(QVBoxLayout* layout, QPushButton* close = nullptr);
    // The message's icon (image of the skin, "Info.png", "Warning.png",
    // "Mark.png") left of text, as a row for the dialog's column.
    QHBoxLayout* MessageRow(QWidget* text, const QString& image);
    // Sets the message icon anew (a dialog that serves more than one kind).
    void SetMessageIcon(const QString& image);

private:
    QLabel* m_titleName = nullptr;
    QLabel* m_messageIcon = nullptr;
    bool m_dragging = false;
    QPoint m_dragOffset;
};
