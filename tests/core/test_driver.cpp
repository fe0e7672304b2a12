// The per-file driver: run signals and progress, the Repaired workspace and
// the reference pass.
#include "core/thread_video_repair.h"
#include "support/signal_log.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

using namespace testvideo;

class TestDriver : public QObject {
    Q_OBJECT
    QString m_dir;

    QString touch(const QString& name, const QByteArray& bytes = QByteArray(64, 'x'))
    {
        writeAll(m_dir + QLatin1Char('/') + name, bytes);
        return m_dir + QLatin1Char('/') + name;
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("driver"));
        g_stopRequested = g_referenceMode = g_forgetReference = false;
        g_referencePath.clear();
        g_customWorkRoot.clear();
        g_repairedPaths.clear();
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void progress_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("one file") << QStringList({"a.mov"})
                                  << QStringList({"OverAllProgressValue 0 0", "OverAllProgressValue 0 0"});
        QTest::newRow("two files") << QStringList({"a.mov", "b.mp4"})
                                   << QStringList({"OverAllProgressValue 0 0", "OverAllProgressValue 1 50",
                                                   "OverAllProgressValue 2 100"});
    }
    void progress()
    {
        QFETCH(QStringList, names);
        QFETCH(QStringList, expected);
        QStringList files;
        for (const QString& n : names)
            files << touch(n);
        ThreadVideoRepair t;
        SignalLog log(t);
        SignalLog::runAndWait(t, files);
        QCOMPARE(log.matching(QStringLiteral("OverAllProgressValue")), expected);
        QCOMPARE(log.matching(QStringLiteral("OverAllProgressBarMax")),
                 QStringList({QStringLiteral("OverAllProgressBarMax %1").arg(files.size())}));
        QCOMPARE(log.all().last(), QStringLiteral("RepairFinish"));
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

    // A stop at the first progress of each route: aborted, no result left.
    void stopMidRun_data()
    {
        QTest::addColumn<QString>("clip");
        for (const auto& route : oneClipPerRoute())
            QTest::newRow(qPrintable(route.first)) << route.second;
    }
    void stopMidRun()
    {
        QFETCH(QString, clip);
        const QString input = m_dir + QLatin1Char('/') + QFileInfo(clip).fileName();
        QVERIFY(QFile::copy(clip, input));
        g_appDir = binDir() + QStringLiteral("/Libmp4");
        ThreadVideoRepair t;
        SignalLog log(t);
        QObject::connect(&t, &ThreadVideoRepair::setProgressvalue, &t, [] { g_stopRequested = true; }, Qt::DirectConnection);
        SignalLog::runAndWait(t, {input});
        QVERIFY(log.all().contains(QStringLiteral("ProcessAborted")));
        QCOMPARE(log.matching(QStringLiteral("WriteStatus 1")) + log.matching(QStringLiteral("WriteAVIFileStatus 1")),
                 QStringList());
        const QStringList left = QDir(m_dir + QStringLiteral("/Repaired")).entryList(QDir::Files | QDir::Hidden | QDir::System);
        for (const QString& name : left)
            QVERIFY2(name != QFileInfo(input).fileName() && !name.startsWith(QLatin1String(".partial-"))
                         && !(clip.endsWith(QLatin1String(".dat")) && name.endsWith(QLatin1String(".mov"))),
                     qPrintable(name));
        QVERIFY(g_repairedPaths.isEmpty());
    }

    void workspaceBesideTheSource()
    {
        // A first pass clears a Repaired folder left in the temporary folder.
        const QString stale = QDir::tempPath() + QStringLiteral("/Repaired");
        QDir().mkpath(stale);
        writeAll(stale + QStringLiteral("/old.mov"), "x");

        const QString src = touch(QStringLiteral("clip.mov"));
        const QString before = sha256(src);
        ThreadVideoRepair t;
        for (int run = 0; run < 2; ++run) {   // a second run keeps a single .hidden line
            SignalLog::runAndWait(t, {src});
            QVERIFY(QFileInfo(m_dir + QStringLiteral("/Repaired/logFile.txt")).isFile());
            QCOMPARE(readAll(m_dir + QStringLiteral("/.hidden")), QByteArray("Repaired\n"));
        }
        QCOMPARE(sha256(src), before);
        QStringList entries = QDir(m_dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        entries.sort();
        QCOMPARE(entries, QStringList({".hidden", "Repaired", "clip.mov"}));
        QVERIFY(!QFileInfo(stale).exists());
    }

    // A sample that can't be read is no repair; a forgotten sample turns the
    // pass back into a first pass.
    void referencePass()
    {
        g_referenceMode = true;
        g_referencePath = m_dir + QStringLiteral("/no-such-sample.mov");
        {
            ThreadVideoRepair t;
            SignalLog log(t);
            SignalLog::runAndWait(t, {touch(QStringLiteral("clip.mov"))}, true);
            QCOMPARE(log.all().first(), QStringLiteral("OverAllProgressValue 0 0"));
            QVERIFY(log.all().contains(QStringLiteral("disableAddReferenceBtn")));
            QVERIFY(log.all().contains(QStringLiteral("WriteStatus 0 clip.mov 0")));
            QVERIFY(!log.all().contains(QStringLiteral("WriteStatus 1 clip.mov 0")));
        }
        g_forgetReference = true;
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
