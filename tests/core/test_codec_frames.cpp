// The sample measurers find every sample of real clips at its true position
// and size, and refuse damaged samples.
#include "core/byte_reader.h"
#include "recovery/syntax/aac_syntax.h"
#include "recovery/syntax/codec_frames.h"
#include "support/test_videos.h"

#include <QRandomGenerator>
#include <QtEndian>
#include <QtTest>

using namespace syntax;
using namespace testvideo;

namespace {
// Payloads of the file's esds boxes, in track order.
QList<QByteArray> esdsPayloads(const QByteArray& file)
{
    QList<QByteArray> list;
    for (int i = file.indexOf("esds"); i >= 4; i = file.indexOf("esds", i + 4))
        list.append(file.mid(i + 4, int(qFromBigEndian<quint32>(file.constData() + i - 4)) - 8));
    return list;
}

QStringList lavfi(const QString& graph) { return {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), graph}; }
const uint8_t* bytes(const QByteArray& b) { return reinterpret_cast<const uint8_t*>(b.constData()); }
QString mjpegClip() { return make(QStringLiteral("mjpeg.mov"), lavfiVideo(2) + splitArgs("-c:v mjpeg")); }
QString proresClip() { return make(QStringLiteral("prores.mov"), lavfiVideo(2) + splitArgs("-c:v prores_ks")); }

enum Codec { Jpeg, JpegTwoFields, ProRes, Mpeg4 };

uint64_t measure(Codec codec, ByteReader& r, uint64_t pos, uint64_t end)
{
    switch (codec) {
    case Jpeg: return JpegSampleSize(r, pos, end, false);
    case JpegTwoFields: return JpegSampleSize(r, pos, end, true);
    case ProRes: return ProResSampleSize(r, pos, end);
    case Mpeg4: return Mpeg4SampleStarts(r, pos) && Mpeg4NextSampleStart(r, pos, end) < end ? Mpeg4NextSampleStart(r, pos, end) - pos : 0;
    }
    return 0;
}
} // namespace

