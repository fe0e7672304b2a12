// The main window driven as a user would: adding files through the
// file-chooser seam, the select-all box, removing, the press of Repair, real
// runs of the repair thread, Stop, Back, and the window's own behaviour.
#include "core/muxer.h"
#include "core/repair_globals.h"
#include "shell/platform_core.h"
#include "shell/scale.h"
#include "support/test_videos.h"
#include "workspace/custom_button.h"
#include "workspace/file_dialogs.h"
#include "workspace/my_tree_widget.h"
#include "workspace/video_repair_window.h"
#include "workspace/workspace_globals.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMouseEvent>
#include <QSettings>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace testvideo;

namespace {

// Answers the file chooser with the next prepared list.
class ScriptedFileDialogs : public FileDialogs {
public:
    explicit ScriptedFileDialogs(QList<QStringList>* answers) : m_answers(answers) {}
    QStringList getOpenFileNames(QWidget*, const QString& caption, const QString&, const QString& filter) override
    {
        lastCaption = caption;
        lastFilter = filter;
        return m_answers->isEmpty() ? QStringList() : m_answers->takeFirst();
    }
    QString getOpenFileName(QWidget*, const QString&, const QString&, const QString&) override { return {}; }
    QString getExistingDirectory(QWidget*, const QString&, const QString&) override { return {}; }
    QString lastCaption, lastFilter;

private:
    QList<QStringList>* m_answers;
};

QStringList LabelTexts(QWidget* w)
{
    QStringList texts;
    for (QLabel* l : w->findChildren<QLabel*>())
        if (!l->text().isEmpty())
            texts << l->text();
    return texts;
}

// True when some thread of this process sits in openat (syscall 257 on
// x86-64), which is where the repair thread waits for a pipe's writer.
bool threadBlockedInOpen()
{
    const QStringList tasks = QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& t : tasks) {
        QFile f(QStringLiteral("/proc/self/task/%1/syscall").arg(t));
        if (f.open(QIODevice::ReadOnly) && f.readAll().startsWith("257 "))
            return true;
    }
    return false;
}

} // namespace

class TestMainWindow : public QObject {
    Q_OBJECT

    QString m_dir;                       // per-test folder of input files
    QString m_config;
    QList<QStringList> m_chooserAnswers;
    ScriptedFileDialogs* m_chooser = nullptr;
    VideoRepairWindow* m_window = nullptr;

    // Modal dialogs are answered by a timer: the next button name in the
    // queue is clicked on whatever modal widget is up; its texts are kept.
    QTimer m_answerer;
    QStringList m_answers;
    QList<QStringList> m_modalTexts;
    QPointer<QWidget> m_lastModal;

    QString copyOf(const QString& source, const QString& name)
    {
        const QString path = m_dir + QLatin1Char('/') + name;
        QFile::remove(path);
        if (!QFile::copy(source, path))
            return QString();
        return path;
    }
    static QString mp4Clip() { return h264Aac(QStringLiteral("mp4")); }
    static QString aviClip()
    {
        return make(QStringLiteral("ws_mpeg4.avi"), lavfiVideo(1) << QStringLiteral("-c:v") << QStringLiteral("mpeg4"));
    }
    void add(const QStringList& paths)
    {
        m_chooserAnswers.append(paths);
        m_window->OnAddMOVFile();
    }
    MyTreeWidget* files() const { return m_window->fileList(); }
    MyTreeWidget* results() const { return m_window->resultList(); }
    bool runEnded() const
    {
        return !m_window->repairThread().isRunning() && m_window->BackBtn->isEnabled() &&
               m_window->stringLabl->text() == QLatin1String("Repair Process Completed");
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_config = freshDir(QStringLiteral("ws-config"));
        qputenv("XDG_CONFIG_HOME", m_config.toUtf8());
        g_dpiScale = g_uiScale = 1.0f;
        g_settingsPath = SettingsFilePath(SettingsStore::PhotoRecovery);
        g_appDir = QStringLiteral(REELWRIGHT_BIN_DIR "/Libmp4");
        connect(&m_answerer, &QTimer::timeout, this, [this] {
            QWidget* modal = QApplication::activeModalWidget();
            // A dialog is answered on the second tick that sees it: the first
            // may come while exec() is still showing it, before its loop runs.
            const bool settled = modal && modal == m_lastModal;
            m_lastModal = modal;
            if (!settled || m_answers.isEmpty())
                return;
            auto* button = modal->findChild<QPushButton*>(m_answers.first());
            if (!button || !button->isVisible())
                return;
            m_answers.removeFirst();
            m_modalTexts.append(LabelTexts(modal));
            m_lastModal = nullptr;
            button->click();
        });
        m_answerer.start(20);
    }
    void cleanupTestCase() { QDir(m_config).removeRecursively(); }

