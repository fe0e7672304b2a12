// The per-file driver: run signals and progress, the Repaired workspace,
// suffix routing, and bad input. The input is never changed.
#include "core/thread_video_repair.h"
#include "support/signal_log.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace testvideo;

class TestDriver : public QObject {
    Q_OBJECT
    QString m_dir;

    QString touch(const QString& name, const QByteArray& bytes = QByteArray(64, 'x'))
    {
        const QString p = m_dir + QLatin1Char('/') + name;
        writeAll(p, bytes);
        return p;
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("driver"));
        g_stopRequested = false;
        g_referenceMode = false;
        g_forgetReference = false;
        g_referencePath.clear();
        g_customWorkRoot.clear();
        g_repairedPaths.clear();
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void progressForOneAndTwoFiles()
    {
        {
            ThreadVideoRepair t;
            SignalLog log(t);
            SignalLog::runAndWait(t, {touch(QStringLiteral("a.mov"))});
            QCOMPARE(log.matching(QStringLiteral("OverAllProgressValue")),
                     QStringList({"OverAllProgressValue 0 0", "OverAllProgressValue 0 0"}));
            QCOMPARE(log.all().last(), QStringLiteral("RepairFinish"));
        }
        {
            ThreadVideoRepair t;
            SignalLog log(t);
            SignalLog::runAndWait(t, {touch(QStringLiteral("a.mov")), touch(QStringLiteral("b.mp4"))});
            QCOMPARE(log.matching(QStringLiteral("OverAllProgressValue")),
                     QStringList({"OverAllProgressValue 0 0", "OverAllProgressValue 1 50", "OverAllProgressValue 2 100"}));
            QCOMPARE(log.matching(QStringLiteral("OverAllProgressBarMax")), QStringList({"OverAllProgressBarMax 2"}));
        }
    }

    void emptyListAndEarlyStop()
    {
        ThreadVideoRepair t;
        SignalLog log(t);
        SignalLog::runAndWait(t, {});
        QCOMPARE(log.all(), QStringList({"OverAllProgressValue 0 0", "ShowOverAllProgressBar",
                                         "OverAllProgressBarMax 0", "RepairFinish"}));

        ThreadVideoRepair t2;
        SignalLog log2(t2);
        g_stopRequested = true;
        SignalLog::runAndWait(t2, {touch(QStringLiteral("a.mov"))});
        QCOMPARE(log2.all(), QStringList({"ProcessAborted"}));
        QVERIFY(!g_stopRequested);
        QVERIFY(!QDir(m_dir + QStringLiteral("/Repaired")).exists());   // no file was opened
    }

