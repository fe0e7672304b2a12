// The scan of media data by the codecs' syntax, against the tables of the
// clip it came from, whole and damaged; the code search across zeros.
#include "core/code_search.h"
#include "recovery/syntax/media_scan.h"
#include "support/test_videos.h"

#include <QtTest>

using namespace syntax;
using namespace testvideo;

namespace {

QString Clip(const QString& sound)
{
    return make(QStringLiteral("scan_%1.mov").arg(sound),
                lavfiVideo(3, QStringLiteral("160x120"), 25) + lavfiAudio(3)
                    << "-c:v" << "libx264" << "-preset" << "veryfast" << "-g" << "12" << "-c:a" << sound);
}

} // namespace

class TestMediaScan : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The code search passes runs of zeros: it still finds a code that
    // starts with zeros right behind a run, one that runs past the end of
    // the range, and none inside a run or before the range.
    void codeSearchAcrossZeros()
    {
        QByteArray data(3 << 20, '\0');
        const QByteArray code("\x00\x00\x01\xBA", 4);
        for (qint64 at : {qint64(0), qint64(5), qint64(1 << 20) - 2, qint64(2 << 20) + 7}) {
            QByteArray d = data;
            d.replace(int(at), 4, code);
            MemoryReader r(d, 64 * 1024);
            QCOMPARE(FindAnyCode(r, 0, uint64_t(d.size()), {0x000001BAu}), at);
            QCOMPARE(FindAnyCode(r, uint64_t(at), uint64_t(at) + 1, {0x000001BAu}), at);
            QCOMPARE(FindAnyCode(r, uint64_t(at) + 1, uint64_t(d.size()), {0x000001BAu}), qint64(-1));
        }
    }

    void samplesAsTheTablesSay_data()
    {
        QTest::addColumn<QString>("sound");
        QTest::addColumn<QString>("damage");
        for (const char* sound : {"aac", "pcm_s16be"})
            for (const char* damage : {"none", "hole", "length past the data"})
                QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(sound, damage)))
                    << QString::fromLatin1(sound) << QString::fromLatin1(damage);
    }
    void samplesAsTheTablesSay()
    {
        QFETCH(QString, sound);
        QFETCH(QString, damage);
        const QString clip = Clip(sound);
        QVERIFY(!clip.isEmpty());
        QByteArray bytes = readAll(clip);
        MemoryReader healthy(bytes);
        MovieModel model;
        QVERIFY(LearnMovie(healthy, model));
        const QList<Packet> video = packets(clip, QStringLiteral("v:0"));
        QVERIFY(video.size() > 50);

        // The damage lies in the middle of a picture: that picture is lost
        // or cut, and those whose bytes it doesn't touch are found whole.
        const Packet& hit = video.at(video.size() / 2);
        qint64 from = hit.pos + 8, length = 0;
        if (damage == QLatin1String("hole")) {
            length = 4096;
            zeroRange(bytes, from, length);
        } else if (damage != QLatin1String("none")) {
            from = hit.pos;
            length = hit.size;
            bytes.replace(int(hit.pos), 4, QByteArray::fromHex("7FFFFFF0"));
        }
        MemoryReader damaged(bytes, 64 * 1024);   // small windows: their edges get crossed
        const ScanResult scan = ScanMedia(damaged, model, LocateMediaData(damaged), ScanControl());

        QSet<QPair<qint64, qint64>> found;
        for (const ScannedChunk& c : scan.chunks) {
            if (c.sound)
                continue;
            qint64 pos = qint64(c.offset);
            for (uint64_t i = 0; i < c.samples; ++i) {
                found.insert({pos, qint64(scan.video.sizes[size_t(c.firstSample + i)])});
                pos += scan.video.sizes[size_t(c.firstSample + i)];
            }
        }
        int missing = 0;
        for (const Packet& p : video)
            if (!found.contains({p.pos, p.size}) && (length == 0 || p.pos + p.size <= from || p.pos >= from + length))
                ++missing;
        // PCM, which no syntax confirms, may take in the damaged picture and,
        // the steps of its frames no longer lining up, the one behind it.
        const bool pcm = sound.startsWith(QLatin1String("pcm"));
        QVERIFY2(missing <= (pcm && length ? 1 : 0), qPrintable(QString::number(missing)));
        if (!length)
            QCOMPARE(scan.skippedBytes, uint64_t(0));
        else if (!pcm)
            QVERIFY(scan.skippedBytes > 0 && scan.skippedBytes < uint64_t(length) + 64 * 1024);

        // Sound: every AAC frame, or every PCM chunk, where the tables have it.
        const QList<Packet> audio = packets(clip, QStringLiteral("a:0"));
        uint64_t soundBytes = 0;
        for (const ScannedChunk& c : scan.chunks)
            if (c.sound)
                soundBytes += c.bytes;
        qint64 expected = 0;
        for (const Packet& p : audio)
            expected += p.size;
        QVERIFY2(soundBytes + uint64_t(length) + 8192 >= uint64_t(expected) && soundBytes <= uint64_t(expected),
                 qPrintable(QStringLiteral("%1 of %2 bytes of sound").arg(soundBytes).arg(expected)));

        // The same bytes scan the same way.
        const ScanResult again = ScanMedia(damaged, model, LocateMediaData(damaged), ScanControl());
        QCOMPARE(again.video.sizes, scan.video.sizes);
        QCOMPARE(again.soundSizes, scan.soundSizes);
        QCOMPARE(again.video.poc, scan.video.poc);
    }
};

QTEST_GUILESS_MAIN(TestMediaScan)
#include "test_media_scan.moc"
