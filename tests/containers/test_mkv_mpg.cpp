// Matroska/WebM and MPEG program stream repair: crafted files for what is
// kept, put back or refused; ffmpeg-made clips end to end.
#include "batch_check.h"
#include "containers/matroska.h"
#include "core/byte_reader.h"
#include "support/bytes.h"
#include "support/route_job.h"

#include <QDir>
#include <QtTest>
#include <functional>

using namespace testvideo;
using containers::repairedPath;

namespace {

QByteArray hex(const char* h) { return QByteArray::fromHex(h); }

// An element with an 8-byte size of the 01 00 00 00 form.
QByteArray element(const char* idHex, const QByteArray& payload)
{
    return hex(idHex) + hex("01000000") + be(quint32(payload.size())) + payload;
}
QByteArray cluster(int timecode, int payloadBytes, bool withTimecode = true, bool crc = false)
{
    QByteArray p = (crc ? hex("BF84DEADBEEF") : QByteArray()) + (withTimecode ? hex("E782") + char(timecode >> 8) + char(timecode) : hex("A3"));
    return element("1F43B675", p + QByteArray(qMax(0, payloadBytes - p.size()), char(0x5A)));
}
// Info (with or without Duration), Tracks, the clusters, Cues, padded past 100000 bytes.
QByteArray mkvFile(const QByteArray& clusters, bool duration = true, int infoPad = 10, bool crc = false)
{
    const QByteArray info = (crc ? hex("BF8412345678") : QByteArray()) + hex("2AD7B183") + char(0x0F) + char(0x42)
                          + char(0x40) + (duration ? hex("448984") + be(0x447A0000u) : QByteArray())
                          + QByteArray(infoPad, char(0x7B));
    return hex("1A45DFA3844286810118538067") + hex("01FFFFFFFFFFFFFF") + element("1549A966", info)
         + element("1654AE6B", (crc ? hex("BF8487654321") : QByteArray()) + hex("AE8383810186")) + clusters
         + element("1C53BB6B", QByteArray(8, char(0x11))) + QByteArray(120000, '\0');
}
// In the output: where the Tracks Seek says Tracks stands, within the Segment's data at 55.
int tracksAt(const QByteArray& out) { return be16(out, 55 + 33); }

const QByteArray kPack = hex("000001BA4400040004010189C3F8");   // 14-byte MPEG-2 pack header
// An 18-byte system header; ids: the stream id of its first entry and the byte behind it.
QByteArray systemHeader(const char* ids) { return hex("000001BB000C80C4E104E1FF") + hex(ids) + hex("2EC0C020"); }
const QByteArray kSequence = hex("000001B3140F00230003D3A0");   // short form, 12 bytes
const QByteArray kGop = hex("000001B800080000");
const QByteArray kVideoStart = kSequence + kGop + hex("000001E0") + QByteArray(4000, char(0x33));
const QByteArray kAudioRest = hex("000001C0") + QByteArray(200000, char(0x44));

} // namespace

class TestMkvMpg : public QObject {
    Q_OBJECT
    QString m_dir;

    struct Fixed {
        bool ok = false, refused = false;   // one positive / negative verdict, by WriteAVIFileStatus
        QByteArray out;
    };
    // The route of name's suffix over bytes; the output goes to m_dir/Repaired.
    Fixed repair(const QString& name, const QByteArray& bytes, const QString& sample = QString())
    {
        const QString out = repairedPath(m_dir + '/' + name);
        QFile::remove(out);
        QDir().mkpath(m_dir + "/Repaired");
        RouteRun run(m_dir + "/Repaired", name, std::make_unique<MemoryReader>(bytes));
        run.job.referencePath = sample;
        run.run();
        const bool one = run.signalNames == QStringList{"WriteAVIFileStatus"};
        return Fixed{one && run.verdicts == QStringList{"1 " + name}, one && run.verdicts == QStringList{"0 " + name}, readAll(out)};
    }
    // Decoded frames of the batch runner's repair of clip with damage applied; -2 on a
    // negative verdict. fault tells a broken rule of the run, or figures in the verdict
    // that the muxer doesn't read back from the output.
    int framesAfter(const QString& clip, const QString& name, const std::function<void(QByteArray&)>& damage,
                    QString& fault, const QString& sample = QString())
    {
        QByteArray bytes = readAll(clip);
        damage(bytes);
        const containers::Batch b = containers::repairBytes(m_dir + '/' + name, bytes,
                                                            sample.isEmpty() ? QStringList() : QStringList{"--reference", sample});
        fault = !b.fault.isEmpty() ? b.fault : b.ok() ? containers::figuresFault(b) : QString();
        return b.ok() ? decodedVideoFrames(b.outputs.value(0)) : -2;
    }

