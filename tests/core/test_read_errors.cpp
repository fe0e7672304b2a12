// A file on a failing card: reads of 64 KiB in the middle of it fail with EIO
// (a preloaded stand-in for the disk). Every route still repairs the file,
// keeps the pictures outside the bad range and counts the unreadable bytes
// in its verdict; the input is untouched.
#include "support/test_videos.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

using namespace testvideo;

class TestReadErrors : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyRoute_data()
    {
        QTest::addColumn<QString>("clip");
        const QStringList h264{"-c:v", "libx264", "-preset", "ultrafast", "-g", "25", "-pix_fmt", "yuv420p"};
        const QStringList av = lavfiVideo(6) + lavfiAudio(6, 44100);
        QTest::newRow("mov") << make("eio.mov", av + h264 + QStringList{"-c:a", "aac"});
        QTest::newRow("avi") << make("eio.avi", av + QStringList{"-c:v", "mpeg4", "-c:a", "libmp3lame"});
        QTest::newRow("wmv") << make("eio.wmv", av + QStringList{"-c:v", "wmv2", "-c:a", "wmav2"});
        QTest::newRow("flv") << make("eio.flv", av + QStringList{"-c:v", "flv1", "-c:a", "libmp3lame"});
        QTest::newRow("mts") << make("eio.mts", av + h264 + QStringList{"-c:a", "ac3", "-f", "mpegts", "-mpegts_m2ts_mode", "1"});
        QTest::newRow("mkv") << make("eio.mkv", av + h264 + QStringList{"-c:a", "aac"});
        QTest::newRow("mpg") << make("eio.mpg", av + QStringList{"-c:v", "mpeg2video", "-c:a", "mp2", "-f", "mpeg"});
        QTest::newRow("dat") << make("eio.dat", av + QStringList{"-target", "ntsc-vcd"});
    }
    void everyRoute()
    {
        QFETCH(QString, clip);
        QVERIFY(!clip.isEmpty());
        const QString dir = freshDir(QStringLiteral("eio"));
        const QString input = dir + QLatin1Char('/') + QFileInfo(clip).fileName();
        QVERIFY(QFile::copy(clip, input));
        const qint64 size = QFileInfo(input).size();
        const qint64 bad = size * 2 / 5 / 4096 * 4096;
        const QString hash = sha256(input);

        qputenv("LD_PRELOAD", REELWRIGHT_EIO_SHIM);
        qputenv("REELWRIGHT_EIO_FILE", input.toUtf8());
        qputenv("REELWRIGHT_EIO_RANGES", QByteArray::number(bad) + '-' + QByteArray::number(bad + 65536));
        qputenv("ASAN_OPTIONS", "detect_leaks=0:verify_asan_link_order=0");
        const BatchResult r = runBatch({QStringLiteral("--quiet"), input});
        qunsetenv("LD_PRELOAD");

        QCOMPARE(r.exitCode, 0);
        QCOMPARE(r.verdicts().size(), 1);
        const QJsonObject verdict = r.verdicts().first();
        QVERIFY2(verdict.value("repaired").toBool(), r.stderrText.constData());
        QCOMPARE(verdict.value("unreadableBytes").toDouble(), 65536.0);
        const QJsonArray outputs = r.end().value("outputs").toArray();
        QCOMPARE(outputs.size(), 1);
        const int original = decodedVideoFrames(clip), kept = decodedVideoFrames(outputs.first().toString());
        QVERIFY2(kept * 10 >= original * 6, qPrintable(QStringLiteral("%1 of %2 frames").arg(kept).arg(original)));
        QCOMPARE(sha256(input), hash);
        QDir(dir).removeRecursively();
    }
};

QTEST_GUILESS_MAIN(TestReadErrors)
#include "test_read_errors.moc"
