// reelwright-batch: usage errors, JSON lines, exit codes and Ctrl-C.
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
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

    void verdictLinesAndEnd()
    {
        const QString a = m_dir + QStringLiteral("/broken clip.mov");
        const QString b = m_dir + QStringLiteral("/zeros.avi");
        writeAll(a, QByteArray(1000, '\x11'));
        writeAll(b, QByteArray(5000, '\0'));
        const QString hashA = sha256(a);
        const BatchResult r = runBatch({a, b});
        QCOMPARE(r.exitCode, 0);
        const QList<QJsonObject> v = r.verdicts();
        QVERIFY(v.size() >= 2);
        QCOMPARE(v.first().value("signal").toString(), QStringLiteral("WriteStatus"));
        QCOMPARE(v.first().value("file").toString(), QStringLiteral("broken clip.mov"));
        QCOMPARE(v.first().value("repaired").toBool(true), false);
        QVERIFY(v.first().contains("defaultCodec"));
        QCOMPARE(v.last().value("signal").toString(), QStringLiteral("WriteAVIFileStatus"));
        QCOMPARE(v.last().value("file").toString(), QStringLiteral("zeros.avi"));
        QVERIFY(!v.last().contains("defaultCodec"));
        QCOMPARE(r.end().value("result").toString(), QStringLiteral("finished"));
        QVERIFY(r.end().value("outputs").isArray());
        for (const QJsonValue& out : r.end().value("outputs").toArray())   // no file is named that wasn't made
            QVERIFY2(QFileInfo(out.toString()).isFile(), qPrintable(out.toString()));
        QCOMPARE(r.lines.last(), r.end());
        QVERIFY(r.stderrText.contains("broken clip.mov"));   // progress line
        QCOMPARE(sha256(a), hashA);
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
        QVERIFY(!QFileInfo(m_dir + QStringLiteral("/Repaired")).exists());
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
