// ASF/WMV and FLV repair: crafted bytes for the header and packet walks and
// the new onMetaData tag; end to end on ffmpeg-made clips.
#include "batch_check.h"
#include "core/log_cipher.h"
#include "core/repair_globals.h"
#include "support/bytes.h"
#include "support/route_job.h"

#include <QDir>
#include <QFile>
#include <QUuid>
#include <QtTest>

using namespace testvideo;
using containers::repairedPath;

namespace {

// A GUID in ASF byte order, made from its text independently of the engine.
QByteArray guid(const char* text)
{
    QByteArray b = QUuid(QString::fromLatin1(text)).toRfc4122();
    std::reverse(b.begin(), b.begin() + 4);
    std::reverse(b.begin() + 4, b.begin() + 6);
    std::reverse(b.begin() + 6, b.begin() + 8);
    return b;
}
const QByteArray kHeader = guid("75B22630-668E-11CF-A6D9-00AA0062CE6C");
const QByteArray kData = guid("75B22636-668E-11CF-A6D9-00AA0062CE6C");
const QByteArray kFileProps = guid("8CABDCA1-A947-11CF-8EE4-00C00C205365");
const QByteArray kStreamProps = guid("B7DC0791-A9B7-11CF-8EE6-00C00C205365");
const QByteArray kVideo = guid("BC19EFC0-5B4D-11CF-A8FD-00805F5C442B");
const QByteArray kAudio = guid("F8699E40-5B4D-11CF-A8FD-00805F5C442B");
const QByteArray kCodecList = guid("86D15240-311D-11D0-A3A4-00A0C90348F6");
const QByteArray kExtContent = guid("D2D0A440-E307-11D2-97F0-00A0C95EA850");
const QByteArray kContent = guid("75B22633-668E-11CF-A6D9-00AA0062CE6C");
const QByteArray kHeaderExt = guid("5FBF03B5-A92E-11CF-8EE3-00C00C205365");
const QByteArray kHeaderExtReserved = guid("ABD3D211-A9BA-11CF-8EE6-00C00C205365");
const QByteArray kSimpleIndex = guid("33000890-E5B1-11CF-89F4-00A0C90349CB");

QByteArray object(const QByteArray& id, const QByteArray& body) { return id + le(quint64(24 + body.size())) + body; }

QByteArray fileProperties(quint32 packetSize)
{
    return object(kFileProps, QByteArray(16, 'F') + le(quint64(123456)) + le(quint64(0)) + le(quint64(99))
                                  + le(quint64(0x1122334455667788))   // Play Duration
                                  + le(quint64(0x0102030405060708)) + le(quint64(3000)) + le(quint32(2))
                                  + le(packetSize) + le(packetSize) + le(quint32(1000000)));
}
QByteArray streamProperties(const QByteArray& type, char mark, int extra = 10)
{
    return object(kStreamProps, type + QByteArray(16, '\0') + le(quint64(0)) + le(quint32(extra)) + le(quint32(0))
                                    + le(quint16(mark == 'a' ? 2 : 1)) + le(quint32(0)) + QByteArray(extra, mark));
}
QByteArray codecList() { return object(kCodecList, QByteArray(16, '\0') + le(quint32(0)) + "codecs"); }
QByteArray extContent(int pad = 0) { return object(kExtContent, le(quint16(0)) + "ext" + QByteArray(pad, 'e')); }
QByteArray content() { return object(kContent, QByteArray(10, '\0') + "desc"); }

QByteArray headerObject(const QList<QByteArray>& objects)
{
    QByteArray body = le(quint32(objects.size())) + QByteArray("\x01\x02", 2);
    for (const QByteArray& o : objects)
        body += o;
    return object(kHeader, body);
}

const QByteArray kDataTail = QByteArray(16, 'I') + le(quint64(77)) + QByteArray("\x01\x01", 2);

// A data packet: error correction 82 00 00, the two flag bytes, padding
// length, send time at byte 7, duration, then filler.
QByteArray packet(quint32 size, quint32 sendTime, char fill)
{
    const QByteArray p = QByteArray("\x82\x00\x00\x11\x5d", 5) + le(quint16(0)) + le(sendTime) + le(quint16(40));
    return p + QByteArray(int(size) - p.size(), fill);
}
QByteArray dataObject(const QByteArray& packets) { return kData + le(quint64(50 + packets.size())) + kDataTail + packets; }
QByteArray asfFile(const QList<QByteArray>& objects, const QByteArray& packets, const QByteArray& behind = QByteArray())
{
    return headerObject(objects) + dataObject(packets) + behind;
}
QByteArray minimalAsf(quint32 packetSize, const QByteArray& packets, const QByteArray& behind = QByteArray())
{
    return asfFile({fileProperties(packetSize), streamProperties(kVideo, 'v'), codecList()}, packets, behind);
}

// The number of objects in a Header Object; -1 when a size disagrees with the bytes.
int headerObjectCount(const QByteArray& f)
{
    const qint64 end = f.left(16) == kHeader ? qint64(le64(f, 16)) : 0;
    qint64 pos = 30;
    int n = 0;
    for (quint64 size; pos < end; pos += qint64(size), ++n)
        if ((size = le64(f, pos + 16)) < 24 || pos + qint64(size) > end)
            return -1;
    return pos == end ? n : -1;
}

// An FLV tag with its PreviousTagSize; the timestamp's top byte goes to TimestampExtended.
QByteArray tag(int type, quint32 time, const QByteArray& data)
{
    return QByteArray(1, char(type)) + be(quint32(data.size())).mid(1) + be(time).mid(1) + char(time >> 24)
         + QByteArray(3, '\0') + data + be(quint32(data.size() + 11));
}
QByteArray video(quint32 time, char first, int size = 20) { return tag(9, time, first + QByteArray(size - 1, 'v')); }
QByteArray audio(quint32 time, int size = 12) { return tag(8, time, '\x2f' + QByteArray(size - 1, 'a')); }

const QByteArray kFlvHeader = QByteArray("FLV\x01\x05\x00\x00\x00\x09", 9) + be(quint32(0));

QByteArray metaTag(const QList<QPair<QByteArray, double>>& entries)
{
    QByteArray d = QByteArray("\x02\x00\x0a", 3) + "onMetaData" + '\x08' + be(quint32(entries.size()));
    for (const auto& e : entries)
        d += be(quint16(e.first.size())) + e.first + '\0' + be(e.second);
    return tag(18, 0, d + QByteArray("\x00\x00\x09", 3));
}

// The new script tag: DataSize, array count, each key's 8 raw value bytes,
// and where the copied tags begin.
struct Script {
    quint32 dataSize = 0, count = 0, previousSize = 0;
    QMap<QByteArray, QByteArray> values;
    int tagsAt = 0;
};
Script parseScript(const QByteArray& out)
{
    Script s;
    s.dataSize = be24(out, 14);
    s.count = be32(out, 13 + 11 + 14);
    for (int at = 13 + 11 + 18, n; at + 2 < out.size() && (n = qFromBigEndian<quint16>(out.constData() + at)); at += 11 + n)
        s.values[out.mid(at + 2, n)] = out.mid(at + 3 + n, 8);
    s.previousSize = be32(out, 13 + 11 + int(s.dataSize));
    s.tagsAt = 13 + 11 + int(s.dataSize) + 4;
    return s;
}

QStringList clipArgs(int seconds, const QString& key)
{
    static const QHash<QString, QStringList> codecs{
        {"wmv", {"-c:v", "wmv2", "-q:v", "5", "-c:a", "wmav2", "-b:a", "128k"}},
        {"flv1", {"-c:v", "flv1", "-q:v", "5", "-c:a", "libmp3lame", "-b:a", "128k"}},
        {"h264", {"-c:v", "libx264", "-preset", "ultrafast", "-g", "25", "-pix_fmt", "yuv420p", "-c:a", "aac", "-b:a", "96k"}}};
    // Noise keeps frames large, so that a 32 KiB hole touches only a few.
    return lavfiVideo(seconds) + lavfiAudio(seconds, 44100) + QStringList{"-vf", "noise=alls=12:allf=t"}
         + codecs.value(key);
}

struct Range {
    qint64 from, to;   // [from, to)
};

// Packets of one stream ("v" or "a") that still stand whole in the damaged
// file: before the cut and clear of every hole. A packet's bytes reach a
// little beyond pos + size: an ASF payload is spread over data packets with
// their own headers, an FLV tag has its header and PreviousTagSize.
int remaining(const QString& clip, const QString& kind, qint64 fileSize, const QList<Range>& holes, qint64 asfPacket)
{
    int n = 0;
    for (const Packet& p : packets(clip, kind + ":0")) {
        const qint64 end = asfPacket ? p.pos + p.size + p.size / 16 + asfPacket : p.pos + 11 + p.size + 4;
        bool whole = p.pos > 0 && end <= fileSize;
        for (const Range& h : holes)
            whole = whole && (end <= h.from || p.pos >= h.to);
        n += whole;
    }
    return n;
}

} // namespace

