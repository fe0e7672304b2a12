// The QuickTime rebuild on small crafted indexes, checked byte for byte:
// interleaving, stsc, chunk offsets, sizes, ctts rounding, ftyp handling.
#include "core/log_cipher.h"
#include "core/repair_globals.h"
#include "core/thread_video_repair.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace testvideo;

namespace {
uint32_t Be32(const QByteArray& b, qint64 at)
{
    const uchar* p = reinterpret_cast<const uchar*>(b.constData()) + at;
    return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
}
uint64_t Be64(const QByteArray& b, qint64 at) { return uint64_t(Be32(b, at)) << 32 | Be32(b, at + 4); }
// The payload of the n-th atom named code (after its 8-byte head), or empty.
QByteArray Atom(const QByteArray& file, const char* code, int n = 0)
{
    qint64 from = 0;
    for (;;) {
        const qint64 at = file.indexOf(code, from);
        if (at < 4)
            return QByteArray();
        if (n-- == 0)
            return file.mid(at - 4, Be32(file, at - 4));
        from = at + 4;
    }
}
QByteArray Words(std::initializer_list<uint32_t> words)
{
    QByteArray b;
    for (uint32_t w : words)
        for (int s = 24; s >= 0; s -= 8)
            b += char(w >> s);
    return b;
}
}

class TestQuickTimeRebuild : public QObject {
    Q_OBJECT
    QString m_dir;

    // Source bytes: byte i has value i & 0xFF, behind an optional ftyp.
    QByteArray source(int ftypSize = 0)
    {
        QByteArray b(4096, 0);
        for (int i = 0; i < b.size(); ++i)
            b[i] = char(i * 7);
        if (ftypSize) {
            b.replace(0, 4, Words({uint32_t(ftypSize)}));
            b.replace(4, 4, "ftyp");
        }
        return b;
    }

    QByteArray rebuild(ThreadVideoRepair& t, const QByteArray& src, const QStringList& lines)
    {
        t.m_file.reset(new MemoryReader(src));
        t.m_fileSize = uint64_t(src.size());
        t.m_workDir = m_dir;
        t.m_fileName = QStringLiteral("out.mov");
        LogCipher cipher;
        const QString log = m_dir + QStringLiteral("/logFile.txt");
        t.m_logHandle.open(log);
        for (const QString& l : lines)
            t.WriteLogLine(cipher, l);
        t.m_logHandle.write(QByteArray("not an enciphered line\r\n"));
        t.m_logHandle.close();
        t.RebuildQuickTimeFile(log);
        return readAll(m_dir + QStringLiteral("/out.mov"));
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("rebuild"));
        g_stopRequested = false;
        g_remuxed = false;
        g_passFailed = false;
        g_repairedPaths.clear();
        g_videoTimeScale = 600;
        g_videoSampleDelta = 20;
        g_soundTimeScale = 48000;
        g_frameWidth = 320;
        g_frameHeight = 240;
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void interleavedVideoAndAudio()
    {
        // V V A V V A V V: three video chunks of two, two audio chunks of one.
        const QStringList lines = {"AVC(Vide) at = 100 Size = 10", "AVC(Vide) at = 200 Size = 11",
                                   "AAC(soun) at = 300 Size = 12", "AVC(Vide) at = 400 Size = 13",
                                   "AVC(Vide) at = 500 Size = 14", "AAC(soun) at = 600 Size = 15",
                                   "AVC(Vide) at = 700 Size = 16", "AVC(Vide) at = 800 Size = 17"};
        ThreadVideoRepair t;
        const QByteArray src = source(24);
        const QByteArray out = rebuild(t, src, lines);
        QVERIFY(!g_passFailed);
        QCOMPARE(g_repairedPaths, QStringList({m_dir + QStringLiteral("/out.mov")}));
        QCOMPARE(out.left(24), src.left(24));                       // the small ftyp is copied
        QCOMPARE(out.mid(24, 8), Words({1}) + "mdat");
        QCOMPARE(Be64(out, 32), uint64_t(16 + 108));
        QByteArray frames;
        for (auto r : {qMakePair(100, 10), qMakePair(200, 11), qMakePair(300, 12), qMakePair(400, 13),
                       qMakePair(500, 14), qMakePair(600, 15), qMakePair(700, 16), qMakePair(800, 17)})
            frames += src.mid(r.first, r.second);
        QCOMPARE(out.mid(40, frames.size()), frames);
        const uint32_t d = 24 + 16;
        QCOMPARE(Atom(out, "stsc", 0), Words({28}) + "stsc" + Words({0, 1, 1, 2, 1}));
        QCOMPARE(Atom(out, "stsz", 0), Words({44}) + "stsz" + Words({0, 0, 6, 10, 11, 13, 14, 16, 17}));
        QCOMPARE(Atom(out, "co64", 0), Words({40}) + "co64" + Words({0, 3, 0, d, 0, d + 33, 0, d + 75}));
        QCOMPARE(Atom(out, "stts", 0), Words({24}) + "stts" + Words({0, 1, 6, 20}));
        // Sound: one entry of one frame a chunk, two chunks, sizes listed.
        QCOMPARE(Atom(out, "stsc", 1), Words({28}) + "stsc" + Words({0, 1, 1, 1, 1}));
        QCOMPARE(Atom(out, "stsz", 1), Words({28}) + "stsz" + Words({0, 0, 2, 12, 15}));
        QCOMPARE(Atom(out, "co64", 1), Words({32}) + "co64" + Words({0, 2, 0, d + 21, 0, d + 60}));
        QCOMPARE(Atom(out, "stts", 1), Words({24}) + "stts" + Words({0, 1, 2, 1024}));
        // Sizes agree: moov ends the file, tkhd carries 320 x 240, mvhd the duration.
        const QByteArray moov = Atom(out, "moov");
        QCOMPARE(qint64(out.indexOf("moov") - 4 + moov.size()), qint64(out.size()));
        const QByteArray tkhd = Atom(out, "tkhd");
        QCOMPARE(tkhd.size(), 92);
        QCOMPARE(Be32(tkhd, 84), 320u << 16);
        QCOMPARE(Be32(tkhd, 88), 240u << 16);
        QCOMPARE(Atom(out, "mvhd").size(), 108);
        QCOMPARE(Be32(Atom(out, "mvhd"), 24), 6u * 20);
    }

