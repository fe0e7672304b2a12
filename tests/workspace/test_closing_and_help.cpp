// Exit questions and what survives an exit, help addresses, About and More
// Tools. Addresses and program starts go to recording hooks, never out.
#include "window_fixture.h"

#include "shell/platform_gui.h"
#include "shell/startup.h"
#include "workspace/about_dlg.h"
#include "workspace/advanced_repair_dlg.h"
#include "workspace/close_application_dlg.h"
#include "workspace/custom_button.h"
#include "workspace/help_links.h"
#include "workspace/more_tools.h"
#include "workspace/my_tree_widget.h"
#include "workspace/repair_finish_dlg.h"
#include "workspace/workspace_globals.h"

#include <QAction>
#include <QMenu>
#include <QProcess>
#include <QSettings>

using namespace testvideo;

namespace {

QStringList g_openedUrls;
QStringList g_startedPrograms;   // program + " | " + folder

bool RecordUrl(const QUrl& url)
{
    g_openedUrls << url.toString();
    return true;
}
bool RecordStart(const QString& program, const QStringList&, const QString& folder)
{
    g_startedPrograms << program + QStringLiteral(" | ") + folder;
    return true;
}

// True when QCoreApplication::quit() was called; clears that request, which
// would otherwise end every later event loop at once.
bool TakeQuit()
{
    QEventLoop probe;
    QTimer::singleShot(0, &probe, [&probe] { probe.exit(1); });
    const bool quit = probe.exec() == -1;
    if (quit) {
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
    }
    return quit;
}

const QString kRunning = QStringLiteral("Application Running! \nPlease halt the current process to Exit.");
const QString kPlain = QStringLiteral("Are you sure you want to exit?");
const QString kAdvance =
    QStringLiteral("Do you want to run advance repair on the severely corrupted files before exiting?");

} // namespace

class TestClosingAndHelp : public QObject {
    Q_OBJECT

    QString m_dir, m_config;
    fixture::ModalAnswerer m_modal;
    fixture::ScriptedFileDialogs* m_chooser = nullptr;
    VideoRepairWindow* m_window = nullptr;

    MyTreeWidget* results() const { return m_window->resultList(); }
    // A result in source/Repaired, listed as the engine lists its outputs.
    QString repaired(const QString& source, const QString& name)
    {
        QDir().mkpath(source + QStringLiteral("/Repaired"));
        writeAll(source + QStringLiteral("/Repaired/") + name, "frames");
        writeAll(source + QStringLiteral("/Repaired/logFile.txt"), "scratch");
        g_repairedPaths << source + QStringLiteral("/Repaired/") + name;
        return g_repairedPaths.last();
    }
    // Page 2 with one more row of the given verdict ("1" completed, "0" awaiting).
    void showResult(const QString& path, const QString& verdict)
    {
        g_resultsShown = true;
        m_window->AddFile_frame->hide();
        m_window->frame_2->show();
        results()->show();
        auto* item = new QTreeWidgetItem(results());
        item->setText(W::ResName, QFileInfo(path).fileName());
        item->setCheckState(W::ResName, Qt::Checked);
        item->setText(W::ResRepairedPath, path);
        item->setText(W::ResVerdict, verdict);
        item->setText(W::ResStatus, verdict == QLatin1String("1") ? QStringLiteral("Completed") : QStringLiteral("Awaiting Action"));
        results()->setItemWidget(item, W::ResAction, new CustomButton(results()));
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_config = fixture::UseFreshSettings(QStringLiteral("ch-config"));
        g_openUrl = RecordUrl;
        g_startDetached = RecordStart;
    }
    void cleanupTestCase() { QDir(m_config).removeRecursively(); }
    void init()
    {
        m_dir = freshDir(QStringLiteral("ch"));
        g_programDir = m_dir;
        g_repairRunning = g_keepRepaired = g_resultsShown = false;
        g_onHomePage = true;
        g_onListPage = g_onRepairPage = g_advancePending = g_onSavePage = false;
        g_languageType = 0;
        g_repairedPaths.clear();
        g_keptResults.clear();
        g_closeAnswer.clear();
        m_modal.clear();
        g_openedUrls.clear();
        g_startedPrograms.clear();
        QFile::remove(g_settingsPath);
        m_window = fixture::ShownWindow(&m_chooser);
    }
    void cleanup()
    {
        QVERIFY2(m_modal.answers.isEmpty(), qPrintable(m_modal.answers.join(QLatin1Char(','))));
        delete m_window;
        delete g_previewProcess;
        g_previewProcess = nullptr;
        g_repairRunning = false;
        QDir(m_dir).removeRecursively();
    }

