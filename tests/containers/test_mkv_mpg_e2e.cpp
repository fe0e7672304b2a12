// Matroska/WebM and MPEG repair end to end through reelwright-batch on
// ffmpeg-made clips: whole, cut, holed and head-zeroed copies.
#include "support/test_videos.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

using namespace testvideo;

class TestMkvMpgE2e : public QObject {
    Q_OBJECT
    QString m_dir;
    QByteArray m_tinyMkv;   // the head of a sound clip, under 100000 bytes

    static QString repairedPath(const QString& input)
    {
        return QFileInfo(input).absolutePath() + QStringLiteral("/Repaired/") + QFileInfo(input).fileName();
    }
    // Repairs a damaged copy of clip; returns the output's decoded frames, -2 on a negative verdict.
    int repair(const QString& clip, const QString& name, const std::function<void(QByteArray&)>& damage,
               const QString& sample = QString())
    {
        QByteArray bytes = readAll(clip);
        damage(bytes);
        const QString input = m_dir + "/" + name;
        if (!writeAll(input, bytes))
            return -3;
        const QString before = sha256(input);
        QStringList args{QStringLiteral("--quiet")};
        if (!sample.isEmpty())
            args << QStringLiteral("--reference") << sample;
        const BatchResult r = runBatch(args << input, 120000);
        if (sha256(input) != before || r.verdicts().size() != 1)
            return -4;
        if (!r.verdicts()[0].value(QStringLiteral("repaired")).toBool())
            return -2;
        return decodedVideoFrames(repairedPath(input));
    }

    // Frames that the clusters untouched by the damaged byte ranges hold: the clip with
    // every Cluster that overlaps a range (its ID, size or the next ID included, which the
    // repair tests) cut out, decoded as it is.
    int framesOfRemainingClusters(const QByteArray& clip, const QList<QPair<qint64, qint64>>& damaged,
                                  const QString& tag)
    {
        static const QByteArray id = QByteArray::fromHex("1F43B675");
        QList<qint64> starts;
        for (qint64 p = clip.indexOf(id); p >= 0; p = clip.indexOf(id, p + 1))
            starts << p;
        const qint64 tail = clip.lastIndexOf(QByteArray::fromHex("1C53BB6B"));
        if (starts.isEmpty() || tail < starts.last())
            return -1;
        QByteArray kept = clip.left(starts.first());
        for (int i = 0; i < starts.size(); ++i) {
            const qint64 a = starts[i], b = i + 1 < starts.size() ? starts[i + 1] : tail;
            bool hit = false;
            for (const auto& d : damaged)
                hit = hit || (a < d.first + d.second && b + 4 > d.first);
            if (!hit)
                kept += clip.mid(a, b - a);
        }
        kept += clip.mid(tail);
        const QString path = m_dir + "/expected_" + tag;
        return writeAll(path, kept) ? decodedVideoFrames(path) : -1;
    }

private Q_SLOTS:
    void initTestCase() { m_dir = freshDir(QStringLiteral("mkvmpg")); }
    void cleanupTestCase() { QDir(m_dir).removeRecursively(); }

