// Frame scanners without a sample: crafted MJPEG, MPEG-4 and ProRes data give
// index lines that decipher to the right positions and sizes; bad input ends.
#include "core/log_cipher.h"
#include "core/thread_video_repair.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace testvideo;

namespace {
QByteArray be32(uint32_t v)
{
    QByteArray b(4, 0);
    b[0] = char(v >> 24); b[1] = char(v >> 16); b[2] = char(v >> 8); b[3] = char(v);
    return b;
}
}

class TestFrameScanners : public QObject {
    Q_OBJECT
    QString m_dir;

    // Runs scan over bytes and returns the deciphered lines.
    QStringList scan(const QByteArray& bytes, void (ThreadVideoRepair::*scanner)())
    {
        ThreadVideoRepair t;
        t.m_file.reset(new MemoryReader(bytes));
        t.m_fileSize = g_inputSize = uint64_t(bytes.size());
        const QString log = m_dir + QStringLiteral("/logFile.txt");
        t.m_logHandle.open(log);
        (t.*scanner)();
        t.m_logHandle.close();
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

private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("scanners")); g_stopRequested = false; }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void jpegFramesAndSkip()
    {
        // Three frames of 6000, 7000 and 9000 bytes, with filler between them.
        QByteArray file(100, 'x');
        QList<QPair<int, int>> frames;
        for (int size : {6000, 7000, 9000}) {
            QByteArray f(size, char(0x11));
            f[0] = char(0xFF); f[1] = char(0xD8); f[2] = char(0xFF); f[3] = char(0xE0);
            f[size - 2] = char(0xFF); f[size - 1] = char(0xD9);
            frames << qMakePair(file.size(), size);
            file += f + QByteArray(50, char(0x22));
        }
        const QStringList lines = scan(file, &ThreadVideoRepair::ScanJpegFrames);
        QCOMPARE(lines.size(), 3);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(lines[i], QStringLiteral("AVC(Vide) at = %1 Size = %2").arg(frames[i].first).arg(frames[i].second));
        QCOMPARE(lines[0].split(QLatin1Char(' ')).size(), 7);
    }

    void jpegShortFrameJoinsTheNext()
    {
        // A 100-byte frame lies inside the first skip of 5000: it joins the next one.
        QByteArray file;
        for (int size : {100, 6000}) {
            QByteArray f(size, char(0x11));
            f[0] = char(0xFF); f[1] = char(0xD8); f[2] = char(0xFF); f[3] = char(0xDB);
            f[size - 2] = char(0xFF); f[size - 1] = char(0xD9);
            file += f;
        }
        QCOMPARE(scan(file, &ThreadVideoRepair::ScanJpegFrames), QStringList({"AVC(Vide) at = 0 Size = 6100"}));
    }

    void mpeg4FramesWithAudio()
    {
        // ftyp, mdat, frame A + two 32-byte audio frames, frame B + audio, frame C (last, no line).
        QByteArray file = be32(16) + "ftyp" + QByteArray(8, 0) + be32(0) + "mdat";
        const int a = file.size();
        QByteArray frame = QByteArray::fromHex("000001B6") + QByteArray(300, char(0x55));
        QByteArray audio = QByteArray(1, char(0x3C)) + QByteArray(31, char(0x66));
        file += frame + audio + audio;
        const int b = file.size();
        file += frame + audio;
        file += frame;
        const QStringList lines = scan(file, &ThreadVideoRepair::ScanMpeg4Frames);
        QCOMPARE(lines, QStringList({QStringLiteral("AVC(Vide) at = %1 Size = 304").arg(a),
                                     QStringLiteral("AAC(soun) at = %1 Size = 32").arg(a + 304),
                                     QStringLiteral("AAC(soun) at = %1 Size = 32").arg(a + 336),
                                     QStringLiteral("AVC(Vide) at = %1 Size = 304").arg(b),
                                     QStringLiteral("AAC(soun) at = %1 Size = 32").arg(b + 304)}));
    }

    void mpeg4MoovEndsTheLastFrame()
    {
        // The frame in front of moov ends at moov's size word; start codes
        // inside the movie's tables are not frames.
        QByteArray file = be32(8) + "mdat";
        QByteArray frame = QByteArray::fromHex("000001B6") + QByteArray(200, char(0x55));
        file += frame;
        const int last = file.size();
        file += frame;
        QByteArray moov = be32(64) + "moov" + QByteArray::fromHex("0000811200000000000001B6") + QByteArray(44, char(0x77));
        file += moov + QByteArray::fromHex("000001B6") + QByteArray(100, char(0x55));
        QCOMPARE(scan(file, &ThreadVideoRepair::ScanMpeg4Frames),
                 QStringList({QStringLiteral("AVC(Vide) at = 8 Size = 204"),
                              QStringLiteral("AVC(Vide) at = %1 Size = 204").arg(last)}));
    }

    void mpeg4ResumesBehindAHole()
    {
        // Zeros over the end of one frame and the start of the next: the
        // frame before the hole runs to the first opening behind it.
        QByteArray file = be32(8) + "mdat";
        QByteArray frame = QByteArray::fromHex("000001B6") + QByteArray(500, char(0x55));
        for (int i = 0; i < 5; ++i)
            file += frame;
        const int hole = 8 + 504 + 300;
        file.replace(hole, 600, QByteArray(600, 0));
        const QStringList lines = scan(file, &ThreadVideoRepair::ScanMpeg4Frames);
        QCOMPARE(lines, QStringList({QStringLiteral("AVC(Vide) at = 8 Size = 504"),
                                     QStringLiteral("AVC(Vide) at = 512 Size = 1008"),
                                     QStringLiteral("AVC(Vide) at = 1520 Size = 504")}));
    }

    void proResFramesPaddingAndSound()
    {
        // frame, frame, zero padding, sound, zero padding, frame, zeros, moov, a frame behind moov.
        auto frame = [](int size) { return be32(uint32_t(size)) + "icpf" + QByteArray(size - 8, char(0x33)); };
        QByteArray file = QByteArray(20, 'm');
        const int f1 = file.size();
        file += frame(400);
        const int f2 = file.size();
        file += frame(300) + QByteArray(16, 0);
        const int s = file.size();
        file += QByteArray(200, char(0x44)) + QByteArray(16, 0);
        const int f3 = file.size();
        file += frame(500) + QByteArray(16, 0) + be32(8) + "moov" + frame(100);
        const QStringList lines = scan(file, &ThreadVideoRepair::ScanProResFrames);
        QCOMPARE(lines, QStringList({QStringLiteral("AVC(Vide) at = %1 Size = 400").arg(f1),
                                     QStringLiteral("AVC(Vide) at = %1 Size = 300").arg(f2),
                                     QStringLiteral("AAC(soun) at = %1 Size = 200").arg(s),
                                     QStringLiteral("AVC(Vide) at = %1 Size = 500").arg(f3)}));
    }

    void badInputEnds()
    {
        // All zeros, frames of size 0 or past the end, random bytes: no hang, no bogus line.
        const QByteArray zeros(3 << 20, 0);
        for (auto s : {&ThreadVideoRepair::ScanJpegFrames, &ThreadVideoRepair::ScanMpeg4Frames,
                       &ThreadVideoRepair::ScanProResFrames})
            QVERIFY(scan(zeros, s).isEmpty());
        QByteArray sizeZero;
        for (int i = 0; i < 1000; ++i)
            sizeZero += be32(0) + "icpf";
        QVERIFY(scan(sizeZero, &ThreadVideoRepair::ScanProResFrames).isEmpty());
        QVERIFY(scan(be32(0x7FFFFFFF) + "icpf" + QByteArray(100, 1), &ThreadVideoRepair::ScanProResFrames).isEmpty());
        QByteArray noEnd = QByteArray::fromHex("FFD8FFE0") + QByteArray(20000, 1);
        QVERIFY(scan(noEnd, &ThreadVideoRepair::ScanJpegFrames).isEmpty());
        QByteArray hostile = QByteArray::fromHex("FFFFFFFF") + "moov" + QByteArray(100, 0);
        QVERIFY(scan(hostile, &ThreadVideoRepair::ScanJpegFrames).isEmpty());
        QVERIFY(scan(hostile, &ThreadVideoRepair::ScanMpeg4Frames).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestFrameScanners)
#include "test_frame_scanners.moc"
