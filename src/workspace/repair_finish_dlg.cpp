#include "workspace/repair_finish_dlg.h"

#include "shell/platform_gui.h"
#include "shell/scale.h"
#include "workspace/help_links.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

repairFinishDialog::repairFinishDialog(QWidget* parent)
    : FramelessDialog(parent), m_repairedLabl(new QLabel(tr(" Repair process completed."), this))
{
    setObjectName(QStringLiteral("repairFinishDialog"));
    m_repairedLabl->setObjectName(QStringLiteral("repairedLabl"));
    m_repairedLabl->setWordWrap(true);
    m_repairedLabl->setAlignment(Qt::AlignCenter);
    auto* ok = new QPushButton(tr("OK"), this);
    ok->setObjectName(QStringLiteral("OkBtn"));
    auto* reference = new QPushButton(tr("What is a reference file?"), this);
    reference->setObjectName(QStringLiteral("referenceBtn"));
    reference->setFlat(true);
    reference->setStyleSheet(QStringLiteral(
        "QPushButton { background: transparent; color: #2b579a; text-decoration: underline; }"));
    for (QPushButton* b : {ok, reference})
        b->setCursor(Qt::PointingHandCursor);
    connect(ok, &QPushButton::clicked, this, &repairFinishDialog::OnOK);
    connect(reference, &QPushButton::clicked, this, &repairFinishDialog::OnReferenceBtn);

    auto* layout = new QVBoxLayout(this);
    const int m = int(18 * g_uiScale);
    layout->setContentsMargins(m, int(8 * g_uiScale), m, m);
    AddTitleLine(layout);
    layout->addLayout(MessageRow(m_repairedLabl, QStringLiteral("Mark.png")), 1);
    auto* row = new QHBoxLayout;
    row->addWidget(reference);
    row->addStretch();
    row->addWidget(ok);
    layout->addLayout(row);
    setFixedSize(int(420 * g_uiScale), int(190 * g_uiScale));
}

void repairFinishDialog::OnOK()
{
    accept();
}

void repairFinishDialog::OnReferenceBtn()
{
    g_openUrl(QUrl(SampleHelpAddress()));
}

void repairFinishDialog::Retranslate()
{
    m_repairedLabl->setText(tr(" Repair process completed."));
    if (auto* ok = findChild<QPushButton*>(QStringLiteral("OkBtn")))
        ok->setText(tr("OK"));
    if (auto* reference = findChild<QPushButton*>(QStringLiteral("referenceBtn")))
        reference->setText(tr("What is a reference file?"));
}
