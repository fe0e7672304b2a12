// Update check and download against a real HTTP server on 127.0.0.1 that the
// test starts (python3's http.server), plus the version compare on its own.
#include "workspace/window_fixture.h"

#include "update/check_update.h"
#include "update/download_app.h"
#include "update/update_fetch.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QTcpServer>

using testvideo::freshDir;
using testvideo::writeAll;

namespace {

// Serves one folder on 127.0.0.1 at a port of the system's choice, printed on
// the first line. With the file .curl-only in the folder, only requests by
// curl are served: the toolkit's fetch then fails and the second way must
// carry the check. The server ends itself after two minutes at the latest.
const char kServerScript[] = R"PY(
import functools, http.server, os, sys, threading
root = sys.argv[1]
class Handler(http.server.SimpleHTTPRequestHandler):
    def do_GET(self):
        agent = self.headers.get('User-Agent', '')
        if os.path.exists(os.path.join(root, '.curl-only')) and not agent.startswith('curl/'):
            self.send_error(503)
            return
        super().do_GET()
    def log_message(self, *args):
        pass
server = http.server.ThreadingHTTPServer(('127.0.0.1', 0), functools.partial(Handler, directory=root))
threading.Timer(120, lambda: os._exit(0)).start()
print(server.server_address[1], flush=True)
server.serve_forever()
)PY";

int g_quitCalls = 0;
void RecordQuit() { ++g_quitCalls; }
bool NetworkUp() { return true; }
bool NetworkDown() { return false; }

const QString kNoUpdate = QStringLiteral("No update available.");
const QString kPartial = QStringLiteral("Update failed \n\n Update failed due to partial download.");

QString Offer(const QString& kind, const QString& version)
{
    return QStringLiteral("A new %1 %2 is available. Click Update to proceed further.\n").arg(kind, version);
}

} // namespace

class TestUpdate : public QObject {
    Q_OBJECT

    QString m_root, m_www, m_marker, m_link;
    QProcess m_server;
    QWidget* m_parent = nullptr;
    fixture::ModalAnswerer m_modal;

    void setStore(const QString& link, const QString& version, const QVariant& averageSize = QVariant())
    {
        QFile::remove(g_settingsPath);
        QSettings settings(g_settingsPath, QSettings::IniFormat);
        if (!link.isNull())
            settings.setValue(QStringLiteral("EN/UpdateNewLink"), link);
        if (!version.isNull())
            settings.setValue(QStringLiteral("Version"), version);
        if (averageSize.isValid())
            settings.setValue(QStringLiteral("AverageUpdateSize"), averageSize);
    }
    void serve(const QString& name, const QByteArray& bytes) { QVERIFY(writeAll(m_www + '/' + name, bytes)); }
    // An installer of `size` bytes that leaves the marker file when started.
    void serveInstaller(int size)
    {
        QByteArray script = "#!/bin/sh\necho started > '" + m_marker.toUtf8() + "'\n";
        script += '#' + QByteArray(qMax(0, size - script.size() - 2), 'x') + '\n';
        serve(QStringLiteral("Reelwright.run"), script);
    }
    void runCheck(bool byUser, const QStringList& answers)
    {
        g_updateByUser = byUser;
        m_modal.answers = answers;
        QCheckUpdate check(m_parent);
        QVERIFY2(m_modal.answers.isEmpty(), qPrintable(m_modal.answers.join(QLatin1Char(','))));
    }
    void waitForDownload()
    {
        QTRY_VERIFY_WITH_TIMEOUT(m_parent->findChildren<QDownloadApp*>().isEmpty(), 20000);
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_root = freshDir(QStringLiteral("update"));
        m_www = m_root + QStringLiteral("/www");
        m_marker = m_root + QStringLiteral("/installer-ran");
        QDir().mkpath(m_root + QStringLiteral("/tmp"));
        QDir().mkpath(m_root + QStringLiteral("/config"));
        qputenv("TMPDIR", (m_root + QStringLiteral("/tmp")).toUtf8());
        qputenv("XDG_CONFIG_HOME", (m_root + QStringLiteral("/config")).toUtf8());
        g_settingsPath = m_root + QStringLiteral("/config/Reelwright.ini");
        g_dpiScale = g_uiScale = 1.0f;
        g_quitForInstaller = &RecordQuit;
        g_updateTimeouts.descriptorIdleMs = g_updateTimeouts.installerIdleMs = 1500;
        g_updateTimeouts.descriptorTotalMs = g_updateTimeouts.installerTotalMs = 2500;

        QVERIFY(writeAll(m_root + QStringLiteral("/server.py"), kServerScript));
        m_server.start(QStringLiteral("python3"), {m_root + QStringLiteral("/server.py"), m_www});
        QVERIFY(m_server.waitForStarted(10000) && m_server.waitForReadyRead(10000));
        const int port = m_server.readLine().trimmed().toInt();
        QVERIFY(port > 0);
        m_link = QStringLiteral("http://127.0.0.1:%1/").arg(port);
    }
    void cleanupTestCase()
    {
        m_server.kill();
        m_server.waitForFinished(5000);
        QDir(m_root).removeRecursively();
    }
    void init()
    {
        m_modal.clear();
        g_quitCalls = 0;
        g_networkAvailable = &NetworkUp;
        QDir(m_www).removeRecursively();
        QDir().mkpath(m_www);
        QDir(UpdateFolder()).removeRecursively();
        QDir(UpdateFallbackFolder()).removeRecursively();
        QFile::remove(m_marker);
        m_parent = new QWidget;
        m_parent->resize(600, 400);
        m_parent->show();
    }
    void cleanup() { delete m_parent; }

