// End to end through the batch runner: MJPEG, ProRes and MPEG-4 files made by
// ffmpeg, whole, with their sample tables zeroed, with a 64 KiB hole in mdat,
// and damaged so that little is left to find. The run ends with one verdict,
// the input stays unchanged, an output opens and decodes the frames expected.
#include "core/thread_video_repair.h"
#include "support/test_videos.h"

#include <QDir>
#include <QJsonArray>
#include <QtTest>

using namespace testvideo;

namespace {
QString Clip(const QString& kind)
{
    QStringList a = lavfiVideo(4) + lavfiAudio(4);
    if (kind == QLatin1String("mjpeg"))
        return make(QStringLiteral("mjpeg_pcm.mov"), a << "-c:v" << "mjpeg" << "-q:v" << "5" << "-c:a" << "pcm_u8");
    if (kind == QLatin1String("prores"))
        return make(QStringLiteral("prores_pcm.mov"), a << "-c:v" << "prores_ks" << "-profile:v" << "0" << "-c:a" << "pcm_s16be");
    return make(QStringLiteral("mpeg4_aac.3gp"), lavfiVideo(4, QStringLiteral("176x144")) + lavfiAudio(4, 16000)
                << "-c:v" << "mpeg4" << "-c:a" << "aac" << "-ac" << "1" << "-b:a" << "24k");
}

// Zeroes the entries of every stco/co64 and stsz table in moov.
void ZeroTables(QByteArray& file)
{
    for (const char* code : {"stco", "co64", "stsz"})
        for (qint64 at = file.indexOf(code, findTopLevelAtom(file, "moov")); at >= 0; at = file.indexOf(code, at + 4))
            zeroRange(file, at + 12, ByteReader::loadBe32(reinterpret_cast<const uint8_t*>(file.constData() + at - 4)) - 16);
}

// Sets the size word in front of every ProRes frame code (only the last one's when !all).
void SetFrameSizes(QByteArray& file, const QByteArray& size, bool all)
{
    for (qint64 at = file.indexOf("icpf"); at >= 4; at = file.indexOf("icpf", at + 4))
        if (all || file.indexOf("icpf", at + 4) < 0)
            file.replace(int(at - 4), 4, size);
}

constexpr qint64 kHole = 65536;   // zeroed in the middle of the file, inside mdat
qint64 HoleStart(const QByteArray& file) { return findTopLevelAtom(file, "mdat") + file.size() / 2 - kHole / 2; }

// Video frames of the healthy clip whose bytes overlap [from, from + length),
// from the positions and sizes of its packets; -1 when ffprobe fails.
int FramesTouched(const QString& clip, qint64 from, qint64 length)
{
    QByteArray out;
    if (run(QStringLiteral("ffprobe"), {"-v", "error", "-select_streams", "v:0", "-show_entries", "packet=pos,size",
                                        "-of", "compact=p=0", clip}, &out) != 0)
        return -1;
    int touched = 0, packets = 0;
    for (const QByteArray& line : out.split('\n')) {
        qint64 pos = -1, size = -1;
        for (const QByteArray& field : line.trimmed().split('|')) {
            if (field.startsWith("pos="))
                pos = field.mid(4).toLongLong();
            else if (field.startsWith("size="))
                size = field.mid(5).toLongLong();
        }
        if (pos >= 0 && size > 0) {
            ++packets;
            touched += pos < from + length && pos + size > from;
        }
    }
    return packets ? touched : -1;
}
}

class TestRepairQuickTimeE2e : public QObject {
    Q_OBJECT
    QString m_dir;

private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("qt e2e")); }   // a blank in the path on purpose
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void repairs_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("damage");
        for (const char* kind : {"mjpeg", "prores", "mpeg4"})
            for (const char* damage : {"whole", "tables", "hole"})
                QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(kind, damage)))
                    << QString::fromLatin1(kind) << QString::fromLatin1(damage);
        // Little or nothing to find: only a verdict and no fault are asked for.
        QTest::newRow("prores frames of size 0") << QStringLiteral("prores") << QStringLiteral("size 0");
        QTest::newRow("prores frame past the end") << QStringLiteral("prores") << QStringLiteral("past end");
        QTest::newRow("mjpeg without end marks") << QStringLiteral("mjpeg") << QStringLiteral("no end");
        QTest::newRow("mpeg4 cut in the middle") << QStringLiteral("mpeg4") << QStringLiteral("cut");
    }
    void repairs()
    {
        QFETCH(QString, kind);
        QFETCH(QString, damage);
        const QString clip = Clip(kind);
        QVERIFY(!clip.isEmpty());
        QByteArray bytes = readAll(clip);
        if (damage != QLatin1String("whole") && damage != QLatin1String("hole") && damage != QLatin1String("cut"))
            ZeroTables(bytes);
        if (damage == QLatin1String("hole"))
            zeroRange(bytes, HoleStart(bytes), kHole);
        else if (damage == QLatin1String("size 0") || damage == QLatin1String("past end"))
            SetFrameSizes(bytes, QByteArray::fromHex(damage == QLatin1String("size 0") ? "00000000" : "7FFFFFF0"),
                          damage == QLatin1String("size 0"));
        else if (damage == QLatin1String("no end"))
            bytes.replace("\xFF\xD9", "\xFF\xD8");
        else if (damage == QLatin1String("cut"))
            cutFrom(bytes, bytes.size() / 2);

        const QString name = QStringLiteral("clip %1.%2").arg(kind, kind == QLatin1String("mpeg4") ? "3gp" : "mov");
        const QString in = m_dir + QLatin1Char('/') + name;
        writeAll(in, bytes);
        const QString before = sha256(in);
        const BatchResult r = runBatch({QStringLiteral("--quiet"), in}, 120000);
        QCOMPARE(sha256(in), before);
        // In a sanitizer build the batch runner reports faults on its stderr.
        QVERIFY2(!r.stderrText.contains("Sanitizer") && !r.stderrText.contains("runtime error"), r.stderrText.constData());
        QCOMPARE(r.end().value(QStringLiteral("result")).toString(), QStringLiteral("finished"));
        QCOMPARE(r.verdicts().size(), 1);
        const QString out = m_dir + QStringLiteral("/Repaired/") + name;
        const bool made = r.end().value(QStringLiteral("outputs")).toArray().contains(out);
        if (made)
            QVERIFY(probeOpens(out));
        if (!QStringList({"whole", "tables", "hole"}).contains(damage))
            return;

        // Whole or tables zeroed: 98% of the frames. A hole costs exactly the
        // frames whose bytes it overlaps: in the small 3GP clip about two
        // fifths of them, in the others a handful.
        const int original = decodedVideoFrames(clip);
        QVERIFY(original > 0);
        int need = (original * 98 + 99) / 100;
        if (damage == QLatin1String("hole")) {
            const int touched = FramesTouched(clip, HoleStart(readAll(clip)), kHole);
            QVERIFY(touched > 0 && touched < original);
            need = original - touched;
        }
        QVERIFY2(made, "no output");
        const int frames = decodedVideoFrames(out);
        qInfo("%d of %d frames decode, %d needed", frames, original, need);
        QVERIFY2(frames >= need, qPrintable(QStringLiteral("%1 of %2 frames, %3 needed").arg(frames).arg(original).arg(need)));
    }
};

QTEST_GUILESS_MAIN(TestRepairQuickTimeE2e)
#include "test_repair_quicktime_e2e.moc"
