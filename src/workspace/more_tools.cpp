#include "workspace/more_tools.h"

#include "shell/platform_gui.h"

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QStandardPaths>

// Our choice of names: lower case with hyphens, as programs are named here.
QString g_dataRecoveryApp = QStringLiteral("data-recovery");
QString g_photoRepairApp = QStringLiteral("photo-repair");
QString g_photoRecoveryApp = QStringLiteral("photo-recovery");
QString g_driveMonitorApp = QStringLiteral("drive-monitor");

QString FindSibling(const QString& folder, const QString& name)
{
    const QFileInfo beside(QDir(folder).absoluteFilePath(name));
    if (beside.isFile() && beside.isExecutable())
        return beside.absoluteFilePath();
    return QStandardPaths::findExecutable(name);
}

bool StartSibling(const QString& program)
{
    const QString folder = QFileInfo(program).absolutePath();
    QDir::setCurrent(folder);
    return g_startDetached(program, {}, folder);
}

PopupMenu::PopupMenu(QWidget* button)
    : QMenu(button), m_button(button)
{
}

void PopupMenu::SetRetranslate(std::function<void()> retranslate)
{
    m_retranslate = std::move(retranslate);
}

void PopupMenu::showEvent(QShowEvent* event)
{
    if (m_button) {
        const QPoint below = m_button->mapToGlobal(QPoint(m_button->width(), m_button->height()));
        move(below.x() - width(), below.y());
    }
    QMenu::showEvent(event);
}

void PopupMenu::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange && m_retranslate)
        m_retranslate();
    QMenu::changeEvent(event);
}
