// Page 2 after the repair: row states driven by the thread's signals, the
// settling at the end of a run, Advance Repair with a sample video, preview
// through a fake player that records its arguments, and both ways of saving.
#include "window_fixture.h"

#include "shell/platform_gui.h"
#include "shell/startup.h"
#include "workspace/custom_button.h"
#include "workspace/my_tree_widget.h"
#include "workspace/reference_file_dlg.h"
#include "workspace/save_dlg.h"
#include "workspace/workspace_globals.h"

#include <QCheckBox>
#include <QProcess>
#include <QRadioButton>

using namespace testvideo;

namespace {

// A ten-second camera clip, H.264 high profile with AAC; the sample differs
// only in its picture.
QString Camera(bool sample)
{
    const QString args = QStringLiteral(
        "-f lavfi -i testsrc2=size=640x360:rate=25 -f lavfi -i sine=frequency=440:sample_rate=48000 -t 10 "
        "-vf hue=h=%1 -c:v libx264 -preset veryfast -profile:v high -g 30 -b:v 4M -pix_fmt yuv420p "
        "-c:a aac -ac 2 -b:a 128k");
    return make(sample ? QStringLiteral("camera_25_sample.mov") : QStringLiteral("camera_25_clip.mov"),
                args.arg(sample ? 90 : 0).split(QLatin1Char(' ')));
}

} // namespace

class TestResultsAndSaving : public QObject {
    Q_OBJECT

    QString m_dir, m_config, m_playerDir, m_playerLog;
    fixture::ModalAnswerer m_modal;
    fixture::ScriptedFileDialogs* m_chooser = nullptr;
    VideoRepairWindow* m_window = nullptr;

    MyTreeWidget* results() const { return m_window->resultList(); }
    QTreeWidgetItem* row(int i) const { return results()->topLevelItem(i); }
    CustomButton* button(int i) const { return qobject_cast<CustomButton*>(results()->itemWidget(row(i), 9)); }
    // Status word and hidden columns: stage, verdict, default codec.
    QStringList state(int i) const { return {row(i)->text(8), row(i)->text(10), row(i)->text(11), row(i)->text(14)}; }