    void init()
    {
        m_dir = freshDir(QStringLiteral("ws"));
        m_chooserAnswers.clear();
        m_answers.clear();
        m_modalTexts.clear();
        g_remuxRan = false;
        m_window = new VideoRepairWindow;
        auto chooser = std::make_unique<ScriptedFileDialogs>(&m_chooserAnswers);
        m_chooser = chooser.get();
        m_window->SetFileDialogs(std::move(chooser));
        m_window->show();
    }
    void cleanup()
    {
        delete m_window;
        m_window = nullptr;
        QDir(m_dir).removeRecursively();
    }

    void sizeTextIsTruncatedMebibytes()
    {
        QCOMPARE(VideoRepairWindow::FormatSize(1610612736), QStringLiteral("1536"));
        QCOMPARE(VideoRepairWindow::FormatSize(1500000), QStringLiteral("1.43"));
        QCOMPARE(VideoRepairWindow::FormatSize(1048575), QStringLiteral("0.99"));   // not rounded up
        QCOMPARE(VideoRepairWindow::FormatSize(0), QStringLiteral("0"));
    }

    // Home page, then the first add: one row per path with its hidden columns;
    // the same path again gives one dialog and no second row.
    void addingFillsRowsAndSkipsDuplicates()
    {
        QVERIFY(g_onHomePage);
        QVERIFY(m_window->add_filebtn->isVisible());
        QVERIFY(!files()->isVisible());
        const QString a = copyOf(mp4Clip(), QStringLiteral("a.mp4"));
        add({a});
        QCOMPARE(m_chooser->lastCaption, QStringLiteral("Add File"));
        QVERIFY(m_chooser->lastFilter.startsWith(QLatin1String("Video (*.MOV *.mov *.mp4")));
        QVERIFY(g_onListPage && !g_onHomePage);
        QVERIFY(files()->isVisible() && !m_window->add_filebtn->isVisible());
        QVERIFY(m_window->RepairBtn->isEnabled() && m_window->RemoveBtn->isEnabled());
        QCOMPARE(files()->columnCount(), 9);
        for (int c : {3, 4, 5, 6})
            QVERIFY(files()->isColumnHidden(c));
        QTreeWidgetItem* row = files()->topLevelItem(0);
        QCOMPARE(row->text(0), QStringLiteral("a.mp4"));
        QCOMPARE(row->text(1), a);
        QCOMPARE(row->text(3), QStringLiteral("2"));
        QCOMPARE(row->text(4), QStringLiteral("1"));
        QCOMPARE(row->text(5), QString::number(QFileInfo(a).size()));
        QCOMPARE(row->text(6), a);
        QVERIFY(QDateTime::fromString(row->text(8), QStringLiteral("ddd MMM dd yyyy hh:mm:ss")).isValid());
        QCOMPARE(row->checkState(0), Qt::Checked);

        m_answers << QStringLiteral("OkBtn");
        const QString b = copyOf(mp4Clip(), QStringLiteral("b.mp4"));
        add({a, b});
        QCOMPARE(m_modalTexts.size(), 1);
        QCOMPARE(m_modalTexts.first(), QStringList{QStringLiteral("Files already added to list will be skipped.")});
        QCOMPARE(files()->topLevelItemCount(), 2);
        QCOMPARE(files()->topLevelItem(1)->text(3), QStringLiteral("3"));   // ids go on
    }