    void videoOnlyAndCttsRounding()
    {
        QStringList lines;
        for (int i = 0; i < 7; ++i)
            lines << QStringLiteral("AVC(Vide) at = %1 Size = 100").arg(i * 100);
        ThreadVideoRepair t;
        t.m_hasCtts = true;
        t.m_cttsOffset0 = 40; t.m_cttsOffset1 = 80; t.m_cttsOffset2 = 20;
        const QByteArray out = rebuild(t, source(60), lines);   // ftyp of 60 bytes: the default stands
        QCOMPARE(out.left(32), QByteArray::fromHex("00000020667479707174202020050300717420200000000000000000000000000"
                                                   "0").left(32));
        QCOMPARE(out.mid(32, 8), Words({1}) + "mdat");
        QVERIFY(Atom(out, "smhd").isEmpty());                       // no audio track
        QCOMPARE(Atom(out, "stsc"), Words({28}) + "stsc" + Words({0, 1, 1, 7, 1}));
        // Seven frames: three rounds of three, nine entries.
        QCOMPARE(Atom(out, "ctts"), Words({88}) + "ctts" + Words({0, 9, 1, 40, 1, 80, 1, 20, 1, 40, 1, 80, 1, 20, 1, 40, 1, 80, 1, 20}));
        ThreadVideoRepair t2;
        t2.m_hasCtts = true;
        t2.m_cttsOffset0 = 0; t2.m_cttsOffset1 = 30; t2.m_cttsOffset2 = 10;
        const QByteArray out2 = rebuild(t2, source(), lines.mid(0, 4));
        QCOMPARE(Atom(out2, "ctts"), Words({56}) + "ctts" + Words({0, 5, 1, 0, 1, 30, 1, 10, 1, 30, 1, 10}));
    }

    void badLinesArePassedOver()
    {
        // Only the two whole frames are copied; everything else in the index
        // is passed over the same way by every table, so sizes and offsets agree.
        const QStringList lines = {"AVC(Vide) at = 0 Size = 10",
                                   "AVC(Vide) at = 4090 Size = 100",                    // past the end
                                   "AVC(Vide) at = 18446744073709551615 Size = 2",      // wraps around
                                   "AVC(Vide) at = 5 Size = 99999999999",              // over 32 bits
                                   "AVC(Vide) at = abc Size = 5",
                                   "AVC(Vide) at = 5 Size = -5",
                                   "AVC(Vide) at = 5",
                                   "AAC(soun) at = 10 Size = 0",
                                   "AAC(soun)  at = 10 Size = 8",                       // fields shifted
                                   "AVC(Vide) at = 4086 Size = 10"};                    // ends at the end: whole
        ThreadVideoRepair t;
        QByteArray src = source();
        t.m_file.reset(new MemoryReader(src));
        t.m_fileSize = uint64_t(src.size());
        t.m_workDir = m_dir;
        t.m_fileName = QStringLiteral("out.mov");
        LogCipher cipher;
        const QString log = m_dir + QStringLiteral("/logFile.txt");
        t.m_logHandle.open(log);
        t.m_logHandle.write(QByteArray(200000, 'Q') + "\r\n");                    // one very long line
        t.m_logHandle.write(QByteArray("\xff\xfe\x00garbage\r\n", 12));
        for (const QString& l : lines)
            t.WriteLogLine(cipher, l);
        t.m_logHandle.close();
        t.RebuildQuickTimeFile(log);
        const QByteArray out = readAll(m_dir + QStringLiteral("/out.mov"));
        QVERIFY(!g_passFailed);
        QCOMPARE(Be64(out, 40), uint64_t(16 + 20));
        QCOMPARE(out.mid(48, 20), src.left(10) + src.mid(4086, 10));
        QCOMPARE(Atom(out, "stsz"), Words({28}) + "stsz" + Words({0, 0, 2, 10, 10}));
        QCOMPARE(Atom(out, "co64"), Words({24}) + "co64" + Words({0, 1, 0, 48}));
        QVERIFY(Atom(out, "smhd").isEmpty());
    }