class TestAsfFlv : public QObject {
    Q_OBJECT
    QString m_dir;

    // One route run over bytes in memory: its verdicts ("1 clip.flv"), its
    // output (empty when none is left), its decrypted log lines and the
    // bytes its reader fetched.
    struct Result {
        QStringList verdicts;
        QByteArray out;
        QStringList logLines;
        quint64 fetched = 0;
        QByteArray asfData() const { return out.mid(out.indexOf(kData)); }   // the Data Object onwards
        quint64 playDuration() const { return le64(out, 94); }
    };
    Result repair(const QString& name, const QByteArray& input)
    {
        RouteRun run(m_dir, name, std::make_unique<MemoryReader>(input, 64 * 1024));
        run.run();
        Result r{run.verdicts, readAll(m_dir + '/' + name), {}, run.input->fetchedBytes()};
        for (const QByteArray& line : readAll(run.job.logPath).split('\n'))
            if (!line.trimmed().isEmpty())
                r.logLines << LogCipher().decryptToString(QString::fromLatin1(line.trimmed()));
        return r;
    }
    Result repairAsf(const QByteArray& input) { return repair("clip.wmv", input); }
    Result repairFlv(const QByteArray& input) { return repair("clip.flv", input); }

    QHash<QString, QString> m_clips;
    QString clip(const QString& key, const QString& suffix, int seconds)
    {
        const QString name = key + (seconds == 2 ? "_sample." : ".") + suffix;
        if (!m_clips.contains(name))
            m_clips[name] = make(name, clipArgs(seconds, key));
        return m_clips[name];
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir("asf-flv");
        g_stopRequested = false;
        g_referencePath.clear();
        g_repairedPaths.clear();
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    // The objects met in another order than the new header's (the sound
    // stream first); a second video or audio stream is dropped.
    void asfHeaderTakesTheObjectsInItsOwnOrder()
    {
        const QByteArray video = streamProperties(kVideo, 'v'), audio = streamProperties(kAudio, 'a', 18);
        const QList<QByteArray> objects{content(), fileProperties(256), audio, streamProperties(kAudio, 'b', 18), video,
                                        streamProperties(kVideo, 'w'), extContent(), codecList()};
        // The last send time taken (500 s) passes 32 bits in 100 ns units.
        const QByteArray packets = packet(256, 100, 'a') + packet(256, 500000, 'b') + packet(256, 180, 'c');
        const Result r = repairAsf(asfFile(objects, packets, kSimpleIndex + le(quint64(56))));
        QCOMPARE(r.verdicts, QStringList{"1 clip.wmv"});
        QCOMPARE(g_repairedPaths, QStringList{m_dir + "/clip.wmv"});

        // File Properties copied whole but for Play Duration; the count says 7.
        QByteArray props = fileProperties(256);
        props.replace(64, 8, le(quint64(500000) * 10000));
        const QByteArray header = headerObject({props, object(kHeaderExt, kHeaderExtReserved + QByteArray(6, '\0')),
                                                extContent(), video, audio, codecList(), content()});
        QCOMPARE(r.out.left(header.size()), header);
        // Data Object: the kept tail, then the packets whose successor begins
        // like a packet; the last one, followed by the index object, is not.
        QCOMPARE(r.out.mid(header.size(), 16), kData);
        QCOMPARE(r.asfData().mid(16), le(quint64(512)) + kDataTail + packets.left(512));
    }

    // The new header holds `objects` objects; its count says 7 all the same.
    // A file without the objects a header needs is told so twice.
    void asfRequiredObjectsAndTheOneMiBLimit_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<int>("objects");   // 0: the walk fails
        const QByteArray packets = packet(128, 1, 'p') + packet(128, 2, 'q');
        const QByteArray fp = fileProperties(128), v = streamProperties(kVideo, 'v'), cl = codecList();
        QTest::newRow("all required") << asfFile({fp, v, cl}, packets) << 4;
        QTest::newRow("codec list and stream ahead of File Properties") << asfFile({cl, v, fp}, packets) << 4;
        // A Data Object met first doesn't end the walk while objects are missing.
        QTest::newRow("data object ahead of the header") << dataObject(QByteArray()) + headerObject({fp, v, cl}) + packets << 4;
        QTest::newRow("no codec list") << asfFile({fp, v}, packets) << 0;
        QTest::newRow("no data object") << headerObject({fp, v, cl}) + packets << 0;
        QTest::newRow("header over 1 MiB") << asfFile({fp, v, extContent(0x110000), cl}, packets) << 0;
        QTest::newRow("data object beyond 1 MiB") << asfFile({fp, v, cl, extContent(0x110000)}, packets) << 0;
        QTest::newRow("header just under 1 MiB") << asfFile({fp, v, cl, extContent(0xF0000)}, packets) << 5;
        QTest::newRow("packet size 0") << asfFile({fileProperties(0), v, cl}, packets) << 0;
        QByteArray zeroSize = cl;
        zeroSize.replace(16, 8, le(quint64(0)));
        QTest::newRow("codec list of size 0, then a good one") << asfFile({fp, v, zeroSize, cl}, packets) << 4;
    }
    void asfRequiredObjectsAndTheOneMiBLimit()
    {
        QFETCH(QByteArray, input);
        QFETCH(int, objects);
        const Result r = repairAsf(input);
        if (!objects) {
            QCOMPARE(r.verdicts, QStringList({"0 clip.wmv", "0 clip.wmv"}));
            QVERIFY(r.out.isEmpty() && g_repairedPaths.isEmpty());
            return;
        }
        QCOMPARE(r.verdicts, QStringList{"1 clip.wmv"});
        QCOMPARE(headerObjectCount(r.out), objects);
        QCOMPARE(le32(r.out, 24), 7u);
        QCOMPARE(le64(r.asfData(), 16), quint64(r.asfData().size() - 50));
    }