    // The suffix gate is exact: "Mov" and unknown suffixes drop silently.
    void suffixGateIsCaseExact()
    {
        const QString ok = copyOf(mp4Clip(), QStringLiteral("c.Mp4"));
        const QString mixed = copyOf(mp4Clip(), QStringLiteral("d.Mov"));
        const QString other = copyOf(mp4Clip(), QStringLiteral("e.txt"));
        add({mixed, ok, other});
        QCOMPARE(m_modalTexts.size(), 0);
        QCOMPARE(files()->topLevelItemCount(), 1);
        QCOMPARE(files()->topLevelItem(0)->text(0), QStringLiteral("c.Mp4"));
    }

    void selectAllFollowsTheRows()
    {
        QStringList paths;
        for (const char* n : {"1.mp4", "2.mp4", "3.mp4"})
            paths << copyOf(mp4Clip(), QLatin1String(n));
        add(paths);
        QCheckBox* box = m_window->SelectAllBtn;
        QVERIFY(box->isVisible());
        QCOMPARE(box->checkState(), Qt::Checked);

        files()->topLevelItem(1)->setCheckState(0, Qt::Unchecked);
        m_window->OnItemClicked(files()->topLevelItem(1), 0);
        QCOMPARE(box->checkState(), Qt::PartiallyChecked);
        QVERIFY(m_window->RepairBtn->isEnabled());

        for (int i = 0; i < 3; ++i)
            files()->topLevelItem(i)->setCheckState(0, Qt::Unchecked);
        m_window->OnItemClicked(files()->topLevelItem(0), 0);
        QCOMPARE(box->checkState(), Qt::Unchecked);
        QVERIFY(!m_window->RepairBtn->isEnabled() && !m_window->RemoveBtn->isEnabled());

        box->click();   // the box itself checks every row, two-state from here
        QVERIFY(!box->isTristate());
        for (int i = 0; i < 3; ++i)
            QCOMPARE(files()->topLevelItem(i)->checkState(0), Qt::Checked);
        QVERIFY(m_window->RepairBtn->isEnabled() && m_window->RemoveBtn->isEnabled());
        box->click();
        for (int i = 0; i < 3; ++i)
            QCOMPARE(files()->topLevelItem(i)->checkState(0), Qt::Unchecked);
        QVERIFY(!m_window->RepairBtn->isEnabled());
    }

    void removingKeepsUncheckedRowsAndTheEmptyList()
    {
        QStringList paths;
        for (const char* n : {"1.mp4", "2.mp4", "3.mp4"})
            paths << copyOf(mp4Clip(), QLatin1String(n));
        add(paths);
        files()->topLevelItem(1)->setCheckState(0, Qt::Unchecked);
        m_window->RemoveBtn->click();
        QCOMPARE(files()->topLevelItemCount(), 1);
        QCOMPARE(files()->topLevelItem(0)->text(0), QStringLiteral("2.mp4"));
        QVERIFY(!m_window->RepairBtn->isEnabled());

        files()->topLevelItem(0)->setCheckState(0, Qt::Checked);
        m_window->OnItemClicked(files()->topLevelItem(0), 0);
        m_window->RemoveBtn->click();
        QCOMPARE(files()->topLevelItemCount(), 0);
        QVERIFY(files()->isVisible());
        QVERIFY(!m_window->RemoveBtn->isEnabled() && !m_window->RepairBtn->isEnabled());
        QVERIFY(!m_window->SelectAllBtn->isEnabled() && !m_window->SelectAllBtn->isChecked());
        QVERIFY(g_onListPage);

        add({copyOf(mp4Clip(), QStringLiteral("4.mp4"))});
        QVERIFY(m_window->SelectAllBtn->isEnabled() && m_window->RepairBtn->isEnabled());
        QCOMPARE(files()->topLevelItem(0)->text(3), QStringLiteral("5"));   // ids never reset
    }

