#include "workspace/reference_file_dlg.h"

#include "core/repair_globals.h"
#include "shell/scale.h"
#include "workspace/file_dialogs.h"
#include "workspace/workspace_globals.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

ReferenceFileDlg::ReferenceFileDlg(QWidget* parent, const QString& path)
    : FramelessDialog(parent),
      RefPath_Edit(new QTextEdit(this)),
      RefBrowse_Btn(new QPushButton(tr("Browse"), this)),
      refe_CheckBox(new QCheckBox(tr("Apply to all files of same format."), this)),
      RefRepairBtn(new QPushButton(tr("Repair"), this)),
      cancle(new QPushButton(tr("Cancel"), this)),
      String_label(new QLabel(tr("Add a sample video:"), this))
{
    setObjectName(QStringLiteral("ReferenceFileDlg"));
    String_label->setObjectName(QStringLiteral("String_label"));
    RefPath_Edit->setObjectName(QStringLiteral("RefPath_Edit"));
    RefBrowse_Btn->setObjectName(QStringLiteral("RefBrowse_Btn"));
    refe_CheckBox->setObjectName(QStringLiteral("refe_CheckBox"));
    RefRepairBtn->setObjectName(QStringLiteral("RefRepairBtn"));
    cancle->setObjectName(QStringLiteral("cancle"));

    QFont bold = String_label->font();
    bold.setBold(true);
    String_label->setFont(bold);
    RefPath_Edit->setReadOnly(true);
    RefPath_Edit->setText(path);
    RefPath_Edit->setFixedHeight(int(28 * g_uiScale));
    RefPath_Edit->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    RefPath_Edit->setLineWrapMode(QTextEdit::NoWrap);
    RefPath_Edit->setStyleSheet(QStringLiteral("QTextEdit { border: 1px solid #b8c4d6; }"));
    for (QPushButton* b : {RefBrowse_Btn, RefRepairBtn, cancle})
        b->setCursor(Qt::PointingHandCursor);

    connect(RefBrowse_Btn, &QPushButton::clicked, this, &ReferenceFileDlg::OnBrowseRefrenceFile);
    connect(cancle, &QPushButton::clicked, this, &ReferenceFileDlg::OnCancle);

    auto* layout = new QVBoxLayout(this);
    const int m = int(20 * g_uiScale);
    layout->setContentsMargins(m, m, m, m);
    layout->addWidget(String_label);
    auto* pathRow = new QHBoxLayout;
    pathRow->addWidget(RefPath_Edit, 1);
    pathRow->addWidget(RefBrowse_Btn);
    layout->addLayout(pathRow);
    layout->addWidget(refe_CheckBox);
    layout->addStretch();
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(RefRepairBtn);
    row->addWidget(cancle);
    layout->addLayout(row);
    setFixedSize(int(460 * g_uiScale), int(180 * g_uiScale));
    ResetForNewSample();
}

void ReferenceFileDlg::ResetForNewSample()
{
    RefPath_Edit->clear();
    refe_CheckBox->setChecked(false);
    refe_CheckBox->setEnabled(false);
    QFont font(QStringLiteral("Segoe UI Semibold"), 10);
    font.setBold(true);
    RefRepairBtn->setFont(font);
    RefRepairBtn->setText(tr("Repair"));
    RefRepairBtn->setStyleSheet(QStringLiteral(
        "QPushButton { color: white; min-width: %1px; min-height: %2px; }"
        "QPushButton:disabled { background: #a9b7cc; color: #eef1f5; }")
                                    .arg(int(70 * g_uiScale))
                                    .arg(int(22 * g_uiScale)));
    RefRepairBtn->setEnabled(false);
}

void ReferenceFileDlg::SetReferencePath(const QString& path)
{
    g_referencePath = path;
    if (g_forgetReference) {
        g_referencePath.clear();
        g_referenceMode = false;
    }
}

void ReferenceFileDlg::OnBrowseRefrenceFile()
{
    if (!m_fileDialogs)
        return;
    // The filter is kept as it has always read, "*.WMV*.AVI" included.
    const QString path = m_fileDialogs->getOpenFileName(
        this, tr("Add File"), QString(),
        QStringLiteral("Video (*.mov *.mp4 *.f4v *.m4v *.3g2 *.3gp *.asf *.ASF *.wmv *.WMV*.AVI *.avi *.DIVX *.divx "
                       "*.FLV *.flv *.mpg *.mpeg *.MPG *.MPEG *.mkv *.MKV *.webm *.WEBM *.DAT *.dat *.voc *.VOC)"));
    if (path.isEmpty())
        return;
    g_referenceBrowsed = path;
    SetReferencePath(path);
    RefPath_Edit->setText(path);
    RefRepairBtn->setEnabled(true);
    refe_CheckBox->setEnabled(true);
    g_referenceChosen = path;
}

void ReferenceFileDlg::OnHideDialog()
{
    hide();
}

void ReferenceFileDlg::OnCancle()
{
    close();
    g_applyToAll = false;
}

void ReferenceFileDlg::Retranslate()
{
    RefBrowse_Btn->setText(tr("Browse"));
    refe_CheckBox->setText(tr("Apply to all files of same format."));
    RefRepairBtn->setText(tr("Repair"));
    cancle->setText(tr("Cancel"));
    String_label->setText(tr("Add a sample video:"));
}
