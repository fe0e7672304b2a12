#include "workspace/frameless_dialog.h"

#include "shell/scale.h"
#include "workspace/skin.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPixmap>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

FramelessDialog::FramelessDialog(QWidget* parent)
    : QDialog(parent)
{
    setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
    setModal(true);
    ApplyDialogStyle();
}

void FramelessDialog::ApplyDialogStyle()
{
    setStyleSheet(QLatin1String(skin::DialogSheet(SkinSetFor(g_uiScale))));
}

QVBoxLayout* FramelessDialog::AddTitleRow(QLabel* title, QPushButton* close)
{
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    close->setFixedSize(int(24 * g_uiScale), int(24 * g_uiScale));
    close->setCursor(Qt::PointingHandCursor);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(int(16 * g_uiScale), int(6 * g_uiScale), int(6 * g_uiScale), int(16 * g_uiScale));
    auto* top = new QHBoxLayout;
    top->addWidget(title);
    top->addStretch();
    top->addWidget(close);
    layout->addLayout(top);
    return layout;
}

void FramelessDialog::AddTitleLine(QVBoxLayout* layout, QPushButton* close)
{
    auto* top = new QHBoxLayout;
    const QString iconPath = skin::TitleIconPath(SkinSetFor(g_uiScale));
    if (!iconPath.isEmpty()) {
        auto* icon = new QLabel(this);
        icon->setObjectName(QStringLiteral("TitleIconLabl"));
        icon->setPixmap(QPixmap(iconPath).scaled(int(18 * g_uiScale), int(18 * g_uiScale), Qt::KeepAspectRatio,
                                                 Qt::SmoothTransformation));
        top->addWidget(icon);
    }
    m_titleName = new QLabel(QCoreApplication::translate("VideoRepairWin", "Reelwright Video Repair"), this);
    m_titleName->setObjectName(QStringLiteral("TitleLabl"));
    QFont bold = m_titleName->font();
    bold.setBold(true);
    m_titleName->setFont(bold);
    top->addWidget(m_titleName);
    top->addStretch();
    if (close) {
        close->setFixedSize(int(24 * g_uiScale), int(24 * g_uiScale));
        close->setCursor(Qt::PointingHandCursor);
        top->addWidget(close);
    }
    layout->insertLayout(0, top);
}

QHBoxLayout* FramelessDialog::MessageRow(QWidget* text, const QString& image)
{
    auto* row = new QHBoxLayout;
    m_messageIcon = new QLabel(this);
    m_messageIcon->setObjectName(QStringLiteral("MessageIconLabl"));
    m_messageIcon->setFixedSize(int(40 * g_uiScale), int(40 * g_uiScale));
    SetMessageIcon(image);
    row->addWidget(m_messageIcon, 0, Qt::AlignVCenter);
    row->addSpacing(int(8 * g_uiScale));
    row->addWidget(text, 1);
    return row;
}

void FramelessDialog::SetMessageIcon(const QString& image)
{
    if (!m_messageIcon)
        return;
    const QString path = skin::ImagePath(SkinSetFor(g_uiScale), image);
    m_messageIcon->setPixmap(path.isEmpty() ? QPixmap()
                                            : QPixmap(path).scaled(m_messageIcon->size(), Qt::KeepAspectRatio,
                                                                   Qt::SmoothTransformation));
    m_messageIcon->setVisible(!path.isEmpty());
}

void FramelessDialog::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange && m_titleName)
        m_titleName->setText(QCoreApplication::translate("VideoRepairWin", "Reelwright Video Repair"));
    if (event->type() == QEvent::LanguageChange)
        Retranslate();
    QDialog::changeEvent(event);
}

void FramelessDialog::CentreOn(const QWidget* w)
{
    if (!w)
        return;
    const QRect area = w->frameGeometry();
    move(area.center() - QPoint(width() / 2, height() / 2));
}

void FramelessDialog::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_dragging = true;
        m_dragOffset = event->globalPos() - frameGeometry().topLeft();
        event->accept();
        return;
    }
    QDialog::mousePressEvent(event);
}

void FramelessDialog::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragging && (event->buttons() & Qt::LeftButton)) {
        move(event->globalPos() - m_dragOffset);
        event->accept();
        return;
    }
    QDialog::mouseMoveEvent(event);
}

void FramelessDialog::mouseReleaseEvent(QMouseEvent* event)
{
    m_dragging = false;
    QDialog::mouseReleaseEvent(event);
}

void FramelessDialog::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        for (const char* name : {"cancle", "CancelBtn", "NoBtn", "OkBtn"}) {
            auto* button = findChild<QPushButton*>(QLatin1String(name));
            if (button && button->isVisible() && button->isEnabled()) {
                button->click();
                return;
            }
        }
    }
    QDialog::keyPressEvent(event);
}
