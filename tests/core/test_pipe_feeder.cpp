// A stream fed to a reader through a named pipe while it is written, and the
// muxer run on such pipes: nothing lost, nothing waits for ever.
#include "core/file_writer.h"
#include "core/pipe_feeder.h"
#include "recovery/h264/overlapped_mux.h"
#include "support/test_videos.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QtTest>

#include <fcntl.h>
#include <thread>
#include <unistd.h>

using namespace testvideo;

namespace {
QByteArray Pattern(int n, int seed)
{
    QByteArray b(n, '\0');
    for (int i = 0; i < n; ++i)
        b[i] = char((i * 31 + seed) & 0xFF);
    return b;
}

void Push(PipeFeeder& f, const QByteArray& b) { f.push(reinterpret_cast<const uint8_t*>(b.constData()), size_t(b.size())); }

// Opens the pipe for reading, as the muxer does, and reads to its end.
QByteArray ReadPipe(const QString& path)
{
    QByteArray all;
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY);
    char buf[65536];
    ssize_t n;
    while (fd >= 0 && (n = ::read(fd, buf, sizeof buf)) > 0)
        all.append(buf, int(n));
    if (fd >= 0)
        ::close(fd);
    return all;
}
} // namespace

class TestPipeFeeder : public QObject {
    Q_OBJECT
    QString m_dir;

private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("pipefeeder")); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    // The reader opens the pipe late, after more than the pipe holds was
    // pushed: the writer waits, every byte arrives in order, then the end.
    void lateReaderGetsEverything()
    {
        PipeFeeder feeder;
        const QString path = m_dir + QStringLiteral("/s.h264");
        QVERIFY(feeder.start(path));
        QByteArray got, sent;
        std::thread reader([&] {
            QThread::msleep(150);
            got = ReadPipe(path);
        });
        for (int i = 0; i < 30; ++i) {
            sent += Pattern(100000 + i, i);
            Push(feeder, sent.right(100000 + i));
        }
        feeder.finish();
        reader.join();
        QCOMPARE(got.size(), sent.size());
        QCOMPARE(got, sent);
        QVERIFY(feeder.drained() && !feeder.failed());
    }

    // No reader, or one gone: a full pipe gives up; an empty stream fails.
    void givingUp()
    {
        const QByteArray big = Pattern(3 << 20, 1);   // more than the pipe holds
        QElapsedTimer clock;
        {
            PipeFeeder feeder(std::chrono::milliseconds(200));
            QVERIFY(feeder.start(m_dir + QStringLiteral("/a")));
            clock.start();
            Push(feeder, big);
            QVERIFY(feeder.failed());
            QVERIFY(clock.elapsed() >= 150);
            feeder.finish();
            QVERIFY(!feeder.drained());
        }
        QVERIFY(!QFile::exists(m_dir + QStringLiteral("/a")));   // the pipe goes with its feeder
        {
            PipeFeeder feeder;   // a stall of seconds, cut short by the reader's end
            QVERIFY(feeder.start(m_dir + QStringLiteral("/b")));
            std::thread gone([&] {
                QThread::msleep(100);
                feeder.readerGone();
            });
            clock.start();
            Push(feeder, big);
            gone.join();
            QVERIFY(feeder.failed());
            QVERIFY(clock.elapsed() < 2000);
        }
        PipeFeeder empty;
        QVERIFY(empty.start(m_dir + QStringLiteral("/c")));
        empty.finish();
        QVERIFY(empty.failed());
    }

    // The muxer on pipes: a reader that takes the stream completes; one that
    // stops early or never reads fails the run; switched off, the file as usual.
    void overlappedRuns()
    {
        const QString out = m_dir + QStringLiteral("/out.bin");
        const QString videoFile = m_dir + QStringLiteral("/video.h264");
        const QByteArray stream = Pattern(3 << 20, 7);
        const QByteArray head("\0\0\0\1SPS", 7);
        auto run = [&](const QString& script, bool abandon) {
            FileWriter video;
            video.open(videoFile);
            video.write(head);
            OverlappedMux mux;
            if (!mux.start(m_dir, false, video, nullptr, [&](bool, const QString& v, const QString&) {
                    return QStringLiteral("/bin/sh -c \"") + QString(script).replace(QStringLiteral("VIDEO"), v)
                         + QLatin1Char('"');
                }) || mux.videoHead() != head)
                return false;
            video.write(stream);
            video.close();
            if (abandon) {
                mux.abandon(out);
                return false;
            }
            return mux.complete(out);
        };
        const QString cat = QStringLiteral("cat 'VIDEO' > '") + out + QLatin1Char('\'');
        QVERIFY(run(cat, false));
        QCOMPARE(readAll(out), head + stream);
        QCOMPARE(readAll(videoFile), QByteArray());   // head and all went to the reader alone

        QElapsedTimer clock;
        clock.start();
        QVERIFY(!run(QStringLiteral("head -c 1000 'VIDEO' > '") + out + QLatin1Char('\''), false));
        QVERIFY(!QFile::exists(out));   // a run that didn't complete leaves nothing
        QVERIFY(!run(QStringLiteral("exec sleep 60"), true));
        QVERIFY(clock.elapsed() < 20000);
        QVERIFY(!QFile::exists(m_dir + QStringLiteral("/pipe-video.h264")));

        qputenv(OverlappedMux::kAfterScanVariable, "1");
        QVERIFY(!run(cat, false));
        qunsetenv(OverlappedMux::kAfterScanVariable);
        QCOMPARE(readAll(videoFile), head);   // no pipe: the file as usual

        // With sound nothing is overlapped: the muxer's interleave would wait on the scan.
        FileWriter video, audio;
        QVERIFY(video.open(videoFile) && audio.open(m_dir + QStringLiteral("/audio.aac")));
        OverlappedMux withSound;
        QVERIFY(!withSound.start(m_dir, true, video, &audio,
                                 [](bool, const QString&, const QString&) { return QStringLiteral("true"); }));
    }
};

QTEST_GUILESS_MAIN(TestPipeFeeder)
#include "test_pipe_feeder.moc"