    void speedCheckOfPcmSound_data()
    {
        QTest::addColumn<int>("soundBytes");
        QTest::addColumn<QStringList>("commands");
        // Two seconds of video. 64 bytes of sound at 4 samples a second are
        // four seconds: twice as long, so the video is played at twice its speed.
        QTest::newRow("ratio 2") << 64 << QStringList({"split video", "split audio", "speed", "join"});
        QTest::newRow("ratio 1") << 32 << QStringList({"split video", "split audio"});
    }
    void speedCheckOfPcmSound()
    {
        QFETCH(int, soundBytes);
        QFETCH(QStringList, commands);
        // A fake muxer: each run appends its arguments, one a line, and a
        // separator, and makes its last argument as a file in its folder.
        const QString saved = g_appDir;
        g_appDir = m_dir + QStringLiteral("/Libmp4");
        QDir().mkpath(g_appDir);
        const QString calls = m_dir + QStringLiteral("/calls.txt");
        writeAll(g_appDir + QStringLiteral("/ffmpeg"),
                 "#!/bin/sh\n{ for a in \"$@\"; do printf '%s\\n' \"$a\"; done; echo ---; } >> '" + calls.toUtf8()
                     + "'\nfor a; do last=$a; done\n: > \"$last\"\n");
        QFile::setPermissions(g_appDir + QStringLiteral("/ffmpeg"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        g_videoTimeScale = 10;
        g_videoSampleDelta = 10;
        g_soundTimeScale = 4;
        ThreadVideoRepair t;
        t.m_isSowt = true;
        const QByteArray out = rebuild(t, source(), {QStringLiteral("AVC(Vide) at = 0 Size = 100"),
                                                     QStringLiteral("AAC(soun) at = 100 Size = %1").arg(soundBytes),
                                                     QStringLiteral("AVC(Vide) at = 200 Size = 100")});
        g_appDir = saved;
        QVERIFY(!t.m_isSowt);
        const QString f = m_dir + QStringLiteral("/out.mov");
        QMap<QString, QStringList> known;
        known[QStringLiteral("split video")] = QStringList({"-i", f, "-c:v", "copy", "-an", "output_video.mov"});
        known[QStringLiteral("split audio")] = QStringList({"-i", f, "-vn", "-c:a", "copy", "output_audio.mov"});
        known[QStringLiteral("speed")] = QStringList({"-i", m_dir + "/output_video.mov", "-filter:v", "setpts=PTS/2",
                                                      "-c:a", "copy", "-preset", "ultrafast", "ModifiedFile.mov"});
        known[QStringLiteral("join")] = QStringList({"-i", m_dir + "/ModifiedFile.mov", "-i", m_dir + "/output_audio.mov",
                                                     "-c", "copy", "out.mov"});
        QStringList expected;
        for (const QString& c : commands)
            expected << known[c] << QStringLiteral("---");
        QCOMPARE(QString::fromUtf8(readAll(calls)).split(QLatin1Char('\n'), Qt::SkipEmptyParts), expected);
        // The scratch files are gone; the file under its own name stands
        // (rebuilt, or made anew by the join).
        for (const char* name : {"output_video.mov", "output_audio.mov", "ModifiedFile.mov"})
            QVERIFY2(!QFile::exists(m_dir + QLatin1Char('/') + QLatin1String(name)), name);
        QVERIFY(QFile::exists(f));
        if (commands.size() == 2)
            QVERIFY(!out.isEmpty());
    }

    void nothingToRebuild()
    {
        // Lines past the end, undecipherable lines only: no file, negative verdict.
        ThreadVideoRepair t;
        const QByteArray out = rebuild(t, source(), {"AVC(Vide) at = 4000 Size = 200", "Zero(Zero) at = 0 Size = 10"});
        QVERIFY(out.isEmpty());
        QVERIFY(g_passFailed);
        QVERIFY(g_repairedPaths.isEmpty());
        g_passFailed = false;
        g_remuxed = true;
        ThreadVideoRepair t2;
        t2.m_workDir = m_dir;
        t2.m_fileName = QStringLiteral("x.mp4");
        t2.RebuildQuickTimeFile(QString());
        QCOMPARE(g_repairedPaths, QStringList({m_dir + QStringLiteral("/x.mp4")}));
        g_remuxed = false;
    }
};

QTEST_GUILESS_MAIN(TestQuickTimeRebuild)
#include "test_quicktime_rebuild.moc"
