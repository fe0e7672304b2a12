#include "workspace/confirm_dlg.h"

#include "shell/scale.h"
#include "workspace/workspace_globals.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

ConfirmDlgClass::ConfirmDlgClass(QWidget* parent)
    : FramelessDialog(parent), m_label(new QLabel(this))
{
    setObjectName(QStringLiteral("ConfirmDlgClass"));
    m_label->setObjectName(QStringLiteral("ConfirmLabl"));
    m_label->setWordWrap(true);
    m_label->setAlignment(Qt::AlignCenter);

    auto* close = new QPushButton(QStringLiteral("\u2715"), this);
    close->setObjectName(QStringLiteral("closeBtn"));
    close->setFixedSize(int(24 * g_uiScale), int(24 * g_uiScale));
    close->setCursor(Qt::PointingHandCursor);
    auto* yes = new QPushButton(tr("Yes"), this);
    yes->setObjectName(QStringLiteral("YesBtn"));
    auto* cancel = new QPushButton(tr("Cancel"), this);
    cancel->setObjectName(QStringLiteral("CancelBtn"));
    for (QPushButton* b : {yes, cancel})
        b->setCursor(Qt::PointingHandCursor);
    connect(yes, &QPushButton::clicked, this, &ConfirmDlgClass::OnYes);
    connect(cancel, &QPushButton::clicked, this, &ConfirmDlgClass::OnCancel);
    connect(close, &QPushButton::clicked, this, &ConfirmDlgClass::OnClose);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(int(16 * g_uiScale), int(6 * g_uiScale), int(6 * g_uiScale), int(16 * g_uiScale));
    AddTitleLine(layout, close);
    layout->addLayout(MessageRow(m_label, QStringLiteral("Warning.png")), 1);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(yes);
    row->addSpacing(int(12 * g_uiScale));
    row->addWidget(cancel);
    row->addStretch();
    layout->addLayout(row);
    setFixedSize(int(420 * g_uiScale), int(180 * g_uiScale));
}

void ConfirmDlgClass::setText(const QString& text)
{
    m_label->setText(text);
}

QString ConfirmDlgClass::text() const
{
    return m_label->text();
}

void ConfirmDlgClass::OnYes()
{
    g_confirmYes = true;
    accept();
}

void ConfirmDlgClass::OnCancel()
{
    g_confirmYes = false;
    reject();
}

void ConfirmDlgClass::OnClose()
{
    g_confirmClosed = true;
    reject();
}

void ConfirmDlgClass::Retranslate()
{
    if (auto* yes = findChild<QPushButton*>(QStringLiteral("YesBtn")))
        yes->setText(tr("Yes"));
    if (auto* cancel = findChild<QPushButton*>(QStringLiteral("CancelBtn")))
        cancel->setText(tr("Cancel"));
}