    void spaceKeyDoesNotToggleARow()
    {
        add({copyOf(mp4Clip(), QStringLiteral("k.mp4"))});
        files()->setCurrentItem(files()->topLevelItem(0));
        QTest::keyClick(files(), Qt::Key_Space);
        QCOMPARE(files()->topLevelItem(0)->checkState(0), Qt::Checked);
    }

    // The press of Repair: rows of the checked files, ids counted over all
    // rows, the path of the result beside the source; then a real run over
    // them ends with the end-of-run texts, and the inputs are untouched.
    void repairPressAndARealRun()
    {
        const QString a = copyOf(mp4Clip(), QStringLiteral("first.mp4"));
        const QString skipped = copyOf(mp4Clip(), QStringLiteral("second.mp4"));
        const QString c = copyOf(aviClip(), QStringLiteral("third.avi"));
        QVERIFY(!a.isEmpty() && !c.isEmpty());
        const QString hashA = sha256(a), hashC = sha256(c);
        add({a, skipped, c});
        files()->topLevelItem(1)->setCheckState(0, Qt::Unchecked);

        m_answers << QStringLiteral("OkBtn");   // the end-of-run message
        m_window->RepairBtn->click();
        QVERIFY(g_resultsShown && g_onRepairPage && !g_onListPage);
        QVERIFY(m_window->frame_2->isVisible() && !m_window->AddFile_frame->isVisible());
        QCOMPARE(results()->topLevelItemCount(), 2);
        QCOMPARE(m_window->rowActions().size(), 2);
        QCOMPARE(m_window->rowActions().at(0)->id, 0u);
        QCOMPARE(m_window->rowActions().at(1)->id, 2u);
        QCOMPARE(m_window->rowActions().at(1)->button->m_id, 2u);
        QCOMPARE(m_window->rowActions().at(1)->sourcePath, c);
        QCOMPARE(m_window->repairList(), (QStringList{a, c}));
        QTreeWidgetItem* row = results()->topLevelItem(1);
        QCOMPARE(row->text(1), m_dir + QStringLiteral("/Repaired/third.avi"));
        QCOMPARE(row->text(12), c);

        QTRY_VERIFY_WITH_TIMEOUT(runEnded(), 60000);
        QCOMPARE(m_modalTexts.size(), 1);
        QCOMPARE(m_modalTexts.first(),
                 QStringList{QStringLiteral("Repair process completed.\nCheck 'Status' column to view the repair outcome.")});
        QCOMPARE(m_window->stringLabl_2->text(),
                 QStringLiteral("Click on the 'Save Repaired Files' to save all your repaired videos. Click the "
                                "'Preview' under Action column to preview repaired videos. "));
        QVERIFY(!m_window->stopBtn->isVisible() && !m_window->FileProgress->isVisible());
        QVERIFY(m_window->saveBtn->isVisible() && results()->isEnabled());
        QVERIFY(g_repairDone && !g_repairRunning);
        const QStringList endWords{QStringLiteral("Completed"), QStringLiteral("Awaiting Action"),
                                   QStringLiteral("Failed")};
        for (int i = 0; i < 2; ++i) {
            QVERIFY2(endWords.contains(results()->topLevelItem(i)->text(8)),
                     qPrintable(results()->topLevelItem(i)->text(8)));
            QCOMPARE(results()->topLevelItem(i)->text(13), QStringLiteral("5"));
        }
        QCOMPARE(m_window->PercentLabl->text(), QStringLiteral("100%"));
        QCOMPARE(sha256(a), hashA);
        QCOMPARE(sha256(c), hashC);
    }

