// VideoRepairWindow: preview of a result in the external player. The player
// is one process for the whole program; a second preview while it runs is
// refused by QProcess and the first player goes on.
#include "workspace/video_repair_window.h"

#include "shell/platform_gui.h"
#include "shell/startup.h"
#include "workspace/workspace_globals.h"

#include <QDebug>
#include <QFileInfo>
#include <QProcess>
#include <QTreeWidgetItem>

namespace {

QProcess* PreviewProcess()
{
    if (!g_previewProcess)
        g_previewProcess = new QProcess;
    return g_previewProcess;
}

} // namespace

void VideoRepairWindow::PlayVideo(QString path)
{
    qDebug() << "preview:" << path;
    if (g_playerPath.isEmpty()) {
        // Nothing to start: neither mplayer nor mpv is installed.
        ShowDone(tr("No video player was found to preview the file. Install mpv or mplayer and try again."));
        return;
    }
    PreviewProcess()->start(g_playerPath, PreviewArguments(g_playerKind, path, false), QIODevice::ReadWrite);
}

void VideoRepairWindow::OnDoubleClicked(QTreeWidgetItem* item, int column)
{
    if (!item)
        return;
    const QString text = item->text(column);
    if (text.isEmpty())
        return;
    PreviewProcess()->start(g_playerPath, PreviewArguments(g_playerKind, text, true), QIODevice::ReadWrite);
}
