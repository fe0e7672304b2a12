// End to end: MJPEG, ProRes and MPEG-4 files made by ffmpeg, whole, with their
// sample tables zeroed, and with a 64 KiB hole in mdat, repaired through the
// batch runner. The output opens and decodes; the input stays unchanged.
#include "core/thread_video_repair.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
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
    const qint64 moov = findTopLevelAtom(file, "moov");
    for (const char* code : {"stco", "co64", "stsz"}) {
        qint64 from = moov;
        for (;;) {
            const qint64 at = file.indexOf(code, from);
            if (at < 0)
                break;
            const uchar* p = reinterpret_cast<const uchar*>(file.constData()) + at - 4;
            const qint64 size = qint64(p[0]) << 24 | qint64(p[1]) << 16 | qint64(p[2]) << 8 | p[3];
            zeroRange(file, at + 12, size - 16);
            from = at + 4;
        }
    }
}

// In a sanitizer build the batch runner reports faults on its stderr.
bool Clean(const BatchResult& r)
{
    return !r.stderrText.contains("Sanitizer") && !r.stderrText.contains("runtime error");
}

// The hole: 64 KiB of zeros in the middle of the file, inside mdat.
constexpr qint64 kHole = 65536;
qint64 HoleStart(const QByteArray& file)
{
    return findTopLevelAtom(file, "mdat") + file.size() / 2 - kHole / 2;
}

// Video frames of the healthy clip whose bytes overlap [from, from + length),
// from the positions and sizes of its packets; -1 when ffprobe fails.
int FramesTouched(const QString& clip, qint64 from, qint64 length)
{
    QByteArray out;
    if (run(QStringLiteral("ffprobe"), {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-select_streams"),
                                        QStringLiteral("v:0"), QStringLiteral("-show_entries"), QStringLiteral("packet=pos,size"),
                                        QStringLiteral("-of"), QStringLiteral("compact=p=0"), clip}, &out) != 0)
        return -1;
    int touched = 0;
    int packets = 0;
    for (const QByteArray& line : out.split('\n')) {
        qint64 pos = -1, size = -1;
        for (const QByteArray& field : line.trimmed().split('|')) {
            if (field.startsWith("pos="))
                pos = field.mid(4).toLongLong();
            else if (field.startsWith("size="))
                size = field.mid(5).toLongLong();
        }
        if (pos < 0 || size <= 0)
            continue;
        ++packets;
        if (pos < from + length && pos + size > from)
            ++touched;
    }
    return packets ? touched : -1;
}
}

class TestRepairQuickTimeE2e : public QObject {
    Q_OBJECT
    QString m_dir;

