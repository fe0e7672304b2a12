// VideoRepairWindow: preview of a result in the external player. The player
// is one process for the whole program; a second preview while it runs is
// refused and the first player goes on.
#include "workspace/video_repair_window.h"

#include "shell/platform_gui.h"
#include "shell/startup.h"
#include "workspace/workspace_globals.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTreeWidgetItem>
#include <memory>

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
    StartPlayer(path, false);
}

void VideoRepairWindow::OnDoubleClicked(QTreeWidgetItem* item, int column)
{
    if (!item)
        return;
    const QString text = item->text(column);
    if (text.isEmpty())
        return;
    StartPlayer(text, true);
}

void VideoRepairWindow::StartPlayer(const QString& target, bool doubleClick)
{
    qDebug() << "preview:" << target;
    if (g_playerPath.isEmpty()) {
        // Nothing to start: none of the players is installed.
        ShowDone(tr("No video player was found to preview the file. Install mpv or mplayer and try again."));
        return;
    }
    QProcess* process = PreviewProcess();
    if (process->state() != QProcess::NotRunning)
        return;   // the player that is up goes on
    const QString player = QFileInfo(g_playerPath).fileName();
    process->start(g_playerPath, PreviewArguments(g_playerKind, target, doubleClick), QIODevice::ReadWrite);
    if (!process->waitForStarted(5000)) {
        ShowDone(tr("The video player %1 could not be started.").arg(player));
        return;
    }
    // A player that gives up at once (it can't show the file, or has no
    // screen) would leave the press without any answer.
    auto started = std::make_shared<QElapsedTimer>();
    started->start();
    auto connection = std::make_shared<QMetaObject::Connection>();
    *connection = connect(process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
                          [this, started, connection, player](int code, QProcess::ExitStatus status) {
                              disconnect(*connection);
                              if ((code != 0 || status != QProcess::NormalExit) && started->elapsed() < 3000)
                                  ShowDone(tr("The video player %1 ended at once without showing the file.")
                                               .arg(player));
                          });
}