    // Stop while the thread is inside a file (held at the open of a pipe
    // until the test lets it go). The first stop, answered No, lets the run
    // end by itself; the second, answered Yes, ends it in ProcessAborted.
    void stopAnsweredNoThenYes()
    {
        for (const bool yes : {false, true}) {
            const QString fifo = m_dir + (yes ? QStringLiteral("/held_yes.mov") : QStringLiteral("/held_no.mov"));
            QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
            if (m_window->frame_2->isVisible()) {   // second round: back to page 1 first
                const bool awaits = results()->topLevelItem(0)->text(11) == QLatin1String("0");
                m_answers << (awaits ? QStringLiteral("CancelBtn") : QStringLiteral("YesBtn"));
                m_window->BackBtn->click();
                QVERIFY(m_window->AddFile_frame->isVisible());
                m_window->OnCheckBoxbtnClicked(false);
            }
            add({fifo});
            bool aborted = false, finished = false;
            auto c1 = connect(&m_window->repairThread(), &ThreadVideoRepair::ProcessAborted, this,
                              [&] { aborted = true; }, Qt::QueuedConnection);
            auto c2 = connect(&m_window->repairThread(), &ThreadVideoRepair::RepairFinish, this,
                              [&] { finished = true; }, Qt::QueuedConnection);
            m_window->RepairBtn->click();
            // The thread waits in the open of the pipe, which needs a writer.
            QTRY_VERIFY_WITH_TIMEOUT(threadBlockedInOpen(), 10000);
            m_answers << (yes ? QStringLiteral("OkBtn_2") : QStringLiteral("OkBtn"));
            m_window->OnStop();
            QCOMPARE(m_modalTexts.last(),
                     (QStringList{QStringLiteral("Do you want to stop the current process?"),
                                  QStringLiteral("You can't resume the process from this point. All the changes "
                                                 "will be discarded. ")}));
            QCOMPARE(bool(g_stopRequested), yes);
            QVERIFY(m_window->repairThread().isRunning());
            if (!yes)
                m_answers << QStringLiteral("OkBtn");   // the end-of-run message
            const int fd = ::open(QFile::encodeName(fifo).constData(), O_WRONLY | O_NONBLOCK);
            QVERIFY(fd >= 0);
            ::close(fd);
            QTRY_VERIFY_WITH_TIMEOUT(aborted || finished, 20000);
            QTRY_VERIFY_WITH_TIMEOUT(!m_window->repairThread().isRunning() && m_window->BackBtn->isEnabled(), 20000);
            QCOMPARE(aborted, yes);
            QCOMPARE(finished, !yes);
            disconnect(c1);
            disconnect(c2);
            QTreeWidgetItem* row = results()->topLevelItem(0);
            if (yes) {
                QCOMPARE(row->text(8), QStringLiteral("Aborted"));
                QCOMPARE(row->text(13), QStringLiteral("-1"));
                QCOMPARE(row->checkState(0), Qt::Unchecked);
                QVERIFY(m_window->saveBtn->isVisible() && !m_window->saveBtn->isEnabled());
            } else {
                QVERIFY(row->text(8) != QLatin1String("Queued") && row->text(8) != QLatin1String("Aborted"));
            }
        }
    }

    void stopDuringAMuxerStepSaysSo()
    {
        g_muxerBusy = true;
        m_answers << QStringLiteral("OkBtn");
        m_window->OnStop();
        g_muxerBusy = false;
        QCOMPARE(m_modalTexts.last(), (QStringList{QStringLiteral("This process will stop after processing the current file."),
                                                   QStringLiteral("Do you want to stop the process?")}));
        QVERIFY(!g_stopRequested);
    }