    void close_data()
    {
        QTest::addColumn<QString>("state");   // "run", "page1", "saved", "awaiting"
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("question");
        QTest::addColumn<bool>("closes");
        QTest::addColumn<bool>("keeps");      // the Repaired folders survive
        QTest::newRow("during a run: only says so") << "run" << "OkBtn" << kRunning << false << true;
        QTest::newRow("page 1, Yes: removes Repaired") << "page1" << "YesBtn" << kPlain << true << false;
        QTest::newRow("title control means No") << "page1" << "closeBtn" << kPlain << false << true;
        QTest::newRow("saved at the source, Yes: keeps") << "saved" << "YesBtn" << kPlain << true << true;
        QTest::newRow("saved, then custom chosen: keeps") << "saved-custom" << "YesBtn" << kPlain << true << true;
        QTest::newRow("awaiting rows, Yes: stays") << "awaiting" << "YesBtn" << kAdvance << false << true;
        QTest::newRow("awaiting rows, No: removes") << "awaiting" << "NoBtn" << kAdvance << true << false;
    }
    // Every close: the one question of its state, and then what survives.
    // Only Repaired folders go (and their line in .hidden), with the player.
    void close()
    {
        QFETCH(QString, state);
        QFETCH(QString, answer);
        QFETCH(QString, question);
        QFETCH(bool, closes);
        QFETCH(bool, keeps);
        const QString first = repaired(m_dir, QStringLiteral("a.mov"));
        const QString second = repaired(m_dir + QStringLiteral("/other"), QStringLiteral("b.avi"));
        QVERIFY(SetHiddenInFolder(m_dir, QStringLiteral("Repaired"), true));
        g_repairedPaths << m_dir + QStringLiteral("/notes.txt");   // not in a Repaired folder
        writeAll(m_dir + QStringLiteral("/notes.txt"), "mine");
        g_previewProcess = new QProcess;
        g_previewProcess->start(QStringLiteral("sleep"), {QStringLiteral("30")});
        QVERIFY(g_previewProcess->waitForStarted());
        if (state != QLatin1String("page1") && state != QLatin1String("run"))
            showResult(first, QStringLiteral("1"));
        if (state == QLatin1String("awaiting"))
            showResult(m_dir + QStringLiteral("/Repaired/b.mov"), QStringLiteral("0"));
        if (state.startsWith(QLatin1String("saved"))) {
            m_modal.answers << QStringLiteral("Save") << QStringLiteral("OkBtn");
            m_window->saveBtn->setEnabled(true);
            m_window->saveBtn->click();
            QTRY_VERIFY(m_modal.answers.isEmpty());
            QVERIFY(g_keepRepaired);
            m_modal.clear();
        }
        if (state == QLatin1String("saved-custom")) {
            // A later visit of the dialog: the other location chosen, then Cancel.
            m_modal.answers << QStringLiteral("customLoc") << QStringLiteral("cancle");
            m_window->OnClickedSaveButton();
            QTRY_VERIFY(m_modal.answers.isEmpty());
            m_modal.clear();
        }
        g_repairRunning = state == QLatin1String("run");
        g_closeAnswer = QStringLiteral("YesBtn");   // the last answer never counts

        m_modal.answers << answer;
        QCOMPARE(m_window->close(), closes);
        QVERIFY(m_modal.answers.isEmpty());
        QCOMPARE(m_modal.texts, QList<QStringList>{{question}});
        QCOMPARE(QFile::exists(first), keeps);
        // Only a result that was saved stays; one never saved goes at exit.
        QCOMPARE(QDir(m_dir + QStringLiteral("/other/Repaired")).exists(), keeps && !(closes && state.startsWith("saved")));
        QVERIFY(QFile::exists(m_dir + QStringLiteral("/notes.txt")));
        QCOMPARE(m_window->isVisible(), !closes);
        QCOMPARE(!m_window->closeDlg(), closes);
        if (answer == QLatin1String("closeBtn"))
            QCOMPARE(g_closeAnswer, QStringLiteral("NoBtn"));
        if (state == QLatin1String("awaiting") && !closes) {
            QVERIFY(m_window->frame_2->isVisible() && m_window->AddFile_frame->isHidden());
            QCOMPARE(results()->topLevelItemCount(), 2);
        }
        if (!keeps)
            QVERIFY(!QFile::exists(m_dir + QStringLiteral("/.hidden")));
        if (closes) {
            QTRY_COMPARE(g_previewProcess->state(), QProcess::NotRunning);
            QVERIFY(!g_referenceDlg);
            m_window->show();   // a further close request has nothing left to ask
            QVERIFY(m_window->close());
        }
    }