    // Repairs a damaged copy and returns decoded frames of the output (-1: none).
    int repair(const QString& clip, const QString& damage, const QString& name)
    {
        QByteArray bytes = readAll(clip);
        if (damage == QLatin1String("tables"))
            ZeroTables(bytes);
        else if (damage == QLatin1String("hole"))
            zeroRange(bytes, HoleStart(bytes), kHole);
        const QString in = m_dir + QLatin1Char('/') + name;
        writeAll(in, bytes);
        const QString before = sha256(in);
        const BatchResult r = runBatch({QStringLiteral("--quiet"), in});
        if (sha256(in) != before)
            return -2;
        if (!Clean(r))
            return -3;
        const QString out = m_dir + QStringLiteral("/Repaired/") + name;
        if (!r.end().value(QStringLiteral("outputs")).toArray().contains(out) || !probeOpens(out))
            return -1;
        QByteArray err;
        run(QStringLiteral("ffmpeg"), {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"), out,
                                       QStringLiteral("-f"), QStringLiteral("null"), QStringLiteral("-")}, nullptr, &err);
        return decodedVideoFrames(out);
    }

private Q_SLOTS:
    void init() { m_dir = freshDir(QStringLiteral("qt e2e")); }   // a blank in the path on purpose
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void repairs_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("damage");
        QTest::addColumn<QString>("suffix");
        for (const char* kind : {"mjpeg", "prores", "mpeg4"})
            for (const char* damage : {"whole", "tables", "hole"})
                QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(kind, damage)))
                    << QString::fromLatin1(kind) << QString::fromLatin1(damage)
                    << QString::fromLatin1(kind == QByteArray("mpeg4") ? "3gp" : "mov");
    }
    void repairs()
    {
        QFETCH(QString, kind);
        QFETCH(QString, damage);
        QFETCH(QString, suffix);
        const QString clip = Clip(kind);
        QVERIFY(!clip.isEmpty());
        const int original = decodedVideoFrames(clip);
        QVERIFY(original > 0);
        const int frames = repair(clip, damage, QStringLiteral("clip %1.%2").arg(kind, suffix));
        QVERIFY2(frames != -2, "the input was changed");
        QVERIFY2(frames != -3, "the batch runner reported a memory or undefined-behaviour fault");
        QVERIFY2(frames > 0, "no playable output");
        // Whole or tables zeroed: 98% of the frames. A hole costs exactly the
        // frames whose bytes it overlaps; in the small 3GP clip that is about
        // two fifths of them, in the others a handful.
        int need = (original * 98 + 99) / 100;
        if (damage == QLatin1String("hole")) {
            const int touched = FramesTouched(clip, HoleStart(readAll(clip)), kHole);
            QVERIFY(touched > 0 && touched < original);
            need = original - touched;
        }
        QVERIFY2(frames >= need, qPrintable(QStringLiteral("%1 of %2 frames, %3 needed").arg(frames).arg(original).arg(need)));
    }

    void badInputEndsInAVerdict_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("kind");
        QTest::newRow("all zeros mov") << "zeros.mov" << "zeros";
        QTest::newRow("all zeros 3gp") << "zeros.3gp" << "zeros";
        QTest::newRow("prores frames of size 0") << "size0.mov" << "prores size 0";
        QTest::newRow("prores frame past the end") << "pastend.mov" << "prores past end";
        QTest::newRow("mjpeg without end marks") << "noend.mov" << "mjpeg no end";
        QTest::newRow("mpeg4 cut in the middle") << "cut.3gp" << "mpeg4 cut";
    }
    // Damage that leaves little or nothing to find: the run ends, the file
    // gets its verdict, the input stays as it was, and an output, if any, opens.
    void badInputEndsInAVerdict()
    {
        QFETCH(QString, name);
        QFETCH(QString, kind);
        QByteArray bytes;
        if (kind == QLatin1String("zeros")) {
            bytes = QByteArray(1 << 20, 0);
        } else if (kind.startsWith(QLatin1String("prores"))) {
            bytes = readAll(Clip(QStringLiteral("prores")));
            ZeroTables(bytes);
            const bool all = kind.endsWith(QLatin1String("size 0"));
            for (qint64 at = bytes.indexOf("icpf"); at >= 4; at = bytes.indexOf("icpf", at + 4)) {
                if (all) {
                    zeroRange(bytes, at - 4, 4);
                } else if (bytes.indexOf("icpf", at + 4) < 0) {
                    bytes.replace(int(at - 4), 4, QByteArray::fromHex("7FFFFFF0"));   // the last frame
                }
            }
        } else if (kind.startsWith(QLatin1String("mjpeg"))) {
            bytes = readAll(Clip(QStringLiteral("mjpeg")));
            ZeroTables(bytes);
            for (qint64 at = bytes.indexOf("\xFF\xD9"); at >= 0; at = bytes.indexOf("\xFF\xD9", at + 2))
                bytes[int(at + 1)] = char(0xD8);
        } else {
            bytes = readAll(Clip(QStringLiteral("mpeg4")));
            cutFrom(bytes, bytes.size() / 2);
        }
        QVERIFY(!bytes.isEmpty());
        const QString in = m_dir + QLatin1Char('/') + name;
        writeAll(in, bytes);
        const QString before = sha256(in);
        const BatchResult r = runBatch({QStringLiteral("--quiet"), in}, 120000);
        QCOMPARE(sha256(in), before);
        QVERIFY2(Clean(r), r.stderrText.constData());
        QCOMPARE(r.end().value(QStringLiteral("result")).toString(), QStringLiteral("finished"));
        QCOMPARE(r.verdicts().size(), 1);
        const QString out = m_dir + QStringLiteral("/Repaired/") + name;
        if (r.end().value(QStringLiteral("outputs")).toArray().contains(out))
            QVERIFY(probeOpens(out));
    }
};

QTEST_GUILESS_MAIN(TestRepairQuickTimeE2e)
#include "test_repair_quicktime_e2e.moc"
