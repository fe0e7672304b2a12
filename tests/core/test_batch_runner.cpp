// reelwright-batch: usage errors, verdict lines, where results go, exit
// codes and signals.
#include "core/output_figures.h"
#include "support/test_videos.h"

#include <QDir>
#include <QDirIterator>
#include <QJsonArray>
#include <QProcess>
#include <QtTest>

#include <csignal>
#include <unistd.h>

using namespace testvideo;

class TestBatchRunner : public QObject {
    Q_OBJECT
    QString m_dir;

private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("batch")); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    // Usage errors and folders that can't be run: exit code 2 and a message,
    // before anything is written.
    void refusedBeforeAnythingIsWritten()
    {
        const QString videos = m_dir + QStringLiteral("/videos");
        QDir().mkpath(videos + QStringLiteral("/empty/Repaired"));
        QDir().mkpath(videos + QStringLiteral("/deep"));
        writeAll(videos + QStringLiteral("/deep/a.avi"), QByteArray(4096, '\0'));
        writeAll(videos + QStringLiteral("/empty/Repaired/old.avi"), QByteArray(10, '\0'));   // results aren't inputs
        writeAll(videos + QStringLiteral("/empty/notes.txt"), "x");
        QFile::link(videos, videos + QStringLiteral("/deep/loop"));
        QList<QStringList> cases = {{},
                                    {"--fast", "a.mov"},
                                    {"--reference", "/no/such/sample.mov", "a.mov"},
                                    {"--work-root", "/no/such/dir", "a.mov"},
                                    {"--jobs", "0", "a.mov"},
                                    {"a.mov", "--jobs"},
                                    {videos + QStringLiteral("/empty")},
                                    {videos},   // the link loop
                                    {videos + QStringLiteral("/deep/a.avi"), videos + QStringLiteral("/deep/../deep/a.avi")}};
        if (geteuid() != 0) {   // root reads every folder
            QDir().mkpath(m_dir + QStringLiteral("/closed"));
            QFile::setPermissions(m_dir + QStringLiteral("/closed"), QFileDevice::WriteOwner);
            cases.append({m_dir + QStringLiteral("/closed")});
        }
        const auto listing = [&] {
            QStringList all;
            QDirIterator it(m_dir, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
            while (it.hasNext())
                all << it.next();
            all.sort();
            return all;
        };
        const QStringList before = listing();
        for (const QStringList& args : cases) {
            const BatchResult r = runBatch(args);
            QVERIFY2(r.exitCode == 2 && r.lines.isEmpty(), qPrintable(args.join(' ')));
            QVERIFY2(r.stderrText.startsWith("reelwright-batch: "), r.stderrText.constData());
        }
        QCOMPARE(listing(), before);
        QFile::setPermissions(m_dir + QStringLiteral("/closed"), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }

    // Bad files of every kind get negative verdicts of their route's kind in the
    // files' order although two jobs run; nothing is written, inputs unchanged.
    void verdictLinesForBadInput()
    {
        QList<QPair<QString, QByteArray>> made = {
            {"broken clip.mov", QByteArray(1000, '\x11')}, {"empty.mp4", QByteArray()},
            {"with blanks ä ö.mov", QByteArray(100, 'z')}, {"tiny.m4v", QByteArray("\0\0\0\x08", 4)},
            {"unreadable.mov", QByteArray(500, '\x22')}};
        for (const char* name : {"a.MOV", "a.Mts", "a.Avi", "a.avi", "a.divx", "a.mkv", "a.webm", "a.MPG", "a.wmv", "a.flv"})
            made.append({QString::fromLatin1(name), QByteArray(4096, '\0')});
        const QStringList aviRoute = {"a.avi", "a.divx", "a.mkv", "a.webm", "a.MPG"};
        QStringList files = {m_dir + QStringLiteral("/missing.mov")}, hashes;
        for (const auto& m : made) {
            files << m_dir + QLatin1Char('/') + m.first;
            writeAll(files.last(), m.second);
            hashes << sha256(files.last());
        }
        const QString unreadable = m_dir + QStringLiteral("/unreadable.mov");
        QFile::setPermissions(unreadable, QFileDevice::WriteOwner);   // not for root
        const BatchResult r = runBatch(QStringList{"--jobs", "2"} + files);
        QFile::setPermissions(unreadable, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        QCOMPARE(r.exitCode, 0);
        // The files answered in order; a wmv without headers is answered twice.
        QStringList answered;
        for (const QJsonObject& v : r.verdicts()) {
            const QString name = v.value("file").toString();
            QCOMPARE(QFileInfo(v.value("path").toString()).fileName(), name);
            if (answered.isEmpty() || answered.last() != v.value("path").toString())
                answered << v.value("path").toString();
            const bool avi = aviRoute.contains(name);
            QCOMPARE(v.value("signal").toString(), QString::fromLatin1(avi ? "WriteAVIFileStatus" : "WriteStatus"));
            QCOMPARE(v.value("repaired").toBool(true), false);
            QCOMPARE(v.contains("defaultCodec"), !avi);
            QCOMPARE(v.value("defaultCodec").toBool(), false);
        }
        QCOMPARE(answered, files);
        QCOMPARE(r.end().value("result").toString(), QStringLiteral("finished"));
        QCOMPARE(r.end().value("outputs").toArray(), QJsonArray());
        QCOMPARE(r.lines.last(), r.end());
        QVERIFY(r.stderrText.contains("broken clip.mov"));   // progress line
        for (int i = 0; i < made.size(); ++i)
            QCOMPARE(sha256(m_dir + QLatin1Char('/') + made[i].first), hashes[i]);
        QCOMPARE(QDir(m_dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), made.size());
    }

    // A folder tree with one clip name in two folders: results beside each
    // file, then under a work root where the two names must not meet.
    void foldersAndWhereResultsGo()
    {
        const QString clip = h264Aac(QStringLiteral("mp4"));
        QVERIFY(!clip.isEmpty());
        const QString videos = m_dir + QStringLiteral("/videos");
        for (const char* sub : {"/a", "/b/Repaired"})
            QDir().mkpath(videos + QLatin1String(sub));
        const QStringList inputs = {videos + "/a/clip.mp4", videos + "/b/bad.avi", videos + "/b/clip.mp4"};
        QFile::copy(clip, inputs[0]);
        QFile::copy(clip, inputs[2]);
        writeAll(inputs[1], QByteArray(4096, '\0'));
        writeAll(videos + "/b/notes.txt", "not a video");
        writeAll(videos + "/b/Repaired/old.mp4", "an earlier result");

        BatchResult r = runBatch({QStringLiteral("--jobs"), QStringLiteral("3"), videos});
        QCOMPARE(r.exitCode, 0);
        QStringList paths;
        for (const QJsonObject& v : r.verdicts())
            paths << v.value("path").toString();
        QCOMPARE(paths, inputs);
        QCOMPARE(r.verdicts()[0].value("videoFrames").toInt(), 100);
        const QStringList beside = {videos + "/a/Repaired/clip.mp4", videos + "/b/Repaired/clip.mp4"};
        QCOMPARE(r.end().value("outputs").toVariant().toStringList(), beside);
        QCOMPARE(decodedVideoFrames(beside[1]), 100);
        QCOMPARE(readAll(videos + "/a/.hidden"), QByteArray("Repaired\n"));
        // The closing table: a row per file with its verdict, figures and result.
        QList<QByteArray> table = r.stderrText.trimmed().split('\n');
        table = table.mid(table.size() - 4);
        QVERIFY2(table[0].startsWith("file "), r.stderrText.constData());
        QVERIFY(table[1].contains("/a/clip.mp4") && table[1].contains(" repaired ") && table[1].contains(" 100 ")
                && table[1].endsWith("/a/Repaired/clip.mp4"));
        QVERIFY(table[2].contains("bad.avi") && table[2].contains("not repaired") && table[2].endsWith(" -"));

        const QString root = m_dir + QStringLiteral("/work");
        QDir().mkpath(root);
        r = runBatch({QStringLiteral("--quiet"), QStringLiteral("--work-root"), root, inputs[2], inputs[0]});
        QCOMPARE(r.exitCode, 0);
        QVERIFY(r.stderrText.isEmpty());
        QCOMPARE(r.end().value("outputs").toVariant().toStringList(),
                 QStringList({root + "/Repaired/b/clip.mp4", root + "/Repaired/a/clip.mp4"}));
        QCOMPARE(QDir(root).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList("Repaired"));
        QCOMPARE(sha256(inputs[0]), sha256(clip));
    }

    // A healthy clip of every route: each verdict names its output and what it
    // holds, as the muxer reads it back; the DAT file's .mov keeps clear of
    // the .mov beside it.
    void verdictsCarryOutputAndFigures()
    {
        QStringList files;
        for (const auto& route : oneClipPerRoute()) {
            QVERIFY(!route.second.isEmpty());
            const QString name = route.first == QLatin1String("dat")   ? QStringLiteral("vcd.v2.dat")
                               : route.first == QLatin1String("mov") ? QStringLiteral("vcd.mov")
                                                                     : QStringLiteral("route.") + route.first;
            files << m_dir + QLatin1Char('/') + name;
            QVERIFY(QFile::copy(route.second, files.last()));
        }
        const BatchResult r = runBatch(QStringList{QStringLiteral("--quiet")} + files);
        QCOMPARE(r.verdicts().size(), files.size());
        for (const QJsonObject& v : r.verdicts()) {
            const QString name = v.value("file").toString();
            QVERIFY2(v.value("repaired").toBool(), qPrintable(name));
            const QString expected = name == QLatin1String("vcd.v2.dat") ? QStringLiteral("vcd_2.mov") : name;
            QCOMPARE(v.value("output").toString(), m_dir + QStringLiteral("/Repaired/") + expected);
            QVERIFY(QFileInfo(v.value("output").toString()).size() > 0);
            // NTSC VCD runs at 29.97 fps: 6 s give about 180 frames; a route may
            // lose the last group of pictures.
            const double frames = v.value("videoFrames").toDouble();
            QVERIFY2(frames >= 120 && frames <= 187, qPrintable(name + QString::number(frames)));
            QVERIFY2(qAbs(v.value("audioSeconds").toDouble() - 6) < 0.4, qPrintable(name));
            QVERIFY2(v.contains("skippedBytes"), qPrintable(name));
            // Routes that count what they write say what the output holds.
            const OutputFigures back = MeasureOutput(v.value("output").toString());
            QCOMPARE(quint64(frames), quint64(back.videoFrames));
            QVERIFY2(qAbs(v.value("audioSeconds").toDouble() - back.audioSeconds) < 0.05, qPrintable(name));
        }

        // The container routes count what they write: with no muxer to be
        // found (a copy of the runner without its own, and no PATH), their
        // figures stand all the same.
        const QString alone = m_dir + QStringLiteral("/alone");
        QVERIFY(QDir().mkpath(alone) && QFile::copy(binDir() + "/reelwright-batch", alone + "/reelwright-batch"));
        QStringList counted{QStringLiteral("--quiet"), QStringLiteral("--work-root"), alone};
        for (const QString ext : {"avi", "wmv", "flv", "mkv", "mpg"})
            counted << m_dir + QStringLiteral("/route.") + ext;
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", alone.toUtf8());
        QByteArray out;
        const int code = run(alone + "/reelwright-batch", counted, &out);
        qputenv("PATH", path);
        QCOMPARE(code, 0);
        int verdicts = 0;
        for (const QByteArray& line : out.split('\n')) {
            const QJsonObject v = QJsonDocument::fromJson(line).object();
            if (v.value("event").toString() != QLatin1String("verdict"))
                continue;
            ++verdicts;
            const QString name = v.value("file").toString();
            QVERIFY2(v.value("videoFrames").toInt() >= 120, qPrintable(name));
            QVERIFY2(qAbs(v.value("audioSeconds").toDouble() - 6) < 0.4, qPrintable(name));
        }
        QCOMPARE(verdicts, 5);
    }

    // A stop reaches every job: none leaves its scratch or a partial result.
    void interruptAbortsTheRun_data()
    {
        QTest::addColumn<int>("signalNumber");
        QTest::newRow("Ctrl-C") << int(SIGINT);
        QTest::newRow("SIGTERM") << int(SIGTERM);
    }
    void interruptAbortsTheRun()
    {
        QFETCH(int, signalNumber);
        // DAT files are encoded anew by the muxer: a minute of video keeps
        // each job busy for a while.
        const QString clip = make(QStringLiteral("busy_60s.mpg"), lavfiVideo(60, QStringLiteral("640x360"))
                                                                      << "-c:v" << "mpeg1video" << "-f" << "mpeg");
        QVERIFY(!clip.isEmpty());
        QStringList args{QStringLiteral("--quiet"), QStringLiteral("--jobs"), QStringLiteral("2")};
        for (const char* name : {"/big1.dat", "/big2.dat", "/big3.dat"}) {
            QVERIFY(QFile::copy(clip, m_dir + QLatin1String(name)));
            args << m_dir + QLatin1String(name);
        }
        QProcess p;
        p.start(binDir() + QStringLiteral("/reelwright-batch"), args);
        QVERIFY(p.waitForStarted());
        QTest::qWait(1500);
        // (A process id of 0 would signal the test's whole process group.)
        QVERIFY(p.state() == QProcess::Running && p.processId() > 0);
        ::kill(pid_t(p.processId()), signalNumber);
        QVERIFY(p.waitForFinished(60000));
        QCOMPARE(p.exitCode(), 1);
        const QList<QByteArray> lines = p.readAllStandardOutput().trimmed().split('\n');
        // The files in hand may be reported as not repaired; none as repaired.
        QVERIFY(lines.last().contains("\"result\":\"aborted\""));
        for (const QByteArray& line : lines.mid(0, lines.size() - 1))
            QVERIFY(line.contains("\"repaired\":false"));
        QCOMPARE(QDir(m_dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList({"big1.dat", "big2.dat", "big3.dat"}));
    }
};

QTEST_GUILESS_MAIN(TestBatchRunner)
#include "test_batch_runner.moc"
