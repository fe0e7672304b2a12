// Page 2 after the repair: row states, Advance Repair, preview through a
// fake player, and both ways of saving.
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

class TestResultsAndSaving : public QObject {
    Q_OBJECT

    QString m_dir, m_config, m_playerDir, m_playerLog;
    fixture::ModalAnswerer m_modal;
    fixture::ScriptedFileDialogs* m_chooser = nullptr;
    VideoRepairWindow* m_window = nullptr;

    MyTreeWidget* results() const { return m_window->resultList(); }
    QTreeWidgetItem* row(int i) const { return results()->topLevelItem(i); }
    CustomButton* button(int i) const { return qobject_cast<CustomButton*>(results()->itemWidget(row(i), W::ResAction)); }
    // Status word and hidden columns: stage, verdict, default codec.
    QStringList state(int i) const
    {
        return {row(i)->text(W::ResStatus), row(i)->text(W::ResStage), row(i)->text(W::ResVerdict),
                row(i)->text(W::ResDefaultCodec)};
    }

    enum Kind { Queued, Awaiting, Repaired };
    // A row as the press of Repair makes it, one the first pass left waiting
    // for Advance Repair, or one whose result (bytes) the first pass wrote.
    QTreeWidgetItem* addRow(const QString& name, const QString& folder, Kind kind = Queued,
                            const QByteArray& bytes = "x")
    {
        auto* item = new QTreeWidgetItem(results());
        item->setText(W::ResName, name);
        item->setCheckState(W::ResName, Qt::Checked);
        item->setText(W::ResRepairedPath, folder + QStringLiteral("/Repaired/") + name);
        item->setText(W::ResSource, folder + QLatin1Char('/') + name);
        item->setText(W::ResStatus, kind == Repaired ? QStringLiteral("Completed") : QStringLiteral("Queued"));
        item->setText(W::ResStage, QString::number(int(kind)));
        item->setText(W::ResVerdict, kind == Queued ? QString() : QString::number(int(kind) / 2));
        item->setText(W::ResQueue, kind == Queued ? QStringLiteral("4") : QStringLiteral("5"));
        results()->setItemWidget(item, W::ResAction, new CustomButton(results()));
        if (kind == Repaired) {
            QDir().mkpath(folder + QStringLiteral("/Repaired"));
            writeAll(item->text(W::ResRepairedPath), bytes);
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

    // Queued, Processing, Completed or Awaiting Action, the settling at the end
    // of the run, then a reference pass's verdicts.
    void rowStatesFollowTheThreadsSignals()
    {
        for (const char* name : {"a.mov", "b.mov", "c.avi", "d.mp4", "e.mkv"})
            addRow(QLatin1String(name), m_dir);
        QDir().mkpath(m_dir + QStringLiteral("/Repaired"));
        writeAll(row(0)->text(W::ResRepairedPath), "result");
        writeAll(row(3)->text(W::ResRepairedPath), QByteArray());   // empty output; c.avi has none
        ThreadVideoRepair& t = m_window->repairThread();

        emit t.WriteProcessingStatus(QString());
        emit t.SetProgressBarRange(6000000000ul);   // a 6 GB file: the bar still moves to half
        emit t.setProgressvalue(3000000000ul);
        drain();
        QCOMPARE(m_window->FileProgress->value() * 2 / 10, m_window->FileProgress->maximum() / 10);
        QCOMPARE(state(0), (QStringList{"Processing", "1", "", ""}));
        QCOMPARE(row(1)->text(W::ResStatus), QStringLiteral("Queued"));   // one row per message
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
        QVERIFY(row(0)->toolTip(W::ResStatus).endsWith(QStringLiteral("4,096 unreadable bytes read as zeros")));
        QCOMPARE(state(0), (QStringList{"Completed", "2", "1", "1"}));
        QCOMPARE(button(0)->text(), QStringLiteral("Preview"));
        QCOMPARE(state(1), (QStringList{"Awaiting Action", "1", "0", "0"}));
        QCOMPARE(button(1)->text(), QStringLiteral("Advance Repair"));
        QCOMPARE(state(2).mid(1), (QStringList{"2", "1", ""}));   // the AVI verdict carries no codec flag
        QCOMPARE(row(3)->text(W::ResVerdict), QStringLiteral("1"));          // "reserved" counts as repaired

        m_modal.answers << QStringLiteral("OkBtn");
        emit t.RepairFinish();
        QTRY_VERIFY(m_modal.answers.isEmpty());
        drain();
        QCOMPARE(row(0)->text(W::ResStatus), QStringLiteral("Completed"));
        QCOMPARE(row(1)->text(W::ResStatus), QStringLiteral("Awaiting Action"));
        QCOMPARE(row(1)->foreground(W::ResStatus).color(), QColor(QStringLiteral("blue")));
        QVERIFY(g_advancePending);
        // No room for the results: no sample helps, the row says why.
        QCOMPARE(row(4)->text(W::ResStatus), QStringLiteral("Failed"));
        QCOMPARE(row(4)->toolTip(W::ResStatus), QStringLiteral("not enough space in /x, about 9 MB needed"));
        // Output gone: Failed, no box to tick; output empty: Failed, still a row.
        QCOMPARE(row(2)->text(W::ResStatus), QStringLiteral("Failed"));
        QVERIFY(!(row(2)->flags() & Qt::ItemIsUserCheckable));
        QCOMPARE(row(3)->text(W::ResStatus), QStringLiteral("Failed"));

        // Select all checks only rows with a usable result.
        m_window->OnSelectAllClicked(true);
        QCOMPARE(row(0)->checkState(W::ResName), Qt::Checked);
        QCOMPARE(row(1)->checkState(W::ResName), Qt::Unchecked);
        QCOMPARE(row(3)->checkState(W::ResName), Qt::Unchecked);
        QVERIFY(m_window->saveBtn->isEnabled());

        // A reference pass: a negative verdict leaves the awaiting row, a
        // positive one completes it.
        emit t.WriteStatus(false, false, QStringLiteral("b.mov"), true);
        drain();
        QCOMPARE(row(1)->text(W::ResVerdict), QStringLiteral("0"));
        emit t.WriteStatus(true, false, QStringLiteral("b.mov"), true);
        drain();
        QCOMPARE(state(1).mid(0, 3), (QStringList{"Completed", "1", "1"}));
        QVERIFY(button(1)->isHidden());   // shown again once the end of the pass tested the file

        emit t.disableAddReferenceBtn();
        drain();
        QVERIFY(!results()->isEnabled());
        // Failed rows' buttons are switched off themselves, not only through the list.
        QVERIFY(button(2)->testAttribute(Qt::WA_ForceDisabled) && !button(0)->testAttribute(Qt::WA_ForceDisabled));
    }

    // Clicks on awaiting and failed rows explain themselves and keep Save off.
    void rowClicksExplainAndCount()
    {
        addRow(QStringLiteral("ok.mov"), m_dir, Repaired);
        QTreeWidgetItem* waiting = addRow(QStringLiteral("wait.mov"), m_dir, Awaiting);
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->OnRepairItemClicked(waiting, W::ResName);
        QCOMPARE(m_modal.texts.last(), QStringList{"This video is severely damaged. Run advance repair option to "
                                                   "repair it before saving."});
        QVERIFY(!m_window->saveBtn->isEnabled());
        QCOMPARE(m_window->Select_All->checkState(), Qt::PartiallyChecked);

        m_window->OnRepairItemClicked(row(0), W::ResName);
        QVERIFY(m_window->saveBtn->isEnabled());
        QFile::remove(row(0)->text(W::ResRepairedPath));
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->OnRepairItemClicked(row(0), W::ResName);
        QCOMPARE(m_modal.texts.last(), QStringList{"This video is severely corrupted and cannot be repaired."});
        QVERIFY(!m_window->saveBtn->isEnabled());
        QCOMPARE(m_window->Select_All->checkState(), Qt::Unchecked);
    }

    // Each player gets arguments it takes; the button plays the result, a
    // double click the cell's text. No player and one that can't start say so.
    void previewPathsAndArguments()
    {
        const QString f = QStringLiteral("/v/a b.mov");
        QCOMPARE(PreviewArguments(PlayerKindOf("/usr/bin/mplayer"), f, false), (QStringList{"--", f}));
        QCOMPARE(PreviewArguments(PlayerKindOf("/usr/bin/ffplay"), f, false), (QStringList{"-autoexit", f}));

        m_window->PlayVideo(m_dir + QStringLiteral("/Repaired/clip.mov"));
        QTRY_COMPARE(playerCalls().size(), 1);
        QCOMPARE(playerCalls().first(), QStringLiteral("--force-window=yes -- ") + m_dir + QStringLiteral("/Repaired/clip.mov"));
        g_previewProcess->waitForFinished(5000);

        QTreeWidgetItem* item = addRow(QStringLiteral("clip.dat"), m_dir, Repaired);
        m_window->OnDoubleClicked(item, W::ResRepairedPath);
        QTRY_COMPARE(playerCalls().size(), 2);
        QCOMPARE(playerCalls().last(), QStringLiteral("--force-window=yes -- ") + item->text(W::ResRepairedPath));
        g_previewProcess->waitForFinished(5000);

        const QString player = g_playerPath;
        g_playerPath.clear();
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->PlayVideo(item->text(W::ResRepairedPath));
        g_playerPath = player;
        QVERIFY(m_modal.texts.last().join(QString()).contains(QLatin1String("No video player was found")));
        QCOMPARE(playerCalls().size(), 2);

        g_playerPath = m_dir + QStringLiteral("/mpv");   // not there
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->PlayVideo(item->text(W::ResRepairedPath));
        QVERIFY(m_modal.texts.last().join(QString()).contains(QLatin1String("mpv could not be started")));
        g_playerPath = player;
    }

    // Save to a custom folder: only once one is chosen; checked results are
    // copied, a file already there is kept; an unwritable folder says so.
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
        QCOMPARE(row(0)->checkState(W::ResName), Qt::Checked);

        addRow(QStringLiteral("one.mov"), m_dir + QStringLiteral("/other"), Repaired, "second one");
        addRow(QStringLiteral("two.mp4"), m_dir, Repaired, "two");
        addRow(QStringLiteral("three.mp4"), m_dir, Repaired, "three");
        row(3)->setCheckState(W::ResName, Qt::Unchecked);
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
            QCOMPARE(row(i)->checkState(W::ResName), Qt::Unchecked);
        QVERIFY(!m_window->saveBtn->isEnabled() && results()->isEnabled());

        m_window->OnSelectAllClicked(true);
        saveTo(QStringLiteral("/proc"));   // takes no files, not even from root
        QVERIFY2(m_modal.texts.last().join(QString()).contains(QLatin1String("could not be saved")),
                 qPrintable(m_modal.texts.last().join(QString())));
        QVERIFY(results()->isEnabled() && m_window->BackBtn->isEnabled());
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
        QVERIFY(QFile::exists(row(0)->text(W::ResRepairedPath)) && QFile::exists(row(1)->text(W::ResRepairedPath)));
        QVERIFY(!m_window->saveBtn->isEnabled());
        QCOMPARE(row(0)->checkState(W::ResName), Qt::Unchecked);
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
            g_advanceTarget = waiting->text(W::ResSource);
            m_modal.answers << QStringLiteral("RefBrowse_Btn") << QStringLiteral("RefRepairBtn")
                            << QStringLiteral("OkBtn") << QStringLiteral("cancle");
            g_referenceDlg->ResetForNewSample();
            g_referenceDlg->exec();
            QCOMPARE(m_modal.texts.at(m_modal.texts.size() - 2),
                     QStringList{"The sample video can't be read. Choose another sample video."});
            QVERIFY(!m_window->repairThread().isRunning());
            QCOMPARE(waiting->text(W::ResStatus), QStringLiteral("Queued"));
        }
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
        QCOMPARE(waiting->checkState(W::ResName), Qt::Checked);
        QTRY_VERIFY_WITH_TIMEOUT(fixture::ThreadBlockedInOpen(), 10000);

        m_modal.answers << QStringLiteral("OkBtn_2");
        m_window->OnStop();
        QVERIFY(g_stopRequested && !g_referenceMode);
        QVERIFY(fixture::ReleasePipe(pipe));
        QTRY_VERIFY_WITH_TIMEOUT(aborted && !m_window->repairThread().isRunning(), 20000);
        drain();
        QCOMPARE(state(0).mid(0, 3), (QStringList{"Awaiting Action", "1", "0"}));
        QVERIFY(!button(0)->isHidden() && button(0)->isEnabled());
        QVERIFY(!m_window->saveBtn->isEnabled());
    }

