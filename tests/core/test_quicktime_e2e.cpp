// End to end: ffmpeg recordings of every codec pair, damaged and repaired
// with another recording as sample; judged by decoded-picture hashes.
#include "containers/batch_check.h"
#include "core/byte_reader.h"
#include "support/test_videos.h"

#include <QDir>
#include <QJsonArray>
#include <QMap>
#include <QtTest>

using namespace testvideo;

namespace {

// Video and sound settings of a codec pair, as a camera would record them.
QStringList PairArgs(const QString& pair)
{
    const QString video = pair.section(QLatin1Char('-'), 0, 0), sound = pair.section(QLatin1Char('-'), 1, 1);
    QStringList a;
    if (video == QLatin1String("h264"))
        a << "-c:v" << "libx264" << "-preset" << "veryfast" << "-g" << "30" << "-pix_fmt" << "yuv420p";
    else if (video == QLatin1String("hevc"))
        a << "-c:v" << "libx265" << "-preset" << "ultrafast" << "-tag:v" << "hvc1" << "-x265-params"
          << "log-level=error:keyint=30" << "-pix_fmt" << "yuv420p";
    else if (video == QLatin1String("mjpeg"))
        a << "-c:v" << "mjpeg" << "-q:v" << "4" << "-pix_fmt" << "yuvj420p";
    else if (video == QLatin1String("prores"))
        a << "-c:v" << "prores_ks" << "-profile:v" << "0";
    else
        a << "-c:v" << "mpeg4" << "-g" << "30" << "-bf" << "2" << "-pix_fmt" << "yuv420p";
    static const QMap<QString, QStringList> sounds = {
        {"aac", {"-c:a", "aac", "-b:a", "96k"}},     {"sowt", {"-c:a", "pcm_s16le"}},
        {"twos", {"-c:a", "pcm_s16be"}},             {"in24", {"-c:a", "pcm_s24be"}},
        {"lpcm", {"-c:a", "pcm_s24le", "-ar", "96000"}}, {"none", {"-an"}}};
    return a + sounds.value(sound);
}

// The damaged file's recording (8 s) or its sample (5 s, another picture and sound).
QString Recording(const QString& pair, const QString& suffix, const QString& rate, bool sample)
{
    const bool small = pair.startsWith(QLatin1String("mpeg4"));
    const QString size = small ? QStringLiteral("176x144") : QStringLiteral("256x144");
    const int seconds = sample ? 5 : 8;
    const QString picture = sample ? QStringLiteral("mandelbrot=size=%1:rate=%2") : QStringLiteral("testsrc2=size=%1:rate=%2");
    const double tone = sample ? 660 : 440, noise = sample ? 0.2 : 0.05;
    const QString sound = QStringLiteral("aevalsrc=0.3*sin(2*PI*%1*t)+%2*(random(0)*2-1)|0.3*sin(3*PI*%1*t)+%2*(random(1)*2-1)"
                                         ":s=%3:d=%4").arg(tone).arg(noise).arg(small ? 16000 : 48000).arg(seconds);
    QStringList args{"-f", "lavfi", "-i", picture.arg(size, rate), "-f", "lavfi", "-i", sound, "-t", QString::number(seconds)};
    args += PairArgs(pair);
    if (small)
        args << "-ac" << "1";
    const QString name = QStringLiteral("rec_%1_%2_%3.%4").arg(pair, QString(rate).replace('/', '_'),
                                                                sample ? "sample" : "clip", suffix);
    return make(name, args);
}

// Hashes of the decoded pictures of the first video stream: every picture
// (none dropped for a repeated time stamp), decoded on one thread so that
// the concealment of damage doesn't vary from run to run.
QStringList PictureHashes(const QString& path)
{
    QByteArray out;
    run(QStringLiteral("ffmpeg"), {"-v", "error", "-threads", "1", "-i", path, "-map", "0:v:0", "-fps_mode", "passthrough",
                                   "-f", "framemd5", "-"}, &out);
    QStringList hashes;
    for (const QByteArray& line : out.split('\n'))
        if (!line.startsWith('#') && line.count(',') >= 5)
            hashes << QString::fromLatin1(line.mid(line.lastIndexOf(',') + 1).trimmed());
    return hashes;
}

int BitExact(const QStringList& original, const QStringList& repaired)
{
    QMap<QString, int> left;
    for (const QString& h : original)
        ++left[h];
    int same = 0;
    for (const QString& h : repaired)
        if (left.value(h) > 0) {
            --left[h];
            ++same;
        }
    return same;
}

double StreamSeconds(const QString& path, const char* stream)
{
    QByteArray out;
    run(QStringLiteral("ffprobe"), {"-v", "error", "-select_streams", stream, "-show_entries", "stream=duration",
                                    "-of", "csv=p=0", path}, &out);
    return out.trimmed().toDouble();
}

// Video frames of the clip that no damage reaches: those whose packets lie
// wholly before byte limit, and of the rest those whose group of pictures
// (keyframe to keyframe, in file order) has no packet in a hole.
int FramesUntouched(const QString& clip, qint64 limit, const QList<qint64>& holes, qint64 holeSize)
{
    int n = 0, group = 0;
    bool touched = false;
    for (const Packet& p : packets(clip, QStringLiteral("v:0"))) {
        if (p.key) {
            n += touched ? 0 : group;
            group = 0;
            touched = false;
        }
        ++group;
        touched = touched || p.pos + p.size > limit;
        for (qint64 h : holes)
            touched = touched || (p.pos < h + holeSize && p.pos + p.size > h);
    }
    return n + (touched ? 0 : group);
}

// Zeroes the entries of every chunk-offset and sample-size table in moov.
void ZeroTables(QByteArray& file)
{
    for (const char* code : {"stco", "co64", "stsz"})
        for (qint64 at = file.indexOf(code, findTopLevelAtom(file, "moov")); at >= 0; at = file.indexOf(code, at + 4))
            zeroRange(file, at + 12, ByteReader::loadBe32(reinterpret_cast<const uint8_t*>(file.constData() + at - 4)) - 16);
}

constexpr qint64 kHole = 65536;
QList<qint64> Holes(const QByteArray& file)
{
    const qint64 mdat = findTopLevelAtom(file, "mdat");
    const qint64 end = std::max(findTopLevelAtom(file, "moov"), mdat);
    return {mdat + (end - mdat) / 4, mdat + (end - mdat) / 2, mdat + (end - mdat) * 3 / 4};
}

} // namespace