    // A packet is taken when another packet head (82, 01 or 02) stands one
    // packet size behind it; packets behind a hole of odd length are found
    // again, and the packet cut by the end of the file is not taken (its
    // successor reads as zeros). Play Duration: the last taken send time.
    void asfPacketWalk()
    {
        QList<QByteArray> p;
        for (int i = 1; i <= 9; ++i)
            p << packet(300, quint32(i), char('a' + i));
        const QByteArray z(40, 'z');
        const QByteArray input = p[0] + p[1] + QByteArray(77, 'n') + p[2] + "\x01" + z + p[3] + "\x02" + z + p[4]
                               + QByteArray("\x82\xff\xff", 3) + z + p[5] + QByteArray("\x81\x00\x00", 3) + z + p[6]
                               + QByteArray(1, '\0') + z + p[7] + p[8].left(250);
        const Result r = repairAsf(minimalAsf(300, input));
        QCOMPARE(r.asfData().mid(16), le(quint64(5 * 300)) + kDataTail + p[0] + p[2] + p[3] + p[4] + p[7]);
        QCOMPARE(r.playDuration(), 8u * 10000);
    }

    // The figures count a media object once all its fragments came in order:
    // an object that lost its middle packet doesn't count, nor one whose
    // stream the header doesn't hold. Sound is timed per nBlockAlign block
    // in whole milliseconds (200 bytes at 16000 bytes/s: 12 ms); compressed
    // payloads hold whole objects.
    void asfFiguresCountWholeObjects()
    {
        const QByteArray wave = le(quint16(0x161)) + le(quint16(1)) + le(quint32(44100)) + le(quint32(16000))
                              + le(quint16(200)) + le(quint16(16)) + le(quint16(0));
        const QByteArray sound = object(kStreamProps, kAudio + QByteArray(16, '\0') + le(quint64(0)) + le(quint32(18))
                                                          + le(quint32(0)) + le(quint16(2)) + le(quint32(0)) + wave);
        // Fragments: stream, object, offset, object size (0: compressed), data.
        struct Fragment { int stream, object; quint32 offset, objectSize; QByteArray data; };
        const auto dataPacket = [](const QList<Fragment>& fragments) {
            QByteArray body = QByteArray(1, char(0x80 | fragments.size()));
            for (const Fragment& f : fragments) {
                body += QByteArray(1, char(f.stream)) + char(f.object) + le(f.offset);
                body += f.objectSize ? QByteArray(1, '\x08') + le(f.objectSize) + le(quint32(0)) : QByteArray(1, '\x01') + '\0';
                body += le(quint16(f.data.size())) + f.data;
            }
            const QByteArray head = QByteArray("\x82\x00\x00\x11\x5d", 5) + le(quint16(1024 - 13 - body.size()))
                                  + le(quint32(0)) + le(quint16(0));
            return head + body + QByteArray(1024 - head.size() - body.size(), '\0');
        };
        const QByteArray twoBlocks = '\xc8' + QByteArray(200, 's') + '\xc8' + QByteArray(200, 's');
        const QByteArray packets =
            dataPacket({{1, 1, 0, 300, QByteArray(150, 'v')}, {2, 1, 0, 400, QByteArray(200, 'a')}})
            + dataPacket({{1, 1, 150, 300, QByteArray(150, 'v')}, {2, 1, 200, 400, QByteArray(200, 'a')}})
            + dataPacket({{1, 2, 0, 300, QByteArray(100, 'v')}, {3, 1, 0, 20, QByteArray(20, 'x')}})
            + dataPacket({{1, 2, 200, 300, QByteArray(100, 'v')}, {1, 3, 0, 50, QByteArray(50, 'v')},
                          {2, 2, 0, 0, twoBlocks}});
        const QByteArray input = asfFile({fileProperties(1024), streamProperties(kVideo, 'v'), sound, codecList()},
                                         packets, QByteArray(1, '\x82'));
        RouteRun run(m_dir, "clip.wmv", std::make_unique<MemoryReader>(input, 64 * 1024));
        const Verdict v = run.run();
        QCOMPARE(run.verdicts, QStringList{"1 clip.wmv"});
        QVERIFY(v.hasFigures);
        QCOMPARE(v.figures.videoFrames, quint64(2));
        QCOMPARE(v.figures.audioSeconds, 0.048);
    }

