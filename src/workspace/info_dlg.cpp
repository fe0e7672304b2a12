#include "workspace/info_dlg.h"

#include "shell/scale.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

InfoDlgClass::InfoDlgClass(QWidget* parent)
    : FramelessDialog(parent), m_label(new QLabel(this)), m_okBtn(new QPushButton(tr("OK"), this))
{
    setObjectName(QStringLiteral("InfoDlgClass"));
    m_label->setObjectName(QStringLiteral("InfoLabl"));
    m_label->setWordWrap(true);
    m_label->setAlignment(Qt::AlignCenter);
    m_okBtn->setObjectName(QStringLiteral("OkBtn"));
    m_okBtn->setCursor(Qt::PointingHandCursor);
    connect(m_okBtn, &QPushButton::clicked, this, &InfoDlgClass::OnOk);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(int(16 * g_uiScale), int(8 * g_uiScale), int(16 * g_uiScale), int(16 * g_uiScale));
    AddTitleLine(layout);
    layout->addLayout(MessageRow(m_label, QStringLiteral("Info.png")), 1);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(m_okBtn);
    row->addStretch();
    layout->addLayout(row);
    setFixedSize(int(400 * g_uiScale), int(170 * g_uiScale));
}

void InfoDlgClass::setText(const QString& text)
{
    m_label->setText(text);
}

QString InfoDlgClass::text() const
{
    return m_label->text();
}

void InfoDlgClass::OnOk()
{
    accept();
}

void InfoDlgClass::Retranslate()
{
    m_okBtn->setText(tr("OK"));
}
