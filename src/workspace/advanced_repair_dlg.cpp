#include "workspace/advanced_repair_dlg.h"

#include "shell/platform_gui.h"
#include "shell/scale.h"
#include "workspace/help_links.h"
#include "workspace/reference_file_dlg.h"
#include "workspace/workspace_globals.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

AdvancedRepairDlg::AdvancedRepairDlg(QWidget* parent, const QString& sourcePath)
    : FramelessDialog(parent),
      String_label(new QLabel(this)),
      NextBtn(new QPushButton(tr("Next"), this)),
      cancle(new QPushButton(tr("Cancel"), this)),
      LearnMoreLink(new QPushButton(tr("Learn More"), this))
{
    g_advanceTarget = sourcePath;
    setObjectName(QStringLiteral("AdvancedRepairDlg"));
    String_label->setObjectName(QStringLiteral("String_label"));
    NextBtn->setObjectName(QStringLiteral("NextBtn"));
    cancle->setObjectName(QStringLiteral("cancle"));
    LearnMoreLink->setObjectName(QStringLiteral("LearnMoreLink"));

    String_label->setTextFormat(Qt::RichText);
    String_label->setWordWrap(true);
    Retranslate();
    LearnMoreLink->setFlat(true);
    LearnMoreLink->setStyleSheet(QStringLiteral(
        "QPushButton { background: transparent; color: #2b579a; text-decoration: underline; min-width: 0; }"));
    for (QPushButton* b : {NextBtn, cancle, LearnMoreLink})
        b->setCursor(Qt::PointingHandCursor);

    connect(NextBtn, &QPushButton::clicked, this, &AdvancedRepairDlg::OnclickedNextDialog);
    connect(cancle, &QPushButton::clicked, this, &AdvancedRepairDlg::OnCancle);
    connect(LearnMoreLink, &QPushButton::clicked, this, &AdvancedRepairDlg::onlearnmorelinkclicked);

    auto* layout = new QVBoxLayout(this);
    const int m = int(20 * g_uiScale);
    layout->setContentsMargins(m, m, m, m);
    layout->addWidget(String_label, 1);
    auto* row = new QHBoxLayout;
    row->addWidget(LearnMoreLink);
    row->addStretch();
    row->addWidget(NextBtn);
    row->addWidget(cancle);
    layout->addLayout(row);
    setFixedSize(int(440 * g_uiScale), int(210 * g_uiScale));
}

void AdvancedRepairDlg::OnclickedNextDialog()
{
    // Hiding ends this dialog's exec; the sample dialog runs on its own.
    hide();
    if (!g_referenceDlg)
        return;
    g_referenceDlg->ResetForNewSample();
    g_referenceDlg->CentreOn(this);
    g_referenceDlg->exec();
}

void AdvancedRepairDlg::OnCancle()
{
    close();
    g_advancePending = false;
}

void AdvancedRepairDlg::onlearnmorelinkclicked()
{
    const QString link = LinkFromStore(QStringLiteral("Learn_more"), DefaultLearnMoreLink());
    if (!link.isEmpty())
        g_openUrl(QUrl(link));
}

void AdvancedRepairDlg::Retranslate()
{
    String_label->setText(QStringLiteral("<p><b>%1</b></p><p>%2%3</p><p>%4</p>")
                              .arg(tr("Advance Repair"), tr("Use this option to repair severely damaged videos. "),
                                   tr("Click &quot;Next&quot; to add a 'sample video' of the same format, shot "
                                      "using the same device."),
                                   tr("The sample and the damaged video remain unchanged during repair process.")));
    NextBtn->setText(tr("Next"));
    cancle->setText(tr("Cancel"));
    LearnMoreLink->setText(tr("Learn More"));
}