    // Back with an awaiting row asks about Advance Repair: Yes or closing
    // stays, Cancel returns to the list as it was. Without one it asks about
    // clearing the results: Cancel stays, Yes returns.
    void backAsksTheRightQuestion()
    {
        const QString a = copyOf(mp4Clip(), QStringLiteral("lost.mov"));
        const QString b = copyOf(mp4Clip(), QStringLiteral("other.mov"));
        add({a, b});
        files()->topLevelItem(1)->setCheckState(0, Qt::Unchecked);
        m_answers << QStringLiteral("OkBtn");
        m_window->RepairBtn->click();
        QTRY_VERIFY_WITH_TIMEOUT(runEnded(), 60000);

        const QString advanceQuestion = QStringLiteral(
            "Do you want to run advance repair on the severely corrupted video before leaving this page?");
        results()->topLevelItem(0)->setText(11, QStringLiteral("0"));   // the row awaits Advance Repair
        for (const char* answer : {"YesBtn", "closeBtn"}) {
            m_answers << QLatin1String(answer);
            m_window->BackBtn->click();
            QCOMPARE(m_modalTexts.last(), QStringList{advanceQuestion});
            QVERIFY(m_window->frame_2->isVisible());
            QCOMPARE(results()->topLevelItemCount(), 1);
        }
        m_answers << QStringLiteral("CancelBtn");
        m_window->BackBtn->click();
        QVERIFY(m_window->AddFile_frame->isVisible() && !m_window->frame_2->isVisible());
        QVERIFY(g_onListPage && !g_onRepairPage && !g_resultsShown);
        QCOMPARE(results()->topLevelItemCount(), 0);
        QVERIFY(m_window->rowActions().isEmpty());
        QCOMPARE(files()->topLevelItemCount(), 2);
        QCOMPARE(files()->topLevelItem(0)->checkState(0), Qt::Checked);
        QCOMPARE(files()->topLevelItem(1)->checkState(0), Qt::Unchecked);
        QCOMPARE(m_window->PercentLabl->text(), QStringLiteral("0%"));

        m_answers << QStringLiteral("OkBtn");
        m_window->RepairBtn->click();
        QTRY_VERIFY_WITH_TIMEOUT(runEnded(), 60000);
        results()->topLevelItem(0)->setText(11, QStringLiteral("1"));   // nothing awaits
        const QString clearQuestion =
            QStringLiteral("This action will clear repair results.\nDo you want to go back to previous screen?");
        m_answers << QStringLiteral("CancelBtn");
        m_window->BackBtn->click();
        QCOMPARE(m_modalTexts.last(), QStringList{clearQuestion});
        QVERIFY(m_window->frame_2->isVisible());
        m_answers << QStringLiteral("YesBtn");
        m_window->BackBtn->click();
        QVERIFY(m_window->AddFile_frame->isVisible());
        QVERIFY(g_onRepairPage && g_onListPage);
    }

    // A file gone before the run and one with a very long name: the run goes
    // on, each row gets an end word; the label elides the long name in the
    // middle and keeps it whole in the tool tip.
    void vanishedFileAndLongName()
    {
        const QString longName = QString(200, QLatin1Char('x')) + QStringLiteral("_end.mp4");
        const QString gone = copyOf(mp4Clip(), QStringLiteral("gone.mp4"));
        const QString longPath = copyOf(mp4Clip(), longName);
        QVERIFY(!longPath.isEmpty());
        add({gone, longPath});
        QVERIFY(QFile::remove(gone));

        m_answers << QStringLiteral("OkBtn");
        m_window->RepairBtn->click();
        QTRY_VERIFY_WITH_TIMEOUT(runEnded(), 60000);
        for (int i = 0; i < 2; ++i) {
            const QString word = results()->topLevelItem(i)->text(8);
            QVERIFY2(word != QLatin1String("Queued") && word != QLatin1String("Processing"), qPrintable(word));
        }

        m_window->OnFileNameLabel(longName);
        QLabel* label = m_window->FileNameLabl;
        QVERIFY(label->isVisible());
        QCOMPARE(label->toolTip(), QStringLiteral("Repairing ") + longName);
        QVERIFY(label->text().contains(QChar(0x2026)));
        QVERIFY(label->text().startsWith(QLatin1String("Repairing")) && label->text().endsWith(QLatin1String("_end.mp4")));
        QVERIFY(label->fontMetrics().horizontalAdvance(label->text()) <= label->width());
        m_window->OnFileNameLabel(QStringLiteral("short.mp4"));
        QCOMPARE(label->text(), QStringLiteral("Repairing short.mp4"));
        QVERIFY(label->toolTip().isEmpty());
    }

