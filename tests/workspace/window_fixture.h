#pragma once
// Shared by the window tests: a settings folder of their own, file choosers
// that answer from prepared lists, a timer that answers modal dialogs, and a
// pipe that holds the repair thread inside a file until the test lets it go.
#include "core/repair_globals.h"
#include "core/platform_core.h"
#include "shell/scale.h"
#include "support/test_videos.h"
#include "workspace/file_dialogs.h"
#include "workspace/video_repair_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QPointer>
#include <QTextEdit>
#include <QTimer>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// The window's column names: W::ResStatus, W::FilePath...
using W = VideoRepairWindow;

namespace fixture {

// Points both settings stores into a fresh folder (returned) at scale 1.0.
inline QString UseFreshSettings(const QString& tag)
{
    const QString config = testvideo::freshDir(tag);
    qputenv("XDG_CONFIG_HOME", config.toUtf8());
    g_dpiScale = g_uiScale = 1.0f;
    g_settingsPath = SettingsFilePath(SettingsStore::PhotoRecovery);
    g_appDir = QStringLiteral(REELWRIGHT_BIN_DIR "/Libmp4");
    return config;
}

class ScriptedFileDialogs : public FileDialogs {
public:
    QList<QStringList> picks;    // answers of the multi-file chooser
    QStringList files, folders;  // answers of the single-file and folder choosers
    QStringList calls;           // caption + " | " + filter of each file chooser shown
    QStringList getOpenFileNames(QWidget*, const QString& caption, const QString&, const QString& filter) override
    {
        calls << caption + QStringLiteral(" | ") + filter;
        return picks.isEmpty() ? QStringList() : picks.takeFirst();
    }
    QString getOpenFileName(QWidget*, const QString& caption, const QString&, const QString& filter) override
    {
        calls << caption + QStringLiteral(" | ") + filter;
        return files.isEmpty() ? QString() : files.takeFirst();
    }
    QString getExistingDirectory(QWidget*, const QString&, const QString&) override
    {
        return folders.isEmpty() ? QString() : folders.takeFirst();
    }
};

inline VideoRepairWindow* ShownWindow(ScriptedFileDialogs** dialogs)
{
    auto* window = new VideoRepairWindow;
    auto owned = std::make_unique<ScriptedFileDialogs>();
    *dialogs = owned.get();
    window->SetFileDialogs(std::move(owned));
    window->show();
    return window;
}

// The words a dialog shows: its labels but the title, and its text boxes.
inline QStringList DialogTexts(QWidget* w)
{
    QStringList texts;
    for (QLabel* l : w->findChildren<QLabel*>())
        if (!l->text().isEmpty() && l->objectName() != QLatin1String("TitleLabl"))
            texts << l->text();
    for (QTextEdit* e : w->findChildren<QTextEdit*>())
        texts << e->toPlainText();
    return texts;
}

// Every 20 ms: the modal widget that is up gets a click on the button named
// first in `answers` ("*": its first visible button), once two ticks have
// seen it (the first may come while exec() is still showing it). Its words
// go to `texts`. The click goes through the event queue, so that a dialog it
// opens runs its loop outside the timer's handler. A dialog without the
// expected button is recorded as "unexpected" and rejected after two seconds.
class ModalAnswerer {
public:
    QStringList answers;
    QList<QStringList> texts;

    ModalAnswerer()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { tick(); });
        m_timer.start(20);
    }
    void clear() { answers.clear(), texts.clear(); }

private:
    QAbstractButton* expectedButton(QWidget* modal) const
    {
        if (answers.isEmpty() || answers.first() != QLatin1String("*"))
            return answers.isEmpty() ? nullptr : modal->findChild<QAbstractButton*>(answers.first());
        for (QAbstractButton* b : modal->findChildren<QAbstractButton*>())
            if (b->isVisible())
                return b;
        return nullptr;
    }
    void tick()
    {
        QWidget* modal = QApplication::activeModalWidget();
        const bool settled = modal && modal == m_last;
        m_ticks = settled ? m_ticks + 1 : 0;
        m_last = modal;
        if (!settled)
            return;
        QAbstractButton* button = expectedButton(modal);
        if (!button && m_ticks > 100) {
            texts.append(QStringList{QStringLiteral("unexpected")} + DialogTexts(modal));
            auto* dialog = qobject_cast<QDialog*>(modal);
            dialog ? dialog->reject() : void(modal->close());
        }
        if (!button || !button->isVisible() || !button->isEnabled())
            return;
        answers.removeFirst();
        texts.append(DialogTexts(modal));
        m_last = nullptr;
        QMetaObject::invokeMethod(button, "click", Qt::QueuedConnection);
    }
    QTimer m_timer;
    QPointer<QWidget> m_last;
    int m_ticks = 0;
};

// True when some thread of this process sits in openat (syscall 257 on
// x86-64): where the repair thread waits for the writer of a pipe.
inline bool ThreadBlockedInOpen()
{
    const QStringList tasks = QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& t : tasks) {
        QFile f(QStringLiteral("/proc/self/task/%1/syscall").arg(t));
        if (f.open(QIODevice::ReadOnly) && f.readAll().startsWith("257 "))
            return true;
    }
    return false;
}
inline bool MakePipe(const QString& path) { return ::mkfifo(QFile::encodeName(path).constData(), 0600) == 0; }
// Lets a reader held in the open of the pipe go on (it then reads nothing).
inline bool ReleasePipe(const QString& path)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_NONBLOCK);
    return fd >= 0 && ::close(fd) == 0;
}

inline bool RunEnded(VideoRepairWindow* w)
{
    return !w->repairThread().isRunning() && w->BackBtn->isEnabled() &&
           w->stringLabl->text() == QLatin1String("Repair Process Completed");
}

} // namespace fixture

// Dialogs run nested event loops; the plain Unix event dispatcher keeps the
// answering timer firing inside them.
#define WINDOW_TEST_MAIN(TestClass)             \
    int main(int argc, char** argv)             \
    {                                           \
        qputenv("QT_NO_GLIB", "1");             \
        QApplication app(argc, argv);           \
        TestClass test;                         \
        return QTest::qExec(&test, argc, argv); \
    }