class TestCodecFrames : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Every frame of every track measures its size, 0 when cut by a byte;
    // random bytes tried between frames are refused.
    void aacFrames_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("mono 16 kHz mp4") << make(QStringLiteral("aac_m16.mp4"),
            lavfi(QStringLiteral("sine=frequency=300:sample_rate=16000:duration=4")) + splitArgs("-c:a aac"));
        QTest::newRow("two tracks, 44.1 kHz stereo and 16 kHz mono") << make(QStringLiteral("aac_two.mov"),
            lavfiAudio(4, 44100) + lavfi(QStringLiteral("anoisesrc=sample_rate=16000:duration=4"))
            + splitArgs("-map 0:a -map 1:a -ac:a:0 2 -ac:a:1 1 -c:a aac"));
        // Six channels (an LFE element), and clicks that switch to short windows with TNS.
        QTest::newRow("5.1 48 kHz") << make(QStringLiteral("aac_51.mov"),
            lavfi(QStringLiteral("anoisesrc=duration=3:sample_rate=48000,pan=5.1|c0=c0|c1=0.5*c0|c2=c0|c3=c0|c4=c0|c5=c0")) + splitArgs("-c:a aac -b:a 384k"));
        QTest::newRow("clicks 22.05 kHz") << make(QStringLiteral("aac_clicks.mov"),
            lavfi(QStringLiteral("aevalsrc=if(lt(mod(t\\,0.5)\\,0.01)\\,random(0)\\,0.1*sin(2*PI*440*t)):s=22050:d=4"))
            + splitArgs("-ac 2 -c:a aac -b:a 96k -aac_tns 1 -aac_pns 1 -aac_is 1"));
    }
    void aacFrames()
    {
        QFETCH(QString, path);
        QVERIFY(!path.isEmpty());
        const QByteArray file = readAll(path);
        MemoryReader reader(file);
        MemoryReader narrow(file, 8192);   // views shorter than a 5.1 frame may be
        const QList<QByteArray> esds = esdsPayloads(file);
        QRandomGenerator gen(5);
        QByteArray junk(2048, '\0');
        int junkTries = 0, junkFound = 0, broken = 0;
        for (int track = 0; track < esds.size(); ++track) {
            const QByteArray asc = AudioSpecificConfigFromEsds(bytes(esds[track]), size_t(esds[track].size()));
            AacFramer framer, decoder;
            QVERIFY(framer.init(bytes(asc), size_t(asc.size())));
            QVERIFY(decoder.init(bytes(asc), size_t(asc.size()), true));
            AacFrameParser syntax;
            QVERIFY(syntax.init(bytes(asc), size_t(asc.size())));
            const QList<Packet> frames = packets(path, QStringLiteral("a:%1").arg(track));
            QVERIFY(frames.size() > 50);
            int parsed = 0;
            for (const Packet& f : frames) {
                // The syntax reader measures the frame (a rare one it leaves
                // to the decoder); where a frame is not, it gives no size that
                // the decoder would not give.
                const uint32_t size = syntax.frameSize(bytes(file) + f.pos, size_t(file.size() - f.pos));
                QVERIFY(size == 0 || size == uint32_t(f.size));
                QVERIFY(!syntax.decoderRefuses(bytes(file) + f.pos, size_t(file.size() - f.pos)));
                parsed += size != 0;
                // Inside a frame and in junk, what the syntax reader says a
                // decoder refuses, the decoder refuses.
                for (qint64 pos = f.pos + 1; pos < f.pos + f.size; pos += 3) {
                    if (const uint32_t s = syntax.frameSize(bytes(file) + pos, size_t(file.size() - pos)))
                        QCOMPARE(s, decoder.frameSize(reader, uint64_t(pos), uint64_t(file.size())));
                    if (syntax.decoderRefuses(bytes(file) + pos, size_t(file.size() - pos))) {
                        ++broken;
                        QCOMPARE(decoder.frameSize(reader, uint64_t(pos), uint64_t(file.size())), 0u);
                    }
                }
                // Junk first: on a fresh decoder a third of it leaves state that fails every later frame.
                for (int i = 0; i < 3; ++i, ++junkTries) {
                    gen.fillRange(reinterpret_cast<quint32*>(junk.data()), junk.size() / 4);
                    junkFound += framer.frameSize(bytes(junk), size_t(junk.size())) != 0;
                    if (syntax.decoderRefuses(bytes(junk), size_t(junk.size()))) {
                        ++broken;
                        QCOMPARE(decoder.frameSize(bytes(junk), size_t(junk.size())), 0u);
                    }
                }
                QCOMPARE(framer.frameSize(reader, uint64_t(f.pos), uint64_t(file.size())), uint32_t(f.size));
                QCOMPARE(framer.frameSize(narrow, uint64_t(f.pos), uint64_t(file.size())), uint32_t(f.size));
                const QByteArray own = file.mid(int(f.pos), int(f.size));
                QCOMPARE(framer.frameSize(bytes(own), size_t(f.size)), uint32_t(f.size));
                QCOMPARE(framer.frameSize(bytes(own), size_t(f.size - 1)), 0u);
            }
            QVERIFY2(parsed * 100 >= frames.size() * 98, qPrintable(QStringLiteral("%1 of %2").arg(parsed).arg(frames.size())));
        }
        QVERIFY(broken > 0);
        QCOMPARE(esds.size(), path.contains(QLatin1String("two")) ? 2 : 1);
        QVERIFY2(junkFound * 100 < junkTries, qPrintable(QStringLiteral("%1 of %2").arg(junkFound).arg(junkTries)));
    }

    // Every picture at its true position measures its true size, with the
    // default window and with windows small enough to split pictures.
    void videoSamples_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("codec");
        QTest::newRow("mjpeg mov") << mjpegClip() << int(Jpeg);
        QTest::newRow("prores mov") << proresClip() << int(ProRes);
        QTest::newRow("mpeg4 mp4 with sound") << make(QStringLiteral("mpeg4_aac.mp4"), lavfiVideo(3) + lavfiAudio(3)
            + splitArgs("-c:v mpeg4 -g 12 -bf 2 -c:a aac")) << int(Mpeg4);
        QTest::newRow("mpeg4 3gp") << make(QStringLiteral("mpeg4.3gp"), lavfiVideo(2, QStringLiteral("176x144")) + splitArgs("-c:v mpeg4")) << int(Mpeg4);
    }
    void videoSamples()
    {
        QFETCH(QString, path);
        QFETCH(int, codec);
        QVERIFY(!path.isEmpty());
        const QByteArray file = readAll(path);
        const QList<Packet> list = packets(path, QStringLiteral("v:0"));
        QVERIFY(list.size() >= 50);
        int keys = 0;
        for (size_t window : {ByteReader::kDefaultWindow, size_t(2 * ByteReader::kAlign)}) {
            MemoryReader r(file, window);
            for (int i = 0; i < list.size(); ++i) {
                const Packet& s = list[i];
                // The next sample's start ends an MPEG-4 sample; where sound follows, the caller's end does.
                const bool videoFollows = i + 1 < list.size() && list[i + 1].pos == s.pos + s.size;
                const uint64_t end = codec == Mpeg4 && !videoFollows ? uint64_t(s.pos + s.size) : uint64_t(file.size());
                if (codec == Mpeg4) {
                    QVERIFY(Mpeg4SampleStarts(r, uint64_t(s.pos)));
                    QCOMPARE(Mpeg4NextSampleStart(r, uint64_t(s.pos), end), uint64_t(s.pos + s.size));
                    QCOMPARE(Mpeg4IsKeyframe(r, uint64_t(s.pos), end), s.key);
                    keys += s.key;
                } else {
                    QCOMPARE(measure(Codec(codec), r, uint64_t(s.pos), end), uint64_t(s.size));
                    QCOMPARE(measure(Codec(codec), r, uint64_t(s.pos), uint64_t(s.pos + s.size - 1)), uint64_t(0));
                }
            }
        }
        if (codec == Mpeg4) {
            QVERIFY(keys > 2 && keys < list.size());
            const QByteArray esds = esdsPayloads(file).value(0);   // the video's: no sound config in it
            QVERIFY(AudioSpecificConfigFromEsds(bytes(esds), size_t(esds.size())).isEmpty());
        }
    }

    // The walk to the decoder specific info through the optional fields and
    // with or without the box's version and flags.
    void esdsLayouts()
    {
        const QByteArray dsi("\x12\x10", 2), config = QByteArray("\x04\x11\x40\x15", 4) + QByteArray(11, '\0') + "\x05\x02" + dsi;
        const QByteArray es = QByteArray("\x03\x80\x80\x80\x21\0\1\xE0\0\2\x03url\0\3", 16) + config + "\x06\x01\x02";
        for (const QByteArray& payload : {QByteArray(4, '\0') + es, es, config})
            QCOMPARE(AudioSpecificConfigFromEsds(bytes(payload), size_t(payload.size())), dsi);
    }

    // Damaged, foreign and synthetic samples.
    void hostile_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<int>("codec");
        QTest::addColumn<qint64>("expected");
        const QString jpegPath = mjpegClip(), proresPath = proresClip();
        const QByteArray jpegFile = readAll(jpegPath), proresFile = readAll(proresPath);
        const QList<Packet> jp = packets(jpegPath, QStringLiteral("v:0")), pr = packets(proresPath, QStringLiteral("v:0"));
        const QByteArray j1 = jpegFile.mid(int(jp[0].pos), int(jp[0].size)), j2 = jpegFile.mid(int(jp[1].pos), int(jp[1].size));
        const QByteArray p1 = proresFile.mid(int(pr[0].pos), int(pr[0].size));
        auto patched = [](QByteArray b, int at, const QByteArray& bytes) { b.replace(at, bytes.size(), bytes); return b; };
        const QByteArray pad(7, '\0');

        QTest::newRow("jpeg SOI inside the data") << patched(j1, j1.size() / 2, QByteArray("\xFF\xD8", 2)) << int(Jpeg) << qint64(0);
        QTest::newRow("jpeg restart marker in the data") << patched(j1, j1.size() / 2, QByteArray("\xFF\xD3", 2)) << int(Jpeg) << qint64(j1.size());
        QTest::newRow("jpeg without a scan") << j1.left(20) + QByteArray("\xFF\xD9", 2) << int(Jpeg) << qint64(0);
        QTest::newRow("jpeg fill bytes before EOI") << j1.left(j1.size() - 2) + QByteArray("\xFF\xFF\xFF\xD9", 4) << int(Jpeg) << qint64(j1.size() + 2);
        QTest::newRow("two fields, padded") << j1 + pad + j2 + j1 << int(JpegTwoFields) << qint64(j1.size() + pad.size() + j2.size());
        QTest::newRow("two fields asked, one there") << j1 + QByteArray(8192, '\0') + j2 << int(JpegTwoFields) << qint64(j1.size());
        QTest::newRow("prores size 0") << patched(p1, 0, QByteArray(4, '\0')) << int(ProRes) << qint64(0);
        QTest::newRow("prores size below its header") << patched(p1, 0, QByteArray("\0\0\0\x20", 4)) << int(ProRes) << qint64(0);
        QTest::newRow("mpeg4 VOP without its next start") << QByteArray("\0\0\1\xB6\x10\x60", 6) << int(Mpeg4) << qint64(0);
        QTest::newRow("mpeg4 header run without a VOP") << QByteArray("\0\0\1\xB3\0\0\1\xB2" "ab\0\0\1\xC3" "xx\0\0\1\xB6", 20) << int(Mpeg4) << qint64(0);
        QTest::newRow("mpeg4 00 01 20 in VOP data") << QByteArray("\0\0\1\xB6\x10\x05\0\1\x20\0\0\1\xB6", 13) << int(Mpeg4) << qint64(9);
        QTest::newRow("mpeg4 GOV, VOP, next VOP") << QByteArray("\0\0\1\xB3\x10\0\0\1\xB6\x10\0\0\1\xB2\0\0\1\xB6", 18) << int(Mpeg4) << qint64(14);
    }
    void hostile()
    {
        QFETCH(QByteArray, data);
        QFETCH(int, codec);
        QFETCH(qint64, expected);
        MemoryReader r(data);
        QCOMPARE(qint64(measure(Codec(codec), r, 0, uint64_t(data.size()))), expected);
    }
};

QTEST_GUILESS_MAIN(TestCodecFrames)
#include "test_codec_frames.moc"
