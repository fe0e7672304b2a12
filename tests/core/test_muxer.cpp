// The muxer runner against a fake ffmpeg: a shell script that writes each of
// its arguments on a line of its own, so the test sees exactly how a command
// line was split. Paths with blanks, the program's folder and the fallback to
// PATH, stopping a muxer that runs on, and programs that can't start.
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

    // Writes an executable script named ffmpeg into folder. It records its
    // arguments and its current folder, then runs tail.
    QString fake(const QString& folder, const QByteArray& tail = "exit 0\n")
    {
        QDir().mkpath(folder);
        const QString path = folder + QStringLiteral("/ffmpeg");
        QByteArray text = "#!/bin/sh\n";
        text += "for a in \"$@\"; do printf '%s\\n' \"$a\"; done > '" + argsFile().toUtf8() + ".tmp'\n";
        text += "pwd > '" + m_dir.toUtf8() + "/cwd.txt'\n";
        // Renamed when complete, so a waiting test never reads half of it.
        text += "mv '" + argsFile().toUtf8() + ".tmp' '" + argsFile().toUtf8() + "'\n";
        text += tail;
        writeAll(path, text);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }
    QStringList recordedArgs() const
    {
        QStringList lines = QString::fromUtf8(readAll(argsFile())).split(QLatin1Char('\n'));
        if (!lines.isEmpty() && lines.last().isEmpty())
            lines.removeLast();
        return lines;
    }
    // Calls StopMuxer from another thread once the fake has started.
    std::thread stopWhenStarted()
    {
        const QString args = argsFile();
        return std::thread([args] {
            for (int i = 0; i < 200 && !QFile::exists(args); ++i)
                QThread::msleep(50);
            QThread::msleep(100);
            StopMuxer();
        });
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("muxer test"));   // a blank on purpose
        m_path = qgetenv("PATH");
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
        QVERIFY(r.started);
        QVERIFY(r.finished);
        QCOMPARE(r.exitCode, 3);
        QCOMPARE(r.program, program);
        QCOMPARE(recordedArgs(), QStringList({"-r", "30", "-i", input, "-c:v", "copy", "out put.mov"}));
        QCOMPARE(readAll(m_dir + QStringLiteral("/cwd.txt")).trimmed(), work.toUtf8());
    }

    void fallsBackToPath()
    {
        g_appDir = m_dir + QStringLiteral("/Libmp4");          // exists, but holds no ffmpeg
        QDir().mkpath(g_appDir);
        const QString onPath = fake(m_dir + QStringLiteral("/bin"));
        qputenv("PATH", QFile::encodeName(m_dir + QStringLiteral("/bin")) + ':' + m_path);
        const MuxerResult r = RunMuxer(MuxerPrefix() + QStringLiteral(" -i \"x y.mov\" -c copy \"z.mov\""), m_dir);
        QVERIFY(r.started);
        QVERIFY(r.finished);
        QCOMPARE(r.program, onPath);
        QCOMPARE(recordedArgs(), QStringList({"-i", "x y.mov", "-c", "copy", "z.mov"}));

        // A non-executable file in Libmp4 is passed over the same way.
        writeAll(g_appDir + QStringLiteral("/ffmpeg"), "not a program");
        QFile::remove(argsFile());
        QCOMPARE(RunMuxer(MuxerPrefix() + QStringLiteral(" -version"), m_dir).program, onPath);
        QCOMPARE(recordedArgs(), QStringList({"-version"}));
    }

    void programsThatCantStart()
    {
        QElapsedTimer clock;
        clock.start();
        // Nothing in Libmp4 and nothing on PATH.
        g_appDir = m_dir + QStringLiteral("/Libmp4");
        QDir().mkpath(g_appDir);
        QDir().mkpath(m_dir + QStringLiteral("/empty"));
        qputenv("PATH", QFile::encodeName(m_dir + QStringLiteral("/empty")));
        MuxerResult r = RunMuxer(MuxerPrefix() + QStringLiteral(" -i \"a.mov\" b.mov"), m_dir);
        QVERIFY(!r.started);
        QVERIFY(!r.finished);

        // An executable whose interpreter doesn't exist.
        const QString broken = g_appDir + QStringLiteral("/ffmpeg");
        writeAll(broken, "#!/nonexistent/interpreter\n");
        QFile::setPermissions(broken, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        r = RunMuxer(MuxerPrefix() + QStringLiteral(" -i \"a.mov\" b.mov"), m_dir);
        QVERIFY(!r.started);
        QCOMPARE(r.program, broken);

        // An empty line and a line of blanks have no program at all.
        QVERIFY(!RunMuxer(QString(), m_dir).started);
        QVERIFY(!RunMuxer(QStringLiteral("   "), m_dir).started);
        QVERIFY(!QFile::exists(argsFile()));
        QVERIFY(clock.elapsed() < 10000);
    }

    void stopEndsALongRun()
    {
        g_appDir = m_dir + QStringLiteral("/Libmp4");
        QElapsedTimer clock;

        // A muxer that ends on "q", as ffmpeg does.
        fake(g_appDir, "read -r key\nprintf '%s' \"$key\" > '" + m_dir.toUtf8() + "/key.txt'\nexit 0\n");
        std::thread stopper = stopWhenStarted();
        clock.start();
        MuxerResult r = RunMuxer(MuxerPrefix() + QStringLiteral(" -i in.mov out.mov"), m_dir);
        stopper.join();
        QVERIFY(r.started);
        QVERIFY(r.finished);
        QCOMPARE(readAll(m_dir + QStringLiteral("/key.txt")), QByteArray("q"));
        QVERIFY(clock.elapsed() < 5000);

        // One that ignores "q" and terminate: killed, a few seconds later.
        QFile::remove(argsFile());
        fake(g_appDir, "trap '' TERM INT\nwhile :; do sleep 0.2; done\n");
        stopper = stopWhenStarted();
        clock.restart();
        r = RunMuxer(MuxerPrefix() + QStringLiteral(" -i in.mov out.mov"), m_dir);
        stopper.join();
        QVERIFY(r.started);
        QVERIFY(!r.finished);
        QVERIFY2(clock.elapsed() < 15000, qPrintable(QString::number(clock.elapsed())));

        // A time limit stops it the same way; a stop left over from an earlier
        // run doesn't cut the next one short.
        QFile::remove(argsFile());
        fake(g_appDir, "read -r key\nexit 0\n");
        clock.restart();
        r = RunMuxer(MuxerPrefix() + QStringLiteral(" -i in.mov out.mov"), m_dir, 300);
        QVERIFY(r.started);
        QVERIFY(!r.finished);
        QVERIFY(clock.elapsed() < 5000);
        StopMuxer();
        fake(g_appDir, "sleep 0.3\nexit 0\n");
        r = RunMuxer(MuxerPrefix() + QStringLiteral(" -i in.mov out.mov"), m_dir);
        QVERIFY(r.finished);
        QCOMPARE(r.exitCode, 0);
    }

    void speedCheckCommands()
    {
        g_appDir = QStringLiteral("/opt/video tools/Libmp4");
        const QString rebuilt = QStringLiteral("/home/a b/Repaired/clip 1.mov");
        const QString prefix = QStringLiteral("\"/opt/video tools/Libmp4\"/ffmpeg");
        QCOMPARE(SplitVideoCommand(rebuilt), prefix + QStringLiteral(" -i \"/home/a b/Repaired/clip 1.mov\" -c:v copy -an \"output_video.mov\""));
        QCOMPARE(SplitAudioCommand(rebuilt), prefix + QStringLiteral(" -i \"/home/a b/Repaired/clip 1.mov\" -vn -c:a copy \"output_audio.mov\""));
        QCOMPARE(SpeedChangeCommand(QStringLiteral("/home/a b/Repaired/output_video.mov")),
                 prefix + QStringLiteral(" -i \"/home/a b/Repaired/output_video.mov\" -filter:v setpts=PTS/2 -c:a copy -preset ultrafast ModifiedFile.mov"));
        QCOMPARE(JoinCommand(QStringLiteral("/w/ModifiedFile.mov"), QStringLiteral("/w/output_audio.mov"), QStringLiteral("clip 1.mov")),
                 prefix + QStringLiteral(" -i \"/w/ModifiedFile.mov\" -i \"/w/output_audio.mov\" -c copy \"clip 1.mov\""));
        // Split as the runner splits them, the paths stay whole.
        const QStringList parts = SplitCommandLine(SplitVideoCommand(rebuilt));
        QCOMPARE(parts.value(0), QStringLiteral("/opt/video tools/Libmp4/ffmpeg"));
        QCOMPARE(parts.value(2), rebuilt);
    }
};

QTEST_GUILESS_MAIN(TestMuxer)
#include "test_muxer.moc"
