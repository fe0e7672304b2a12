// VideoRepairWindow: the Help and About buttons, and the More Tools menu that
// starts a sibling program of the toolkit in place of this one.
#include "workspace/video_repair_window.h"

#include "core/repair_globals.h"
#include "shell/platform_gui.h"
#include "shell/startup.h"
#include "workspace/about_dlg.h"
#include "workspace/close_application_dlg.h"
#include "workspace/help_links.h"
#include "workspace/more_tools.h"
#include "workspace/skin.h"

#include <QAction>
#include <QCoreApplication>
#include <QIcon>
#include <QUrl>

void VideoRepairWindow::InitClosingAndHelp()
{
    m_closeDlg = new CloseApplicationDlg(this);
    m_aboutDlg = new AboutDlg(this);
    connect(AbutBtn_1, &QPushButton::clicked, this, &VideoRepairWindow::OnAboutBtnClicked);
    connect(AbutBtn_2, &QPushButton::clicked, this, &VideoRepairWindow::OnAboutBtnClicked);
    connect(HelpBtn_1, &QPushButton::clicked, this, &VideoRepairWindow::OpenHelp);
    connect(HelpBtn_2, &QPushButton::clicked, this, &VideoRepairWindow::OpenHelp);
    connect(referenceLinkBtn, &QPushButton::clicked, this, [] { g_openUrl(QUrl(SampleHelpAddress())); });
}

void VideoRepairWindow::OpenHelp()
{
    const QString address = HelpAddress(HelpTopic(), HelpLanguage(g_languageType));
    if (!address.isEmpty())
        g_openUrl(QUrl(address));
}

void VideoRepairWindow::OnAboutBtnClicked()
{
    m_aboutDlg->CentreOn(this);
    m_aboutDlg->exec();
}

// The button sits in page 1's title strip, left of the toolbar. It offers
// the siblings that are installed, and is hidden when none is.
void VideoRepairWindow::MoreTool()
{
    m_moreToolsButton = new QPushButton(AddFile_frame);
    m_moreToolsButton->setObjectName(QStringLiteral("m_moreToolsButton"));
    m_moreToolsButton->setGeometry(Scaled(462), 0, Scaled(96), Scaled(30));
    m_moreToolsButton->setStyleSheet(QStringLiteral(
        "QPushButton { background: transparent; color: white; border: none; }"
        "QPushButton:hover, QPushButton:pressed { background: #2d5288; }"
        "QPushButton::menu-indicator { image: none; width: 0; }"));

    m_moreToolsMenu = new PopupMenu(m_moreToolsButton);
    m_moreToolsMenu->setObjectName(QStringLiteral("MoreToolsMenu"));
    m_moreToolsMenu->setStyleSheet(QStringLiteral(
        "QMenu { background: white; border: 1px solid #2b579a; padding: 4px 0; }"
        "QMenu::item { padding: 6px 24px; color: #202020; }"
        "QMenu::item:selected { background: #2b579a; color: white; }"
        "QMenu::separator { height: 1px; background: #d5dce6; margin: 2px 8px; }"));
    m_dataRecoveryAction = m_moreToolsMenu->addAction(QString());
    m_moreToolsMenu->addSeparator();
    m_photoRepairAction = m_moreToolsMenu->addAction(QString());
    m_moreToolsMenu->addSeparator();
    m_photoRecoveryAction = m_moreToolsMenu->addAction(QString());
    m_moreToolsMenu->addSeparator();
    m_driveMonitorAction = m_moreToolsMenu->addAction(QString());
    const SkinSet set = SkinSetFor(g_uiScale);
    const QList<QPair<QAction*, const char*>> icons = {{m_dataRecoveryAction, "tool_RecoverData.png"},
                                                       {m_photoRepairAction, "tool_RepairPhoto.png"},
                                                       {m_photoRecoveryAction, "tool_RecoverPhoto.png"},
                                                       {m_driveMonitorAction, "tool_MonitorDrive.png"}};
    for (const auto& icon : icons)
        if (set != SkinSet::None)
            icon.first->setIcon(QIcon(skin::ImagePath(set, QLatin1String(icon.second))));
    m_moreToolsButton->setMenu(m_moreToolsMenu);
    m_moreToolsMenu->SetRetranslate([this] { RetranslateMoreTools(); });
    RetranslateMoreTools();
    connect(m_moreToolsMenu, &QMenu::aboutToShow, this, &VideoRepairWindow::OfferInstalledTools);
    OfferInstalledTools();

    connect(m_dataRecoveryAction, &QAction::triggered, this, &VideoRepairWindow::LaunchDataRecovery);
    connect(m_photoRepairAction, &QAction::triggered, this, &VideoRepairWindow::LaunchPhotoRepair);
    connect(m_photoRecoveryAction, &QAction::triggered, this, &VideoRepairWindow::LaunchPhotoRecovery);
    connect(m_driveMonitorAction, &QAction::triggered, this, &VideoRepairWindow::LaunchDriveMonitor);
}

void VideoRepairWindow::RetranslateMoreTools()
{
    m_moreToolsButton->setText(tr("More Tools") + QStringLiteral(" \u25BE"));
    m_moreToolsButton->setToolTip(tr("More Tools"));
    m_dataRecoveryAction->setText(tr("Recover Data"));
    m_photoRepairAction->setText(tr("Repair Photo"));
    m_photoRecoveryAction->setText(tr("Recover Photo"));
    m_driveMonitorAction->setText(tr("Monitor Drive"));
}

void VideoRepairWindow::LaunchDataRecovery()
{
    LaunchSibling(g_dataRecoveryApp);
}

void VideoRepairWindow::LaunchPhotoRepair()
{
    LaunchSibling(g_photoRepairApp);
}

void VideoRepairWindow::LaunchPhotoRecovery()
{
    LaunchSibling(g_photoRecoveryApp);
}

void VideoRepairWindow::LaunchDriveMonitor()
{
    LaunchSibling(g_driveMonitorApp);
}

void VideoRepairWindow::OfferInstalledTools()
{
    const QList<QPair<QAction*, QString>> tools = {{m_dataRecoveryAction, g_dataRecoveryApp},
                                                   {m_photoRepairAction, g_photoRepairApp},
                                                   {m_photoRecoveryAction, g_photoRecoveryApp},
                                                   {m_driveMonitorAction, g_driveMonitorApp}};
    bool any = false;
    for (const auto& tool : tools) {
        const bool installed = !FindSibling(g_programDir, tool.second).isEmpty();
        tool.first->setVisible(installed);
        any = any || installed;
    }
    // A separator shows only between two entries that show.
    QAction* lastShown = nullptr;
    QAction* pending = nullptr;
    for (QAction* a : m_moreToolsMenu->actions()) {
        if (a->isSeparator()) {
            a->setVisible(false);
            if (lastShown)
                pending = a;
        } else if (a->isVisible()) {
            if (pending)
                pending->setVisible(true);
            pending = nullptr;
            lastShown = a;
        }
    }
    m_moreToolsButton->setVisible(any);
}

// The sibling takes over through the normal exit: the exit question, and
// the results nobody saved removed. A sibling that doesn't start is
// reported, and this program stays.
void VideoRepairWindow::LaunchSibling(const QString& name)
{
    const QString program = FindSibling(g_programDir, name);
    if (program.isEmpty()) {
        OfferInstalledTools();
        return;
    }
    bool awaiting = false;
    if (!ExitConfirmed(awaiting))
        return;
    if (!StartSibling(program)) {
        ShowDone(tr("%1 could not be started.").arg(name));
        return;
    }
    FinishExit(awaiting);
    hide();
    QCoreApplication::quit();
}
