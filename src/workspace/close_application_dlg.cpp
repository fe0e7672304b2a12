#include "workspace/close_application_dlg.h"

#include "shell/scale.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

QString g_closeAnswer;

CloseApplicationDlg::CloseApplicationDlg(QWidget* parent)
    : FramelessDialog(parent),
      m_title(new QLabel(this)),
      label_2(new QLabel(this)),
      m_close(new QPushButton(QStringLiteral("\u2715"), this)),
      YesBtn(new QPushButton(this)),
      NoBtn(new QPushButton(this))
{
    setObjectName(QStringLiteral("CloseApplicationDlg"));
    m_title->setObjectName(QStringLiteral("TitleLabl"));
    label_2->setObjectName(QStringLiteral("label_2"));
    m_close->setObjectName(QStringLiteral("closeBtn"));
    YesBtn->setObjectName(QStringLiteral("YesBtn"));
    NoBtn->setObjectName(QStringLiteral("NoBtn"));

    label_2->setWordWrap(true);
    label_2->setAlignment(Qt::AlignCenter);
    for (QPushButton* b : {YesBtn, NoBtn})
        b->setCursor(Qt::PointingHandCursor);
    connect(YesBtn, &QPushButton::clicked, this, &CloseApplicationDlg::CloseApplication);
    connect(NoBtn, &QPushButton::clicked, this, &CloseApplicationDlg::CloseApplication1);

    QVBoxLayout* layout = AddTitleRow(m_title, m_close);
    layout->addLayout(MessageRow(label_2, QStringLiteral("Warning.png")), 1);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(YesBtn);
    row->addSpacing(int(12 * g_uiScale));
    row->addWidget(NoBtn);
    row->addStretch();
    layout->addLayout(row);
    setFixedSize(int(420 * g_uiScale), int(180 * g_uiScale));
    Retranslate();
}

void CloseApplicationDlg::setText(const QString& text)
{
    label_2->setText(text);
}

QString CloseApplicationDlg::text() const
{
    return label_2->text();
}

// The dialog left without either button (its title control, Escape, the
// window manager) answers "No": only a press of Yes ends the program.
int CloseApplicationDlg::exec()
{
    g_closeAnswer = QStringLiteral("NoBtn");
    return FramelessDialog::exec();
}

void CloseApplicationDlg::CloseApplication()
{
    Answer();
}

void CloseApplicationDlg::CloseApplication1()
{
    Answer();
}

void CloseApplicationDlg::Answer()
{
    if (QObject* button = sender())
        g_closeAnswer = button->objectName();
    close();
}

void CloseApplicationDlg::Retranslate()
{
    setWindowTitle(tr("Exit"));
    m_title->setText(windowTitle());
    YesBtn->setText(tr("Yes"));
    NoBtn->setText(tr("No"));
}

void CloseApplicationDlg::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        Retranslate();
        label_2->setText(tr("Are you sure you want to exit?"));
    }
    FramelessDialog::changeEvent(event);
}