    // A .mov and an .mp4 without their movies wait; Advance Repair with a .MOV
    // sample and "Apply to all" repairs the .mov only, which can then be saved.
    void advanceRepairFromAwaitingToSaved()
    {
        const QString clip = cameraClip(false), sampleClip = cameraClip(true);
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
        QCOMPARE(row(0)->checkState(W::ResName), Qt::Checked);
        QCOMPARE(row(1)->checkState(W::ResName), Qt::Unchecked);
        QTRY_VERIFY_WITH_TIMEOUT(fixture::RunEnded(m_window), 300000);
        QVERIFY(m_modal.answers.isEmpty());

        QCOMPARE((QStringList{row(0)->text(W::ResStatus), row(0)->text(W::ResVerdict)}), (QStringList{"Completed", "1"}));
        QCOMPARE((QStringList{row(1)->text(W::ResStatus), row(1)->text(W::ResVerdict)}), (QStringList{"Awaiting Action", "0"}));
        const QString out = row(0)->text(W::ResRepairedPath);
        QVERIFY(decodedVideoFrames(out) > 100);
        QCOMPARE(sha256(mov), movHash);
        QVERIFY(!QFile::exists(m_dir + QStringLiteral("/Repaired/lost.mp4")));
        // The completed row now has a result to save.
        m_window->OnRepairItemClicked(row(0), W::ResName);
        m_window->OnSelectAllClicked(true);
        QVERIFY(m_window->saveBtn->isEnabled());
    }
};

WINDOW_TEST_MAIN(TestResultsAndSaving)
#include "test_results_and_saving.moc"
