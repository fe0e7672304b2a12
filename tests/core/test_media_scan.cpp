// The scan of media data by the codecs' syntax, against the tables of the
// clip it came from, whole and damaged; the code search across zeros.
#include "core/code_search.h"
#include "recovery/syntax/media_scan.h"
#include "recovery/syntax/movie_writer.h"
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

// Every record of table, in order.
template <typename Record>
std::vector<Record> All(const RecordTable<Record>& table)
{
    std::vector<Record> all;
    Record r;
    for (auto it = table.reader(); it.next(r);)
        all.push_back(r);
    return all;
}

} // namespace

namespace syntax {
bool operator==(const VideoFrame& a, const VideoFrame& b)
{
    return a.poc == b.poc && a.size == b.size && a.keyframe == b.keyframe && a.pocReset == b.pocReset;
}
} // namespace syntax

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
        auto frames = scan.video.frames.reader();
        for (const ScannedChunk& c : scan.chunks) {
            if (c.sound)
                continue;
            qint64 pos = qint64(c.offset);
            VideoFrame f;
            for (uint64_t i = 0; i < c.samples && frames.next(f); ++i) {
                found.insert({pos, qint64(f.size)});
                pos += f.size;
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
        QCOMPARE(All(again.video.frames), All(scan.video.frames));
        QCOMPARE(All(again.soundSizes), All(scan.soundSizes));
    }

    // A table of many blocks keeps one in memory and the others in its
    // file, reads back what went in, and leaves nothing behind; one of a
    // single block never makes the file.
    void tableSpillsBlocks()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral(".syntax-clip.mov.sound"));
        for (uint32_t count : {16u, 100u}) {
            {
                RecordTable<uint32_t> table(path, 16 * sizeof(uint32_t));
                std::vector<uint32_t> in;
                for (uint32_t i = 0; i < count; ++i) {
                    in.push_back(i * 2654435761u);
                    table.push_back(in.back());
                }
                QVERIFY(table.seal());
                QCOMPARE(QFileInfo(path).size(), count > 16 ? qint64(96 * sizeof(uint32_t)) : 0);
                QCOMPARE(All(table), in);
                QCOMPARE(All(table), in);   // a second reader starts again at the first
            }
            QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
        }
        // The chunk list too, with sizes of up to six bytes and gaps.
        {
            ScannedChunks chunks(dir.filePath(QStringLiteral(".syntax-clip.mov.chunks")));
            std::vector<ScannedChunk> in;
            uint64_t at = 0, samples[2] = {0, 0};
            for (uint64_t i = 0; i < 80000; ++i) {
                ScannedChunk c;
                c.sound = i % 3 == 0;
                c.offset = at + (i % 7 == 0 ? i : 0);
                c.bytes = (i * 2654435761u) % (uint64_t(1) << (i % 41));
                c.samples = i % 5;
                c.firstSample = samples[c.sound];
                samples[c.sound] += c.samples;
                at = c.offset + c.bytes;
                chunks.push_back(c);
                in.push_back(c);
            }
            QVERIFY(chunks.seal());
            QVERIFY(QFileInfo(dir.filePath(QStringLiteral(".syntax-clip.mov.chunks"))).size() > 0);
            size_t k = 0;
            for (const ScannedChunk& c : chunks) {
                const ScannedChunk& e = in[k++];
                QVERIFY(c.sound == e.sound && c.offset == e.offset && c.bytes == e.bytes && c.samples == e.samples
                        && c.firstSample == e.firstSample);
            }
            QCOMPARE(k, in.size());
        }
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
    }

    // A full disk under a table's file: the table is not whole, the movie
    // of that scan is not written, and no file stays.
    void tableOnFullDisk()
    {
        if (!QFile::exists(QStringLiteral("/dev/full")))
            QSKIP("no /dev/full");
        const QString clip = Clip(QStringLiteral("aac"));
        QVERIFY(!clip.isEmpty());
        MemoryReader r(readAll(clip));
        MovieModel model;
        QVERIFY(LearnMovie(r, model));
        QTemporaryDir dir;
        const QString out = dir.filePath(QStringLiteral(".syntax-clip.mov"));
        QVERIFY(QFile::link(QStringLiteral("/dev/full"), PartialPath(out + QStringLiteral(".video"))));
        const unsigned full = FileWriter::outOfSpaceFailures();
        {
            ScanResult scan;
            scan.video.frames = RecordTable<VideoFrame>(out + QStringLiteral(".video"), 4 * sizeof(VideoFrame));
            for (int i = 0; i < 10; ++i)
                scan.video.frames.push_back(VideoFrame());
            QVERIFY(!scan.video.frames.seal());
            MovieOutput output;
            QVERIFY(output.start(out, clip, LocateMediaData(r), QByteArray(), nullptr));
            QVERIFY(!output.finish(model, scan));
        }
        QVERIFY(FileWriter::outOfSpaceFailures() > full);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden | QDir::System), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestMediaScan)
#include "test_media_scan.moc"