    void flvTakesTagsFromTheFirstUsableVideoTag()
    {
        const QList<QPair<QByteArray, double>> meta{{"duration", 99},      {"width", 320},    {"height", 240},
                                                    {"videodatarate", 500}, {"framerate", 25}, {"videocodecid", 7},
                                                    {"audiodatarate", 128}, {"audiocodecid", 10}};
        const QByteArray head = kFlvHeader + metaTag(meta) + audio(0) + video(0, '\x27') + audio(20);
        const QList<QByteArray> taken{video(40, '\x17'), audio(60), video(80, '\x27'),
                                      tag(9, 100, QByteArray()),                       // DataSize 0
                                      video(0x01000000 + 5040, '\x27', 15000)};        // TimestampExtended 1
        // A last tag whose PreviousTagSize (00 00 01 00) is cut after three
        // bytes: zeros past the end would make it agree.
        const QByteArray last = video(6000, '\x27', 245).left(11 + 245 + 3);
        QByteArray copied;
        QStringList logged;
        for (const QByteArray& t : taken) {
            logged << QString("%1 %2").arg(head.size() + copied.size()).arg(t.size() - 4);
            copied += t;
        }

        const Result r = repairFlv(head + copied + last);
        QCOMPARE(r.verdicts, QStringList{"1 clip.flv"});
        QCOMPARE(g_repairedPaths, QStringList{m_dir + "/clip.flv"});
        QCOMPARE(r.out.left(13), kFlvHeader);
        const Script s = parseScript(r.out);
        QCOMPARE(r.out.mid(13, 11), QByteArray("\x12\x00\x00\xd0", 4) + QByteArray(7, '\0'));
        QCOMPARE(s.values.size(), 9);
        // (5040 - 40) / 1000 whole seconds: the extended timestamp byte is not read.
        QCOMPARE(s.values["duration"], be(5.0));
        for (int k = 1; k < meta.size(); ++k)
            QCOMPARE(s.values[meta[k].first], be(meta[k].second));
        QCOMPARE(r.out.mid(s.tagsAt), copied);
        QCOMPARE(r.logLines, logged);
    }

