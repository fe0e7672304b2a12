// The muxer runner against a fake ffmpeg that writes each argument on a line
// of its own.
#include "core/muxer.h"
#include "core/repair_globals.h"
#include "support/test_videos.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <QtTest>

#include <thread>

using namespace testvideo;

class TestMuxer : public QObject {
    Q_OBJECT
    QString m_dir;
    QByteArray m_path;   // PATH as the test found it

    QString argsFile() const { return m_dir + QStringLiteral("/args.txt"); }

    // folder/ffmpeg records its arguments and current folder, then runs tail.
    // The record is renamed when complete, so a waiting test never reads half of it.
    QString fake(const QString& folder, const QByteArray& tail = "exit 0\n")
    {
        const QByteArray args = argsFile().toUtf8();
        QFile::remove(argsFile());
        return fakeMuxer(folder, "for a in \"$@\"; do printf '%s\\n' \"$a\"; done > '" + args + ".tmp'\npwd > '"
                                     + m_dir.toUtf8() + "/cwd.txt'\nmv '" + args + ".tmp' '" + args + "'\n" + tail)
             + QStringLiteral("/ffmpeg");
    }
    QStringList recordedArgs() const
    {
        return QString::fromUtf8(readAll(argsFile())).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    // Runs a muxer, calling StopMuxer from another thread once it has started.
    MuxerResult runAndStop()
    {
        const QString args = argsFile();
        std::thread stopper([args] {
            for (int i = 0; i < 200 && !QFile::exists(args); ++i)
                QThread::msleep(50);
            QThread::msleep(100);
            StopMuxer();
        });
        const MuxerResult r = RunMuxer(MuxerPrefix() + QStringLiteral(" -i in.mov out.mov"), m_dir);
        stopper.join();
        return r;
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("muxer test"));   // a blank on purpose
        m_path = qgetenv("PATH");
        g_appDir = m_dir + QStringLiteral("/Libmp4");
        QDir().mkpath(g_appDir);
    }
    void cleanup()
    {
        qputenv("PATH", m_path);
        QDir(m_dir).removeRecursively();
    }

    void commandLineStaysWhole()
    {
        g_appDir = m_dir + QStringLiteral("/my app/Libmp4");
        const QString program = fake(g_appDir, "exit 3\n");
        QCOMPARE(MuxerPrefix(), QLatin1Char('"') + g_appDir + QStringLiteral("\"/ffmpeg"));
        const QString work = m_dir + QStringLiteral("/Repaired here");
        QDir().mkpath(work);
        const QString input = m_dir + QStringLiteral("/a video  with blanks.mov");
        const MuxerResult r = RunMuxer(MuxerPrefix() + QStringLiteral(" -r 30 -i \"") + input
                                           + QStringLiteral("\" -c:v copy \"out put.mov\""), work);
        QVERIFY(r.started && r.finished);
        QCOMPARE(r.exitCode, 3);
        QCOMPARE(r.program, program);
        QCOMPARE(recordedArgs(), QStringList({"-r", "30", "-i", input, "-c:v", "copy", ".partial-out put.mov"}));   // renamed when the muxer is done
        QCOMPARE(readAll(m_dir + QStringLiteral("/cwd.txt")).trimmed(), work.toUtf8());
    }

    // No ffmpeg in Libmp4, or one that can't be run: the one on PATH.
    void fallsBackToPath()
    {
        const QString onPath = fake(m_dir + QStringLiteral("/bin"));
        qputenv("PATH", QFile::encodeName(m_dir + QStringLiteral("/bin")) + ':' + m_path);
        MuxerResult r = RunMuxer(MuxerPrefix() + QStringLiteral(" -i \"x y.mov\" -c copy \"z.mov\""), m_dir);
        QVERIFY(r.started && r.finished);
        QCOMPARE(r.program, onPath);
        QCOMPARE(recordedArgs(), QStringList({"-i", "x y.mov", "-c", "copy", ".partial-z.mov"}));
        writeAll(g_appDir + QStringLiteral("/ffmpeg"), "not a program");
        QFile::remove(argsFile());
        QCOMPARE(RunMuxer(MuxerPrefix() + QStringLiteral(" -version"), m_dir).program, onPath);
        QCOMPARE(recordedArgs(), QStringList({"-version"}));
    }

    void programsThatCantStart()
    {
        QElapsedTimer clock;
        clock.start();
        QDir().mkpath(m_dir + QStringLiteral("/empty"));
        qputenv("PATH", QFile::encodeName(m_dir + QStringLiteral("/empty")));
        MuxerResult r = RunMuxer(MuxerPrefix() + QStringLiteral(" -i \"a.mov\" b.mov"), m_dir);
        QVERIFY(!r.started && !r.finished);   // nothing in Libmp4, nothing on PATH
        fakeMuxer(g_appDir, "");
        writeAll(g_appDir + QStringLiteral("/ffmpeg"), "#!/nonexistent/interpreter\n");
        r = RunMuxer(MuxerPrefix() + QStringLiteral(" -i \"a.mov\" b.mov"), m_dir);
        QVERIFY(!r.started);
        QCOMPARE(r.program, g_appDir + QStringLiteral("/ffmpeg"));
        QVERIFY(!RunMuxer(QString(), m_dir).started);   // no program at all
        QVERIFY(!RunMuxer(QStringLiteral("   "), m_dir).started);
        QVERIFY(!QFile::exists(argsFile()));
        QVERIFY(clock.elapsed() < 10000);
    }

    void stopEndsALongRun()
    {
        QElapsedTimer clock;
        // A muxer that ends on "q", as ffmpeg does.
        fake(g_appDir, "read -r key\nprintf '%s' \"$key\" > '" + m_dir.toUtf8() + "/key.txt'\nexit 0\n");
        clock.start();
        MuxerResult r = runAndStop();
        QVERIFY(r.started && r.finished);
        QCOMPARE(readAll(m_dir + QStringLiteral("/key.txt")), QByteArray("q"));
        QVERIFY(clock.elapsed() < 5000);

        // One that ignores "q" and terminate: killed, a few seconds later.
        fake(g_appDir, "trap '' TERM INT\nwhile :; do sleep 0.2; done\n");
        clock.restart();
        r = runAndStop();
        QVERIFY(r.started && !r.finished);
        QVERIFY2(clock.elapsed() < 15000, qPrintable(QString::number(clock.elapsed())));

        // A time limit stops it the same way; a stop left over from an earlier
        // run doesn't cut the next one short.
        fake(g_appDir, "read -r key\nexit 0\n");
        clock.restart();
        r = RunMuxer(MuxerPrefix() + QStringLiteral(" -i in.mov out.mov"), m_dir, 300);
        QVERIFY(r.started && !r.finished);
        QVERIFY(clock.elapsed() < 5000);
        StopMuxer();
        fake(g_appDir, "sleep 0.3\nexit 0\n");
        r = RunMuxer(MuxerPrefix() + QStringLiteral(" -i in.mov out.mov"), m_dir);
        QVERIFY(r.finished);
        QCOMPARE(r.exitCode, 0);
    }
};

QTEST_GUILESS_MAIN(TestMuxer)
#include "test_muxer.moc"