    // Frames that the clusters untouched by the damaged byte ranges hold: the clip with every
    // Cluster that overlaps a range (its ID, size or the next ID, which the repair tests) cut
    // out, decoded as it is.
    int framesOfRemainingClusters(const QByteArray& clip, const QList<QPair<qint64, qint64>>& damaged, const QString& tag)
    {
        QList<qint64> starts;
        for (qint64 p = clip.indexOf(hex("1F43B675")); p >= 0; p = clip.indexOf(hex("1F43B675"), p + 1))
            starts << p;
        const qint64 tail = clip.lastIndexOf(hex("1C53BB6B"));
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
        const QString path = m_dir + "/expected_" + tag;
        return writeAll(path, kept + clip.mid(tail)) ? decodedVideoFrames(path) : -1;
    }

private Q_SLOTS:
    void initTestCase() { m_dir = freshDir("mkv-mpg"); }
    void cleanupTestCase() { QDir(m_dir).removeRecursively(); }

    void ebmlSizeForms()
    {
        const struct { const char* bytes; int n; quint64 v; } cases[] = {
            {"85", 1, 5}, {"4123", 2, 0x123}, {"0801020304", 5, 0x01020304ull},
            {"0100000102030405", 8, 0x0000000102030405ull}, {"00", 8, 0}, {"01FFFFFFFFFFFFFF", 8, 0x00FFFFFFFFFFFFFFull},
        };
        for (const auto& c : cases) {
            MemoryReader r(hex(c.bytes) + QByteArray(8, '\0'));
            const auto got = ReadEbmlSize(r, 0);
            QCOMPARE(got.first, c.n);
            QCOMPARE(quint64(got.second), c.v);
        }
    }

    void mkvLayoutAndClusters()
    {
        // The second cluster has no Timecode and the third one whose data would
        // run past the cluster: both are dropped; the fourth is kept.
        const Fixed f = repair("t.mkv", mkvFile(cluster(0, 200) + cluster(40, 300, false) + hex("1F43B67583E78201")
                                                + cluster(40, 100)));
        QVERIFY(f.ok);
        QCOMPARE(f.out.mid(0, 4), hex("1A45DFA3"));
        QCOMPARE(f.out.mid(31, 4), QByteArray("webm"));
        QCOMPARE(f.out.mid(43, 4), hex("18538067"));
        QCOMPARE(qint64(be16(f.out, 51)) << 16 | be16(f.out, 53), f.out.size() - 55);
        QCOMPARE(f.out.mid(55 + 229, 4), hex("1549A966"));
        QCOMPARE(f.out.mid(55 + tracksAt(f.out), 4), hex("1654AE6B"));
        QCOMPARE(f.out.count(hex("1F43B675")), 2);
        QVERIFY(!f.out.contains(hex("1C53BB6B")));
        // Duration: 10 x 2 clusters - 0 + 40 = 60, as a float.
        QVERIFY(f.out.contains(hex("448984") + be(0x42700000u)));
        // An Info payload above 65287 bytes wraps the 16-bit Tracks position.
        const Fixed wide = repair("t.mkv", mkvFile(cluster(0, 200), true, 70000));
        QVERIFY(wide.ok);
        QCOMPARE(tracksAt(wide.out), (7 + 70000 + 248) & 0xFFFF);   // Info payload without the Duration
    }

    // Masters that open with a CRC-32: a Cluster's Timecode behind it still counts, and the
    // cluster is copied with its checksum. The Info's CRC would be stale once the Duration is
    // rewritten, so it is left out; the Tracks, copied unchanged, keeps its own.
    void mkvChecksums()
    {
        const QByteArray kept = cluster(0, 200, true, true);
        const Fixed f = repair("t.mkv", mkvFile(kept + cluster(40, 300, false, true) + cluster(40, 100, true, true), true, 10, true));
        QVERIFY(f.ok);
        QCOMPARE(f.out.count(hex("1F43B675")), 2);
        QVERIFY(f.out.contains(kept));
        QVERIFY(!f.out.contains(hex("BF8412345678")));
        QVERIFY(f.out.contains(hex("BF8487654321")));
        QCOMPARE(f.out.mid(55 + 229 + 12, 4), hex("2AD7B183"));
        QCOMPARE(f.out.mid(55 + tracksAt(f.out), 4), hex("1654AE6B"));
        QCOMPARE(int(quint8(f.out[55 + 229 + 11])), tracksAt(f.out) - 229 - 12);
    }

