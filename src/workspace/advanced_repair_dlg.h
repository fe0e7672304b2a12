#pragma once
// First step of Advance Repair: says what a sample video is and leads on to
// the sample dialog (g_referenceDlg).
#include "workspace/frameless_dialog.h"

class QLabel;
class QPushButton;

class AdvancedRepairDlg : public FramelessDialog {
    Q_OBJECT
public:
    AdvancedRepairDlg(QWidget* parent, const QString& sourcePath);

public Q_SLOTS:
    void OnclickedNextDialog();
    void OnCancle();
    void onlearnmorelinkclicked();

private:
    QLabel* String_label;
    QPushButton* NextBtn;
    QPushButton* cancle;
    QPushButton* LearnMoreLink;

protected:
    void Retranslate() override;
};