    enum Kind { Queued, Awaiting, Repaired };
    // A row as the press of Repair makes it, one the first pass left waiting
    // for Advance Repair, or one whose result (bytes) the first pass wrote.
    QTreeWidgetItem* addRow(const QString& name, const QString& folder, Kind kind = Queued,
                            const QByteArray& bytes = "x")
    {
        auto* item = new QTreeWidgetItem(results());
        item->setText(0, name);
        item->setCheckState(0, Qt::Checked);
        item->setText(1, folder + QStringLiteral("/Repaired/") + name);
        item->setText(12, folder + QLatin1Char('/') + name);
        item->setText(8, kind == Repaired ? QStringLiteral("Completed") : QStringLiteral("Queued"));
        item->setText(10, QString::number(int(kind)));
        item->setText(11, kind == Queued ? QString() : QString::number(int(kind) / 2));
        item->setText(13, kind == Queued ? QStringLiteral("4") : QStringLiteral("5"));
        results()->setItemWidget(item, 9, new CustomButton(results()));
        if (kind == Repaired) {
            QDir().mkpath(folder + QStringLiteral("/Repaired"));
            writeAll(item->text(1), bytes);
        }
        return item;
    }
    void drain() { QCoreApplication::processEvents(), QCoreApplication::processEvents(); }
    QStringList playerCalls() const
    {
        return QString::fromUtf8(readAll(m_playerLog)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    void saveTo(const QString& folder)
    {
        m_chooser->folders << folder;
        m_modal.answers << QStringLiteral("customLoc") << QStringLiteral("LocBrowse_Btn") << QStringLiteral("Save")
                        << QStringLiteral("OkBtn");
        m_window->saveBtn->click();
        QTRY_VERIFY_WITH_TIMEOUT(m_modal.answers.isEmpty(), 20000);
    }
    QString cutCopy(const QString& clip, const QString& name)
    {
        QByteArray bytes = readAll(clip);
        cutMoov(bytes);
        writeAll(m_dir + QLatin1Char('/') + name, bytes);
        return m_dir + QLatin1Char('/') + name;
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_config = fixture::UseFreshSettings(QStringLiteral("rs-config"));
        // The player: a script named mpv on PATH that writes a line of its
        // arguments per start.
        m_playerDir = freshDir(QStringLiteral("rs-player"));
        m_playerLog = m_playerDir + QStringLiteral("/calls.txt");
        const QString script = m_playerDir + QStringLiteral("/mpv");
        writeAll(script, QStringLiteral("#!/bin/sh\necho \"$*\" >> '%1'\n").arg(m_playerLog).toUtf8());
        QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", (m_playerDir + QLatin1Char(':') + QString::fromLocal8Bit(qgetenv("PATH"))).toLocal8Bit());
        g_playerPath = FindPreviewPlayer(QStringLiteral("/nonexistent"));
        QCOMPARE(g_playerPath, script);
        g_playerKind = PlayerKindOf(g_playerPath);
    }
    void cleanupTestCase()
    {
        QDir(m_config).removeRecursively();
        QDir(m_playerDir).removeRecursively();
    }
    void init()
    {
        m_dir = freshDir(QStringLiteral("rs"));
        m_modal.clear();
        QFile::remove(m_playerLog);
        g_stopRequested = g_referenceMode = g_applyToAll = g_keepRepaired = false;
        m_window = fixture::ShownWindow(&m_chooser);
    }
    void cleanup()
    {
        QVERIFY2(m_modal.answers.isEmpty(), qPrintable(m_modal.answers.join(QLatin1Char(','))));
        delete m_window;
        QDir(m_dir).removeRecursively();
    }

    // Queued -> Processing -> Completed / Awaiting Action, then the settling
    // at the end of the run, which tests each output; then a reference
    // pass's verdicts.
    void rowStatesFollowTheThreadsSignals()
    {
        for (const char* name : {"a.mov", "b.mov", "c.avi", "d.mp4", "e.mkv"})
            addRow(QLatin1String(name), m_dir);
        QDir().mkpath(m_dir + QStringLiteral("/Repaired"));
        writeAll(row(0)->text(1), "result");
        writeAll(row(3)->text(1), QByteArray());   // empty output; c.avi has none
        ThreadVideoRepair& t = m_window->repairThread();

        emit t.WriteProcessingStatus(QString());
        emit t.SetProgressBarRange(6000000000ul);   // a 6 GB file: the bar still moves to half
        emit t.setProgressvalue(3000000000ul);
        drain();
        QCOMPARE(m_window->FileProgress->value() * 2 / 10, m_window->FileProgress->maximum() / 10);
        QCOMPARE(state(0), (QStringList{"Processing", "1", "", ""}));
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
        emit t.ReadDamage(QStringLiteral("a.mov"), 4096);   // after the verdict, before the next file
        emit t.WriteProcessingStatus(QString());
        emit t.WriteStatus(false, false, QStringLiteral("e.mkv"), false);
        emit t.VerdictReason(QStringLiteral("e.mkv"), QStringLiteral("not enough space in /x, about 9 MB needed"));
        drain();
        QVERIFY(row(0)->toolTip(8).endsWith(QStringLiteral("4,096 unreadable bytes read as zeros")));
        QCOMPARE(state(0), (QStringList{"Completed", "2", "1", "1"}));
        QCOMPARE(int(row(0)->textAlignment(8)), 128);
        QCOMPARE(button(0)->text(), QStringLiteral("Preview"));
        QVERIFY(!button(0)->isHidden());
        QCOMPARE(state(1), (QStringList{"Awaiting Action", "1", "0", "0"}));
        QCOMPARE(int(row(1)->textAlignment(8)), 32);
        QCOMPARE(row(1)->checkState(0), Qt::Unchecked);
        QCOMPARE(button(1)->text(), QStringLiteral("Advance Repair"));
        QVERIFY(button(1)->isEnabled() && !button(1)->isHidden());
        QCOMPARE(state(2).mid(1), (QStringList{"2", "1", ""}));   // the AVI verdict carries no codec flag
        QCOMPARE(row(3)->text(11), QStringLiteral("1"));          // "reserved" counts as repaired

        m_modal.answers << QStringLiteral("OkBtn");
        emit t.RepairFinish();
        QTRY_VERIFY(m_modal.answers.isEmpty());
        drain();
        QCOMPARE(row(0)->text(8), QStringLiteral("Completed"));
        QCOMPARE(row(0)->foreground(8).color(), QColor(QStringLiteral("black")));
        QCOMPARE(row(1)->text(8), QStringLiteral("Awaiting Action"));
        QCOMPARE(row(1)->foreground(8).color(), QColor(QStringLiteral("blue")));
        QVERIFY(g_advancePending);
        // No room for the results: no sample helps, the row says why.
        QCOMPARE(row(4)->text(8), QStringLiteral("Failed"));
        QCOMPARE(row(4)->toolTip(8), QStringLiteral("not enough space in /x, about 9 MB needed"));
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

        // A reference pass: a negative verdict leaves the awaiting row, a
        // positive one completes it.
        emit t.WriteStatus(false, false, QStringLiteral("b.mov"), true);
        drain();
        QCOMPARE(row(1)->text(11), QStringLiteral("0"));
        emit t.WriteStatus(true, false, QStringLiteral("b.mov"), true);
        drain();
        QCOMPARE(state(1).mid(0, 3), (QStringList{"Completed", "1", "1"}));
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
        addRow(QStringLiteral("ok.mov"), m_dir, Repaired);
        QTreeWidgetItem* waiting = addRow(QStringLiteral("wait.mov"), m_dir, Awaiting);
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->OnRepairItemClicked(waiting, 0);
        QCOMPARE(m_modal.texts.last(), QStringList{"This video is severely damaged. Run advance repair option to "
                                                   "repair it before saving."});
        QVERIFY(!m_window->saveBtn->isEnabled());
        QCOMPARE(m_window->Select_All->checkState(), Qt::PartiallyChecked);

        m_window->OnRepairItemClicked(row(0), 0);
        QVERIFY(m_window->saveBtn->isEnabled());
        QFile::remove(row(0)->text(1));
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->OnRepairItemClicked(row(0), 0);
        QCOMPARE(m_modal.texts.last(), QStringList{"This video is severely corrupted and cannot be repaired."});
        QVERIFY(!m_window->saveBtn->isEnabled());
        QCOMPARE(m_window->Select_All->checkState(), Qt::Unchecked);
    }

    // Each player gets arguments it takes; the button plays the result, a
    // double click the cell's text. No player, one that can't start and one
    // that gives up at once each say so.
    void previewPathsAndArguments()
    {
        const QString f = QStringLiteral("/v/a b.mov");
        QCOMPARE(PreviewArguments(PlayerKindOf("/usr/bin/xdg-open"), f, false), QStringList{f});
        QCOMPARE(PreviewArguments(PlayerKindOf("/usr/bin/mplayer"), f, false), (QStringList{"--", f}));
        QCOMPARE(PreviewArguments(PlayerKindOf("/usr/bin/ffplay"), f, false), (QStringList{"-autoexit", f}));

        m_window->PlayVideo(m_dir + QStringLiteral("/Repaired/clip.mov"));
        QTRY_COMPARE(playerCalls().size(), 1);
        QCOMPARE(playerCalls().first(), QStringLiteral("--force-window=yes -- ") + m_dir + QStringLiteral("/Repaired/clip.mov"));
        g_previewProcess->waitForFinished(5000);

        QTreeWidgetItem* item = addRow(QStringLiteral("clip.dat"), m_dir, Repaired);
        m_window->OnDoubleClicked(item, 1);
        QTRY_COMPARE(playerCalls().size(), 2);
        QCOMPARE(playerCalls().last(), QStringLiteral("--force-window=yes -- ") + item->text(1));
        g_previewProcess->waitForFinished(5000);
        m_window->OnDoubleClicked(item, 4);   // empty column: nothing starts
        QTest::qWait(200);
        QCOMPARE(playerCalls().size(), 2);

        const QString player = g_playerPath;
        g_playerPath.clear();
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->PlayVideo(item->text(1));
        g_playerPath = player;
        QVERIFY(m_modal.texts.last().join(QString()).contains(QLatin1String("No video player was found")));
        QCOMPARE(playerCalls().size(), 2);

        g_playerPath = m_dir + QStringLiteral("/mpv");   // not there
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->PlayVideo(item->text(1));
        QVERIFY(m_modal.texts.last().join(QString()).contains(QLatin1String("mpv could not be started")));
        const QString failing = m_playerDir + QStringLiteral("/failing/mpv");
        QDir().mkpath(QFileInfo(failing).path());
        writeAll(failing, "#!/bin/sh\nexit 1\n");
        QFile::setPermissions(failing, QFile::ReadOwner | QFile::ExeOwner);
        g_playerPath = failing;
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->PlayVideo(item->text(1));
        QTRY_VERIFY(m_modal.answers.isEmpty());
        QVERIFY(m_modal.texts.last().join(QString()).contains(QLatin1String("mpv ended at once")));
        g_playerPath = player;
    }

    // The dialog opens at the source location; Save stays off for a custom
    // location until a folder is chosen; Cancel leaves everything. Then a
    // custom folder: the checked results are copied, a file already there is
    // kept, rows end unchecked; a folder that can't be written says so.
    void saveToACustomFolder()
    {
        addRow(QStringLiteral("one.mov"), m_dir, Repaired, "first one");
        m_modal.answers << QStringLiteral("customLoc") << QStringLiteral("cancle");
        m_window->OnClickedSaveButton();
        QVERIFY(!g_onSavePage);
        SaveDlgClass* dlg = m_window->saveDlg();
        QVERIFY(!dlg->Save->isEnabled() && dlg->LocBrowse_Btn->isEnabled());
        m_modal.answers << QStringLiteral("cancle");
        m_window->OnClickedSaveButton();
        QVERIFY(dlg->defaultLoc->isChecked() && dlg->Save->isEnabled() && !dlg->LocBrowse_Btn->isEnabled());
        QCOMPARE(row(0)->checkState(0), Qt::Checked);

        addRow(QStringLiteral("one.mov"), m_dir + QStringLiteral("/other"), Repaired, "second one");
        addRow(QStringLiteral("two.mp4"), m_dir, Repaired, "two");
        addRow(QStringLiteral("three.mp4"), m_dir, Repaired, "three");
        row(3)->setCheckState(0, Qt::Unchecked);
        const QString target = m_dir + QStringLiteral("/target");
        QDir().mkpath(target);
        writeAll(target + QStringLiteral("/two.mp4"), "already here");
        m_window->saveBtn->setEnabled(true);
        saveTo(target);
        QVERIFY(g_savePressed && !g_keepRepaired);
        QCOMPARE(m_modal.texts.last(), QStringList{"Repaired files saved successfully."});
        QCOMPARE(readAll(target + QStringLiteral("/one.mov")), QByteArray("first one"));
        QCOMPARE(readAll(target + QStringLiteral("/two.mp4")), QByteArray("already here"));
        QVERIFY(!QFile::exists(target + QStringLiteral("/three.mp4")));
        for (int i = 0; i < 4; ++i)
            QCOMPARE(row(i)->checkState(0), Qt::Unchecked);
        QVERIFY(!m_window->saveBtn->isEnabled() && m_window->FileProgress->isHidden());
        QVERIFY(results()->isEnabled() && m_window->BackBtn->isEnabled() && m_window->Select_All->isEnabled());

        m_window->OnSelectAllClicked(true);
        saveTo(QStringLiteral("/proc"));   // takes no files, not even from root
        QVERIFY2(m_modal.texts.last().join(QString()).contains(QLatin1String("could not be saved")),
                 qPrintable(m_modal.texts.last().join(QString())));
        QVERIFY(results()->isEnabled() && m_window->BackBtn->isEnabled());
        for (int i = 0; i < 4; ++i)
            QCOMPARE(row(i)->text(8), QStringLiteral("Completed"));
    }

    // At the source location the Repaired folder is shown again: its line
    // leaves .hidden, which goes when nothing else is in it.
    void saveAtTheSourceShowsRepaired()
    {
        const QString second = m_dir + QStringLiteral("/second");
        addRow(QStringLiteral("one.mov"), m_dir, Repaired);
        addRow(QStringLiteral("two.mov"), second, Repaired);
        QVERIFY(SetHiddenInFolder(m_dir, QStringLiteral("Repaired"), true));
        QVERIFY(SetHiddenInFolder(second, QStringLiteral("Repaired"), true));
        QVERIFY(SetHiddenInFolder(second, QStringLiteral("keep.me"), true));

        m_modal.answers << QStringLiteral("Save") << QStringLiteral("OkBtn");
        m_window->saveBtn->setEnabled(true);
        m_window->saveBtn->click();
        QTRY_VERIFY(m_modal.answers.isEmpty());
        QCOMPARE(m_modal.texts.last(), QStringList{"Repaired files saved successfully."});
        QVERIFY(g_keepRepaired);
        QVERIFY(!QFile::exists(m_dir + QStringLiteral("/.hidden")));
        QCOMPARE(readAll(second + QStringLiteral("/.hidden")).trimmed(), QByteArray("keep.me"));
        QVERIFY(QFile::exists(row(0)->text(1)) && QFile::exists(row(1)->text(1)));
        QVERIFY(!m_window->saveBtn->isEnabled());
        QCOMPARE(row(0)->checkState(0), Qt::Unchecked);
    }

    // A second result counts by name in any case, and only when not empty.
    void twoValidFilesAreCountedByName()
    {
        const QString folder = m_dir + QStringLiteral("/Repaired"), clip = folder + QStringLiteral("/clip.mov");
        QDir().mkpath(folder);
        writeAll(clip, "a");
        QVERIFY(!m_window->TwoRepairedValidFilesCreated(clip));
        writeAll(folder + QStringLiteral("/1_CLIP.MOV"), "b");
        QVERIFY(m_window->TwoRepairedValidFilesCreated(clip));
        writeAll(folder + QStringLiteral("/1_CLIP.MOV"), QByteArray());
        QVERIFY(!m_window->TwoRepairedValidFilesCreated(clip));
    }

    // A sample that is missing or is no regular file is refused before any
    // pass starts; the dialog stays up and Cancel closes it.
    void unreadableSampleIsRefused()
    {
        QTreeWidgetItem* waiting = addRow(QStringLiteral("lost.mov"), m_dir, Awaiting);
        const QString pipe = m_dir + QStringLiteral("/sample.mov");
        QVERIFY(fixture::MakePipe(pipe));
        for (const QString& sample : {m_dir + QStringLiteral("/none.mov"), pipe}) {
            m_chooser->files << sample;
            g_advanceTarget = waiting->text(12);
            m_modal.answers << QStringLiteral("RefBrowse_Btn") << QStringLiteral("RefRepairBtn")
                            << QStringLiteral("OkBtn") << QStringLiteral("cancle");
            g_referenceDlg->ResetForNewSample();
            g_referenceDlg->exec();
            QCOMPARE(m_modal.texts.at(m_modal.texts.size() - 2),
                     QStringList{"The sample video can't be read. Choose another sample video."});
            QVERIFY(!m_window->repairThread().isRunning());
            QCOMPARE(waiting->text(8), QStringLiteral("Queued"));
        }
        QVERIFY(m_chooser->calls.first().startsWith(QLatin1String("Add File | Video (*.mov *.mp4")));
        QVERIFY(m_chooser->calls.first().contains(QLatin1String("*.WMV*.AVI")));
    }

    // A stop while the reference pass holds the damaged file leaves the
    // waiting row waiting, with its button, not "Aborted".
    void stopDuringAReferencePass()
    {
        const QString pipe = m_dir + QStringLiteral("/held.mov");
        QVERIFY(fixture::MakePipe(pipe));
        g_referencePath = m_dir + QStringLiteral("/sample.mov");
        QVERIFY(QFile::copy(h264Aac(QStringLiteral("mov")), g_referencePath));
        QTreeWidgetItem* waiting = addRow(QStringLiteral("held.mov"), m_dir, Awaiting);
        g_advanceTarget = pipe;
        bool aborted = false;
        QObject context;
        connect(&m_window->repairThread(), &ThreadVideoRepair::ProcessAborted, &context, [&] { aborted = true; });
        m_window->OnRepairRefrenceFile();
        QVERIFY(g_referenceMode && g_referenceRun);
        QCOMPARE(m_window->stringLabl->text(), QStringLiteral("Advance Repair Running"));
        QCOMPARE(waiting->checkState(0), Qt::Checked);
        QTRY_VERIFY_WITH_TIMEOUT(fixture::ThreadBlockedInOpen(), 10000);

        m_modal.answers << QStringLiteral("OkBtn_2");
        m_window->OnStop();
        QVERIFY(g_stopRequested && !g_referenceMode);
        QVERIFY(fixture::ReleasePipe(pipe));
        QTRY_VERIFY_WITH_TIMEOUT(aborted && !m_window->repairThread().isRunning(), 20000);
        drain();
        QCOMPARE(state(0).mid(0, 3), (QStringList{"Awaiting Action", "1", "0"}));
        QCOMPARE(waiting->foreground(8).color(), QColor(QStringLiteral("blue")));
        QCOMPARE(button(0)->text(), QStringLiteral("Advance Repair"));
        QVERIFY(!button(0)->isHidden() && button(0)->isEnabled());
        QVERIFY(!m_window->saveBtn->isEnabled());
    }

    // One healthy file of each route, a DAT file and a 50 fps recording among
    // them: every row ends "Completed" with the file the engine wrote (the
    // DAT file's .mov) and its figures as tooltip; the DAT result previews;
    // all results save; the 50 fps result plays at 50 fps.
    void everyRouteCompletesPreviewsAndSaves()
    {
        const QStringList h264{"-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p", "-g", "12"};
        const QList<QPair<QString, QStringList>> clips = {
            {"r.avi", {"-c:v", "mpeg4", "-c:a", "mp3"}},
            {"r.wmv", {"-c:v", "wmv2", "-c:a", "wmav2"}},
            {"r.flv", {"-c:v", "flv", "-c:a", "mp3"}},
            {"r.mts", h264 + QStringList{"-c:a", "ac3", "-streamid", "0:0x1011", "-streamid", "1:0x1100",
                                          "-f", "mpegts", "-mpegts_m2ts_mode", "1"}},
            {"r.mkv", h264 + QStringList{"-c:a", "aac"}},
            {"r.mpg", {"-c:v", "mpeg2video", "-c:a", "mp2"}},
            {"vcd.dat", {"-target", "ntsc-vcd"}},
            {"fifty.mov", QStringList{"-r", "50"} + h264 + QStringList{"-c:a", "aac"}}};
        QStringList files;
        for (const auto& c : clips) {
            const QString clip = make(QStringLiteral("window_") + c.first, lavfiVideo(4, QStringLiteral("320x240"),
                                                                                     c.first == "fifty.mov" ? 50 : 25)
                                                                          + lavfiAudio(4) + c.second);
            QVERIFY(!clip.isEmpty());
            files << m_dir + QLatin1Char('/') + c.first;
            QVERIFY(QFile::copy(clip, files.last()));
        }
        m_chooser->picks << files;
        m_window->OnAddMOVFile();
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->RepairBtn->click();
        QTRY_VERIFY_WITH_TIMEOUT(fixture::RunEnded(m_window), 120000);
        for (int i = 0; i < clips.size(); ++i) {
            const QString name = row(i)->text(0);
            QVERIFY2(row(i)->text(8) == QLatin1String("Completed"), qPrintable(name));
            const QString expected = name == QLatin1String("vcd.dat") ? QStringLiteral("vcd.mov") : name;
            QCOMPARE(row(i)->text(1), m_dir + QStringLiteral("/Repaired/") + expected);
            QVERIFY2(row(i)->toolTip(8).contains(QStringLiteral(" frames · ")), qPrintable(row(i)->toolTip(8)));
        }
        QByteArray rate;
        QCOMPARE(run(QStringLiteral("ffprobe"), {"-v", "error", "-select_streams", "v", "-show_entries",
                                                 "stream=avg_frame_rate", "-of", "csv=p=0", row(7)->text(1)},
                     &rate),
                 0);
        QCOMPARE(rate.trimmed(), QByteArray("50/1"));

        m_window->OnClickPreviewBtn(m_window->rowActions().at(6)->id);
        QTRY_COMPARE(playerCalls().size(), 1);
        QCOMPARE(playerCalls().first(), QStringLiteral("--force-window=yes -- ") + m_dir + QStringLiteral("/Repaired/vcd.mov"));
        g_previewProcess->waitForFinished(5000);

        m_window->OnSelectAllClicked(true);
        const QString target = m_dir + QStringLiteral("/saved");
        QDir().mkpath(target);
        saveTo(target);
        QCOMPARE(m_modal.texts.last(), QStringList{"Repaired files saved successfully."});
        for (int i = 0; i < clips.size(); ++i)
            QCOMPARE(sha256(target + QLatin1Char('/') + QFileInfo(row(i)->text(1)).fileName()), sha256(row(i)->text(1)));
    }

    // The whole way of a camera .mov whose movie was cut off, beside an .mp4
    // of the same kind: the first pass leaves both waiting and nothing to
    // save; Advance Repair with an upper-case .MOV sample and "Apply to all"
    // runs the .mov only; the result previews and saves.
    void advanceRepairFromAwaitingToSaved()
    {
        const QString clip = Camera(false), sampleClip = Camera(true);
        QVERIFY(!clip.isEmpty() && !sampleClip.isEmpty());
        const QString mov = cutCopy(clip, QStringLiteral("lost.mov"));
        const QString mp4 = cutCopy(h264Aac(QStringLiteral("mp4")), QStringLiteral("lost.mp4"));
        QDir().mkpath(m_dir + QStringLiteral("/samples"));
        const QString sample = m_dir + QStringLiteral("/samples/sample.MOV");
        QVERIFY(QFile::copy(sampleClip, sample));
        const QString movHash = sha256(mov);

        m_chooser->picks << QStringList{mov, mp4};
        m_window->OnAddMOVFile();
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->RepairBtn->click();
        QTRY_VERIFY_WITH_TIMEOUT(fixture::RunEnded(m_window), 120000);
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(state(i).mid(0, 3), (QStringList{"Awaiting Action", "1", "0"}));
            QCOMPARE(button(i)->text(), QStringLiteral("Advance Repair"));
        }
        QVERIFY(!m_window->saveBtn->isEnabled());

        m_chooser->files << sample;
        m_modal.answers << QStringLiteral("NextBtn") << QStringLiteral("RefBrowse_Btn")
                        << QStringLiteral("refe_CheckBox") << QStringLiteral("RefRepairBtn") << QStringLiteral("OkBtn");
        m_window->OnClickPreviewBtn(m_window->rowActions().at(0)->id);
        QCOMPARE(g_sameFormatFiles, QStringList{mov});
        QCOMPARE(g_referencePath, sample);
        QCOMPARE(row(0)->checkState(0), Qt::Checked);
        QCOMPARE(row(1)->checkState(0), Qt::Unchecked);
        QTRY_VERIFY_WITH_TIMEOUT(fixture::RunEnded(m_window), 300000);
        QVERIFY(m_modal.answers.isEmpty());

        QCOMPARE((QStringList{row(0)->text(8), row(0)->text(11)}), (QStringList{"Completed", "1"}));
        QCOMPARE((QStringList{row(1)->text(8), row(1)->text(11)}), (QStringList{"Awaiting Action", "0"}));
        const QString out = row(0)->text(1);
        QVERIFY(decodedVideoFrames(out) > 100);
        QCOMPARE(sha256(mov), movHash);
        QVERIFY(!QFile::exists(m_dir + QStringLiteral("/Repaired/lost.mp4")));

        m_window->OnClickPreviewBtn(m_window->rowActions().at(0)->id);
        QTRY_COMPARE(playerCalls().size(), 1);
        QCOMPARE(playerCalls().first(), QStringLiteral("--force-window=yes -- ") + out);
        g_previewProcess->waitForFinished(5000);

        m_window->OnRepairItemClicked(row(0), 0);
        m_window->OnSelectAllClicked(true);
        QVERIFY(m_window->saveBtn->isEnabled());
        const QString target = m_dir + QStringLiteral("/saved");
        QDir().mkpath(target);
        saveTo(target);
        QCOMPARE(sha256(target + QStringLiteral("/lost.mov")), sha256(out));
        QVERIFY(!QFile::exists(target + QStringLiteral("/lost.mp4")));
    }
};

WINDOW_TEST_MAIN(TestResultsAndSaving)
#include "test_results_and_saving.moc"
