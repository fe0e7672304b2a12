// The frame scanners' index lines, and the QuickTime rebuild from an index,
// checked byte for byte on small crafted indexes.
#include "core/log_cipher.h"
#include "core/repair_globals.h"
#include "core/quicktime_route.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace testvideo;

namespace {
uint64_t Be64(const QByteArray& b, qint64 at) { return uint64_t(readBe(b, at)) << 32 | readBe(b, at + 4); }
// The n-th atom named code, head included, or empty.
QByteArray Atom(const QByteArray& file, const char* code, int n = 0)
{
    qint64 at = 0;
    for (int i = 0; i <= n && at >= 0; ++i)
        at = file.indexOf(code, at ? at + 4 : 0);
    return at < 4 ? QByteArray() : file.mid(at - 4, readBe(file, at - 4));
}
QString Line(const char* kind, qint64 at, qint64 size)
{
    return QStringLiteral("%1 at = %2 Size = %3").arg(QLatin1String(kind)).arg(at).arg(size);
}
// The route object of one file, with the reader and the log it borrows.
struct FileRoute : QuickTimeRoute {
    FileRoute()
    {
        m_log = &logFile;
        m_movie.videoTimeScale = 600;
        m_movie.videoSampleDelta = 20;
        m_movie.soundTimeScale = 48000;
        m_movie.frameWidth = 320;
        m_movie.frameHeight = 240;
    }
    void read(const QByteArray& bytes)
    {
        own.reset(new MemoryReader(bytes));
        m_file = own.get();
    }
    std::unique_ptr<ByteReader> own;
    FileWriter logFile;
};
const char* V = "AVC(Vide)";
const char* A = "AAC(soun)";
}

class TestScanAndRebuild : public QObject {
    Q_OBJECT
    QString m_dir;

    // Runs a scanner over bytes and returns the deciphered index lines.
    QStringList scan(const QByteArray& bytes, void (QuickTimeRoute::*scanner)())
    {
        FileRoute t;
        t.read(bytes);
        t.m_fileSize = t.m_inputSize = uint64_t(bytes.size());
        const QString log = m_dir + QStringLiteral("/logFile.txt");
        t.logFile.open(log);
        (t.*scanner)();
        t.logFile.close();
        QStringList lines;
        LogCipher cipher;
        for (const QByteArray& l : readAll(log).split('\n')) {
            if (l.trimmed().isEmpty())
                continue;
            if (!l.endsWith('\r'))
                lines << QStringLiteral("no CR LF");
            lines << cipher.decryptToString(QString::fromLatin1(l.trimmed()));
        }
        return lines;
    }

    // Source bytes of the rebuild: byte i is i * 7, behind an ftyp when asked.
    static QByteArray source(int ftypSize = 0)
    {
        QByteArray b(4096, 0);
        for (int i = 0; i < b.size(); ++i)
            b[i] = char(i * 7);
        if (ftypSize)
            b.replace(0, 8, beWords({uint32_t(ftypSize)}) + "ftyp");
        return b;
    }

    // Rebuilds out.mov from src and an index of junk, then the lines enciphered.
    QByteArray rebuild(FileRoute& t, const QByteArray& src, const QStringList& lines,
                       const QByteArray& junk = "not an enciphered line\r\n")
    {
        t.read(src);
        t.m_fileSize = uint64_t(src.size());
        t.m_workDir = m_dir;
        t.m_fileName = QStringLiteral("out.mov");
        LogCipher cipher;
        const QString log = m_dir + QStringLiteral("/logFile.txt");
        t.logFile.open(log);
        t.logFile.write(junk);
        for (const QString& l : lines)
            t.WriteLogLine(cipher, l);
        t.logFile.close();
        t.RebuildQuickTimeFile(log);
        return readAll(m_dir + QStringLiteral("/out.mov"));
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("scan rebuild"));   // a blank in the path on purpose
        g_stopRequested = false;
        g_repairedPaths.clear();
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    // ---- Scanners ----

    void jpegFrames()
    {
        const auto frame = [](int size, char marker) {
            QByteArray f(size, char(0x11));
            f.replace(0, 4, QByteArray("\xFF\xD8\xFF") + marker);
            f.replace(size - 2, 2, "\xFF\xD9");
            return f;
        };
        QByteArray file(100, 'x');
        QStringList want;
        for (int size : {6000, 7000, 9000}) {   // filler between the frames
            want << Line(V, file.size(), size);
            file += frame(size, char(0xE0)) + QByteArray(50, char(0x22));
        }
        QCOMPARE(scan(file, &QuickTimeRoute::ScanJpegFrames), want);
        // A 100-byte frame lies inside the first skip of 5000: it joins the next one.
        QCOMPARE(scan(frame(100, char(0xDB)) + frame(6000, char(0xDB)), &QuickTimeRoute::ScanJpegFrames),
                 QStringList({Line(V, 0, 6100)}));
    }

