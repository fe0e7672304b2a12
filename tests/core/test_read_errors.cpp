// A failing card (EIO from a preloaded stand-in), a read-only card and a full
// disk: every route still gives a verdict, and inputs stay untouched.
#include "core/file_writer.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QtTest>
#include <sys/mount.h>

using namespace testvideo;

namespace {
// A tmpfs of size bytes at dir (made by the test, which runs as root);
// false where mounting is refused.
bool mountTmpfs(const QString& dir, qint64 size, bool readOnly = false)
{
    QDir().mkpath(dir);
    const QByteArray options = "size=" + QByteArray::number(size);
    return ::mount("tmpfs", QFile::encodeName(dir).constData(), "tmpfs", readOnly ? MS_RDONLY : 0,
                   options.constData()) == 0;
}
} // namespace

class TestReadErrors : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyRoute_data()
    {
        QTest::addColumn<QString>("clip");
        for (const auto& route : oneClipPerRoute())
            QTest::newRow(qPrintable(route.first)) << route.second;
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

    // The card is read-only: the results go to XDG_DATA_HOME/Reelwright/
    // Repaired/<card folder>, which the outputs line names.
    void readOnlySource()
    {
        const QString dir = freshDir(QStringLiteral("ro")), card = dir + QStringLiteral("/card");
        const QString clip = make("eio.avi", lavfiVideo(6) + lavfiAudio(6, 44100) + QStringList{"-c:v", "mpeg4", "-c:a", "libmp3lame"});
        if (!mountTmpfs(card, 8 << 20))
            QSKIP("mounting a tmpfs is refused here");
        QFile::copy(clip, card + QStringLiteral("/clip.avi"));
        const bool remounted = ::mount("tmpfs", QFile::encodeName(card).constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr) == 0;
        qputenv("XDG_DATA_HOME", (dir + QStringLiteral("/data")).toUtf8());
        const BatchResult r = runBatch({QStringLiteral("--quiet"), card + QStringLiteral("/clip.avi")});
        qunsetenv("XDG_DATA_HOME");
        ::umount(QFile::encodeName(card).constData());
        QVERIFY(remounted);
        QCOMPARE(r.verdicts().size(), 1);
        QVERIFY(r.verdicts().first().value("repaired").toBool());
        const QString expected = dir + QStringLiteral("/data/Reelwright/Repaired/card/clip.avi");
        QCOMPARE(r.end().value("outputs").toArray().first().toString(), expected);
        QVERIFY(decodedVideoFrames(expected) > 100);
        QDir(dir).removeRecursively();
    }

    // No room for the first file's results: a verdict with the reason; the
    // smaller second file is repaired.
    void fullDisk()
    {
        const QString dir = freshDir(QStringLiteral("full")), disk = dir + QStringLiteral("/disk");
        const QString big = make("full_big.mkv", lavfiVideo(8, QStringLiteral("640x480")) + QStringList{"-c:v", "mpeg4", "-q:v", "2"});
        const QString small = make("eio.flv", lavfiVideo(6) + lavfiAudio(6, 44100) + QStringList{"-c:v", "flv1", "-c:a", "libmp3lame"});
        const qint64 bigSize = QFileInfo(big).size();
        QVERIFY(bigSize > 4 * QFileInfo(small).size());
        if (!mountTmpfs(disk, bigSize / 2))
            QSKIP("mounting a tmpfs is refused here");
        QFile::copy(big, dir + QStringLiteral("/big.mkv"));
        QFile::copy(small, dir + QStringLiteral("/small.flv"));
        const BatchResult r = runBatch({QStringLiteral("--quiet"), QStringLiteral("--jobs"), QStringLiteral("1"),
                                        QStringLiteral("--work-root"), disk, dir + QStringLiteral("/big.mkv"),
                                        dir + QStringLiteral("/small.flv")});
        const QStringList left = QDir(disk + QStringLiteral("/Repaired")).entryList(QDir::Files | QDir::Hidden);
        ::umount(QFile::encodeName(disk).constData());
        QCOMPARE(r.verdicts().size(), 2);
        const QJsonObject first = r.verdicts().first();
        QVERIFY(!first.value("repaired").toBool());
        QVERIFY2(first.value("reason").toString().startsWith(QStringLiteral("not enough space in ") + disk),
                 qPrintable(first.value("reason").toString()));
        QVERIFY(r.verdicts().last().value("repaired").toBool());
        QCOMPARE(left, QStringList(QStringLiteral("small.flv")));
        QDir(dir).removeRecursively();
    }

    // A disk that fills up while a file is written: the writer fails and leaves
    // no partial file (an older file of that name stays).
    void writerOnAFullDisk()
    {
        const QString dir = freshDir(QStringLiteral("enospc")), disk = dir + QStringLiteral("/disk");
        if (!mountTmpfs(disk, 256 << 10))
            QSKIP("mounting a tmpfs is refused here");
        const QString path = disk + QStringLiteral("/out.mov");
        writeAll(path, "older");
        const unsigned before = FileWriter::outOfSpaceFailures();
        FileWriter w;
        QVERIFY(w.open(path));
        w.write(QByteArray(1 << 20, 'x'));
        const bool closed = w.close();
        const QStringList left = QDir(disk).entryList(QDir::Files | QDir::Hidden);
        ::umount(QFile::encodeName(disk).constData());
        QVERIFY(!closed);
        QCOMPARE(left, QStringList(QStringLiteral("out.mov")));
        QVERIFY(FileWriter::outOfSpaceFailures() > before);
        QDir(dir).removeRecursively();
    }
};

QTEST_GUILESS_MAIN(TestReadErrors)
#include "test_read_errors.moc"
