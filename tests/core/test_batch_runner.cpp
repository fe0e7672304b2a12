// reelwright-batch: usage errors, JSON lines and verdicts for bad input,
// the work root, exit codes and Ctrl-C.
#include "support/test_videos.h"

#include <QDir>
#include <QJsonArray>
#include <QProcess>
#include <QtTest>

#include <csignal>

using namespace testvideo;

class TestBatchRunner : public QObject {
    Q_OBJECT
    QString m_dir;

private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("batch")); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void usageErrors_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::newRow("no files") << QStringList();
        QTest::newRow("only options") << QStringList({"--quiet"});
        QTest::newRow("unknown option") << QStringList({"--fast", "a.mov"});
        QTest::newRow("missing reference") << QStringList({"--reference", "/no/such/sample.mov", "a.mov"});
        QTest::newRow("reference without value") << QStringList({"a.mov", "--reference"});
        QTest::newRow("work root not a folder") << QStringList({"--work-root", "/no/such/dir", "a.mov"});
    }
    void usageErrors()
    {
        QFETCH(QStringList, args);
        const BatchResult r = runBatch(args);
        QCOMPARE(r.exitCode, 2);
        QVERIFY(r.lines.isEmpty());
        QVERIFY(r.stderrText.startsWith("reelwright-batch: "));
    }

    // Missing, unreadable, empty and tiny files, a folder, names with blanks and
    // non-ASCII letters, zeros under every suffix: each gets negative verdicts
    // of its route's kind, in order; nothing is written beside
    // Repaired, and the inputs stay as they were. Only lower-case suffixes
    // of the byte-scan routes go to WriteAVIFileStatus ("a.Avi" doesn't).
    void verdictLinesForBadInput()
    {
        QList<QPair<QString, QByteArray>> made = {
            {"broken clip.mov", QByteArray(1000, '\x11')}, {"empty.mp4", QByteArray()},
            {"with blanks ä ö.mov", QByteArray(100, 'z')}, {"tiny.m4v", QByteArray("\0\0\0\x08", 4)},
            {"unreadable.mov", QByteArray(500, '\x22')}};
        for (const char* name : {"a.MOV", "a.Mts", "a.Avi", "a.avi", "a.divx", "a.mkv", "a.webm", "a.MPG", "a.wmv", "a.flv"})
            made.append({QString::fromLatin1(name), QByteArray(4096, '\0')});
        const QStringList aviRoute = {"a.avi", "a.divx", "a.mkv", "a.webm", "a.MPG"};
        QStringList files = {m_dir + QStringLiteral("/missing.mov"), m_dir + QStringLiteral("/folder.mov")}, hashes;
        QDir().mkpath(files.last());
        for (const auto& m : made) {
            files << m_dir + QLatin1Char('/') + m.first;
            writeAll(files.last(), m.second);
            hashes << sha256(files.last());
        }
        const QString unreadable = m_dir + QStringLiteral("/unreadable.mov");
        QFile::setPermissions(unreadable, QFileDevice::WriteOwner);   // not for root
        const BatchResult r = runBatch(files);
        QFile::setPermissions(unreadable, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        QCOMPARE(r.exitCode, 0);
        // The files answered in order; a wmv without headers is answered twice.
        QStringList answered, names;
        for (const QJsonObject& v : r.verdicts()) {
            const QString name = v.value("file").toString();
            if (answered.isEmpty() || answered.last() != name)
                answered << name;
            const bool avi = aviRoute.contains(name);
            QCOMPARE(v.value("signal").toString(), QString::fromLatin1(avi ? "WriteAVIFileStatus" : "WriteStatus"));
            QCOMPARE(v.value("repaired").toBool(true), false);
            QCOMPARE(v.contains("defaultCodec"), !avi);
            QCOMPARE(v.value("defaultCodec").toBool(), false);
        }
        for (const QString& f : files)
            names << QFileInfo(f).fileName();
        QCOMPARE(answered, names);
        QCOMPARE(r.end().value("result").toString(), QStringLiteral("finished"));
        QCOMPARE(r.end().value("outputs").toArray(), QJsonArray());
        QCOMPARE(r.lines.last(), r.end());
        QVERIFY(r.stderrText.contains("broken clip.mov"));   // progress line
        for (int i = 0; i < made.size(); ++i)
            QCOMPARE(sha256(m_dir + QLatin1Char('/') + made[i].first), hashes[i]);
        QCOMPARE(QDir(m_dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), made.size() + 3);
    }

    void quietAndWorkRoot()
    {
        const QString a = m_dir + QStringLiteral("/x.mp4");
        writeAll(a, QByteArray(100, '\x01'));
        const QString root = m_dir + QStringLiteral("/work");
        QDir().mkpath(root);
        const BatchResult r = runBatch({QStringLiteral("--quiet"), QStringLiteral("--work-root"), root, a});
        QCOMPARE(r.exitCode, 0);
        QVERIFY(r.stderrText.isEmpty());
        QVERIFY(QFileInfo(root + QStringLiteral("/Repaired/logFile.txt")).isFile());
        QVERIFY(!QFileInfo(root + QStringLiteral("/.hidden")).exists());
        QVERIFY(!QFileInfo(m_dir + QStringLiteral("/Repaired")).exists());
        QVERIFY(!QFileInfo(m_dir + QStringLiteral("/.hidden")).exists());
    }

    // Healthy files of every byte-scan route and a QuickTime file: each
    // verdict names the file written and what it holds, four seconds of
    // 25 fps video with sound. The DAT file's .mov keeps clear of the name
    // of the .mov beside it.
    void verdictsCarryOutputAndFigures()
    {
        const QStringList sound = lavfiVideo(4) + lavfiAudio(4);
        const QStringList h264{"-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p", "-g", "12"};
        const QList<QPair<QString, QStringList>> clips = {
            {"route.avi", {"-c:v", "mpeg4", "-c:a", "mp3"}},
            {"route.wmv", {"-c:v", "wmv2", "-c:a", "wmav2"}},
            {"route.flv", {"-c:v", "flv", "-c:a", "mp3"}},
            {"route.mts", h264 + QStringList{"-c:a", "ac3", "-streamid", "0:0x1011", "-streamid", "1:0x1100",
                                              "-f", "mpegts", "-mpegts_m2ts_mode", "1"}},
            {"route.mkv", h264 + QStringList{"-c:a", "aac"}},
            {"route.mpg", {"-c:v", "mpeg2video", "-c:a", "mp2"}},
            {"vcd.v2.dat", {"-target", "ntsc-vcd"}},
            {"vcd.mov", h264 + QStringList{"-c:a", "aac"}}};
        QStringList files;
        for (const auto& c : clips) {
            const QString clip = make(QStringLiteral("batch_") + c.first, sound + c.second);
            QVERIFY(!clip.isEmpty());
            files << m_dir + QLatin1Char('/') + c.first;
            QVERIFY(QFile::copy(clip, files.last()));
        }
        const BatchResult r = runBatch(QStringList{QStringLiteral("--quiet")} + files);
        QCOMPARE(r.verdicts().size(), clips.size());
        for (const QJsonObject& v : r.verdicts()) {
            const QString name = v.value("file").toString();
            QVERIFY2(v.value("repaired").toBool(), qPrintable(name));
            const QString expected = name == QLatin1String("vcd.v2.dat") ? QStringLiteral("vcd_2.mov") : name;
            QCOMPARE(v.value("output").toString(), m_dir + QStringLiteral("/Repaired/") + expected);
            QVERIFY(QFileInfo(v.value("output").toString()).size() > 0);
            // NTSC VCD runs at 29.97 fps: 4 s give about 120 frames.
            const double frames = v.value("videoFrames").toDouble();
            QVERIFY2(frames >= 85 && frames <= 125, qPrintable(name + QString::number(frames)));
            QVERIFY2(qAbs(v.value("audioSeconds").toDouble() - 4) < 0.3, qPrintable(name));
            QVERIFY2(v.contains("skippedBytes"), qPrintable(name));
        }
    }

    void interruptAbortsTheRun()
    {
        // A large sparse MPEG file keeps the driver's packet search busy.
        const QString big = m_dir + QStringLiteral("/big.mpg");
        QFile f(big);
        QVERIFY(f.open(QIODevice::WriteOnly));
        QVERIFY(f.resize(qint64(64) << 30));
        f.close();
        QProcess p;
        p.start(binDir() + QStringLiteral("/reelwright-batch"), {QStringLiteral("--quiet"), big});
        QVERIFY(p.waitForStarted());
        QTest::qWait(1500);
        ::kill(pid_t(p.processId()), SIGINT);
        QVERIFY(p.waitForFinished(60000));
        QCOMPARE(p.exitCode(), 1);
        const QList<QByteArray> lines = p.readAllStandardOutput().trimmed().split('\n');
        QVERIFY(lines.last().contains("\"result\":\"aborted\""));
    }
};

QTEST_GUILESS_MAIN(TestBatchRunner)
#include "test_batch_runner.moc"