    // Each component on its own, at fixed places behind a first component of
    // one or two digits.
    void compare_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("installed");
        QTest::addColumn<bool>("major");
        QTest::addColumn<bool>("minor");
        QTest::newRow("C above, B below") << "6.0.5.0" << "6.1.0.0" << false << true;
        QTest::newRow("two-digit A installed") << "9.9.9.9" << "10.1.0.0" << false << true;
        QTest::newRow("two-digit A both") << "11.0.0.0" << "10.1.0.0" << true << false;
        QTest::newRow("A above only") << "7.0.0.0" << "6.9.9.9" << true << false;
        QTest::newRow("surrounding blanks") << "  6.1.0.1 \r\n" << "6.1.0.0" << false << true;
        QTest::newRow("garbage") << "zz.y.x.w" << "6.1.0.0" << false << false;
        QTest::newRow("garbage installed") << "0.0.0.1" << "abcdefgh" << false << true;
    }
    void compare()
    {
        QFETCH(QString, line);
        QFETCH(QString, installed);
        const VersionRaise r = CompareVersion(line, installed);
        QTEST(r.major, "major");
        QTEST(r.minor, "minor");
    }

    // After the button: the offer, which names the newer version (the compare
    // itself is the table above); once that nothing is newer; or that the
    // check failed, and why.
    void check_data()
    {
        QTest::addColumn<QString>("link");
        QTest::addColumn<QByteArray>("descriptor");   // null: none on the server
        QTest::addColumn<QString>("installed");
        QTest::addColumn<QString>("message");
        const QString link = m_link, minor = "minor update", major = "major release";
        const QString failed = "The update check failed: ", noVersion = failed + "the server's answer holds no version";
        QTest::newRow("major on line 2") << link << QByteArray("6.1.0.0\n7.0.0.0\n") << "6.1.0.0" << Offer(major, "7.0.0.0");
        QTest::newRow("minor wins over major") << link << QByteArray("6.1.0.2\r\n7.0.0.0\r\nextra\n") << "6.1.0.0"
                                               << Offer(minor, "6.1.0.2");
        QTest::newRow("nine characters cut to eight") << link << QByteArray("6.1.0.1999\n") << "6.1.0.0"
                                                      << Offer(minor, "6.1.0.19");
        QTest::newRow("major on line 1 alone") << link << QByteArray("7.1.0.0\n") << "6.1.0.0" << Offer(major, "7.1.0.0");
        QTest::newRow("equal versions") << link << QByteArray("6.1.0.0\n6.1.0.0\n") << "6.1.0.0" << kNoUpdate;
        QTest::newRow("empty link") << "" << QByteArray("7.0.0.0\n") << "6.1.0.0" << failed + "no update address is set";
        QTest::newRow("link without a scheme") << "update folder/" << QByteArray("7.0.0.0\n") << "6.1.0.0"
                                               << failed + "the update address is not valid";
        QTest::newRow("empty descriptor") << link << QByteArray("") << "6.1.0.0" << noVersion;
        static const char garbage[] = "\xff\xfe<html>\0\x01\n%%%%.%.%.%\nmore\n";
        QTest::newRow("garbage lines") << link << QByteArray(garbage, sizeof garbage - 1) << "6.1.0.0" << noVersion;
        QTest::newRow("no installed version") << link << QByteArray("7.0.0.0\n7.0.0.0\n") << ""
                                              << failed + "this copy does not know its own version";
        QTest::newRow("no descriptor on the server") << link << QByteArray() << "6.1.0.0" << failed + "*";
    }
    void check()
    {
        QFETCH(QString, link);
        QFETCH(QByteArray, descriptor);
        QFETCH(QString, installed);
        QFETCH(QString, message);
        if (!descriptor.isNull())
            serve(QStringLiteral("Reelwright.txt"), descriptor);
        setStore(link, installed.isEmpty() ? QString() : installed);
        const bool offered = message.startsWith("A new");
        runCheck(true, {offered ? "CancelBtn" : "OkBtn"});
        QCOMPARE(m_modal.texts.size(), 1);
        const QString said = m_modal.texts.first().join(QString());
        if (message.endsWith(QLatin1Char('*')))   // the server's own words follow
            QVERIFY2(said.startsWith(message.chopped(1)) && said.size() > message.size(), qPrintable(said));
        else
            QCOMPARE(said, message);
        QVERIFY(!g_updateByUser && m_parent->findChildren<QDownloadApp*>().isEmpty());
        QVERIFY(offered || (!g_newMajor && !g_newMinor));
    }

    // Without the button the check is silent; without a network it fetches
    // nothing, and after the button says why.
    void silence()
    {
        serve(QStringLiteral("Reelwright.txt"), "6.1.0.0\n6.1.0.0\n");
        setStore(m_link, QStringLiteral("6.1.0.0"));
        runCheck(false, {});
        QVERIFY(m_modal.texts.isEmpty());

        serve(QStringLiteral("Reelwright.txt"), "7.0.0.0\n7.0.0.0\n");
        g_networkAvailable = &NetworkDown;
        QFile::remove(g_descriptorPath);
        runCheck(true, {QStringLiteral("OkBtn")});
        QCOMPARE(m_modal.texts, QList<QStringList>{{"The update check failed: there is no network connection"}});
        QVERIFY(!QFile::exists(g_descriptorPath));
        QVERIFY(!QFile::exists(UpdateFallbackFolder() + QStringLiteral("/Reelwright.txt")));
    }

    // The toolkit's fetch is refused: curl brings the descriptor and then the
    // installer into the fallback folder, and that file is started.
    void secondWay()
    {
        serve("Reelwright.txt", "6.1.0.1\n");
        serve(".curl-only", "");
        serveInstaller(6000);
        setStore(m_link, "6.1.0.0", 6000);
        runCheck(true, {"UpdateBtn"});
        QCOMPARE(m_modal.texts, QList<QStringList>{{Offer("minor update", "6.1.0.1")}});
        QVERIFY(!QFile::exists(g_descriptorPath));
        QVERIFY(QFile::exists(UpdateFallbackFolder() + "/Reelwright.txt"));
        waitForDownload();
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_marker), 10000);
        QCOMPARE(g_quitCalls, 1);
        QCOMPARE(m_modal.texts.size(), 1);
        QCOMPARE(QFileInfo(UpdateFallbackFolder() + "/Reelwright.run").size(), qint64(6000));
    }

    // A server that never answers: both ways give up in time, the window stays
    // responsive, and the message comes.
    void silentServer()
    {
        QTcpServer mute;
        QVERIFY(mute.listen(QHostAddress::LocalHost));
        setStore(QStringLiteral("http://127.0.0.1:%1/").arg(mute.serverPort()), QStringLiteral("6.1.0.0"));
        int ticks = 0;
        QTimer ticker;
        connect(&ticker, &QTimer::timeout, this, [&ticks] { ++ticks; });
        ticker.start(100);
        QElapsedTimer clock;
        clock.start();
        runCheck(true, {QStringLiteral("OkBtn")});
        QVERIFY2(ticks * 100 > clock.elapsed() / 2, qPrintable(QString::number(ticks)));
        QVERIFY2(clock.elapsed() < 15000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(m_modal.texts, QList<QStringList>{{"The update check failed: the server gave no answer"}});
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }

    // An installer under AverageUpdateSize (0 or none: 10 MiB) is taken as
    // cut off, and so is none at all: the message, nothing started, no quit.
    void downloadFails_data()
    {
        QTest::addColumn<int>("installer");   // 0: none on the server
        QTest::addColumn<QVariant>("averageSize");
        QTest::addColumn<quint64>("expected");
        QTest::newRow("below the setting") << 4000 << QVariant(5000) << quint64(5000);
        QTest::newRow("no setting") << 4000 << QVariant() << quint64(10485760);
        QTest::newRow("nothing to fetch") << 0 << QVariant(10) << quint64(10);
    }
    void downloadFails()
    {
        QFETCH(int, installer);
        QFETCH(QVariant, averageSize);
        if (installer)
            serveInstaller(installer);
        setStore(m_link, QStringLiteral("6.1.0.0"), averageSize);
        m_modal.answers = QStringList{QStringLiteral("*")};
        auto* download = new QDownloadApp(m_parent);
        QTEST(download->expectedSize(), "expected");
        download->show();
        waitForDownload();
        QCOMPARE(m_modal.texts, QList<QStringList>{{kPartial}});
        QCOMPARE(g_quitCalls, 0);
        QVERIFY(!QFile::exists(m_marker));
        QVERIFY(!QFile::exists(UpdateFolder() + QStringLiteral("/Reelwright.run")));
    }

    // The whole road from the window's Update button: offer, Update, the
    // download, the installer started and the quit.
    void updateFromWindow()
    {
        serveInstaller(300000);
        serve(QStringLiteral("Reelwright.txt"), "6.2.0.0\n6.2.0.0\n");
        setStore(m_link, QStringLiteral("6.1.0.0"), 300000);
        delete m_parent;
        auto* window = new VideoRepairWindow;
        m_parent = window;
        window->show();
        m_modal.answers = QStringList{QStringLiteral("UpdateBtn")};
        window->UpdateBtn_1->setEnabled(true);
        window->UpdateBtn_1->click();
        QCOMPARE(m_modal.texts, QList<QStringList>{{Offer(QStringLiteral("minor update"), "6.2.0.0")}});
        waitForDownload();
        QTRY_COMPARE_WITH_TIMEOUT(g_quitCalls, 1, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_marker), 10000);
        QCOMPARE(QFileInfo(UpdateFolder() + QStringLiteral("/Reelwright.run")).size(), qint64(300000));
        QCOMPARE(m_modal.texts.size(), 1);
    }

    // The poll of the folder drives the bar and the label while a download
    // that is only half there runs.
    void progressPoll()
    {
        setStore(QString(), QStringLiteral("6.1.0.0"), 2 * 1048576);
        QDir().mkpath(UpdateFolder() + QStringLiteral("/sub"));
        auto* download = new QDownloadApp(m_parent);
        m_modal.answers = QStringList{QStringLiteral("*")};
        QVERIFY(writeAll(UpdateFolder() + QStringLiteral("/sub/part"), QByteArray(1048576, 'a')));
        download->OnDownloadStart();
        download->OnTimerLoadSlot();
        auto* bar = download->findChild<QProgressBar*>(QStringLiteral("progressBar"));
        QVERIFY(bar);
        QCOMPARE(bar->maximum(), 2 * 1048576);
        QCOMPARE(bar->value(), 1048576);
        auto* time = download->findChild<QLabel*>(QStringLiteral("timeLabel"));
        QVERIFY(time->text().startsWith(QStringLiteral("Time Elapsed: 0 sec (1.00 MB copied) ")));
        waitForDownload();
    }
};

WINDOW_TEST_MAIN(TestUpdate)
#include "test_update.moc"
