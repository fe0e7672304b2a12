#include "workspace/frameless_dialog.h"

#include <QMouseEvent>

FramelessDialog::FramelessDialog(QWidget* parent)
    : QDialog(parent)
{
    setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
    setModal(true);
    ApplyDialogStyle();
}

void FramelessDialog::ApplyDialogStyle()
{
    setStyleSheet(QStringLiteral(
        "QDialog { background: white; border: 1px solid #2b579a; }"
        "QLabel { color: #202020; }"
        "QPushButton { background: #2b579a; color: white; border: none; padding: 4px 14px;"
        " min-width: 70px; min-height: 22px; }"
        "QPushButton:hover { background: #3a6cb8; }"
        "QPushButton#closeBtn { background: transparent; color: #404040; min-width: 0; padding: 0; }"));
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
