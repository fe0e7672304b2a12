// Page 2 after the repair: row states driven by the thread's signals, the
// settling at the end of a run, Advance Repair with a sample video, preview
// through a fake player that records its arguments, and both ways of saving.
#include "core/repair_globals.h"
#include "shell/platform_core.h"
#include "shell/platform_gui.h"
#include "shell/scale.h"
#include "shell/startup.h"
#include "support/test_videos.h"
#include "workspace/custom_button.h"
#include "workspace/file_dialogs.h"
#include "workspace/my_tree_widget.h"
#include "workspace/reference_file_dlg.h"
#include "workspace/save_dlg.h"
#include "workspace/video_repair_window.h"
#include "workspace/workspace_globals.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace testvideo;

namespace {

// Answers each chooser with the next prepared path.
class ScriptedFileDialogs : public FileDialogs {
public:
    QStringList files, folders;
    QStringList openCalls;   // caption + " | " + filter of each single-file chooser
    QStringList getOpenFileNames(QWidget*, const QString&, const QString&, const QString&) override
    {
        return files.isEmpty() ? QStringList() : QStringList{files.takeFirst()};
    }
    QString getOpenFileName(QWidget*, const QString& caption, const QString&, const QString& filter) override
    {
        openCalls << caption + QStringLiteral(" | ") + filter;
        return files.isEmpty() ? QString() : files.takeFirst();
    }
    QString getExistingDirectory(QWidget*, const QString&, const QString&) override
    {
        return folders.isEmpty() ? QString() : folders.takeFirst();
    }
};

QStringList LabelTexts(QWidget* w)
{
    QStringList texts;
    for (QLabel* l : w->findChildren<QLabel*>())
        if (!l->text().isEmpty())
            texts << l->text();
    return texts;
}

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

// A ten-second camera clip, H.264 high profile with AAC; the sample differs
// only in its picture.
QString Camera(bool sample)
{
    const QStringList a = {
        QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), QStringLiteral("testsrc2=size=640x360:rate=25"),
        QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), QStringLiteral("sine=frequency=440:sample_rate=48000"),
        QStringLiteral("-t"), QStringLiteral("10"), QStringLiteral("-vf"), QStringLiteral("hue=h=%1").arg(sample ? 90 : 0),
        QStringLiteral("-c:v"), QStringLiteral("libx264"), QStringLiteral("-preset"), QStringLiteral("veryfast"),
        QStringLiteral("-profile:v"), QStringLiteral("high"), QStringLiteral("-g"), QStringLiteral("30"),
        QStringLiteral("-b:v"), QStringLiteral("4M"), QStringLiteral("-pix_fmt"), QStringLiteral("yuv420p"),
        QStringLiteral("-c:a"), QStringLiteral("aac"), QStringLiteral("-ac"), QStringLiteral("2"),
        QStringLiteral("-b:a"), QStringLiteral("128k")};
    return make(sample ? QStringLiteral("camera_25_sample.mov") : QStringLiteral("camera_25_clip.mov"), a);
}

} // namespace

class TestResultsAndSaving : public QObject {
    Q_OBJECT

    QString m_dir;
    QString m_config;
    QString m_playerDir;
    QString m_playerLog;
    ScriptedFileDialogs* m_chooser = nullptr;
    VideoRepairWindow* m_window = nullptr;

    // Modal dialogs are answered by a timer: the next button (or box) name
    // in the queue is clicked on the modal widget that is up.
    QTimer m_answerer;
    QStringList m_answers;
    QList<QStringList> m_modalTexts;
    QPointer<QWidget> m_lastModal;

    MyTreeWidget* results() const { return m_window->resultList(); }
    CustomButton* button(int row) const
    {
        return qobject_cast<CustomButton*>(results()->itemWidget(results()->topLevelItem(row), 9));
    }
    QTreeWidgetItem* row(int i) const { return results()->topLevelItem(i); }