    void workspaceBesideTheSource()
    {
        const QString src = touch(QStringLiteral("clip.mov"));
        const QString before = sha256(src);
        ThreadVideoRepair t;
        SignalLog::runAndWait(t, {src});
        QVERIFY(QFileInfo(m_dir + QStringLiteral("/Repaired/logFile.txt")).isFile());
        QCOMPARE(readAll(m_dir + QStringLiteral("/.hidden")), QByteArray("Repaired\n"));
        QCOMPARE(sha256(src), before);
        // A second run keeps a single .hidden line.
        SignalLog::runAndWait(t, {src});
        QCOMPARE(readAll(m_dir + QStringLiteral("/.hidden")), QByteArray("Repaired\n"));
        QStringList entries = QDir(m_dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        entries.sort();
        QCOMPARE(entries, QStringList({".hidden", "Repaired", "clip.mov"}));
    }

    void customWorkRootAndStaleTempFolder()
    {
        const QString root = freshDir(QStringLiteral("root"));
        g_customWorkRoot = root;
        const QString src = touch(QStringLiteral("clip.mp4"));
        ThreadVideoRepair t;
        SignalLog::runAndWait(t, {src});
        QVERIFY(QFileInfo(root + QStringLiteral("/Repaired/logFile.txt")).isFile());
        QVERIFY(!QFileInfo(root + QStringLiteral("/.hidden")).exists());
        QVERIFY(!QDir(m_dir + QStringLiteral("/Repaired")).exists());
        QDir(root).removeRecursively();

        // A first pass clears a Repaired folder left in the temporary folder.
        g_customWorkRoot.clear();
        const QString stale = QDir::tempPath() + QStringLiteral("/Repaired");
        QDir().mkpath(stale);
        writeAll(stale + QStringLiteral("/old.mov"), "x");
        SignalLog::runAndWait(t, {src});
        QVERIFY(!QFileInfo(stale).exists());
    }

    void routingBySuffix_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("signal");
        QTest::newRow("MOV") << "a.MOV" << "WriteStatus";
        QTest::newRow("Mts mixed case") << "a.Mts" << "WriteStatus";
        QTest::newRow("Avi mixed case") << "a.Avi" << "WriteStatus";
        QTest::newRow("avi") << "a.avi" << "WriteAVIFileStatus";
        QTest::newRow("divx") << "a.divx" << "WriteAVIFileStatus";
        QTest::newRow("mkv") << "a.mkv" << "WriteAVIFileStatus";
        QTest::newRow("webm") << "a.webm" << "WriteAVIFileStatus";
        QTest::newRow("MPG") << "a.MPG" << "WriteAVIFileStatus";
        QTest::newRow("wmv") << "a.wmv" << "WriteStatus";
        QTest::newRow("flv") << "a.flv" << "WriteStatus";
    }
    void routingBySuffix()
    {
        QFETCH(QString, name);
        QFETCH(QString, signal);
        ThreadVideoRepair t;
        SignalLog log(t);
        SignalLog::runAndWait(t, {touch(name, QByteArray(4096, '\0'))});
        const QStringList verdicts = log.matching(signal + QLatin1Char(' '));
        QVERIFY2(!verdicts.isEmpty(), qPrintable(log.all().join(QLatin1String(" | "))));
        for (const QString& v : verdicts)
            QVERIFY2(v.startsWith(signal + QStringLiteral(" 0 ")), qPrintable(v));   // nothing to repair in zeros
    }

    void badInputGetsAVerdict()
    {
        const QString folder = m_dir + QStringLiteral("/folder.mov");
        QDir().mkpath(folder);
        const QStringList files{
            m_dir + QStringLiteral("/missing.mov"),
            folder,
            touch(QStringLiteral("empty.mp4"), QByteArray()),
            touch(QStringLiteral("with blanks ä ö.mov"), QByteArray(100, 'z')),
            touch(QStringLiteral("tiny.m4v"), QByteArray("\0\0\0\x08", 4)),
        };
        ThreadVideoRepair t;
        SignalLog log(t);
        SignalLog::runAndWait(t, files);
        const QStringList verdicts = log.matching(QStringLiteral("WriteStatus"));
        for (const QString& f : files) {
            const QString name = QFileInfo(f).fileName();
            QVERIFY2(verdicts.contains(QStringLiteral("WriteStatus 0 %1 0").arg(name)), qPrintable(name));
        }
        QCOMPARE(log.all().last(), QStringLiteral("RepairFinish"));
        QCOMPARE(QDir(m_dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 6);
    }

    void unreadableReferenceIsNotARepair()
    {
        g_referenceMode = true;
        g_referencePath = m_dir + QStringLiteral("/no-such-sample.mov");
        ThreadVideoRepair t;
        SignalLog log(t);
        SignalLog::runAndWait(t, {touch(QStringLiteral("clip.mov"))}, true);
        QCOMPARE(log.all().first(), QStringLiteral("OverAllProgressValue 0 0"));
        QVERIFY(log.all().contains(QStringLiteral("disableAddReferenceBtn")));
        QVERIFY(log.all().contains(QStringLiteral("WriteStatus 0 clip.mov 0")));
        QVERIFY(!log.all().contains(QStringLiteral("WriteStatus 1 clip.mov 0")));
        g_referenceMode = false;
    }

    void forgetReferenceDropsIt()
    {
        g_referenceMode = true;
        g_forgetReference = true;
        g_referencePath = m_dir + QStringLiteral("/sample.mov");
        ThreadVideoRepair t;
        SignalLog log(t);
        SignalLog::runAndWait(t, {touch(QStringLiteral("clip.mov"))});
        QVERIFY(!g_referenceMode);
        QVERIFY(!g_forgetReference);
        QVERIFY(!log.all().contains(QStringLiteral("disableAddReferenceBtn")));
    }
};

QTEST_GUILESS_MAIN(TestDriver)
#include "test_driver.moc"
