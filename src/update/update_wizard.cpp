// The window's side of the update check: the Update buttons of both pages.
#include "update/check_update.h"
#include "update/update_fetch.h"
#include "workspace/video_repair_window.h"

void VideoRepairWindow::onUpdateWizard()
{
    g_updateByUser = true;
    // The constructor runs the whole check, offer and messages included.
    auto* check = new QCheckUpdate(this);
    check->move(frameGeometry().center() - QPoint(check->width() / 2, check->height() / 2));
    check->hide();
    check->deleteLater();
}