    // A row as the press of Repair makes it, "Queued".
    QTreeWidgetItem* addRow(const QString& name, const QString& sourceFolder)
    {
        auto* item = new QTreeWidgetItem(results());
        item->setText(0, name);
        item->setCheckState(0, Qt::Checked);
        item->setText(1, sourceFolder + QStringLiteral("/Repaired/") + name);
        item->setText(12, sourceFolder + QLatin1Char('/') + name);
        item->setText(10, QStringLiteral("0"));
        item->setText(8, QStringLiteral("Queued"));
        item->setText(13, QStringLiteral("4"));
        results()->setItemWidget(item, 9, new CustomButton(results()));
        return item;
    }
    // A row whose result was written by the first pass.
    QTreeWidgetItem* addRepairedRow(const QString& name, const QString& sourceFolder, const QByteArray& bytes)
    {
        QTreeWidgetItem* item = addRow(name, sourceFolder);
        item->setText(10, QStringLiteral("2"));
        item->setText(11, QStringLiteral("1"));
        item->setText(13, QStringLiteral("5"));
        item->setText(8, QStringLiteral("Completed"));
        QDir().mkpath(sourceFolder + QStringLiteral("/Repaired"));
        writeAll(item->text(1), bytes);
        return item;
    }
    void drain() { QCoreApplication::processEvents(); QCoreApplication::processEvents(); }
    bool runEnded() const
    {
        return !m_window->repairThread().isRunning() && m_window->BackBtn->isEnabled() &&
               m_window->stringLabl->text() == QLatin1String("Repair Process Completed");
    }
    QStringList playerCalls() const
    {
        QFile f(m_playerLog);
        if (!f.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    void firstPass(const QStringList& paths)
    {
        for (const QString& p : paths) {
            m_chooser->files << p;
            m_window->OnAddMOVFile();
        }
        m_answers << QStringLiteral("OkBtn");
        m_window->RepairBtn->click();
        QTRY_VERIFY_WITH_TIMEOUT(runEnded(), 120000);
    }
    // Writes a copy of the clip whose movie was cut off.
    QString cutCopy(const QString& clip, const QString& name)
    {
        QByteArray bytes = readAll(clip);
        cutMoov(bytes);
        const QString path = m_dir + QLatin1Char('/') + name;
        writeAll(path, bytes);
        return path;
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_config = freshDir(QStringLiteral("rs-config"));
        qputenv("XDG_CONFIG_HOME", m_config.toUtf8());
        g_dpiScale = g_uiScale = 1.0f;
        g_settingsPath = SettingsFilePath(SettingsStore::PhotoRecovery);
        g_appDir = QStringLiteral(REELWRIGHT_BIN_DIR "/Libmp4");

        // The player: a script named mplayer, found on PATH, that writes one
        // line of its arguments per start.
        m_playerDir = freshDir(QStringLiteral("rs-player"));
        m_playerLog = m_playerDir + QStringLiteral("/calls.txt");
        const QString script = m_playerDir + QStringLiteral("/mplayer");
        writeAll(script, QStringLiteral("#!/bin/sh\necho \"$*\" >> '%1'\n").arg(m_playerLog).toUtf8());
        QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", (m_playerDir + QLatin1Char(':') + QString::fromLocal8Bit(qgetenv("PATH"))).toLocal8Bit());
        g_playerPath = FindPreviewPlayer(QStringLiteral("/nonexistent"));
        g_playerKind = 3;

        connect(&m_answerer, &QTimer::timeout, this, [this] {
            QWidget* modal = QApplication::activeModalWidget();
            const bool settled = modal && modal == m_lastModal;
            m_lastModal = modal;
            if (!settled || m_answers.isEmpty())
                return;
            auto* b = modal->findChild<QAbstractButton*>(m_answers.first());
            if (!b || !b->isVisible() || !b->isEnabled())
                return;
            m_answers.removeFirst();
            m_modalTexts.append(LabelTexts(modal));
            m_lastModal = nullptr;
            // Clicked from the event queue: a dialog that the click opens
            // runs its loop outside this timer's handler, so the timer keeps
            // firing for it.
            QMetaObject::invokeMethod(b, "click", Qt::QueuedConnection);
        });
        m_answerer.start(20);
    }
    void cleanupTestCase()
    {
        QDir(m_config).removeRecursively();
        QDir(m_playerDir).removeRecursively();
    }

    void init()
    {
        m_dir = freshDir(QStringLiteral("rs"));
        m_answers.clear();
        m_modalTexts.clear();
        QFile::remove(m_playerLog);
        g_stopRequested = false;
        g_referenceMode = false;
        g_applyToAll = false;
        g_keepRepaired = false;
        m_window = new VideoRepairWindow;
        auto chooser = std::make_unique<ScriptedFileDialogs>();
        m_chooser = chooser.get();
        m_window->SetFileDialogs(std::move(chooser));
        m_window->show();
    }
    void cleanup()
    {
        QVERIFY2(m_answers.isEmpty(), qPrintable(m_answers.join(QLatin1Char(','))));
        delete m_window;
        m_window = nullptr;
        QDir(m_dir).removeRecursively();
    }

    void playerIsFoundOnPath() { QCOMPARE(g_playerPath, m_playerDir + QStringLiteral("/mplayer")); }

    // The state table: Queued -> Processing -> Completed / Awaiting Action,
    // then the settling at the end of the run, which tests each output.
    void rowStatesFollowTheThreadsSignals()
    {
        addRow(QStringLiteral("a.mov"), m_dir);
        addRow(QStringLiteral("b.mov"), m_dir);
        addRow(QStringLiteral("c.avi"), m_dir);
        addRow(QStringLiteral("d.mp4"), m_dir);
        QDir().mkpath(m_dir + QStringLiteral("/Repaired"));
        writeAll(row(0)->text(1), "result");
        writeAll(row(3)->text(1), QByteArray());   // empty output
        ThreadVideoRepair& t = m_window->repairThread();

        emit t.WriteProcessingStatus(QString());
        drain();
        QCOMPARE(row(0)->text(8), QStringLiteral("Processing"));
        QCOMPARE(row(0)->text(10), QStringLiteral("1"));
        QCOMPARE(row(0)->text(13), QStringLiteral("5"));
        QCOMPARE(row(0)->foreground(8).color(), QColor(QStringLiteral("gray")));
        QCOMPARE(row(1)->text(8), QStringLiteral("Queued"));   // one row per message
        QVERIFY(button(0)->isHidden());

        emit t.WriteStatus(true, false, QStringLiteral("a.mov"), true);
        emit t.WriteProcessingStatus(QString());
        emit t.WriteStatus(false, false, QStringLiteral("b.mov"), false);
        emit t.WriteProcessingStatus(QString());
        emit t.WriteAVIFileStatus(true, QStringLiteral("c.avi"));
        emit t.WriteProcessingStatus(QString());
        emit t.WriteStatus(false, true, QStringLiteral("d.mp4"), false);
        drain();

        QCOMPARE(row(0)->text(8), QStringLiteral("Completed"));
        QCOMPARE(row(0)->text(10), QStringLiteral("2"));
        QCOMPARE(row(0)->text(11), QStringLiteral("1"));
        QCOMPARE(row(0)->text(14), QStringLiteral("1"));
        QCOMPARE(int(row(0)->textAlignment(8)), 128);
        QCOMPARE(button(0)->text(), QStringLiteral("Preview"));
        QVERIFY(!button(0)->isHidden());

        QCOMPARE(row(1)->text(8), QStringLiteral("Awaiting Action"));
        QCOMPARE(row(1)->text(10), QStringLiteral("1"));
        QCOMPARE(row(1)->text(11), QStringLiteral("0"));
        QCOMPARE(row(1)->text(14), QStringLiteral("0"));
        QCOMPARE(int(row(1)->textAlignment(8)), 32);
        QCOMPARE(row(1)->checkState(0), Qt::Unchecked);
        QCOMPARE(button(1)->text(), QStringLiteral("Advance Repair"));
        QVERIFY(button(1)->isEnabled() && !button(1)->isHidden());

        QCOMPARE(row(2)->text(10), QStringLiteral("2"));
        QCOMPARE(row(2)->text(11), QStringLiteral("1"));
        QVERIFY(row(2)->text(14).isEmpty());   // the AVI verdict carries no codec flag
        QCOMPARE(row(3)->text(11), QStringLiteral("1"));   // "reserved" counts as repaired

        m_answers << QStringLiteral("OkBtn");
        emit t.RepairFinish();
        QTRY_VERIFY(m_answers.isEmpty());
        drain();
        QCOMPARE(row(0)->text(8), QStringLiteral("Completed"));
        QCOMPARE(row(0)->foreground(8).color(), QColor(QStringLiteral("black")));
        QCOMPARE(row(1)->text(8), QStringLiteral("Awaiting Action"));
        QCOMPARE(row(1)->foreground(8).color(), QColor(QStringLiteral("blue")));
        QVERIFY(g_advancePending);
        // Output gone: Failed, no box to tick; output empty: Failed, still a row.
        QCOMPARE(row(2)->text(8), QStringLiteral("Failed"));
        QVERIFY(!(row(2)->flags() & Qt::ItemIsUserCheckable) && !(row(2)->flags() & Qt::ItemIsEnabled));
        QVERIFY(button(2)->isHidden());
        QCOMPARE(row(3)->text(8), QStringLiteral("Failed"));
        QCOMPARE(row(3)->checkState(0), Qt::Unchecked);
        QVERIFY(row(3)->flags() & Qt::ItemIsEnabled);

        // Select all checks only rows with a usable result.
        m_window->OnSelectAllClicked(true);
        QCOMPARE(row(0)->checkState(0), Qt::Checked);
        QCOMPARE(row(1)->checkState(0), Qt::Unchecked);
        QCOMPARE(row(3)->checkState(0), Qt::Unchecked);
        QVERIFY(m_window->saveBtn->isEnabled());

        // A reference-pass verdict: positive completes the awaiting row,
        // negative leaves it as it is.
        emit t.WriteStatus(false, false, QStringLiteral("b.mov"), true);
        drain();
        QCOMPARE(row(1)->text(11), QStringLiteral("0"));
        emit t.WriteStatus(true, false, QStringLiteral("b.mov"), true);
        drain();
        QCOMPARE(row(1)->text(8), QStringLiteral("Completed"));
        QCOMPARE(row(1)->text(10), QStringLiteral("1"));
        QCOMPARE(row(1)->text(11), QStringLiteral("1"));
        QVERIFY(button(1)->isHidden());   // shown again once the end of the pass tested the file

        emit t.disableAddReferenceBtn();
        drain();
        QVERIFY(!results()->isEnabled());
        // Failed rows' buttons are switched off themselves, not only through the list.
        QVERIFY(button(2)->testAttribute(Qt::WA_ForceDisabled) && button(3)->testAttribute(Qt::WA_ForceDisabled));
        QVERIFY(!button(0)->testAttribute(Qt::WA_ForceDisabled));
    }

    // Clicks on awaiting and failed rows explain themselves and keep Save off.
    void rowClicksExplainAndCount()
    {
        addRepairedRow(QStringLiteral("ok.mov"), m_dir, "x");
        QTreeWidgetItem* waiting = addRow(QStringLiteral("wait.mov"), m_dir);
        waiting->setText(10, QStringLiteral("1"));
        waiting->setText(11, QStringLiteral("0"));
        m_answers << QStringLiteral("OkBtn");
        m_window->OnRepairItemClicked(waiting, 0);
        QCOMPARE(m_modalTexts.last(), QStringList{QStringLiteral(
                                          "This video is severely damaged. Run advance repair option to repair it "
                                          "before saving.")});
        QVERIFY(!m_window->saveBtn->isEnabled());
        QCOMPARE(m_window->Select_All->checkState(), Qt::PartiallyChecked);

        m_window->OnRepairItemClicked(row(0), 0);
        QVERIFY(m_window->saveBtn->isEnabled());
        QFile::remove(row(0)->text(1));
        m_answers << QStringLiteral("OkBtn");
        m_window->OnRepairItemClicked(row(0), 0);
        QCOMPARE(m_modalTexts.last(),
                 QStringList{QStringLiteral("This video is severely corrupted and cannot be repaired.")});
        QVERIFY(!m_window->saveBtn->isEnabled());
        QCOMPARE(m_window->Select_All->checkState(), Qt::Unchecked);
    }

    void previewPathsAndArguments()
    {
        QCOMPARE(VideoRepairWindow::PreviewPath(QStringLiteral("/v/Repaired/clip.dat")),
                 QStringLiteral("/v/Repaired/clip.mov"));
        QCOMPARE(VideoRepairWindow::PreviewPath(QStringLiteral("/v/Repaired/a.b.DAT")),
                 QStringLiteral("/v/Repaired/a.mov"));
        QCOMPARE(VideoRepairWindow::PreviewPath(QStringLiteral("/v/Repaired/clip.mov")),
                 QStringLiteral("/v/Repaired/clip.mov"));
        QCOMPARE(PreviewArguments(2, QStringLiteral("f"), false), QStringList{QStringLiteral("f")});

        m_window->PlayVideo(m_dir + QStringLiteral("/Repaired/clip.mov"));
        QTRY_COMPARE(playerCalls().size(), 1);
        QCOMPARE(playerCalls().first(), QStringLiteral("-nofs 1 ") + m_dir + QStringLiteral("/Repaired/clip.mov"));
        g_previewProcess->waitForFinished(5000);

        QTreeWidgetItem* item = addRepairedRow(QStringLiteral("clip.dat"), m_dir, "x");
        m_window->OnDoubleClicked(item, 1);
        QTRY_COMPARE(playerCalls().size(), 2);
        QCOMPARE(playerCalls().last(), QStringLiteral("-vfm 1 ") + item->text(1));
        g_previewProcess->waitForFinished(5000);
        m_window->OnDoubleClicked(item, 4);   // empty column: nothing starts
        QTest::qWait(200);
        QCOMPARE(playerCalls().size(), 2);

        const QString player = g_playerPath;
        g_playerPath.clear();   // no player installed
        m_answers << QStringLiteral("OkBtn");
        m_window->PlayVideo(item->text(1));
        g_playerPath = player;
        QVERIFY(m_modalTexts.last().join(QString()).contains(QLatin1String("No video player was found")));
        QCOMPARE(playerCalls().size(), 2);
    }

    // Custom folder: the checked results are copied, a file already there
    // is kept, rows end unchecked; a folder that can't be written says so.
    void saveToACustomFolder()
    {
        const QString otherSource = m_dir + QStringLiteral("/other");
        addRepairedRow(QStringLiteral("one.mov"), m_dir, "first one");
        addRepairedRow(QStringLiteral("one.mov"), otherSource, "second one");
        addRepairedRow(QStringLiteral("two.mp4"), m_dir, "two");
        addRepairedRow(QStringLiteral("three.mp4"), m_dir, "three");
        row(3)->setCheckState(0, Qt::Unchecked);
        const QString target = m_dir + QStringLiteral("/target");
        QDir().mkpath(target);
        writeAll(target + QStringLiteral("/two.mp4"), "already here");

        m_chooser->folders << target;
        m_answers << QStringLiteral("customLoc") << QStringLiteral("LocBrowse_Btn") << QStringLiteral("Save")
                  << QStringLiteral("OkBtn");
        m_window->saveBtn->setEnabled(true);
        m_window->saveBtn->click();
        QTRY_VERIFY_WITH_TIMEOUT(m_answers.isEmpty(), 10000);
        QVERIFY(g_savePressed && !g_keepRepaired);
        QCOMPARE(m_modalTexts.last(), QStringList{QStringLiteral("Repaired files saved successfully.")});
        QCOMPARE(readAll(target + QStringLiteral("/one.mov")), QByteArray("first one"));
        QCOMPARE(readAll(target + QStringLiteral("/two.mp4")), QByteArray("already here"));
        QVERIFY(!QFile::exists(target + QStringLiteral("/three.mp4")));
        for (int i = 0; i < 4; ++i)
            QCOMPARE(row(i)->checkState(0), Qt::Unchecked);
        QVERIFY(!m_window->saveBtn->isEnabled());
        QVERIFY(results()->isEnabled() && m_window->BackBtn->isEnabled() && m_window->Select_All->isEnabled());
        QVERIFY(m_window->FileProgress->isHidden());

        // /proc takes no files, not even from root.
        m_window->OnSelectAllClicked(true);
        m_chooser->folders << QStringLiteral("/proc");
        m_answers << QStringLiteral("customLoc") << QStringLiteral("LocBrowse_Btn") << QStringLiteral("Save")
                  << QStringLiteral("OkBtn");
        m_window->saveBtn->click();
        QTRY_VERIFY_WITH_TIMEOUT(m_answers.isEmpty(), 10000);
        QVERIFY2(m_modalTexts.last().join(QString()).contains(QLatin1String("could not be saved")),
                 qPrintable(m_modalTexts.last().join(QString())));
        QVERIFY(results()->isEnabled() && m_window->BackBtn->isEnabled());
        for (int i = 0; i < 4; ++i)
            QCOMPARE(row(i)->text(8), QStringLiteral("Completed"));
    }

    // The dialog opens at the source location; Save stays off for a custom
    // location until a folder is chosen; Cancel leaves everything.
    void saveDialogStates()
    {
        addRepairedRow(QStringLiteral("one.mov"), m_dir, "x");
        m_answers << QStringLiteral("customLoc") << QStringLiteral("cancle");
        m_window->OnClickedSaveButton();
        QVERIFY(!g_onSavePage);
        auto* dlg = m_window->saveDlg();
        QVERIFY(!dlg->Save->isEnabled() && dlg->LocBrowse_Btn->isEnabled());
        m_answers << QStringLiteral("cancle");
        m_window->OnClickedSaveButton();
        QVERIFY(dlg->defaultLoc->isChecked() && dlg->Save->isEnabled() && !dlg->LocBrowse_Btn->isEnabled());
        QCOMPARE(row(0)->checkState(0), Qt::Checked);
    }

    // At the source location the Repaired folder is shown again: its line
    // leaves .hidden, which goes when nothing else is in it.
    void saveAtTheSourceShowsRepaired()
    {
        const QString second = m_dir + QStringLiteral("/second");
        addRepairedRow(QStringLiteral("one.mov"), m_dir, "x");
        addRepairedRow(QStringLiteral("two.mov"), second, "y");
        QVERIFY(SetHiddenInFolder(m_dir, QStringLiteral("Repaired"), true));
        QVERIFY(SetHiddenInFolder(second, QStringLiteral("Repaired"), true));
        QVERIFY(SetHiddenInFolder(second, QStringLiteral("keep.me"), true));

        m_answers << QStringLiteral("Save") << QStringLiteral("OkBtn");
        m_window->saveBtn->setEnabled(true);
        m_window->saveBtn->click();
        QTRY_VERIFY(m_answers.isEmpty());
        QCOMPARE(m_modalTexts.last(), QStringList{QStringLiteral("Repaired files saved successfully.")});
        QVERIFY(g_keepRepaired);
        QVERIFY(!QFile::exists(m_dir + QStringLiteral("/.hidden")));
        QCOMPARE(readAll(second + QStringLiteral("/.hidden")).trimmed(), QByteArray("keep.me"));
        QVERIFY(QFile::exists(row(0)->text(1)) && QFile::exists(row(1)->text(1)));
        QVERIFY(!m_window->saveBtn->isEnabled());
        QCOMPARE(row(0)->checkState(0), Qt::Unchecked);
    }

    void twoValidFilesAreCountedByName()
    {
        const QString folder = m_dir + QStringLiteral("/Repaired");
        QDir().mkpath(folder);
        writeAll(folder + QStringLiteral("/clip.mov"), "a");
        QVERIFY(!m_window->TwoRepairedValidFilesCreated(folder + QStringLiteral("/clip.mov")));
        writeAll(folder + QStringLiteral("/1_CLIP.MOV"), "b");
        QVERIFY(m_window->TwoRepairedValidFilesCreated(folder + QStringLiteral("/clip.mov")));
        writeAll(folder + QStringLiteral("/1_CLIP.MOV"), QByteArray());
        QVERIFY(!m_window->TwoRepairedValidFilesCreated(folder + QStringLiteral("/clip.mov")));
    }

    // A sample that is missing or is no regular file is refused before any
    // pass starts; the dialog stays up and Cancel closes it.
    void unreadableSampleIsRefused()
    {
        QTreeWidgetItem* waiting = addRow(QStringLiteral("lost.mov"), m_dir);
        waiting->setText(10, QStringLiteral("1"));
        waiting->setText(11, QStringLiteral("0"));
        const QString fifo = m_dir + QStringLiteral("/sample.mov");
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        for (const QString& sample : {m_dir + QStringLiteral("/none.mov"), fifo}) {
            m_chooser->files << sample;
            g_advanceTarget = waiting->text(12);
            m_answers << QStringLiteral("RefBrowse_Btn") << QStringLiteral("RefRepairBtn") << QStringLiteral("OkBtn")
                      << QStringLiteral("cancle");
            g_referenceDlg->ResetForNewSample();
            g_referenceDlg->exec();
            QCOMPARE(m_modalTexts.at(m_modalTexts.size() - 2),
                     QStringList{QStringLiteral("The sample video can't be read. Choose another sample video.")});
            QVERIFY(!m_window->repairThread().isRunning());
            QCOMPARE(waiting->text(8), QStringLiteral("Queued"));
        }
        QVERIFY(m_chooser->openCalls.first().startsWith(QLatin1String("Add File | Video (*.mov *.mp4")));
        QVERIFY(m_chooser->openCalls.first().contains(QLatin1String("*.WMV*.AVI")));
    }

    // A stop while the reference pass holds the damaged file leaves the
    // waiting row waiting, with its button, not "Aborted".
    void stopDuringAReferencePass()
    {
        const QString fifo = m_dir + QStringLiteral("/held.mov");
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        const QString sample = m_dir + QStringLiteral("/sample.mov");
        QVERIFY(QFile::copy(h264Aac(QStringLiteral("mov")), sample));
        QTreeWidgetItem* waiting = addRow(QStringLiteral("held.mov"), m_dir);
        waiting->setText(10, QStringLiteral("1"));
        waiting->setText(11, QStringLiteral("0"));
        waiting->setText(13, QStringLiteral("5"));
        g_referencePath = sample;
        g_advanceTarget = fifo;
        g_applyToAll = false;
        bool aborted = false;
        connect(&m_window->repairThread(), &ThreadVideoRepair::ProcessAborted, this, [&] { aborted = true; },
                Qt::QueuedConnection);
        m_window->OnRepairRefrenceFile();
        QVERIFY(g_referenceMode && g_referenceRun);
        QCOMPARE(m_window->stringLabl->text(), QStringLiteral("Advance Repair Running"));
        QCOMPARE(waiting->checkState(0), Qt::Checked);
        QTRY_VERIFY_WITH_TIMEOUT(threadBlockedInOpen(), 10000);

        m_answers << QStringLiteral("OkBtn_2");
        m_window->OnStop();
        QVERIFY(g_stopRequested && !g_referenceMode);
        const int fd = ::open(QFile::encodeName(fifo).constData(), O_WRONLY | O_NONBLOCK);
        QVERIFY(fd >= 0);
        ::close(fd);
        QTRY_VERIFY_WITH_TIMEOUT(aborted && !m_window->repairThread().isRunning(), 20000);
        drain();
        QCOMPARE(waiting->text(8), QStringLiteral("Awaiting Action"));
        QCOMPARE(waiting->text(11), QStringLiteral("0"));
        QCOMPARE(waiting->foreground(8).color(), QColor(QStringLiteral("blue")));
        QCOMPARE(button(0)->text(), QStringLiteral("Advance Repair"));
        QVERIFY(!button(0)->isHidden() && button(0)->isEnabled());
        QVERIFY(!m_window->saveBtn->isEnabled());
    }

    // The whole way of a camera .mov whose movie was cut off, beside an .mp4
    // of the same kind: the first pass leaves both waiting and nothing to
    // save; Advance Repair with an upper-case .MOV sample and "Apply to all"
    // runs the .mov only; the result previews and saves.
    void advanceRepairFromAwaitingToSaved()
    {
        const QString clip = Camera(false);
        const QString sampleClip = Camera(true);
        QVERIFY(!clip.isEmpty() && !sampleClip.isEmpty());
        const QString mov = cutCopy(clip, QStringLiteral("lost.mov"));
        const QString mp4 = cutCopy(h264Aac(QStringLiteral("mp4")), QStringLiteral("lost.mp4"));
        QDir().mkpath(m_dir + QStringLiteral("/samples"));
        const QString sample = m_dir + QStringLiteral("/samples/sample.MOV");
        QVERIFY(QFile::copy(sampleClip, sample));
        const QString movHash = sha256(mov);

        firstPass({mov, mp4});
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(row(i)->text(8), QStringLiteral("Awaiting Action"));
            QCOMPARE(row(i)->text(11), QStringLiteral("0"));
            QCOMPARE(button(i)->text(), QStringLiteral("Advance Repair"));
        }
        QVERIFY(!m_window->saveBtn->isEnabled());

        m_chooser->files << sample;
        m_answers << QStringLiteral("NextBtn") << QStringLiteral("RefBrowse_Btn") << QStringLiteral("refe_CheckBox")
                  << QStringLiteral("RefRepairBtn") << QStringLiteral("OkBtn");
        m_window->OnClickPreviewBtn(m_window->rowActions().at(0)->id);
        QCOMPARE(g_sameFormatFiles, QStringList{mov});
        QCOMPARE(g_referencePath, sample);
        QCOMPARE(row(0)->checkState(0), Qt::Checked);
        QCOMPARE(row(1)->checkState(0), Qt::Unchecked);
        QTRY_VERIFY_WITH_TIMEOUT(runEnded(), 300000);
        QVERIFY(m_answers.isEmpty());

        QCOMPARE(row(0)->text(8), QStringLiteral("Completed"));
        QCOMPARE(row(0)->text(11), QStringLiteral("1"));
        QCOMPARE(row(1)->text(8), QStringLiteral("Awaiting Action"));
        QCOMPARE(row(1)->text(11), QStringLiteral("0"));
        const QString out = row(0)->text(1);
        QVERIFY(decodedVideoFrames(out) > 100);
        QCOMPARE(sha256(mov), movHash);
        QVERIFY(!QFile::exists(m_dir + QStringLiteral("/Repaired/lost.mp4")));

        m_window->OnClickPreviewBtn(m_window->rowActions().at(0)->id);
        QTRY_COMPARE(playerCalls().size(), 1);
        QCOMPARE(playerCalls().first(), QStringLiteral("-nofs 1 ") + out);
        g_previewProcess->waitForFinished(5000);

        m_window->OnRepairItemClicked(row(0), 0);
        m_window->OnSelectAllClicked(true);
        QVERIFY(m_window->saveBtn->isEnabled());
        const QString target = m_dir + QStringLiteral("/saved");
        QDir().mkpath(target);
        m_chooser->folders << target;
        m_answers << QStringLiteral("customLoc") << QStringLiteral("LocBrowse_Btn") << QStringLiteral("Save")
                  << QStringLiteral("OkBtn");
        m_window->saveBtn->click();
        QTRY_VERIFY_WITH_TIMEOUT(m_answers.isEmpty(), 20000);
        QCOMPARE(sha256(target + QStringLiteral("/lost.mov")), sha256(out));
        QVERIFY(!QFile::exists(target + QStringLiteral("/lost.mp4")));
    }
};

int main(int argc, char** argv)
{
    // Dialogs run nested event loops; the plain Unix event dispatcher keeps
    // the answering timer firing inside them.
    qputenv("QT_NO_GLIB", "1");
    QApplication app(argc, argv);
    TestResultsAndSaving test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_results_and_saving.moc"
