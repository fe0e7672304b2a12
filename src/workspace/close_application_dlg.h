#pragma once
// The exit question: title "Exit", a text (label_2), YesBtn and NoBtn. The
// answer is the object name of the button pressed, in g_closeAnswer.
#include "workspace/frameless_dialog.h"

#include <QString>

class QLabel;
class QPushButton;

extern QString g_closeAnswer;   // "YesBtn" or "NoBtn" after the last exit question

class CloseApplicationDlg : public FramelessDialog {
    Q_OBJECT
public:
    explicit CloseApplicationDlg(QWidget* parent = nullptr);
    void setText(const QString& text);
    QString text() const;

    // Runs the question; the dialog left by any other way than YesBtn
    // (its title control, Escape, the window manager) counts as "NoBtn".
    int exec() override;

public Q_SLOTS:
    void CloseApplication();    // YesBtn
    void CloseApplication1();   // NoBtn

protected:
    void changeEvent(QEvent* event) override;

private:
    void Answer();
    void Retranslate();

    QLabel* m_title;
    QLabel* label_2;
    QPushButton* m_close;
    QPushButton* YesBtn;
    QPushButton* NoBtn;
};