    void flvMetadataWindowAndForms_data()
    {
        QTest::addColumn<int>("scriptAt");   // -1: no script tag
        QTest::addColumn<bool>("longForm");
        QTest::newRow("script tag at byte 14999") << 14999 << true;
        QTest::newRow("script tag at byte 15000") << 15000 << false;
        QTest::newRow("no script tag") << -1 << false;
    }
    void flvMetadataWindowAndForms()
    {
        QFETCH(int, scriptAt);
        QFETCH(bool, longForm);
        // A usable video tag sized so that the next tag starts at scriptAt.
        const QByteArray first = kFlvHeader + video(0, '\x12', (scriptAt < 0 ? 16000 : scriptAt) - 13 - 15);
        const QByteArray meta = scriptAt < 0 ? QByteArray() : metaTag({{"duration", 1}, {"width", 640}, {"framerate", 30}});
        const QByteArray tail = video(2500, '\x22') + audio(2600);
        const Result r = repairFlv(first + meta + tail);
        QCOMPARE(r.verdicts.size(), 1);
        const Script s = parseScript(r.out);
        QCOMPARE(s.count, 15u);
        QCOMPARE(s.dataSize, longForm ? 208u : 61u);
        QCOMPARE(s.previousSize, longForm ? 219u : 72u);
        QCOMPARE(s.values.size(), longForm ? 9 : 2);
        QCOMPARE(s.values["duration"], be(2.0));
        if (longForm) {
            QCOMPARE(s.values["width"], be(640.0));
            QCOMPARE(s.values["framerate"], be(30.0));
            QCOMPARE(s.values["height"], QByteArray(8, '\0'));   // not in the old tag
        }
        QCOMPARE(r.out.mid(s.tagsAt), first.mid(13) + tail);
    }

