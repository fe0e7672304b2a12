#include "workspace/info_dlg.h"

#include "shell/scale.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

InfoDlgClass::InfoDlgClass(QWidget* parent)
    : QDialog(parent), m_label(new QLabel(this))
{
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setModal(true);
    m_label->setWordWrap(true);
    m_label->setAlignment(Qt::AlignCenter);
    auto* ok = new QPushButton(tr("OK"), this);
    ok->setObjectName(QStringLiteral("OkBtn"));
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_label);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(ok);
    layout->addLayout(row);
    resize(int(380 * g_uiScale), int(150 * g_uiScale));
}

void InfoDlgClass::setText(const QString& text)
{
    m_label->setText(text);
}

QString InfoDlgClass::text() const
{
    return m_label->text();
}
