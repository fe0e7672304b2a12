#include "workspace/reference_repaired_dlg.h"

ReferenceRepairedDlg::ReferenceRepairedDlg(QWidget* parent)
    : InfoDlgClass(parent)
{
    setObjectName(QStringLiteral("ReferenceRepairedDlg"));
    SetMessageIcon(QStringLiteral("Mark.png"));
    setText(tr("Video file repaired successfully!"));
}

void ReferenceRepairedDlg::Retranslate()
{
    InfoDlgClass::Retranslate();
    setText(tr("Video file repaired successfully!"));
}
