#include "workspace/frameless_dialog.h"

#include "shell/scale.h"
#include "workspace/skin.h"

#include <QEvent>
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

void FramelessDialog::changeEvent(QEvent* event)
{
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
