#pragma once
// Message dialog of the results page (m_doneDlg): one text and OkBtn.
#include "workspace/info_dlg.h"

class ReferenceRepairedDlg : public InfoDlgClass {
    Q_OBJECT
public:
    explicit ReferenceRepairedDlg(QWidget* parent = nullptr);

protected:
    void Retranslate() override;
};