    void helpTopic_data()
    {
        // home, list, repair, advance pending, save asked, results shown (the
        // empty page 1 and save asked: through the help buttons below)
        QTest::addColumn<QList<bool>>("flags");
        QTest::addColumn<QString>("topic");
        QTest::newRow("files listed") << QList<bool>{0, 1, 0, 0, 0, 0} << "adding-files-for-repair";
        QTest::newRow("run") << QList<bool>{0, 0, 1, 0, 0, 1} << "repairing-corrupt-files";
        QTest::newRow("awaiting rows") << QList<bool>{0, 0, 1, 1, 0, 1} << "performing-advanced-repair";
        QTest::newRow("save with awaiting rows") << QList<bool>{0, 0, 1, 1, 1, 0} << "previewing-and-saving-files";
        QTest::newRow("results, save cancelled") << QList<bool>{0, 0, 0, 0, 0, 1} << "previewing-and-saving-files";
    }
    void helpTopic()
    {
        QFETCH(QList<bool>, flags);
        g_onHomePage = flags[0];
        g_onListPage = flags[1];
        g_onRepairPage = flags[2];
        g_advancePending = flags[3];
        g_onSavePage = flags[4];
        g_resultsShown = flags[5];
        QTEST(HelpTopic(), "topic");
    }

    // The language element by LanguageType (outside 0 to 10: English); the
    // buttons open the topic of the page that is up; "What is a reference
    // file?" (page 2 and the end-of-run message) the help's section on samples.
    void helpLanguagesAndButtons()
    {
        QCOMPARE(HelpLanguage(5) + HelpLanguage(10) + HelpLanguage(11) + HelpLanguage(-1), QStringLiteral("jphienen"));

        m_window->HelpBtn_1->click();
        g_languageType = 5;
        m_modal.answers << QStringLiteral("Save") << QStringLiteral("OkBtn");
        m_window->OnClickedSaveButton();
        m_window->HelpBtn_2->click();
        g_languageType = 0;
        m_window->referenceLinkBtn->click();
        repairFinishDialog finish(m_window);
        finish.findChild<QPushButton*>(QStringLiteral("referenceBtn"))->click();
        const QString samples = "https://www.corvanelabs.com/help/reelwright/en/performing-advanced-repair#reference-file";
        QCOMPARE(g_openedUrls,
                 (QStringList{"https://www.corvanelabs.com/help/reelwright/en/about-reelwright",
                              "https://www.corvanelabs.com/help/reelwright/jp/previewing-and-saving-files", samples, samples}));
    }

