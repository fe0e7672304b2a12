// The muxer stage of the H.264 chain, against a fake ffmpeg that records
// each argument it gets.
#include "core/muxer.h"
#include "core/quicktime_route.h"
#include "recovery/h264/h264_recovery.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace testvideo;

class TestRemux : public QObject {
    Q_OBJECT
    QString m_dir, m_calls;
    QuickTimeRoute* m_t = nullptr;
    ChainPaths m_p;

    // Each call: a line "---", then one argument per line.
    QList<QStringList> calls() const
    {
        QList<QStringList> out;
        for (const QString& line : QString::fromUtf8(readAll(m_calls)).split(QLatin1Char('\n'))) {
            if (line == QLatin1String("---"))
                out << QStringList();
            else if (!out.isEmpty() && !line.isEmpty())
                out.last() << line;
        }
        return out;
    }
    QStringList scratch() const
    {
        return {m_p.video, m_p.audio, m_p.videoText, m_p.audioText, m_p.indexing, m_p.videoUnique, m_p.audioUnique};
    }

private Q_SLOTS:
    // Paths with blanks everywhere: the muxer's folder, the workspace, the
    // input and the output's name.
    void init()
    {
        m_dir = freshDir(QStringLiteral("remux"));
        m_calls = m_dir + QStringLiteral("/calls.txt");
        g_appDir = fakeMuxer(m_dir + QStringLiteral("/app dir/Libmp4"),
                             "echo --- >> '" + m_calls.toUtf8() + "'\n"
                             "for a in \"$@\"; do echo \"$a\" >> '" + m_calls.toUtf8() + "'; done\n"
                             "eval out=\\${$#}\n"
                             "[ -e \"$out\" ] && exit 1\n"
                             "[ -n \"$FAKE_NO_OUTPUT\" ] || echo made > \"$out\"\n");
        g_stopRequested = false;
        qunsetenv("FAKE_NO_OUTPUT");
        m_t = new QuickTimeRoute;
        m_t->m_workDir = m_dir + QStringLiteral("/work root/Repaired");
        m_t->m_fileName = QStringLiteral("my clip.mov");
        QDir().mkpath(m_t->m_workDir);
        m_p = ChainPaths::in(m_t->m_workDir, m_dir + QStringLiteral("/in put.mov"));
        for (const QString& f : scratch())
            writeAll(f, "x");
    }
    void cleanup()
    {
        delete m_t;
        QDir(m_dir).removeRecursively();
    }

    // A rate that can't be computed falls back to 30.
    void frameRate()
    {
        QCOMPARE(ComputeFrameRate(250, 10000, 1000), 25);
        QCOMPARE(ComputeFrameRate(300, 10010, 1000), 30);
        QCOMPARE(ComputeFrameRate(0, 10000, 1000), 30);     // no count
        QCOMPARE(ComputeFrameRate(5, 100000, 1000), 30);    // a rate of 0
    }

