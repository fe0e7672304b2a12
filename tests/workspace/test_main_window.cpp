// The main window driven as a user would.
#include "window_fixture.h"

#include "core/muxer.h"
#include "workspace/custom_button.h"
#include "workspace/my_tree_widget.h"
#include "workspace/workspace_globals.h"

#include <QMimeData>
#include <QMouseEvent>

using namespace testvideo;

class TestMainWindow : public QObject {
    Q_OBJECT

    QString m_dir, m_config;
    fixture::ModalAnswerer m_modal;
    fixture::ScriptedFileDialogs* m_chooser = nullptr;
    VideoRepairWindow* m_window = nullptr;

    QString copyOf(const QString& name, const QString& source = h264Aac(QStringLiteral("mp4")))
    {
        const QString path = m_dir + QLatin1Char('/') + name;
        return QFile::copy(source, path) ? path : QString();
    }
    QStringList copies(const QStringList& names)
    {
        QStringList paths;
        for (const QString& n : names)
            paths << copyOf(n);
        return paths;
    }
    void add(const QStringList& paths)
    {
        m_chooser->picks << paths;
        m_window->OnAddMOVFile();
    }
    void repairAndWait()
    {
        m_modal.answers << QStringLiteral("OkBtn");   // the end-of-run message
        m_window->RepairBtn->click();
        QTRY_VERIFY_WITH_TIMEOUT(fixture::RunEnded(m_window), 60000);
    }
    MyTreeWidget* files() const { return m_window->fileList(); }
    MyTreeWidget* results() const { return m_window->resultList(); }
    void setAllChecked(bool checked)
    {
        for (int i = 0; i < files()->topLevelItemCount(); ++i)
            files()->topLevelItem(i)->setCheckState(W::FileName, checked ? Qt::Checked : Qt::Unchecked);
        m_window->OnItemClicked(files()->topLevelItem(0), 0);
    }

private Q_SLOTS:
    void initTestCase() { m_config = fixture::UseFreshSettings(QStringLiteral("ws-config")); }
    void cleanupTestCase() { QDir(m_config).removeRecursively(); }
    void init()
    {
        m_dir = freshDir(QStringLiteral("ws"));
        m_modal.clear();
        g_remuxRan = false;
        m_window = fixture::ShownWindow(&m_chooser);
    }
    void cleanup()
    {
        delete m_window;
        QDir(m_dir).removeRecursively();
    }

