#include "workspace/custom_button.h"

CustomButton::CustomButton(QWidget* parent)
    : QPushButton(parent)
{
    setMouseTracking(true);
    setFlat(true);
}

void CustomButton::mousePressEvent(QMouseEvent* event)
{
    QPushButton::mousePressEvent(event);
    Q_EMIT MousePressed(m_id);
}