    // Rates outside 25..32 get a second run at the computed rate, whose file
    // then stands under the output's name; the scratch files go.
    void muxRunsAndDeletions_data()
    {
        QTest::addColumn<bool>("withAudio");
        QTest::addColumn<uint>("samples");
        QTest::addColumn<int>("runs");
        QTest::newRow("audio 32") << true << 320u << 1;
        QTest::newRow("audio 24") << true << 240u << 2;
        QTest::newRow("audio 33") << true << 330u << 2;
        QTest::newRow("audio, no count") << true << 0u << 1;
        QTest::newRow("video 25") << false << 250u << 1;
        QTest::newRow("video 60") << false << 600u << 2;
    }
    void muxRunsAndDeletions()
    {
        QFETCH(bool, withAudio);
        QFETCH(uint, samples);
        QFETCH(int, runs);
        ChainFacts& f = m_t->m_chainFacts;
        f.videoSampleCount = samples;
        f.movieDuration = 10000;
        f.movieTimescale = 1000;
        withAudio ? m_t->MuxVideoAndAudio(m_p) : m_t->MuxVideoOnly(m_p);

        const QList<QStringList> c = calls();
        QCOMPARE(c.size(), runs);
        // The output is named relative to the workspace, where the muxer runs.
        QVERIFY(c[0].contains(m_p.video));
        QCOMPARE(c[0].contains(m_p.audio), withAudio);
        QCOMPARE(c[0].last(), QStringLiteral(".partial-my clip.mov"));   // renamed when done
        QCOMPARE(c[0].at(1), withAudio ? QStringLiteral("30") : QStringLiteral("30000/1001"));
        if (runs == 2) {
            QCOMPARE(c[1].last(), QStringLiteral(".partial-1_my clip.mov"));
            QCOMPARE(c[1].at(1), QString::number(samples / 10));
            QVERIFY(!QFile::exists(m_t->m_workDir + QStringLiteral("/1_my clip.mov")));
        }
        QVERIFY(QFile::exists(m_t->m_workDir + QStringLiteral("/my clip.mov")));
        for (const QString& f : scratch())
            QVERIFY2(!QFile::exists(f), qPrintable(f));
        QVERIFY(!g_muxerBusy);
        QVERIFY(m_t->m_remuxed);
        QVERIFY(!m_t->m_passFailed);
    }

    // The PCM format is the sample's depth; an odd depth keeps the one the
    // run last used, which lasts from file to file.
    void pcmFormatLastsThroughTheRun()
    {
        RunCarryOver run;
        const auto formatFor = [&](uint32_t bits, RunCarryOver* carried) {
            QuickTimeRoute t;
            if (carried)
                t.m_carried = carried;
            t.m_workDir = m_t->m_workDir;
            t.m_fileName = m_t->m_fileName;
            t.m_chainFacts.pcmBits = bits;
            QFile::remove(t.m_workDir + QLatin1Char('/') + t.m_fileName);
            QFile::remove(m_calls);
            t.MuxVideoAndPcm(m_p);
            const QStringList args = calls().value(0);
            return args.value(args.indexOf(QStringLiteral("-f"), args.indexOf(m_p.video)) + 1);
        };
        QCOMPARE(formatFor(16, &run), QStringLiteral("s16le"));
        QCOMPARE(formatFor(20, &run), QStringLiteral("s16le"));
        QCOMPARE(formatFor(20, nullptr), QStringLiteral("s24le"));
    }

    void remuxOfDamagedFile_data()
    {
        QTest::addColumn<bool>("sound");
        QTest::newRow("with sound") << true;
        QTest::newRow("without sound") << false;
    }
    void remuxOfDamagedFile()
    {
        QFETCH(bool, sound);
        m_t->m_movie.hasSoundTrak = sound;
        m_t->RemuxDamagedFile(m_p.input);
        const QList<QStringList> c = calls();
        QCOMPARE(c.size(), 1);
        QCOMPARE(c[0].at(1), m_p.input);
        QCOMPARE(c[0].contains(QStringLiteral("-acodec")), sound);
        QCOMPARE(c[0].last(), QStringLiteral(".partial-my clip.mov"));   // renamed when done
        QVERIFY(!m_t->m_movie.hasSoundTrak);
        QVERIFY(!m_t->m_passFailed);
    }

    void noOutputIsANegativeVerdict()
    {
        qputenv("FAKE_NO_OUTPUT", "1");
        m_t->MuxVideoAndAudio(m_p);
        QVERIFY(m_t->m_passFailed);
        QVERIFY(!g_moovRead);
        m_t->m_passFailed = false;
        m_t->RemuxDamagedFile(m_p.input);
        QVERIFY(m_t->m_passFailed);
    }

    // The muxer would stop and ask before overwriting; nobody answers.
    void existingOutputIsReplaced()
    {
        const QString out = m_t->m_workDir + QStringLiteral("/my clip.mov");
        writeAll(out, "old result");
        m_t->m_chainFacts.videoSampleCount = 250;
        m_t->MuxVideoOnly(m_p);
        QCOMPARE(readAll(out), QByteArray("made\n"));
    }
};

QTEST_GUILESS_MAIN(TestRemux)
#include "test_remux.moc"
