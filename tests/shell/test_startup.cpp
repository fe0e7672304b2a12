// Start-up: the single-instance guard survives no crash, a first start
// creates ResizeAppforDPI at both settings stores, the scale switched off.
#include "core/platform_core.h"
#include "shell/platform_gui.h"
#include "shell/scale.h"
#include "shell/startup.h"
#include "support/test_videos.h"

#include <QDir>
#include <QLocalServer>
#include <QSharedMemory>
#include <QProcess>
#include <QSettings>
#include <QUuid>
#include <QtTest>

#include <csignal>

using namespace testvideo;

class TestStartup : public QObject {
    Q_OBJECT
    QString probe() const { return QStringLiteral(REELWRIGHT_BIN_DIR "/../tests-bin/instance_guard_probe"); }

private Q_SLOTS:
    void guardIsClearedAfterACrash()
    {
        const QString key = QUuid::createUuid().toString(QUuid::Id128);
        QProcess holder;
        holder.start(probe(), {key, QStringLiteral("hold")});
        QVERIFY(holder.waitForReadyRead(10000));
        QCOMPARE(holder.readLine().trimmed(), QByteArray("acquired"));

        QByteArray out;
        QCOMPARE(run(probe(), {key, QStringLiteral("try")}, &out), 0);
        QCOMPARE(out.trimmed(), QByteArray("busy"));

        ::kill(pid_t(holder.processId()), SIGKILL);
        QVERIFY(holder.waitForFinished(10000));
        QCOMPARE(run(probe(), {key, QStringLiteral("try")}, &out), 0);
        QCOMPARE(out.trimmed(), QByteArray("acquired"));
    }

    // A second start with files hands them to the instance that runs and
    // ends; the running side gets them as absolute paths, missing ones too.
    void secondStartHandsItsFilesOver()
    {
        const QString home = freshDir(QStringLiteral("xdg"));
        qputenv("XDG_CONFIG_HOME", home.toUtf8());
        auto guard = AcquireInstanceGuard(InstanceKey());
        QVERIFY(guard);
        QStringList received;
        QObject owner;
        QVERIFY(ListenForHandOver(HandOverName(), &owner, [&](const QStringList& f) { received = f; }));
        QProcess second;   // on the test's own platform (offscreen)
        second.setWorkingDirectory(home);
        second.start(binDir() + QStringLiteral("/reelwright"), {QStringLiteral("a clip.mp4"), home + QStringLiteral("/b.mov")});
        QTRY_VERIFY_WITH_TIMEOUT(second.state() == QProcess::NotRunning, 15000);
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(received, (QStringList{home + QStringLiteral("/a clip.mp4"), home + QStringLiteral("/b.mov")}));
        QCOMPARE(FileArguments({"reelwright", "-style", "x.mp4"}), QStringList{QDir::current().absoluteFilePath("x.mp4")});
        QDir(home).removeRecursively();
    }

    void firstStartCreatesBothStores()
    {
        const QString home = freshDir(QStringLiteral("xdg"));
        qputenv("XDG_CONFIG_HOME", home.toUtf8());
        QProcess app;
        app.start(binDir() + QStringLiteral("/reelwright"), QStringList());
        QVERIFY(app.waitForStarted());
        const QString stores = home + QStringLiteral("/Corvane Labs/%1 Recovery/Reelwright.ini");
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(stores.arg(QStringLiteral("Photo"))), 15000);
        // The version the update check compares with.
        QTRY_COMPARE_WITH_TIMEOUT(QSettings(stores.arg(QStringLiteral("Photo")), QSettings::IniFormat)
                                      .value(QStringLiteral("Version")).toString(),
                                  QStringLiteral(REELWRIGHT_VERSION), 15000);
        app.kill();
        app.waitForFinished();
        for (const char* store : {"Data", "Photo"})
            QCOMPARE(QSettings(stores.arg(QLatin1String(store)), QSettings::IniFormat)
                         .value(QStringLiteral("ResizeAppforDPI")).toString(),
                     QStringLiteral("true"));
        QDir(home).removeRecursively();
    }

    void scaleTurnedOffFixesFontDpi()
    {
        const QString home = freshDir(QStringLiteral("xdg"));
        qputenv("XDG_CONFIG_HOME", home.toUtf8());
        {
            QSettings s(SettingsFilePath(SettingsStore::DataRecovery), QSettings::IniFormat);
            s.setValue(QStringLiteral("ResizeAppforDPI"), false);
        }
        QCOMPARE(PrepareDisplayScale(), 1.0f);
        QCOMPARE(qgetenv("QT_FONT_DPI"), QByteArray("102"));
        QCOMPARE(qgetenv("QT_SCALE_FACTOR"), QByteArray("1"));
        QDir(home).removeRecursively();
    }
};

QTEST_MAIN(TestStartup)
#include "test_startup.moc"
