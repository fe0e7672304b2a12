#pragma once
// The question of the Stop button: two lines of text, OkBtn_2 ("Yes", stop)
// and OkBtn ("No", go on). The window connects both buttons.
#include "workspace/frameless_dialog.h"

class QLabel;
class QPushButton;

class StopDlg : public FramelessDialog {
    Q_OBJECT
public:
    explicit StopDlg(QWidget* parent = nullptr);
    void SetTexts(const QString& upper, const QString& lower);
    QLabel* upperLabel() const { return m_upper; }
    QLabel* lowerLabel() const { return m_lower; }
    QPushButton* yesButton() const { return m_yes; }   // OkBtn_2
    QPushButton* noButton() const { return m_no; }     // OkBtn

private:
    QLabel* m_upper;
    QLabel* m_lower;
    QPushButton* m_yes;
    QPushButton* m_no;

protected:
    void Retranslate() override;
};