    // A latest time stamp below the first gives a duration of 0. (Whole
    // seconds from the low 24 bits: the cases above.)
    void flvDurationNeverNegative()
    {
        const Result r = repairFlv(kFlvHeader + video(9000, '\x12', 15100) + video(12000, '\x22', 30) + video(3000, '\x22', 30));
        QCOMPARE(r.verdicts.size(), 1);
        QCOMPARE(parseScript(r.out).values["duration"], be(0.0));
    }

    void flvWhenNoFileIsWritten_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<int>("tagsCopied");   // -1: no file, a negative verdict
        QTest::newRow("no video tag") << kFlvHeader + audio(0, 16000) + audio(30) << -1;
        QTest::newRow("15000 bytes") << kFlvHeader + video(0, '\x12', 15000 - 28) << -1;
        QTest::newRow("15001 bytes") << kFlvHeader + video(0, '\x12', 15001 - 28) << 1;
        QTest::newRow("no usable video tag") << kFlvHeader + video(0, '\x27', 16000) + audio(10) << 0;
        // Sizes past the end, and a PreviousTagSize that disagrees.
        QByteArray wrong = video(50, '\x27', 40);
        wrong[wrong.size() - 1] = char(wrong.at(wrong.size() - 1) + 1);
        QTest::newRow("sizes past the end") << kFlvHeader + video(0, '\x17', 16000) + tag(9, 40, QByteArray(100, 'x')).left(60)
                                                   + "\x09\xff\xff\xff" + QByteArray(200, '\x08') + wrong << 1;
    }
    void flvWhenNoFileIsWritten()
    {
        QFETCH(QByteArray, input);
        QFETCH(int, tagsCopied);
        const Result r = repairFlv(input);
        if (tagsCopied < 0) {
            QVERIFY(r.out.isEmpty() && g_repairedPaths.isEmpty());
            QCOMPARE(r.verdicts, QStringList{"0 clip.flv"});
            return;
        }
        QCOMPARE(r.verdicts, QStringList{"1 clip.flv"});
        QCOMPARE(r.logLines.size(), tagsCopied);
        QCOMPARE(r.out.size(), 13 + 11 + 61 + 4 + (tagsCopied ? 11 + int(be24(input, 14)) + 4 : 0));
    }

    // Tag-like garbage whose sizes point far ahead is tested without fetching
    // the far bytes anew for each candidate.
    void flvGarbageFullOfCandidatesIsReadOnce()
    {
        QByteArray garbage;
        for (int i = 0; i < (1536 + 96) * 1024 / 32; ++i)
            garbage += char("\x08\x09\x12"[i % 3]) + QByteArray("\x18\x00\x00", 3) + QByteArray(28, '\0');
        const QByteArray first = video(0, '\x12', 200), second = video(40, '\x22', 200);
        const QByteArray in = kFlvHeader + first + garbage + second;
        const Result r = repairFlv(in);
        QCOMPARE(r.verdicts, QStringList{"1 clip.flv"});
        QCOMPARE(r.out.mid(parseScript(r.out).tagsAt), first + second);
        QVERIFY2(r.fetched < 4 * quint64(in.size()), qPrintable(QString("%1 bytes fetched for %2").arg(r.fetched).arg(in.size())));
    }

    // A full disk: the partial files are links to /dev/full.
    void unwritableOutputIsAFailure()
    {
        if (!QFile::exists("/dev/full"))
            QSKIP("no /dev/full");
        QVERIFY(QFile::link("/dev/full", m_dir + "/.partial-clip.wmv") && QFile::link("/dev/full", m_dir + "/.partial-clip.flv"));
        QByteArray packets, flv = kFlvHeader;
        for (int i = 0; i < 2000; ++i)
            packets += packet(512, quint32(i), 'x');
        for (int i = 0; i < 400; ++i)
            flv += video(quint32(i * 40), i == 0 ? '\x12' : '\x22', 5000);
        QCOMPARE(repairAsf(minimalAsf(512, packets, QByteArray(1, '\x82'))).verdicts, QStringList{"0 clip.wmv"});
        QCOMPARE(repairFlv(flv).verdicts, QStringList{"0 clip.flv"});
        QVERIFY(g_repairedPaths.isEmpty());
        QVERIFY(QFile::exists("/dev/full"));
    }

    // Sparse inputs with media past 4 GiB give the same outputs as the clips.
    void mediaPast4GiB()
    {
        QStringList inputs;
        for (const QString source : {"h264 flv", "wmv wmv"}) {
            const QString suffix = source.section(' ', 1);
            const QByteArray bytes = readAll(clip(source.section(' ', 0, 0), suffix, 6));
            QVERIFY(bytes.size() > 100000);
            qint64 at = qint64(le64(bytes, 16)) + 50;   // behind the Header Object and the Data Object's head
            if (suffix == "flv")
                for (at = 13; at < bytes.size() / 3;)
                    at += 11 + be24(bytes, int(at) + 1) + 4;
            inputs << m_dir + "/whole." + suffix << m_dir + "/sparse." + suffix;
            QVERIFY(writeAll(inputs[inputs.size() - 2], bytes));
            QVERIFY(containers::writeSparse(inputs.last(), bytes.left(int(at)), containers::kPast4GiB, bytes.mid(int(at))));
        }
        const containers::Batch b = containers::repairFiles(inputs);
        QVERIFY2(b.fault.isEmpty(), qPrintable(b.fault));
        QCOMPARE(b.repaired, QList<bool>({true, true, true, true}));
        QCOMPARE(b.outputs.size(), 4);
        QCOMPARE(readAll(b.outputs[1]), readAll(b.outputs[0]));
        QCOMPARE(readAll(b.outputs[3]), readAll(b.outputs[2]));
    }

    void endToEnd_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QString>("damage");
        for (const QString source : {"wmv wmv", "flv1 flv", "h264 flv"})
            for (const QString damage : {"whole", "cut at 70%", "holes", "header zeroed"})
                if (damage != "header zeroed" || !source.endsWith("flv"))
                    QTest::newRow(qPrintable(source.section(' ', 0, 0) + ' ' + damage))
                        << source.section(' ', 0, 0) << source.section(' ', 1) << damage;
    }
    // At least 90% of the video and sound frames that remain in the input decode.
    void endToEnd()
    {
        QFETCH(QString, source);
        QFETCH(QString, suffix);
        QFETCH(QString, damage);
        const QString clipPath = clip(source, suffix, 6);
        QVERIFY2(!clipPath.isEmpty(), "ffmpeg could not make the clip");
        QByteArray bytes = readAll(clipPath);
        qint64 asfPacket = 0;
        if (suffix != "flv") {
            // Maximum Data Packet Size of the File Properties Object.
            const int props = bytes.left(4096).indexOf(kFileProps);
            QVERIFY(props > 0);
            asfPacket = le32(bytes, props + 96);
            QVERIFY(asfPacket > 0);
        }

        QList<Range> holes;
        QStringList args;
        if (damage == "cut at 70%") {
            cutAtFraction(bytes, 0.7);
        } else if (damage == "holes") {
            for (int k = 1; k <= 3; ++k) {
                holes << Range{bytes.size() * k / 4, bytes.size() * k / 4 + 32 * 1024};
                zeroRange(bytes, holes.last().from, 32 * 1024);
            }
        } else if (damage == "header zeroed") {
            // The Header Object and the head of the Data Object behind it.
            const qint64 headerEnd = qint64(le64(bytes, 16)) + 50;
            QVERIFY(headerEnd > 100 && headerEnd < 65536);
            zeroRange(bytes, 0, headerEnd);
            args << "--reference" << clip(source, suffix, 2);
        }
        const QString input = m_dir + "/clip." + suffix;
        const containers::Batch b = containers::repairBytes(input, bytes, args);
        QVERIFY2(b.fault.isEmpty(), qPrintable(b.fault));
        QCOMPARE(b.signalNames, QStringList{"WriteStatus"});
        QVERIFY(b.ok());
        QCOMPARE(b.outputs, QStringList{repairedPath(input)});
        QVERIFY2(containers::figuresFault(b).isEmpty(), qPrintable(containers::figuresFault(b)));

        // Sound as well; a damaged MP3 frame can take its neighbour along.
        for (const QString kind : {"v", "a"}) {
            const int wanted = remaining(clipPath, kind, bytes.size(), holes, asfPacket);
            const int decoded = decodedFrames(b.outputs[0], kind + ":0");
            qInfo("%s: %d of %d remaining frames decode", qPrintable(kind), decoded, wanted);
            QVERIFY(wanted > 50 && decoded * 10 >= wanted * 9);
        }
    }
};

QTEST_GUILESS_MAIN(TestAsfFlv)
#include "test_asf_flv.moc"