class TestQuickTimeE2e : public QObject {
    Q_OBJECT
    QString m_dir;

private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("qt-e2e")); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void repairs_data()
    {
        QTest::addColumn<QString>("pair");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QString>("rate");
        QTest::addColumn<QString>("damage");
        const struct { const char* pair; const char* suffix; const char* rate; const char* damages; } rows[] = {
            {"h264-aac", "mov", "25", "cut zeroed holes half healthy"},
            {"h264-aac", "mp4", "30000/1001", "cut"},
            {"h264-aac", "mov", "50", "cut"},
            {"hevc-aac", "mov", "30000/1001", "cut holes"},
            {"hevc-aac", "mp4", "25", "zeroed"},
            {"h264-sowt", "mov", "25", "cut healthy"},
            {"h264-twos", "mov", "30000/1001", "cut zeroed"},
            {"h264-in24", "mov", "25", "half"},
            {"h264-lpcm", "mov", "25", "cut"},
            {"h264-none", "mp4", "24000/1001", "cut"},
            {"hevc-sowt", "mov", "25", "cut"},
            {"hevc-in24", "mov", "25", "cut"},
            {"hevc-none", "mov", "25", "healthy"},
            {"mjpeg-sowt", "mov", "25", "zeroed cut"},
            {"prores-sowt", "mov", "25", "cut zeroed"},
            {"mpeg4-aac", "3gp", "25", "zeroed cut"},
        };
        for (const auto& r : rows)
            for (const QString& damage : QString::fromLatin1(r.damages).split(QLatin1Char(' ')))
                QTest::newRow(qPrintable(QStringLiteral("%1 %2 %3 %4").arg(r.pair, r.suffix, r.rate, damage)))
                    << QString::fromLatin1(r.pair) << QString::fromLatin1(r.suffix) << QString::fromLatin1(r.rate) << damage;
    }
    void repairs()
    {
        QFETCH(QString, pair);
        QFETCH(QString, suffix);
        QFETCH(QString, rate);
        QFETCH(QString, damage);
        const QString clip = Recording(pair, suffix, rate, false);
        const QString sample = Recording(pair, suffix, rate, true);
        QVERIFY(!clip.isEmpty() && !sample.isEmpty());
        QByteArray bytes = readAll(clip);
        const QStringList original = PictureHashes(clip);
        QVERIFY(original.size() > 100);
        int need = (original.size() * 98 + 99) / 100;
        if (damage == QLatin1String("zeroed")) {
            ZeroTables(bytes);
        } else if (damage == QLatin1String("holes")) {
            const QList<qint64> holes = Holes(bytes);
            for (qint64 at : holes)
                zeroRange(bytes, at, kHole);
            cutMoov(bytes);
            // Leading pictures of an open group may lean on a touched one.
            need = FramesUntouched(clip, bytes.size(), holes, kHole) * 9 / 10;
        } else if (damage == QLatin1String("half")) {
            cutAtFraction(bytes, 0.5);
            need = FramesUntouched(clip, bytes.size(), {}, 0) * 95 / 100;
        } else if (damage == QLatin1String("cut")) {
            cutMoov(bytes);
        } else {
            need = original.size();
        }
        const bool firstPassOnly = damage == QLatin1String("zeroed") || damage == QLatin1String("healthy");
        const QString name = QStringLiteral("clip.") + suffix;
        const QString in = m_dir + QLatin1Char('/') + name;
        writeAll(in, bytes);
        const QString before = sha256(in);
        BatchResult r = runBatch({QStringLiteral("--quiet"), in});
        if (!firstPassOnly) {
            QVERIFY(!r.verdicts().isEmpty());
            QVERIFY2(!r.verdicts().last().value("repaired").toBool(), "a lost movie waits for a sample");
            r = runBatch({QStringLiteral("--quiet"), QStringLiteral("--reference"), sample, in});
        }
        QCOMPARE(sha256(in), before);
        QVERIFY2(!r.stderrText.contains("Sanitizer") && !r.stderrText.contains("runtime error"), r.stderrText.constData());
        QCOMPARE(r.verdicts().size(), 1);
        const QJsonObject verdict = r.verdicts().first();
        QVERIFY2(verdict.value("repaired").toBool(), "no repair");
        const QString out = m_dir + QStringLiteral("/Repaired/") + name;
        QVERIFY(r.end().value(QStringLiteral("outputs")).toArray().contains(out));

        if (damage == QLatin1String("cut")) {
            // The same inputs give the same bytes.
            const QString first = sha256(out);
            runBatch({QStringLiteral("--quiet"), QStringLiteral("--reference"), sample, in});
            QCOMPARE(sha256(out), first);
        }
        const QStringList repaired = PictureHashes(out);
        const int same = BitExact(original, repaired);
        qInfo("%d of %d pictures bit-exact (%d decode, %d needed), %.2f s of sound, %lld bytes skipped", same,
              int(original.size()), int(repaired.size()), need, verdict.value("audioSeconds").toDouble(),
              qint64(verdict.value("skippedBytes").toDouble()));
        QVERIFY2(same >= need, qPrintable(QStringLiteral("%1 of %2 bit-exact, %3 needed").arg(same).arg(original.size()).arg(need)));
        if (damage == QLatin1String("holes"))
            return;   // pictures behind a hole may lack their references
        QCOMPARE(qint64(verdict.value("videoFrames").toDouble()), qint64(repaired.size()));
        if (damage == QLatin1String("half"))
            return;
        // The whole recording: its playing time, and its sound to within an audio frame.
        const double videoSeconds = StreamSeconds(clip, "v:0");
        QVERIFY2(qAbs(StreamSeconds(out, "v:0") - videoSeconds) < 0.1,
                 qPrintable(QStringLiteral("%1 s of video, %2 s in the original").arg(StreamSeconds(out, "v:0")).arg(videoSeconds)));
        if (pair.endsWith(QLatin1String("none")))
            return;
        const double soundSeconds = StreamSeconds(clip, "a:0");
        QVERIFY2(qAbs(verdict.value("audioSeconds").toDouble() - soundSeconds) < 0.05
                     && qAbs(StreamSeconds(out, "a:0") - soundSeconds) < 0.05,
                 qPrintable(QStringLiteral("%1 s of sound, %2 s in the original").arg(StreamSeconds(out, "a:0")).arg(soundSeconds)));
    }

    // A recording whose second half lies behind a 4 GiB hole: every picture
    // decodes the same, addressed by co64, and the input is left alone.
    void past4GiB()
    {
        if (!containers::keepsHoles(m_dir))
            QSKIP("the file system keeps no holes: a sparse input would take 4 GiB");
        const QString clip = Recording("h264-aac", "mov", "25", false);
        QByteArray bytes = readAll(clip);
        cutMoov(bytes);
        bytes.replace(int(findTopLevelAtom(bytes, "mdat")), 4, QByteArray(4, '\0'));   // to the file's end
        qint64 at = 0;   // the first keyframe behind the middle
        for (const Packet& p : packets(clip, "v:0"))
            if (!at && p.key && p.pos > bytes.size() / 2)
                at = p.pos;
        const QString in = m_dir + "/clip.mov", out = m_dir + "/Repaired/clip.mov";
        QVERIFY(containers::writeSparse(in, bytes.left(int(at)), containers::kPast4GiB, bytes.mid(int(at))));
        const QString before = containers::fingerprint(in);
        const BatchResult r = runBatch({"--quiet", "--reference", Recording("h264-aac", "mov", "25", true), in});
        QCOMPARE(containers::fingerprint(in), before);
        QVERIFY(r.verdicts().size() == 1 && r.verdicts().first().value("repaired").toBool());
        QFile f(out);
        QVERIFY(f.open(QIODevice::ReadOnly) && f.seek(f.size() - 32768) && f.read(32768).contains("co64"));
        QCOMPARE(PictureHashes(out), PictureHashes(clip));
    }

    // Bad input: each ends in one verdict, no fault, the input unchanged.
    void badInput_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::addColumn<int>("repaired");   // -1: either verdict will do
        QTest::newRow("sample of another codec pair") << QStringLiteral("other pair") << -1;
        QTest::newRow("sample without a movie") << QStringLiteral("sample no moov") << 0;
        QTest::newRow("sample whose avcC is cut") << QStringLiteral("sample avcC") << -1;
        QTest::newRow("mdat size 0") << QStringLiteral("mdat 0") << 1;
        QTest::newRow("mdat larger than the file") << QStringLiteral("mdat huge") << 1;
    }
    void badInput()
    {
        QFETCH(QString, damage);
        QFETCH(int, repaired);
        const QString clip = Recording(QStringLiteral("h264-aac"), QStringLiteral("mov"), QStringLiteral("25"), false);
        QString sample = Recording(QStringLiteral("h264-aac"), QStringLiteral("mov"), QStringLiteral("25"), true);
        QByteArray bytes = readAll(clip);
        cutMoov(bytes);
        const qint64 mdat = findTopLevelAtom(bytes, "mdat");
        if (damage == QLatin1String("other pair")) {
            sample = Recording(QStringLiteral("hevc-sowt"), QStringLiteral("mov"), QStringLiteral("25"), true);
        } else if (damage.startsWith(QLatin1String("sample"))) {
            QByteArray s = readAll(sample);
            if (damage.endsWith(QLatin1String("moov")))
                cutMoov(s);
            else
                zeroRange(s, s.indexOf("avcC") + 8, 200);
            sample = m_dir + QStringLiteral("/sample.mov");
            writeAll(sample, s);
        } else {
            bytes.replace(int(mdat - 4), 4, QByteArray::fromHex(damage.endsWith(QLatin1String("0")) ? "00000000" : "7FFFFFF0"));
        }
        const QString in = m_dir + QStringLiteral("/clip.mov");
        writeAll(in, bytes);
        const QString before = sha256(in);
        const BatchResult r = runBatch({QStringLiteral("--quiet"), QStringLiteral("--reference"), sample, in});
        QCOMPARE(sha256(in), before);
        QVERIFY2(!r.stderrText.contains("Sanitizer") && !r.stderrText.contains("runtime error"), r.stderrText.constData());
        QCOMPARE(r.verdicts().size(), 1);
        if (repaired >= 0)
            QCOMPARE(r.verdicts().first().value("repaired").toBool(), repaired == 1);
    }
};

QTEST_GUILESS_MAIN(TestQuickTimeE2e)
#include "test_quicktime_e2e.moc"