    void progressSlotsDriveTheBars()
    {
        m_window->OnOverAllProgressBarMax(4);
        m_window->OnOverAllProgressValue(3, 75);
        QCOMPARE(m_window->overAllProgess_2->maximum(), 4);
        QCOMPARE(m_window->overAllProgess_2->value(), 3);
        QCOMPARE(m_window->PercentLabl->text(), QStringLiteral("75%"));
        m_window->OnSetProgressBarRange(50000);
        m_window->OnsetProgressvalue(1234);
        QCOMPARE(m_window->FileProgress->maximum(), 50000);
        QCOMPARE(m_window->FileProgress->value(), 1234);
        g_referenceMode = true;   // a reference pass shows no overall bar
        m_window->OnFileNameLabel(QStringLiteral("x.mov"));
        QVERIFY(m_window->overAllProgess_2->isHidden() && m_window->PercentLabl->isHidden());
        g_referenceMode = false;
    }

    // Only the title strip drags the window.
    void dragStartsOnlyInTheTitleStrip()
    {
        const QPoint start = m_window->pos();
        auto drag = [this](QPoint at) {
            QWidget* w = m_window;
            const QPoint global = w->mapToGlobal(at);
            QMouseEvent press(QEvent::MouseButtonPress, at, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(w, &press);
            QMouseEvent move(QEvent::MouseMove, at + QPoint(30, 20), global + QPoint(30, 20), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(w, &move);
            QMouseEvent release(QEvent::MouseButtonRelease, at + QPoint(30, 20), global + QPoint(30, 20),
                                Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(w, &release);
        };
        drag(QPoint(603, 10));
        QCOMPARE(m_window->pos(), start);
        drag(QPoint(100, 10));
        QCOMPARE(m_window->pos(), start + QPoint(30, 20));
    }

    // The menu button hides the toolbar items one by one and shows them again.
    void toolbarFoldsAndUnfolds()
    {
        QTRY_VERIFY(m_window->UpdateBtn_1->isVisible());
        m_window->MenuBtn_1->click();   // unchecks: fold
        QTRY_VERIFY_WITH_TIMEOUT(!m_window->SeperateLbl_1->isVisible(), 2000);
        QVERIFY(!m_window->AbutBtn_1->isVisible() && !m_window->UpdateBtn_1->isVisible());
        m_window->MenuBtn_1->click();
        QTRY_VERIFY_WITH_TIMEOUT(m_window->UpdateBtn_1->isVisible(), 2000);
        QVERIFY(m_window->HelpBtn_1->isVisible());
    }

    void windowShapeAndGeometryStore()
    {
        QVERIFY(m_window->windowFlags() & Qt::FramelessWindowHint);
        QCOMPARE(m_window->size(), QSize(850, 600));
        m_window->resize(851, 600);
        QSettings store(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Corvane"),
                        QStringLiteral("ReelwrightVideoRepair"));
        QVERIFY(store.fileName().startsWith(m_config));
        QVERIFY(!store.value(QStringLiteral("geometry")).toByteArray().isEmpty());
        m_window->StartFadeIn();
        QCOMPARE(m_window->windowOpacity(), 0.0);
        QTRY_COMPARE_WITH_TIMEOUT(m_window->windowOpacity(), 1.0, 3000);
    }
};

int main(int argc, char** argv)
{
    // Dialogs run nested event loops from queued slots; the plain Unix event
    // dispatcher keeps the answering timer firing inside them.
    qputenv("QT_NO_GLIB", "1");
    QApplication app(argc, argv);
    TestMainWindow test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_main_window.moc"