    void mpeg4Frames()
    {
        // ftyp, mdat, frame + two 32-byte audio frames, frame + audio, a last frame (no line).
        const QByteArray frame = QByteArray::fromHex("000001B6") + QByteArray(300, char(0x55));
        const QByteArray audio = QByteArray(1, char(0x3C)) + QByteArray(31, char(0x66));
        QByteArray file = beWords({16}) + "ftyp" + QByteArray(8, 0) + beWords({0}) + "mdat";
        const int a = file.size(), b = a + 304 + 64;
        file += frame + audio + audio + frame + audio + frame;
        QCOMPARE(scan(file, &QuickTimeRoute::ScanMpeg4Frames),
                 QStringList({Line(V, a, 304), Line(A, a + 304, 32), Line(A, a + 336, 32), Line(V, b, 304), Line(A, b + 304, 32)}));

        // The frame in front of moov ends at moov's size word; start codes in the
        // movie's tables are not frames.
        const QByteArray small = QByteArray::fromHex("000001B6") + QByteArray(200, char(0x55));
        file = beWords({8}) + "mdat" + small + small + beWords({64}) + "moov"
             + QByteArray::fromHex("0000811200000000000001B6") + QByteArray(44, char(0x77)) + small;
        QCOMPARE(scan(file, &QuickTimeRoute::ScanMpeg4Frames), QStringList({Line(V, 8, 204), Line(V, 212, 204)}));

        // Zeros over the end of one frame and the start of the next: the frame
        // before the hole runs to the first opening behind it.
        const QByteArray big = QByteArray::fromHex("000001B6") + QByteArray(500, char(0x55));
        file = beWords({8}) + "mdat" + big + big + big + big + big;
        file.replace(8 + 504 + 300, 600, QByteArray(600, 0));
        QCOMPARE(scan(file, &QuickTimeRoute::ScanMpeg4Frames),
                 QStringList({Line(V, 8, 504), Line(V, 512, 1008), Line(V, 1520, 504)}));
    }

    void proResFramesPaddingAndSound()
    {
        // frame, frame, zero padding, sound, zero padding, frame, zeros, moov, a frame behind moov.
        const auto frame = [](int size) { return beWords({uint32_t(size)}) + "icpf" + QByteArray(size - 8, char(0x33)); };
        const QByteArray file = QByteArray(20, 'm') + frame(400) + frame(300) + QByteArray(16, 0)
                              + QByteArray(200, char(0x44)) + QByteArray(16, 0) + frame(500) + QByteArray(16, 0)
                              + beWords({8}) + "moov" + frame(100);
        QCOMPARE(scan(file, &QuickTimeRoute::ScanProResFrames),
                 QStringList({Line(V, 20, 400), Line(V, 420, 300), Line(A, 736, 200), Line(V, 952, 500)}));
    }

    // ---- Rebuild ----

    void interleavedVideoAndAudio()
    {
        // V V A V V A V V: three video chunks of two, two audio chunks of one.
        QStringList lines;
        for (int i = 0; i < 8; ++i)
            lines << Line(i % 3 == 2 ? A : V, 100 * (i + 1), 10 + i);
        FileRoute t;
        const QByteArray src = source(24);
        const QByteArray out = rebuild(t, src, lines);
        QVERIFY(!t.m_passFailed);
        QCOMPARE(g_repairedPaths, QStringList({m_dir + QStringLiteral("/out.mov")}));
        QCOMPARE(out.left(24), src.left(24));   // the small ftyp is copied
        QCOMPARE(out.mid(24, 8), beWords({1}) + "mdat");
        QCOMPARE(Be64(out, 32), uint64_t(16 + 108));
        QByteArray frames;
        for (int i = 0; i < 8; ++i)
            frames += src.mid(100 * (i + 1), 10 + i);
        QCOMPARE(out.mid(40, frames.size()), frames);
        const uint32_t d = 24 + 16;
        QCOMPARE(Atom(out, "stsc", 0), beWords({28}) + "stsc" + beWords({0, 1, 1, 2, 1}));
        QCOMPARE(Atom(out, "stsz", 0), beWords({44}) + "stsz" + beWords({0, 0, 6, 10, 11, 13, 14, 16, 17}));
        QCOMPARE(Atom(out, "co64", 0), beWords({40}) + "co64" + beWords({0, 3, 0, d, 0, d + 33, 0, d + 75}));
        QCOMPARE(Atom(out, "stts", 0), beWords({24}) + "stts" + beWords({0, 1, 6, 20}));
        // Sound: one entry of one frame a chunk, two chunks, sizes listed.
        QCOMPARE(Atom(out, "stsc", 1), beWords({28}) + "stsc" + beWords({0, 1, 1, 1, 1}));
        QCOMPARE(Atom(out, "stsz", 1), beWords({28}) + "stsz" + beWords({0, 0, 2, 12, 15}));
        QCOMPARE(Atom(out, "co64", 1), beWords({32}) + "co64" + beWords({0, 2, 0, d + 21, 0, d + 60}));
        QCOMPARE(Atom(out, "stts", 1), beWords({24}) + "stts" + beWords({0, 1, 2, 1024}));
        // Sizes agree: moov ends the file, tkhd carries 320 x 240, mvhd the duration.
        QCOMPARE(qint64(out.indexOf("moov") - 4 + Atom(out, "moov").size()), qint64(out.size()));
        const QByteArray tkhd = Atom(out, "tkhd");
        QCOMPARE(tkhd.size(), 92);
        QCOMPARE(readBe(tkhd, 84), 320u << 16);
        QCOMPARE(readBe(tkhd, 88), 240u << 16);
        QCOMPARE(Atom(out, "mvhd").size(), 108);
        QCOMPARE(readBe(Atom(out, "mvhd"), 24), 6u * 20);
    }

