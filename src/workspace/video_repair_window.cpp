#include "workspace/video_repair_window.h"

#include "core/thread_video_repair.h"
#include "shell/scale.h"

#include <QLabel>
#include <QPropertyAnimation>
#include <QVBoxLayout>

VideoRepairWindow::VideoRepairWindow(QWidget* parent)
    : QWidget(parent), m_repairThread(new ThreadVideoRepair(this))
{
    setWindowTitle(QStringLiteral("Reelwright"));
    resize(int(850 * g_uiScale), int(600 * g_uiScale));
    auto* layout = new QVBoxLayout(this);
    auto* label = new QLabel(tr("Reelwright repairs damaged video files."), this);
    label->setAlignment(Qt::AlignCenter);
    layout->addWidget(label);
}

VideoRepairWindow::~VideoRepairWindow() = default;

void VideoRepairWindow::StartFadeIn()
{
    setWindowOpacity(0.0);
    auto* fade = new QPropertyAnimation(this, "windowOpacity", this);
    fade->setDuration(400);
    fade->setStartValue(0.0);
    fade->setEndValue(1.0);
    fade->start(QAbstractAnimation::DeleteWhenStopped);
}