    // Drops of files and folders (at any depth, through a link loop, in
    // batches); junk is named; a file gone before Repair is left out.
    void droppedFilesAndFolders()
    {
        auto drop = [this](const QStringList& paths) {
            QList<QUrl> urls;
            for (const QString& p : paths)
                urls << QUrl::fromLocalFile(p);
            QMimeData data;
            data.setUrls(urls);
            QDragEnterEvent enter(QPoint(400, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(m_window, &enter);
            QVERIFY(enter.isAccepted());
            QDropEvent event(QPoint(400, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(m_window, &event);
        };
        const QString folder = m_dir + QStringLiteral("/many");
        QDir().mkpath(folder + QStringLiteral("/deep/er"));
        for (int i = 0; i < 3000; ++i)
            writeAll(folder + QStringLiteral("/v%1.mp4").arg(i), "x");
        writeAll(folder + QStringLiteral("/deep/er/last.MTS"), "x");
        writeAll(folder + QStringLiteral("/deep/notes.txt"), "x");
        QVERIFY(QFile::link(folder, folder + QStringLiteral("/deep/loop")));
        QVERIFY(QFile::link(m_dir + QStringLiteral("/self"), m_dir + QStringLiteral("/self")));
        const QString a = copyOf(QStringLiteral("a.mp4"));
        writeAll(m_dir + QStringLiteral("/junk.doc"), "x");

        drop({a, m_dir + QStringLiteral("/junk.doc"), m_dir + QStringLiteral("/self"), folder});
        QTRY_VERIFY(files()->topLevelItemCount() > 0);
        QVERIFY(m_window->AddingFolders());
        QVERIFY(files()->topLevelItemCount() < 3002);   // the rest comes in later batches
        QVERIFY(!m_window->RepairBtn->isEnabled());
        QTRY_VERIFY_WITH_TIMEOUT(!m_window->AddingFolders(), 30000);
        QCOMPARE(files()->topLevelItemCount(), 3002);
        QVERIFY(m_window->RepairBtn->isEnabled());
        QCOMPARE(files()->topLevelItem(0)->text(W::FilePath), a);
        QCOMPARE(files()->topLevelItem(0)->toolTip(W::FilePath), a);
        const QString note = m_window->listNote()->toolTip();
        QVERIFY2(note.contains(QLatin1String("not videos this program repairs: 2")), qPrintable(note));
        QVERIFY2(note.contains(QLatin1String("Not found: self")), qPrintable(note));

        // Only a.mp4 stays ticked; it vanishes before the press of Repair.
        setAllChecked(false);
        files()->topLevelItem(0)->setCheckState(W::FileName, Qt::Checked);
        m_window->OnItemClicked(files()->topLevelItem(0), 0);
        QFile::remove(a);
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->RepairBtn->click();
        QTRY_VERIFY(m_modal.answers.isEmpty());
        QVERIFY(m_modal.texts.last().join(QString()).contains(QLatin1String("no longer be found and are left out: a.mp4")));
        QCOMPARE(files()->topLevelItemCount(), 3001);
        QVERIFY(m_window->AddFile_frame->isVisible() && !m_window->repairThread().isRunning());
    }

    // The first add leaves the home page; a path added again gives one dialog
    // and no row; unknown suffixes ("Mov" too) drop silently.
    void addingFillsRowsAndSkipsDuplicates()
    {
        QVERIFY(g_onHomePage && m_window->add_filebtn->isVisible() && !files()->isVisible());
        const QString a = copyOf(QStringLiteral("a.mp4"));
        add({a});
        QVERIFY(m_chooser->calls.last().startsWith(QLatin1String("Add File | Video (*.MOV *.mov *.mp4")));
        QVERIFY(g_onListPage && !g_onHomePage && files()->isVisible() && !m_window->add_filebtn->isVisible());
        QVERIFY(m_window->RepairBtn->isEnabled() && m_window->RemoveBtn->isEnabled());
        QTreeWidgetItem* row = files()->topLevelItem(0);
        const QString size = QString::number(QFileInfo(a).size());
        QCOMPARE((QStringList{row->text(W::FileName), row->text(W::FilePath), row->text(W::FileId),
                              row->text(W::FileParentId), row->text(W::FileBytes), row->text(W::FileTempPath)}),
                 (QStringList{"a.mp4", a, "2", "1", size, a}));
        QCOMPARE(row->checkState(W::FileName), Qt::Checked);

        m_modal.answers << QStringLiteral("OkBtn");
        add({a, copyOf(QStringLiteral("b.mp4"))});
        QCOMPARE(m_modal.texts, QList<QStringList>{{"Files already added to list will be skipped."}});
        QCOMPARE(files()->topLevelItemCount(), 2);
        QCOMPARE(files()->topLevelItem(1)->text(W::FileId), QStringLiteral("3"));   // ids go on

        add(copies({"d.Mov", "c.Mp4", "e.txt"}));
        QCOMPARE(m_modal.texts.size(), 1);
        QCOMPARE(files()->topLevelItemCount(), 3);
        QCOMPARE(files()->topLevelItem(2)->text(W::FileName), QStringLiteral("c.Mp4"));
    }

    // Ctrl+O opens the chooser, Delete removes the selected rows, Ctrl+A
    // ticks all, Enter starts the run; Escape answers a dialog as its No.
    void keys()
    {
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window));
        m_chooser->picks << copies({"1.mp4", "2.mp4", "3.mp4"});
        QTest::keyClick(m_window, Qt::Key_O, Qt::ControlModifier);
        QCOMPARE(files()->topLevelItemCount(), 3);
        files()->topLevelItem(0)->setSelected(true);
        files()->topLevelItem(2)->setSelected(true);
        QTest::keyClick(m_window, Qt::Key_Delete);
        QCOMPARE(files()->topLevelItemCount(), 1);
        QCOMPARE(files()->topLevelItem(0)->text(W::FileName), QStringLiteral("2.mp4"));
        setAllChecked(false);
        QTest::keyClick(m_window, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(files()->topLevelItem(0)->checkState(W::FileName), Qt::Checked);
        QVERIFY(m_window->RepairBtn->isEnabled());
        m_modal.answers << QStringLiteral("OkBtn");
        QTest::keyClick(m_window, Qt::Key_Return);
        QVERIFY(m_window->frame_2->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(fixture::RunEnded(m_window), 60000);

        // Escape on "go back?" is its Cancel, whatever the last answer was.
        g_confirmYes = true;
        QTimer::singleShot(300, [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
        m_window->BackBtn->click();
        QVERIFY(!g_confirmYes);
        QVERIFY(m_window->frame_2->isVisible());
    }

    // None, some and all rows checked; the box itself checks or clears every
    // row; the space key toggles nothing; Remove.
    void selectAllAndRemove()
    {
        add(copies({"1.mp4", "2.mp4", "3.mp4"}));
        QCheckBox* box = m_window->SelectAllBtn;
        QVERIFY(box->isVisible());
        QCOMPARE(box->checkState(), Qt::Checked);
        files()->topLevelItem(1)->setCheckState(W::FileName, Qt::Unchecked);
        m_window->OnItemClicked(files()->topLevelItem(1), 0);
        QCOMPARE(box->checkState(), Qt::PartiallyChecked);
        QVERIFY(m_window->RepairBtn->isEnabled());
        setAllChecked(false);
        QCOMPARE(box->checkState(), Qt::Unchecked);
        QVERIFY(!m_window->RepairBtn->isEnabled() && !m_window->RemoveBtn->isEnabled());

        for (const bool checked : {true, false}) {
            box->click();
            QVERIFY(!box->isTristate());
            for (int i = 0; i < 3; ++i)
                QCOMPARE(files()->topLevelItem(i)->checkState(W::FileName), checked ? Qt::Checked : Qt::Unchecked);
            QCOMPARE(m_window->RepairBtn->isEnabled(), checked);
            QCOMPARE(m_window->RemoveBtn->isEnabled(), checked);
        }
        files()->setCurrentItem(files()->topLevelItem(0));
        QTest::keyClick(files(), Qt::Key_Space);
        QCOMPARE(files()->topLevelItem(0)->checkState(W::FileName), Qt::Unchecked);

        // Remove takes the checked rows; with all gone the list stays, its
        // controls off; ids never restart.
        files()->topLevelItem(0)->setCheckState(W::FileName, Qt::Checked);
        files()->topLevelItem(1)->setCheckState(W::FileName, Qt::Checked);
        m_window->OnItemClicked(files()->topLevelItem(1), 0);
        m_window->RemoveBtn->click();
        QCOMPARE(files()->topLevelItemCount(), 1);
        QCOMPARE(files()->topLevelItem(0)->text(W::FileName), QStringLiteral("3.mp4"));
        QVERIFY(!m_window->RepairBtn->isEnabled());

        setAllChecked(true);
        m_window->RemoveBtn->click();
        QCOMPARE(files()->topLevelItemCount(), 0);
        QVERIFY(files()->isVisible() && g_onListPage);
        QVERIFY(!m_window->RemoveBtn->isEnabled() && !m_window->RepairBtn->isEnabled());
        QVERIFY(!m_window->SelectAllBtn->isEnabled() && !m_window->SelectAllBtn->isChecked());

        add({copyOf(QStringLiteral("4.mp4"))});
        QVERIFY(m_window->SelectAllBtn->isEnabled() && m_window->RepairBtn->isEnabled());
        QCOMPARE(files()->topLevelItem(0)->text(W::FileId), QStringLiteral("5"));
    }

    // A real run over checked rows (a file gone before it, a very long name, a
    // DAT file, 50 fps): every row in an end state, inputs untouched.
    void repairPressAndARealRun()
    {
        const QString a = copyOf(QStringLiteral("first.mp4"));
        const QString c = copyOf(QStringLiteral("third.avi"),
                                 make(QStringLiteral("ws_mpeg4.avi"),
                                      lavfiVideo(1) << QStringLiteral("-c:v") << QStringLiteral("mpeg4")));
        const QString gone = copyOf(QStringLiteral("gone.mp4"));
        const QString longName = copyOf(QString(200, QLatin1Char('x')) + QStringLiteral("_end.mp4"));
        const QString dat = copyOf(QStringLiteral("vcd.dat"), make(QStringLiteral("window_vcd.dat"),
                                                                   lavfiVideo(4) + lavfiAudio(4) + splitArgs("-target ntsc-vcd")));
        const QString fifty = copyOf(QStringLiteral("fifty.mov"), make(QStringLiteral("window_fifty.mov"),
            lavfiVideo(4, QStringLiteral("320x240"), 50) + lavfiAudio(4)
                + splitArgs("-r 50 -c:v libx264 -preset ultrafast -pix_fmt yuv420p -g 12 -c:a aac")));
        QVERIFY(!a.isEmpty() && !c.isEmpty() && !longName.isEmpty() && !dat.isEmpty() && !fifty.isEmpty());
        const QString hashA = sha256(a), hashC = sha256(c);
        add({a, copyOf(QStringLiteral("second.mp4")), c, gone, longName, dat, fifty});
        files()->topLevelItem(1)->setCheckState(W::FileName, Qt::Unchecked);
        QVERIFY(QFile::remove(gone));

        m_modal.answers << QStringLiteral("OkBtn") << QStringLiteral("OkBtn");
        m_window->RepairBtn->click();
        QVERIFY(g_resultsShown && g_onRepairPage && !g_onListPage);
        QVERIFY(m_window->frame_2->isVisible() && !m_window->AddFile_frame->isVisible());
        QCOMPARE(results()->topLevelItemCount(), 5);
        QCOMPARE(m_window->rowActions().at(1)->button->m_id, 2u);
        QCOMPARE(m_window->repairList(), (QStringList{a, c, longName, dat, fifty}));
        QCOMPARE(results()->topLevelItem(1)->text(W::ResRepairedPath), m_dir + QStringLiteral("/Repaired/third.avi"));
        QCOMPARE(results()->topLevelItem(1)->text(W::ResSource), c);

        QTRY_VERIFY_WITH_TIMEOUT(fixture::RunEnded(m_window), 120000);
        QCOMPARE(m_modal.texts, (QList<QStringList>{{"These files can no longer be found and are left out: gone.mp4"},
                                                    {"Repair process completed.\nCheck 'Status' column to view the "
                                                     "repair outcome."}}));
        QVERIFY(!m_window->stopBtn->isVisible() && !m_window->FileProgress->isVisible());
        QVERIFY(m_window->saveBtn->isVisible() && results()->isEnabled());
        QVERIFY(g_repairDone && !g_repairRunning);
        for (int i = 0; i < 5; ++i) {
            QTreeWidgetItem* row = results()->topLevelItem(i);
            const QString word = row->text(W::ResStatus);
            QVERIFY2(QStringList({"Completed", "Awaiting Action", "Failed"}).contains(word), qPrintable(word));
            QCOMPARE(row->text(W::ResQueue), QStringLiteral("5"));
            if (i == 0 || i >= 3) {   // the healthy mp4, the DAT file and the 50 fps mov
                QCOMPARE(word, QStringLiteral("Completed"));
                QVERIFY2(row->toolTip(W::ResStatus).contains(QStringLiteral(" frames · ")), qPrintable(row->toolTip(W::ResStatus)));
            }
        }
        QCOMPARE(results()->topLevelItem(3)->text(W::ResRepairedPath), m_dir + QStringLiteral("/Repaired/vcd.mov"));
        QCOMPARE(probeEntries(results()->topLevelItem(4)->text(W::ResRepairedPath), QStringLiteral("v"),
                              QStringLiteral("stream=avg_frame_rate")), QByteArray("50/1"));
        QCOMPARE(m_window->PercentLabl->text(), QStringLiteral("100%"));
        QCOMPARE(sha256(a), hashA);
        QCOMPARE(sha256(c), hashC);
    }

    void stop_data()
    {
        QTest::addColumn<bool>("yes");
        QTest::newRow("answered No") << false;
        QTest::newRow("answered Yes") << true;
    }
    // Stop while the thread is held inside a file: No lets the run end by
    // itself, Yes ends it in ProcessAborted with the row "Aborted".
    void stop()
    {
        QFETCH(bool, yes);
        const QString pipe = m_dir + QStringLiteral("/held.mov");
        QVERIFY(fixture::MakePipe(pipe));
        add({pipe});
        bool aborted = false, finished = false;
        QObject context;
        connect(&m_window->repairThread(), &ThreadVideoRepair::ProcessAborted, &context, [&] { aborted = true; });
        connect(&m_window->repairThread(), &ThreadVideoRepair::RepairFinish, &context, [&] { finished = true; });
        m_window->RepairBtn->click();
        QTRY_VERIFY_WITH_TIMEOUT(fixture::ThreadBlockedInOpen(), 10000);
        m_modal.answers << (yes ? QStringLiteral("OkBtn_2") : QStringLiteral("OkBtn"));
        m_window->OnStop();
        QCOMPARE(bool(g_stopRequested), yes);
        QVERIFY(m_window->repairThread().isRunning());
        if (!yes)
            m_modal.answers << QStringLiteral("OkBtn");   // the end-of-run message
        QVERIFY(fixture::ReleasePipe(pipe));
        QTRY_VERIFY_WITH_TIMEOUT(aborted || finished, 20000);
        QTRY_VERIFY_WITH_TIMEOUT(!m_window->repairThread().isRunning() && m_window->BackBtn->isEnabled(), 20000);
        QCOMPARE(aborted, yes);
        QCOMPARE(finished, !yes);
        QTreeWidgetItem* row = results()->topLevelItem(0);
        if (yes) {
            QCOMPARE(row->text(W::ResStatus), QStringLiteral("Aborted"));
            QCOMPARE(row->text(W::ResQueue), QStringLiteral("-1"));
            QCOMPARE(row->checkState(W::ResName), Qt::Unchecked);
            QVERIFY(m_window->saveBtn->isVisible() && !m_window->saveBtn->isEnabled());
        } else {
            QVERIFY(!QStringList({"Queued", "Aborted"}).contains(row->text(W::ResStatus)));
        }
    }

    void stopDuringAMuxerStepSaysSo()
    {
        g_muxerBusy = true;
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->OnStop();
        g_muxerBusy = false;
        QCOMPARE(m_modal.texts.last(), (QStringList{"This process will stop after processing the current file.",
                                                    "Do you want to stop the process?"}));
        QVERIFY(!g_stopRequested);
    }

    // Back asks about Advance Repair when a row awaits it (Cancel returns to
    // the list as it was), else about clearing the results.
    void backAsksTheRightQuestion()
    {
        add(copies({"lost.mov", "other.mov"}));
        files()->topLevelItem(1)->setCheckState(W::FileName, Qt::Unchecked);
        repairAndWait();
        results()->topLevelItem(0)->setText(W::ResVerdict, QStringLiteral("0"));   // the row awaits Advance Repair
        for (const char* answer : {"YesBtn", "closeBtn"}) {
            m_modal.answers << QLatin1String(answer);
            m_window->BackBtn->click();
            QCOMPARE(m_modal.texts.last(), QStringList{"Do you want to run advance repair on the severely corrupted "
                                                       "video before leaving this page?"});
            QVERIFY(m_window->frame_2->isVisible());
            QCOMPARE(results()->topLevelItemCount(), 1);
        }
        m_modal.answers << QStringLiteral("CancelBtn");
        m_window->BackBtn->click();
        QVERIFY(m_window->AddFile_frame->isVisible() && !m_window->frame_2->isVisible());
        QVERIFY(g_onListPage && !g_onRepairPage && !g_resultsShown);
        QCOMPARE(results()->topLevelItemCount(), 0);
        QCOMPARE(files()->topLevelItem(1)->checkState(W::FileName), Qt::Unchecked);

        repairAndWait();
        results()->topLevelItem(0)->setText(W::ResVerdict, QStringLiteral("1"));   // nothing awaits
        m_modal.answers << QStringLiteral("CancelBtn");
        m_window->BackBtn->click();
        QCOMPARE(m_modal.texts.last(),
                 QStringList{"This action will clear repair results.\nDo you want to go back to previous screen?"});
        QVERIFY(m_window->frame_2->isVisible());
        m_modal.answers << QStringLiteral("YesBtn");
        m_window->BackBtn->click();
        QVERIFY(m_window->AddFile_frame->isVisible());
        QVERIFY(g_onRepairPage && g_onListPage);
    }

    // Only the title strip drags the window (not its buttons' area).
    void dragStartsOnlyInTheTitleStrip()
    {
        const QPoint start = m_window->pos();
        auto drag = [this](QPoint at) {
            const QPoint global = m_window->mapToGlobal(at), by(30, 20);
            QMouseEvent press(QEvent::MouseButtonPress, at, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            QMouseEvent move(QEvent::MouseMove, at + by, global + by, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
            QMouseEvent release(QEvent::MouseButtonRelease, at + by, global + by, Qt::LeftButton, Qt::NoButton,
                                Qt::NoModifier);
            for (QMouseEvent* e : {&press, &move, &release})
                QApplication::sendEvent(m_window, e);
        };
        drag(QPoint(603, 10));
        QCOMPARE(m_window->pos(), start);
        drag(QPoint(100, 10));
        QCOMPARE(m_window->pos(), start + QPoint(30, 20));
    }
};

WINDOW_TEST_MAIN(TestMainWindow)
#include "test_main_window.moc"