    // More chunks than a block of the chunk list holds: the list spills to a
    // work file, is read back whole and in order, and the file is gone after.
    void longChunkListSpills()
    {
        const int n = int(QuickTimeRoute::ChunkTable::kBlockBytes / sizeof(QuickTimeRoute::RebuildChunk)) + 500;
        QStringList lines;
        for (int i = 0; i < n; ++i)
            lines << Line(V, i % 1000, 2) << Line(A, 2000, 4);
        FileRoute t;
        const QByteArray out = rebuild(t, source(24), lines);
        const QByteArray video = Atom(out, "co64", 0), sound = Atom(out, "co64", 1);
        QCOMPARE(video.size(), 16 + 8 * n);
        QCOMPARE(sound.size(), 16 + 8 * n);
        bool inOrder = true;
        for (int i = 0; i < n && inOrder; ++i)
            inOrder = Be64(video, 16 + 8 * i) == uint64_t(40 + 6 * i) && Be64(sound, 16 + 8 * i) == uint64_t(42 + 6 * i);
        QVERIFY(inOrder);
        QCOMPARE(readBe(Atom(out, "stsc", 0), 12), uint32_t(n - 1));   // every run but the last has its entry
        QCOMPARE(QDir(m_dir).entryList({".rebuild-*"}, QDir::Files | QDir::Hidden), QStringList());
    }

    void videoOnlyAndCttsRounding()
    {
        QStringList lines;
        for (int i = 0; i < 7; ++i)
            lines << Line(V, i * 100, 100);
        FileRoute t;
        t.m_movie.hasCtts = true;
        t.m_movie.cttsOffset0 = 40; t.m_movie.cttsOffset1 = 80; t.m_movie.cttsOffset2 = 20;
        const QByteArray out = rebuild(t, source(60), lines);   // an ftyp of 60 bytes: the default stands
        QCOMPARE(out.left(32), QByteArray::fromHex("0000002066747970717420202005030071742020000000000000000000000000"));
        QCOMPARE(out.mid(32, 8), beWords({1}) + "mdat");
        QVERIFY(Atom(out, "smhd").isEmpty());   // no audio track
        QCOMPARE(Atom(out, "stsc"), beWords({28}) + "stsc" + beWords({0, 1, 1, 7, 1}));
        // Seven frames: three rounds of three, nine entries.
        QCOMPARE(Atom(out, "ctts"), beWords({88}) + "ctts" + beWords({0, 9, 1, 40, 1, 80, 1, 20, 1, 40, 1, 80, 1, 20, 1, 40, 1, 80, 1, 20}));
        FileRoute t2;
        t2.m_movie.hasCtts = true;
        t2.m_movie.cttsOffset0 = 0; t2.m_movie.cttsOffset1 = 30; t2.m_movie.cttsOffset2 = 10;
        QCOMPARE(Atom(rebuild(t2, source(), lines.mid(0, 4)), "ctts"),
                 beWords({56}) + "ctts" + beWords({0, 5, 1, 0, 1, 30, 1, 10, 1, 30, 1, 10}));
    }