    void matroska_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QStringList>("codecs");
        QTest::newRow("mkv-h264-aac") << "mkv" << QStringList{"-c:v", "libx264", "-g", "25", "-c:a", "aac"};
        QTest::newRow("webm-vp8-vorbis") << "webm" << QStringList{"-c:v", "libvpx", "-g", "25", "-b:v", "400k", "-c:a", "libvorbis"};
        QTest::newRow("webm-vp9-opus") << "webm" << QStringList{"-c:v", "libvpx-vp9", "-deadline", "realtime", "-cpu-used", "8",
                                                                "-g", "25", "-b:v", "400k", "-c:a", "libopus"};
    }
    void matroska()
    {
        QFETCH(QString, suffix);
        QFETCH(QStringList, codecs);
        const QString tag = QString::fromLatin1(QTest::currentDataTag());
        const QString clip = make("mkvmpg_" + tag + "." + suffix, lavfiVideo(8) + lavfiAudio(8) + codecs);
        // The sample must hold 100000 bytes too: shorter header streams aren't searched.
        const QString sample = make("mkvmpg_sample_" + tag + "." + suffix, lavfiVideo(4) + lavfiAudio(4) + codecs);
        QVERIFY(!clip.isEmpty() && !sample.isEmpty());
        QVERIFY(QFileInfo(clip).size() > 100000 && QFileInfo(sample).size() > 100000);
        const QByteArray bytes = readAll(clip);
        if (suffix == "mkv")
            m_tinyMkv = bytes.left(90000);
        const qint64 size = bytes.size();
        const int all = decodedVideoFrames(clip);
        QVERIFY(all > 100);

        int got = repair(clip, "whole_" + tag + "." + suffix, [](QByteArray&) {});
        QVERIFY2(got * 10 >= all * 9, qPrintable(QString("%1 of %2").arg(got).arg(all)));
        QVERIFY(probeOpens(repairedPath(m_dir + "/whole_" + tag + "." + suffix)));

        // Cut at 70%: the whole clusters ahead of the cut remain, the one cut is dropped.
        const qint64 cut = qint64(size * 0.7);
        int want = framesOfRemainingClusters(bytes, {{cut, size}}, tag + "_cut." + suffix);
        QVERIFY(want > 0 && want < all);
        got = repair(clip, "cut_" + tag + "." + suffix, [](QByteArray& b) { cutAtFraction(b, 0.7); });
        QVERIFY2(got * 10 >= want * 9, qPrintable(QString("%1 of %2").arg(got).arg(want)));

        // Holes of zeros at a third and at two thirds.
        const QList<QPair<qint64, qint64>> holes{{size / 3, 2000}, {size * 2 / 3, 2000}};
        want = framesOfRemainingClusters(bytes, holes, tag + "_holes." + suffix);
        QVERIFY(want > 0);
        got = repair(clip, "holes_" + tag + "." + suffix, [&holes](QByteArray& b) {
            for (const auto& h : holes)
                zeroRange(b, h.first, h.second);
        });
        QVERIFY2(got * 10 >= want * 9, qPrintable(QString("%1 of %2").arg(got).arg(want)));

        // First 4 KiB zeroed: Info and Tracks come from the sample.
        want = framesOfRemainingClusters(bytes, {{0, 4096}}, tag + "_head." + suffix);
        QVERIFY(want > 0);
        const QString head = "head_" + tag + "." + suffix;
        got = repair(clip, head, [](QByteArray& b) { zeroRange(b, 0, 4096); }, sample);
        QVERIFY2(got * 10 >= want * 9, qPrintable(QString("%1 of %2").arg(got).arg(want)));
        QVERIFY(probeOpens(repairedPath(m_dir + "/" + head)));
    }

    void mpeg_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("codecs");
        QTest::newRow("vob") << "ps.mpg" << QStringList{"-c:v", "mpeg2video", "-b:v", "1500k", "-c:a", "mp2", "-f", "vob"};
        QTest::newRow("bare") << "es.mpg" << QStringList{"-an", "-c:v", "mpeg1video", "-b:v", "1500k", "-f", "mpeg1video"};
    }
    void mpeg()
    {
        QFETCH(QString, name);
        QFETCH(QStringList, codecs);
        QStringList head = lavfiVideo(8);
        if (!codecs.contains("-an"))
            head += lavfiAudio(8);
        const QString clip = make("mkvmpg_" + name, head + codecs);
        const QString sample = make("mkvmpg_sample_" + name, lavfiVideo(2) + (codecs.contains("-an") ? QStringList() : lavfiAudio(2)) + codecs);
        QVERIFY(!clip.isEmpty() && !sample.isEmpty());
        const int all = decodedVideoFrames(clip);
        QVERIFY(all > 100);
        int got = repair(clip, "whole_" + name, [](QByteArray&) {});
        QVERIFY2(got * 10 >= all * 9, qPrintable(QString("%1 of %2").arg(got).arg(all)));
        // An undamaged program stream gets its own headers back in place: byte for byte the same.
        if (!codecs.contains("-an"))
            QCOMPARE(sha256(repairedPath(m_dir + "/whole_" + name)), sha256(clip));
        const double behind = 1.0 - 65536.0 / double(QFileInfo(clip).size());
        got = repair(clip, "head_" + name, [](QByteArray& b) { zeroRange(b, 0, 65536); }, sample);
        QVERIFY2(got * 10 >= int(all * behind * 9), qPrintable(QString("%1 of %2").arg(got).arg(all)));
    }

    void badInput()
    {
        QByteArray noise(300000, 0);
        quint32 x = 12345;
        for (char& c : noise) { x = x * 1103515245u + 12345u; c = char(x >> 24); }
        QByteArray ones(300000, char(0xFF));
        for (int i = 0; i < 200000; i += 64) { ones[i] = 0x15; ones[i + 1] = 0x49; ones[i + 2] = char(0xA9); ones[i + 3] = 0x66; }
        const QList<QPair<QString, QByteArray>> cases{{"noise.mkv", noise}, {"noise.mpg", noise},
            {"ones.mkv", ones}, {"tiny.mkv", m_tinyMkv}};
        for (const auto& c : cases) {
            QVERIFY(writeAll(m_dir + "/" + c.first, c.second));
            const BatchResult r = runBatch({QStringLiteral("--quiet"), m_dir + "/" + c.first}, 60000);
            QCOMPARE(r.verdicts().size(), 1);
            QVERIFY2(!r.verdicts()[0].value(QStringLiteral("repaired")).toBool(), qPrintable(c.first));
            QVERIFY(!QFile::exists(repairedPath(m_dir + "/" + c.first)));
        }
    }
};

QTEST_GUILESS_MAIN(TestMkvMpgE2e)
#include "test_mkv_mpg_e2e.moc"