    // A bare video stream: the fixed block with the first sequence header's
    // picture size (the end-to-end case decodes without it), then the stream
    // from its first group of pictures on.
    void mpegBareStream()
    {
        const QByteArray in = QByteArray(100, char(0x11)) + kSequence + kGop + QByteArray(200000, char(0x33));
        const Fixed f = repair("t.mpg", in);
        QVERIFY(f.ok);
        QCOMPARE(f.out.left(16), hex("000001B3140F0015FFFFE000000001B2"));
        QCOMPARE(f.out.mid(100), in.mid(112));
    }

    void mpegSystemHeaderKeptOrPutBack()
    {
        // No system header behind the first pack (one stands in a later pack): a fresh one
        // goes in behind the whole 14-byte pack header, with the bounds learnt. (A stream
        // that has one comes out unchanged: the end-to-end case.)
        QByteArray in = kPack + kVideoStart + kPack + systemHeader("E0E0") + kAudioRest;
        Fixed f = repair("t.mpg", in);
        QVERIFY(f.ok);
        QCOMPARE(f.out.left(32), kPack + hex("000001BB000C80C4E104E1FFE0E02EC0C020"));
        QCOMPARE(f.out.mid(32), in.mid(14));
        // MPEG-1 pack header of 12 bytes without a system header: the fresh one follows byte 12.
        const QByteArray pack12 = hex("000001BA2100010001800C35");
        in = pack12 + kVideoStart + pack12 + systemHeader("C0C0") + kAudioRest;
        f = repair("t.mpg", in);
        QVERIFY(f.ok);
        QCOMPARE(f.out.mid(12, 6), hex("000001BB000C"));
        QCOMPARE(f.out.mid(30), in.mid(12));
        // A 13-byte pack header: the system header at k + 13 stays, none is added.
        f = repair("t.mpg", hex("000001BA210001000180003F01") + systemHeader("C0C0") + kVideoStart + kAudioRest);
        QVERIFY(f.ok);
        QCOMPARE(f.out.count(hex("000001BB")), 1);
        QCOMPARE(f.out.mid(13, 4), hex("000001BB"));
    }

    void mpegSequenceHeaderFromTheSample()
    {
        // MPEG-2 video packets: a sequence header, its extension and a group of pictures at the
        // head of a packet whose 16-bit length covers them, then packs of audio.
        const QByteArray ext = hex("000001B5148A00010000"), picture = hex("00000100") + QByteArray(300, char(0x33));
        const auto packet = [](const QByteArray& payload) {
            const QByteArray body = hex("818000") + payload;
            return hex("000001E0") + char(body.size() >> 8) + char(body.size()) + body;
        };
        QByteArray tail;
        for (int i = 0; i < 100; ++i)
            tail += kPack + hex("000001C007FA") + QByteArray(2042, char(0x44));
        const QByteArray whole = kPack + systemHeader("E0E0") + packet(kSequence + ext + kGop + picture) + tail;
        const QString sample = m_dir + "/sample.mpg";
        QVERIFY(writeAll(sample, whole));

        // Damaged: the first pack's header lost its extension (12 bytes where 22 were). The
        // sample's header and extension go in and the packet grows by 10 bytes, so its end
        // still meets the next pack header.
        const QByteArray damaged = kPack + systemHeader("E0E0") + packet(kSequence + kGop + picture) + tail;
        const Fixed f = repair("t.mpg", damaged, sample);
        QVERIFY(f.ok);
        QCOMPARE(f.out.size(), damaged.size() + 10);
        const int pes = f.out.indexOf(hex("000001E0"));
        QVERIFY(pes > 0);
        QCOMPARE(f.out.mid(pes + 6 + be16(f.out, pes + 4), 4), hex("000001BA"));
        QVERIFY(f.out.contains(kSequence + ext + kGop + picture));
        QCOMPARE(f.out.count(hex("000001B3")), 1);
    }