    // About opens; links take the store's key of the language, a built-in
    // address without one, nothing when it is empty; the installed licence.
    void aboutAndLinks()
    {
        AboutDlg* about = m_window->aboutDlg();
        m_modal.answers << QStringLiteral("OkBtn");
        m_window->AbutBtn_1->click();
        QVERIFY(m_modal.texts.value(0).contains(QStringLiteral("Reelwright")));

        g_languageType = 1;
        about->OpenSupport();
        about->OpenLicense();   // no agreement file: nothing opens
        {
            QSettings store(g_settingsPath, QSettings::IniFormat);
            store.setValue(QStringLiteral("DE/SupportLink"), QStringLiteral("https://example.org/de/hilfe"));
            store.setValue(QStringLiteral("EN/SupportLink"), QStringLiteral("https://example.org/en/help"));
            store.setValue(QStringLiteral("DE/Learn_more"), QString());
        }
        about->OpenSupport();
        AdvancedRepairDlg advanced(m_window, QString());
        advanced.onlearnmorelinkclicked();   // empty key: nothing
        g_languageType = 0;
        advanced.onlearnmorelinkclicked();

        // The installed licence, found from the program's folder.
        const QString installed = m_dir + QStringLiteral("/share/reelwright/LICENSE");
        QDir().mkpath(QFileInfo(installed).path());
        writeAll(installed, "GNU GENERAL PUBLIC LICENSE");
        g_programDir = m_dir + QStringLiteral("/bin");
        QDir().mkpath(g_programDir);
        about->OpenLicense();
        g_programDir = m_dir;
        QCOMPARE(g_openedUrls,
                 (QStringList{"https://www.corvanelabs.com/support/", "https://example.org/de/hilfe",
                              "https://www.corvanelabs.com/help/reelwright/en/performing-advanced-repair",
                              QUrl::fromLocalFile(installed).toString()}));
    }

    // Only installed siblings are offered. An entry asks the exit question: No
    // stays, a failed start is reported, Yes starts it and ends this program.
    void moreToolsOfferInstalledSiblings()
    {
        const QString folderBefore = QDir::currentPath();
        m_window->OfferInstalledTools();
        QVERIFY(m_window->moreToolsButton()->isHidden());
        for (const QString& name : {g_dataRecoveryApp, g_photoRecoveryApp, g_driveMonitorApp}) {
            writeAll(m_dir + QLatin1Char('/') + name, "#!/bin/sh\n");
            QFile::setPermissions(m_dir + QLatin1Char('/') + name, QFile::ReadOwner | QFile::ExeOwner);
        }
        m_window->OfferInstalledTools();
        QVERIFY(!m_window->moreToolsButton()->isHidden());
        QMenu* menu = m_window->moreToolsButton()->menu();
        QStringList entries;
        for (QAction* a : menu->actions())
            if (a->isVisible())
                entries << (a->isSeparator() ? QStringLiteral("-") : a->text());
        QCOMPARE(entries, QStringLiteral("Recover Data|-|Recover Photo|-|Monitor Drive").split('|'));
        const QString result = repaired(m_dir, QStringLiteral("a.mov"));

        m_modal.answers << QStringLiteral("NoBtn");
        menu->actions().at(0)->trigger();
        QVERIFY(!TakeQuit());
        QVERIFY(g_startedPrograms.isEmpty());

        g_startDetached = [](const QString&, const QStringList&, const QString&) { return false; };
        m_modal.answers << QStringLiteral("YesBtn") << QStringLiteral("OkBtn");
        menu->actions().at(4)->trigger();
        g_startDetached = RecordStart;
        QVERIFY(!TakeQuit());
        QCOMPARE(m_modal.texts.last(), QStringList{"photo-recovery could not be started."});
        QVERIFY(QFile::exists(result) && m_window->closeDlg());

        m_modal.answers << QStringLiteral("YesBtn");
        menu->actions().at(6)->trigger();
        QVERIFY(TakeQuit());
        QCOMPARE(g_startedPrograms, QStringList{m_dir + QLatin1Char('/') + g_driveMonitorApp + QStringLiteral(" | ") + m_dir});
        QCOMPARE(QDir::currentPath(), QDir(m_dir).absolutePath());
        QVERIFY(!QFile::exists(result));
        QDir::setCurrent(folderBefore);
    }
};

WINDOW_TEST_MAIN(TestClosingAndHelp)
#include "test_closing_and_help.moc"