    // Lines that don't decipher or don't fit the file are passed over the same
    // way by every table, so sizes and offsets agree.
    void badLinesArePassedOver()
    {
        const QStringList lines = {Line(V, 0, 10),
                                   Line(V, 4090, 100),                                  // past the end
                                   "AVC(Vide) at = 18446744073709551615 Size = 2",      // wraps around
                                   "AVC(Vide) at = 5 Size = 99999999999",              // over 32 bits
                                   "AVC(Vide) at = abc Size = 5", "AVC(Vide) at = 5 Size = -5", "AVC(Vide) at = 5",
                                   Line(A, 10, 0),
                                   "AAC(soun)  at = 10 Size = 8",                       // fields shifted
                                   Line(V, 4086, 10)};                                  // ends at the end: whole
        FileRoute t;
        const QByteArray src = source();
        const QByteArray out = rebuild(t, src, lines, QByteArray(200000, 'Q') + "\r\n" + QByteArray("\xff\xfe\x00garbage\r\n", 12));
        QVERIFY(!t.m_passFailed);
        QCOMPARE(Be64(out, 40), uint64_t(16 + 20));
        QCOMPARE(out.mid(48, 20), src.left(10) + src.mid(4086, 10));
        QCOMPARE(Atom(out, "stsz"), beWords({28}) + "stsz" + beWords({0, 0, 2, 10, 10}));
        QCOMPARE(Atom(out, "co64"), beWords({24}) + "co64" + beWords({0, 1, 0, 48}));
        QVERIFY(Atom(out, "smhd").isEmpty());
    }

    // Nothing whole in the index: no file, a negative verdict. A pass that
    // already left a finished file (m_remuxed) names it as the output.
    void nothingToRebuild()
    {
        FileRoute t;
        QVERIFY(rebuild(t, source(), {Line(V, 4000, 200), "Zero(Zero) at = 0 Size = 10"}).isEmpty());
        QVERIFY(t.m_passFailed);
        QVERIFY(g_repairedPaths.isEmpty());
        FileRoute t2;
        t2.m_remuxed = true;
        t2.m_workDir = m_dir;
        t2.m_fileName = QStringLiteral("x.mp4");
        t2.RebuildQuickTimeFile(QString());
        QCOMPARE(g_repairedPaths, QStringList({m_dir + QStringLiteral("/x.mp4")}));
    }

    // Two seconds of video. 64 bytes of sound at 4 samples a second are four
    // seconds: twice as long, so the video is played at twice its speed.
    void speedCheckOfPcmSound_data()
    {
        QTest::addColumn<int>("soundBytes");
        QTest::addColumn<int>("commands");
        QTest::newRow("ratio 2: split, speed, join") << 64 << 4;
        QTest::newRow("ratio 1: split only") << 32 << 2;
    }
    void speedCheckOfPcmSound()
    {
        QFETCH(int, soundBytes);
        QFETCH(int, commands);
        // Each muxer run appends its arguments, one a line, and a separator,
        // and makes its last argument as a file in its folder.
        const QString saved = g_appDir;
        const QString calls = m_dir + QStringLiteral("/calls.txt");
        g_appDir = fakeMuxer(m_dir + QStringLiteral("/Libmp4"), "{ for a in \"$@\"; do printf '%s\\n' \"$a\"; done; echo ---; } >> '"
                                                               + calls.toUtf8() + "'\nfor a; do last=$a; done\n: > \"$last\"\n");
        FileRoute t;
        t.m_movie.videoTimeScale = t.m_movie.videoSampleDelta = 10;
        t.m_movie.soundTimeScale = 4;
        t.m_movie.isSowt = true;
        const QByteArray out = rebuild(t, source(), {Line(V, 0, 100), Line(A, 100, soundBytes), Line(V, 200, 100)});
        g_appDir = saved;
        QVERIFY(!t.m_movie.isSowt);
        const QString f = m_dir + QStringLiteral("/out.mov");
        const QList<QStringList> all = {
            {"-i", f, "-c:v", "copy", "-an", ".partial-output_video.mov"},
            {"-i", f, "-vn", "-c:a", "copy", ".partial-output_audio.mov"},
            {"-i", m_dir + "/output_video.mov", "-filter:v", "setpts=PTS/2", "-c:a", "copy", "-preset", "ultrafast", ".partial-ModifiedFile.mov"},
            {"-i", m_dir + "/ModifiedFile.mov", "-i", m_dir + "/output_audio.mov", "-c", "copy", ".partial-out.mov"}};
        QStringList expected;
        for (int i = 0; i < commands; ++i)
            expected << all[i] << QStringLiteral("---");
        QCOMPARE(QString::fromUtf8(readAll(calls)).split(QLatin1Char('\n'), Qt::SkipEmptyParts), expected);
        // The scratch files are gone; the file under its own name stands.
        for (const char* name : {"output_video.mov", "output_audio.mov", "ModifiedFile.mov"})
            QVERIFY2(!QFile::exists(m_dir + QLatin1Char('/') + QLatin1String(name)), name);
        QVERIFY(QFile::exists(f));
        if (commands == 2)
            QVERIFY(!out.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestScanAndRebuild)
#include "test_scan_and_rebuild.moc"