    void matroskaEndToEnd_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QStringList>("codecs");
        QTest::newRow("mkv-h264-aac") << "mkv" << QStringList{"-c:v", "libx264", "-g", "25", "-c:a", "aac"};
        QTest::newRow("webm-vp8-vorbis") << "webm" << QStringList{"-c:v", "libvpx", "-g", "25", "-b:v", "400k", "-c:a", "libvorbis"};
        QTest::newRow("webm-vp8-opus") << "webm" << QStringList{"-c:v", "libvpx", "-g", "25", "-b:v", "400k", "-c:a", "libopus"};
    }
    // At least 90% of the frames of the clusters that remain, and the figures the muxer reads back.
    void matroskaEndToEnd()
    {
        QFETCH(QString, suffix);
        QFETCH(QStringList, codecs);
        const QString tag = QTest::currentDataTag();
        const QString clip = make("mkvmpg_" + tag + "." + suffix, lavfiVideo(8) + lavfiAudio(8) + codecs);
        // The sample must hold 100000 bytes too: shorter header streams aren't searched.
        const QString sample = make("mkvmpg_sample_" + tag + "." + suffix, lavfiVideo(4) + lavfiAudio(4) + codecs);
        QVERIFY(QFileInfo(clip).size() > 100000 && QFileInfo(sample).size() > 100000);
        const QByteArray bytes = readAll(clip);
        const qint64 size = bytes.size();
        const int all = decodedVideoFrames(clip);
        QVERIFY(all > 100);

        // Whole; cut at 70% (a range to the end is cut off: the whole clusters
        // ahead of the cut remain, the one cut is dropped); holes of zeros at a
        // third and at two thirds; the first 4 KiB zeroed (Info and Tracks come
        // from the sample).
        const qint64 cut = qint64(size * 0.7);
        const QList<QPair<QString, QList<QPair<qint64, qint64>>>> damages{
            {"whole", {}}, {"cut", {{cut, size - cut}}}, {"holes", {{size / 3, 2000}, {size * 2 / 3, 2000}}},
            {"head", {{0, 4096}}}};
        for (const auto& d : damages) {
            const QString name = d.first + "_" + tag + "." + suffix;
            const int want = d.second.isEmpty() ? all : framesOfRemainingClusters(bytes, d.second, name);
            QVERIFY(want > 0 && (d.first != "cut" || want < all));
            QString fault;
            const int got = framesAfter(clip, name, [&d](QByteArray& b) {
                for (const auto& r : d.second)
                    r.first + r.second < b.size() ? zeroRange(b, r.first, r.second) : cutFrom(b, r.first);
            }, fault, d.first == "head" ? sample : QString());
            QVERIFY2(fault.isEmpty(), qPrintable(fault));
            QVERIFY2(got * 10 >= want * 9, qPrintable(QString("%1: %2 of %3").arg(name).arg(got).arg(want)));
        }
    }

    void mpegEndToEnd_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("codecs");
        QTest::newRow("vob") << "ps.mpg" << QStringList{"-c:v", "mpeg2video", "-b:v", "1500k", "-c:a", "mp2", "-f", "vob"};
        QTest::newRow("vob-ac3") << "ac3.mpg" << QStringList{"-c:v", "mpeg2video", "-b:v", "1500k", "-c:a", "ac3", "-f", "vob"};
        QTest::newRow("mpeg1-mp2") << "ps1.mpg" << QStringList{"-c:v", "mpeg1video", "-b:v", "1500k", "-c:a", "mp2", "-ar", "44100", "-f", "mpeg"};
        QTest::newRow("bare") << "es.mpg" << QStringList{"-an", "-c:v", "mpeg1video", "-b:v", "1500k", "-f", "mpeg1video"};
    }
    // Whole, and the first 64 KiB zeroed with a sample: 90% of the frames behind the damage,
    // and the figures the muxer reads back.
    void mpegEndToEnd()
    {
        QFETCH(QString, name);
        QFETCH(QStringList, codecs);
        const bool sound = !codecs.contains("-an");
        const QString clip = make("mkvmpg_" + name, lavfiVideo(8) + (sound ? lavfiAudio(8) : QStringList()) + codecs);
        const QString sample = make("mkvmpg_sample_" + name, lavfiVideo(2) + (sound ? lavfiAudio(2) : QStringList()) + codecs);
        QVERIFY(!clip.isEmpty() && !sample.isEmpty());
        const int all = decodedVideoFrames(clip);
        QVERIFY(all > 100);
        QString fault;
        int got = framesAfter(clip, "whole_" + name, [](QByteArray&) {}, fault);
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
        QVERIFY2(got * 10 >= all * 9, qPrintable(QString("%1 of %2").arg(got).arg(all)));
        // An undamaged program stream gets its own headers back in place: byte for byte the same.
        if (sound)
            QCOMPARE(sha256(repairedPath(m_dir + "/whole_" + name)), sha256(clip));
        const double behind = 1.0 - 65536.0 / double(QFileInfo(clip).size());
        got = framesAfter(clip, "head_" + name, [](QByteArray& b) { zeroRange(b, 0, 65536); }, fault, sample);
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
        QVERIFY2(got * 10 >= int(all * behind * 9), qPrintable(QString("%1 of %2").arg(got).arg(all)));
    }

    // Sparse inputs with media past 4 GiB (a Void element in a Matroska file, a
    // hole behind the first pack of a program stream) give the clip's output.
    void mediaPast4GiB()
    {
        if (!containers::keepsHoles(m_dir))
            QSKIP("the file system keeps no holes: a sparse input would take 4 GiB");
        const QStringList ps{"-c:v", "mpeg2video", "-b:v", "1500k", "-c:a", "mp2", "-f", "vob"};
        for (const bool mkv : {true, false}) {
            const QByteArray bytes = readAll(mkv ? make("mkvmpg_mkv-h264-aac.mkv", lavfiVideo(8) + lavfiAudio(8)
                                                        + QStringList{"-c:v", "libx264", "-g", "25", "-c:a", "aac"})
                                                 : make("mkvmpg_ps.mpg", lavfiVideo(8) + lavfiAudio(8) + ps));
            const int at = mkv ? bytes.indexOf(hex("1F43B675"), bytes.size() / 3) : 0;
            QByteArray head = bytes.left(at) + (mkv ? hex("EC01") : QByteArray());
            for (int shift = 48; mkv && shift >= 0; shift -= 8)
                head += char(containers::kPast4GiB >> shift & 0xFF);
            const QString suffix = mkv ? ".mkv" : ".mpg", whole = m_dir + "/whole" + suffix, sparse = m_dir + "/sparse" + suffix;
            QVERIFY(writeAll(whole, bytes));
            QVERIFY(containers::writeSparse(sparse, head, containers::kPast4GiB, bytes.mid(at)));
            const containers::Batch b = containers::repairFiles(
                {whole, sparse}, mkv ? QStringList() : QStringList{"--reference", make("mkvmpg_sample_ps.mpg", lavfiVideo(2) + lavfiAudio(2) + ps)});
            QVERIFY2(b.fault.isEmpty(), qPrintable(b.fault));
            QCOMPARE(b.repaired, QList<bool>({true, true}));
            QCOMPARE(readAll(b.outputs.value(1)), readAll(b.outputs.value(0)));
            QFile::remove(sparse);
        }
    }

    // Refused: a Matroska stream under 100000 bytes, or with an Info without a
    // Duration; a program stream whose system header names a stream other
    // than audio or video, or without a group of pictures (user data in its place).
    void refused()
    {
        const QByteArray tiny = readAll(make("mkvmpg_mkv-h264-aac.mkv", lavfiVideo(8) + lavfiAudio(8)
                                             + QStringList{"-c:v", "libx264", "-g", "25", "-c:a", "aac"})).left(90000);
        QCOMPARE(tiny.size(), 90000);
        QByteArray noGop = kPack + systemHeader("E0E0") + kVideoStart + kAudioRest;
        const QList<QPair<QString, QByteArray>> cases{{"tiny.mkv", tiny},
                                                      {"t.mkv", mkvFile(cluster(0, 200), false)},
                                                      {"t.mpg", kPack + systemHeader("BDE0") + kVideoStart + kAudioRest},
                                                      {"t.mpg", noGop.replace(kGop, hex("000001B200000000"))}};
        for (const auto& c : cases) {
            const Fixed f = repair(c.first, c.second);
            QVERIFY2(f.refused && f.out.isEmpty() && !QFile::exists(repairedPath(m_dir + '/' + c.first)), qPrintable(c.first));
        }
    }
};

QTEST_GUILESS_MAIN(TestMkvMpg)
#include "test_mkv_mpg.moc"
