// The muxer stage of the H.264 chain: its command lines as text, the frame
// rate and the two-run rule, what it deletes, and its verdict when the muxer
// leaves no file. A fake ffmpeg records each argument it gets.
#include "core/muxer.h"
#include "core/thread_video_repair.h"
#include "recovery/h264/h264_recovery.h"
#include "support/signal_log.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace testvideo;

class TestRemux : public QObject {
    Q_OBJECT
    QString m_dir;
    QString m_calls;

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

    void prepare(ThreadVideoRepair& t, ChainPaths& p)
    {
        g_workRoot = m_dir + QStringLiteral("/work root");
        t.m_workDir = g_workRoot + QStringLiteral("/Repaired");
        t.m_fileName = QStringLiteral("my clip.mov");
        QDir().mkpath(t.m_workDir);
        p = ChainPaths::in(t.m_workDir, m_dir + QStringLiteral("/in put.mov"));
        for (const QString& f : {p.video, p.audio, p.videoText, p.audioText, p.indexing, p.videoUnique,
                                 p.audioUnique})
            writeAll(f, "x");
        QFile::remove(m_calls);
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("remux"));
        g_appDir = m_dir + QStringLiteral("/app dir/Libmp4");
        QDir().mkpath(g_appDir);
        m_calls = m_dir + QStringLiteral("/calls.txt");
        const QString fake = g_appDir + QStringLiteral("/ffmpeg");
        writeAll(fake, "#!/bin/sh\n"
                       "echo --- >> '" + m_calls.toUtf8() + "'\n"
                       "for a in \"$@\"; do echo \"$a\" >> '" + m_calls.toUtf8() + "'; done\n"
                       "eval out=\\${$#}\n"
                       "[ -e \"$out\" ] && exit 1\n"
                       "[ -n \"$FAKE_NO_OUTPUT\" ] || echo made > \"$out\"\n");
        QFile::setPermissions(fake, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        g_stopRequested = false;
        g_passFailed = false;
        qunsetenv("FAKE_NO_OUTPUT");
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void commandText()
    {
        const QString lead = QLatin1Char('"') + g_appDir + QStringLiteral("\"/ffmpeg");
        QCOMPARE(MuxVideoAndAudioCommand(QStringLiteral("/a b/video.h264"), QStringLiteral("/a b/audio.aac"),
                                         QStringLiteral("c d.mov")),
                 lead + QStringLiteral(" -r 30 -i \"/a b/video.h264\" -i \"/a b/audio.aac\" -bsf:a aac_adtstoasc"
                                       " -c:v copy -c:a copy \"c d.mov\""));
        QCOMPARE(MuxVideoAndAudioCommand(QStringLiteral("v"), QStringLiteral("a"), QStringLiteral("1_o"), QStringLiteral("24")),
                 lead + QStringLiteral(" -r 24 -i \"v\" -i \"a\" -bsf:a aac_adtstoasc -c:v copy -c:a copy \"1_o\""));
        QCOMPARE(MuxVideoOnlyCommand(QStringLiteral("v"), QStringLiteral("o")),
                 lead + QStringLiteral(" -r 30000/1001 -i \"v\" -c:v copy \"o\""));
        QCOMPARE(MuxVideoOnlyCommand(QStringLiteral("v"), QStringLiteral("1_o"), QStringLiteral("50")),
                 lead + QStringLiteral(" -r 50 -i \"v\" -c:v copy \"1_o\""));
        QCOMPARE(RemuxDamagedCommand(QStringLiteral("/x y/in.mp4"), QStringLiteral("in.mp4"), true),
                 lead + QStringLiteral(" -i \"/x y/in.mp4\" -vcodec copy -acodec copy -movflags faststart \"in.mp4\""));
        QCOMPARE(RemuxDamagedCommand(QStringLiteral("i"), QStringLiteral("n"), false),
                 lead + QStringLiteral(" -i \"i\" -vcodec copy -movflags faststart \"n\""));
        QCOMPARE(MuxVideoAndPcmCommand(QStringLiteral("v"), QStringLiteral("s16le"), QStringLiteral("48000"),
                                       QStringLiteral("2"), QStringLiteral("a"), QStringLiteral("o")),
                 lead + QStringLiteral("  -i \"v\" -f s16le -ar 48000 -ac 2 -i \"a\" -c:v copy -c:a aac -preset ultrafast \"o\""));
    }

    void frameRate()
    {
        QCOMPARE(ComputeFrameRate(250, 10000, 1000), 25);
        QCOMPARE(ComputeFrameRate(300, 10010, 1000), 30);
        QCOMPARE(ComputeFrameRate(0, 10000, 1000), 30);     // no count
        QCOMPARE(ComputeFrameRate(250, 10000, 0), 30);      // no time scale
        QCOMPARE(ComputeFrameRate(20, 900, 1000), 30);      // under a second
        QCOMPARE(ComputeFrameRate(5, 100000, 1000), 30);    // a rate of 0
        for (int r : {25, 26, 31, 32})
            QVERIFY(!NeedsSecondRun(r));
        for (int r : {0, 24, 33, 60})
            QVERIFY(NeedsSecondRun(r));
    }

    void muxRunsAndDeletions_data()
    {
        QTest::addColumn<bool>("withAudio");
        QTest::addColumn<uint>("samples");
        QTest::addColumn<int>("runs");
        QTest::newRow("audio 25") << true << 250u << 1;
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
        ThreadVideoRepair t;
        ChainPaths p;
        prepare(t, p);
        g_videoSampleCount = samples;
        g_movieDuration = 10000;
        g_movieTimescale = 1000;
        withAudio ? t.MuxVideoAndAudio(p) : t.MuxVideoOnly(p);

        const QList<QStringList> c = calls();
        QCOMPARE(c.size(), runs);
        // Paths with blanks arrive whole; the output is named relative to
        // the workspace, where the muxer runs.
        QVERIFY(c[0].contains(p.video));
        QCOMPARE(c[0].contains(p.audio), withAudio);
        QCOMPARE(c[0].last(), QStringLiteral("my clip.mov"));
        QCOMPARE(c[0].at(1), withAudio ? QStringLiteral("30") : QStringLiteral("30000/1001"));
        if (runs == 2) {
            QCOMPARE(c[1].last(), QStringLiteral("1_my clip.mov"));
            QCOMPARE(c[1].at(1), QString::number(samples / 10));
            QVERIFY(QFile::exists(t.m_workDir + QStringLiteral("/1_my clip.mov")));
        }
        QVERIFY(QFile::exists(t.m_workDir + QStringLiteral("/my clip.mov")));
        for (const QString& f : {p.video, p.audio, p.videoText, p.audioText, p.indexing, p.videoUnique, p.audioUnique})
            QVERIFY2(!QFile::exists(f), qPrintable(f));
        QVERIFY(!g_muxerBusy);
        QVERIFY(g_remuxed);
        QVERIFY(!g_passFailed);
    }

    void remuxOfDamagedFile()
    {
        for (bool sound : {true, false}) {
            ThreadVideoRepair t;
            ChainPaths p;
            prepare(t, p);
            g_hasSoundTrak = sound;
            t.RemuxDamagedFile(p.input);
            const QList<QStringList> c = calls();
            QCOMPARE(c.size(), 1);
            QCOMPARE(c[0].at(1), p.input);
            QCOMPARE(c[0].contains(QStringLiteral("-acodec")), sound);
            QCOMPARE(c[0].last(), QStringLiteral("my clip.mov"));
            QVERIFY(!g_hasSoundTrak);
            QVERIFY(!g_passFailed);
        }
    }

    void noOutputIsANegativeVerdict()
    {
        qputenv("FAKE_NO_OUTPUT", "1");
        ThreadVideoRepair t;
        SignalLog log(t);
        ChainPaths p;
        prepare(t, p);
        g_videoSampleCount = 0;
        t.MuxVideoAndAudio(p);
        QVERIFY(g_passFailed);
        QVERIFY(!g_moovRead);
        QCOMPARE(log.all(), QStringList{QStringLiteral("WriteStatus 0 my clip.mov 0")});
        g_passFailed = false;
        t.RemuxDamagedFile(p.input);
        QVERIFY(g_passFailed);
    }

    void existingOutputIsReplaced()
    {
        // The muxer would stop and ask before overwriting; nobody answers.
        ThreadVideoRepair t;
        ChainPaths p;
        prepare(t, p);
        const QString out = t.m_workDir + QStringLiteral("/my clip.mov");
        writeAll(out, "old result");
        g_videoSampleCount = 250;
        t.MuxVideoOnly(p);
        QCOMPARE(readAll(out), QByteArray("made\n"));
    }
};

QTEST_GUILESS_MAIN(TestRemux)
#include "test_remux.moc"
