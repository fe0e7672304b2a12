#pragma once
// The message at the end of a run: repairedLabl, OkBtn, and referenceBtn
// ("What is a reference file?"), which does nothing yet.
#include "workspace/frameless_dialog.h"

class QLabel;

class repairFinishDialog : public FramelessDialog {
    Q_OBJECT
public:
    explicit repairFinishDialog(QWidget* parent = nullptr);
    QLabel* repairedLabl() const { return m_repairedLabl; }

public Q_SLOTS:
    void OnOK();
    void OnReferenceBtn();

private:
    QLabel* m_repairedLabl;

protected:
    void Retranslate() override;
};
