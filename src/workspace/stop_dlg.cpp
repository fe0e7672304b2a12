#include "workspace/stop_dlg.h"

#include "shell/scale.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

StopDlg::StopDlg(QWidget* parent)
    : FramelessDialog(parent),
      m_upper(new QLabel(this)),
      m_lower(new QLabel(this)),
      m_yes(new QPushButton(this)),
      m_no(new QPushButton(this))
{
    setObjectName(QStringLiteral("StopDlg"));
    m_upper->setObjectName(QStringLiteral("label"));
    m_lower->setObjectName(QStringLiteral("label_2"));
    QFont bold = m_upper->font();
    bold.setBold(true);
    m_upper->setFont(bold);
    for (QLabel* l : {m_upper, m_lower}) {
        l->setWordWrap(true);
        l->setAlignment(Qt::AlignCenter);
    }
    m_yes->setObjectName(QStringLiteral("OkBtn_2"));
    m_no->setObjectName(QStringLiteral("OkBtn"));
    m_yes->setText(tr("Yes"));
    m_no->setText(tr("No"));
    for (QPushButton* b : {m_yes, m_no})
        b->setCursor(Qt::PointingHandCursor);

    auto* layout = new QVBoxLayout(this);
    const int m = int(18 * g_uiScale);
    layout->setContentsMargins(m, int(8 * g_uiScale), m, m);
    AddTitleLine(layout);
    auto* texts = new QWidget(this);
    auto* column = new QVBoxLayout(texts);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_upper, 1);
    column->addWidget(m_lower, 1);
    layout->addLayout(MessageRow(texts, QStringLiteral("Warning.png")), 1);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(m_yes);
    row->addSpacing(int(12 * g_uiScale));
    row->addWidget(m_no);
    row->addStretch();
    layout->addLayout(row);
    setFixedSize(int(460 * g_uiScale), int(210 * g_uiScale));
}

void StopDlg::SetTexts(const QString& upper, const QString& lower)
{
    m_upper->setText(upper);
    m_lower->setText(lower);
}

void StopDlg::Retranslate()
{
    m_yes->setText(tr("Yes"));
    m_no->setText(tr("No"));
    SetTexts(tr("Do you want to stop the current process?"),
             tr("You can't resume the process from this point. All the changes will be discarded. "));
}
