// The stream scanner on crafted byte streams, and the pieces it is built
// from: ADTS headers, NAL start sets, filler runs, unique records, patterns.
#include "core/byte_reader.h"
#include "core/file_writer.h"
#include "recovery/h264/bit_tools.h"
#include "recovery/h264/h264_recovery.h"
#include "recovery/h264/nal_sets.h"
#include "recovery/h264/stream_scanner.h"
#include "support/test_videos.h"

#include <QDir>
#include <QtTest>

using namespace testvideo;

namespace {

const QByteArray kParams = QByteArray::fromHex("0000000167640028AC0000000168EE3C80");
const QByteArray kSc = QByteArray::fromHex("00000001");
const QByteArray kPattern = QByteArray::fromHex("211A8F");

// A unit of the given NAL header byte and length (header included).
QByteArray Unit(uint8_t header, int length) { return beWords({uint32_t(length)}) + char(header) + QByteArray(length - 1, 0x5A); }
QByteArray AudioFrame(int size, const QByteArray& start = kPattern) { return start + QByteArray(size - 3, 0x33); }
// Bytes that start no unit, filler run, movie or sound pattern.
QByteArray Noise(int size)
{
    QByteArray noise(size, '\0');
    for (int i = 0; i < noise.size(); ++i)
        noise[i] = char(0x80 | (i * 37 % 127));
    return noise;
}
// Any mdat size but 0 and 1 puts the scan right behind the header.
const QByteArray kMdat = beWords({1u << 20}) + "mdat";

int AdtsLength(const char* h)
{
    const auto* b = reinterpret_cast<const uint8_t*>(h);
    return (b[3] & 3) << 11 | b[4] << 3 | b[5] >> 5;
}

QList<QByteArray> Payloads(const QList<QByteArray>& units)
{
    QList<QByteArray> out;
    for (const QByteArray& u : units)
        out << u.mid(4);
    return out;
}

struct ScanResult {
    QByteArray stream, audio;
    QList<QByteArray> units;   // payloads in the stream, parameter sets left out
    int gaps = 0, audioRuns = 0, audioFrames = 0;
};

} // namespace

class TestStreamScanner : public QObject {
    Q_OBJECT
    QString m_dir;
    ChainFacts m_facts;   // what the sample taught: the sound's rate and mean frame size

    ScanResult scan(const QByteArray& file, bool audioMode, const QList<QByteArray>& patterns = {})
    {
        MemoryReader in(file, 4096 * 4);   // a small window: units cross its edges
        FileWriter video, audio;
        video.open(m_dir + QStringLiteral("/video.h264"));
        audio.open(m_dir + QStringLiteral("/audio.aac"));
        video.write(kParams);
        PatternSet set;
        for (const QByteArray& p : patterns)
            set.add(uint32_t(uint8_t(p[0])) << 16 | uint32_t(uint8_t(p[1])) << 8 | uint8_t(p[2]));
        StreamScanner s(in, video, audioMode ? &audio : nullptr, set, kParams, m_facts);
        s.run();
        video.close();
        audio.close();
        ScanResult r{readAll(m_dir + QStringLiteral("/video.h264")), readAll(m_dir + QStringLiteral("/audio.aac")),
                     {}, s.frameGapCount(), s.audioRunCount(), int(s.audioFrames())};
        for (int at = r.stream.indexOf(kSc); at >= 0;) {
            const int next = r.stream.indexOf(kSc, at + 4);
            const QByteArray payload = r.stream.mid(at + 4, next < 0 ? -1 : next - at - 4);
            if (payload != kParams.mid(4, 5) && payload != kParams.mid(13))
                r.units << payload;
            at = next;
        }
        return r;
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("scanner"));
        m_facts = ChainFacts();
        m_facts.audioSampleRate = 48000;
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    // The header's bytes, its thirteen-bit length, and the rate defaults.
    void adtsHeaders()
    {
        AdtsHeaderBytes h;
        const auto bytes = [&h] { return QByteArray(reinterpret_cast<const char*>(h.data()), int(h.size())); };
        for (int64_t rate : {int64_t(0), int64_t(1000)}) {   // stand for 48000
            QVERIFY(BuildAdtsHeader(100, rate, h));
            QCOMPARE((h[2] >> 2) & 0xF, 3);
        }
        QVERIFY(BuildAdtsHeader(0x173 - 7, 44100, h));   // two channels always
        QCOMPARE(bytes(), QByteArray::fromHex("FFF150802E7FFC"));
        QVERIFY(BuildAdtsHeader(8184, 44100, h));   // the largest frame: thirteen bits, header included
        QCOMPARE(AdtsLength(bytes().constData()), 8191);
        QVERIFY(!BuildAdtsHeader(8185, 44100, h));  // one byte more can't be told
        QVERIFY(!BuildAdtsHeader(100, 12345, h));   // no frequency index: refused
    }

    void nalStartsAndFillerRuns()
    {
        const NalStartSet all[] = {NalStartSet::ReferenceNalBytes, NalStartSet::StreamFirstBytes,
                                   NalStartSet::StreamBytes,       NalStartSet::VideoOnlyFirstBytes,
                                   NalStartSet::VideoOnlyBytes,    NalStartSet::IndexScanBytes};
        MemoryReader aud(QByteArray::fromHex("00000002091000000003090000000000"));
        MemoryReader big(QByteArray::fromHex("0100000065"));
        for (NalStartSet s : all) {
            QVERIFY(IsNalStart(aud, 0, s));
            QVERIFY(!IsNalStart(aud, 6, s));
            QVERIFY(!IsNalStart(big, 0, s));   // b0 not 0
        }
        auto pass = [](uint8_t b4, uint8_t b5, NalStartSet s) {
            const uint8_t b[6] = {0, 0, 0x10, 0, b4, b5};
            return IsNalStartBytes(b, s);
        };
        QVERIFY(pass(0x0E, 0, NalStartSet::ReferenceNalBytes));
        QVERIFY(!pass(0x0E, 0, NalStartSet::StreamBytes));
        QVERIFY(!pass(0x0C, 0, NalStartSet::StreamFirstBytes));
        QVERIFY(pass(0x67, 0, NalStartSet::StreamFirstBytes) && !pass(0x67, 0, NalStartSet::IndexScanBytes));
        QVERIFY(pass(0x02, 0x01, NalStartSet::VideoOnlyBytes) && !pass(0x02, 0x01, NalStartSet::StreamBytes));

        MemoryReader r(QByteArray(128, '\0') + QByteArray(128, char(0xFF)) + QByteArray(127, char(0xFF)) + '\x01');
        QVERIFY(IsFillerRun(r, 0, 128));
        QVERIFY(IsFillerRun(r, 128, 128));
        QVERIFY(!IsFillerRun(r, 64, 128));   // mixed zeros and 0xFF
        QVERIFY(!IsFillerRun(r, 256, 128));
    }

    void fillerRunsAreCrossed_data()
    {
        QTest::addColumn<char>("fill");
        QTest::addColumn<int>("length");
        QTest::newRow("zeros 300") << '\0' << 300;
        QTest::newRow("zeros 4096") << '\0' << 4096;
        QTest::newRow("0xFF 1031") << '\xFF' << 1031;
    }
    // No unit is lost to the run: the one before it is judged good when the
    // chain is found again behind it.
    void fillerRunsAreCrossed()
    {
        QFETCH(char, fill);
        QFETCH(int, length);
        const QList<QByteArray> before = {Unit(0x65, 1000), Unit(0x41, 200)};
        const QList<QByteArray> after = {Unit(0x41, 300), Unit(0x01, 400), Unit(0x41, 50)};
        const QByteArray file = kMdat + before.join(QByteArray()) + QByteArray(length, fill) + after.join(QByteArray());
        for (bool audioMode : {true, false}) {
            const ScanResult r = scan(file, audioMode);
            QCOMPARE(r.units, Payloads(before + after));
            if (audioMode)
                QCOMPARE(r.gaps, 1);
        }
    }

    // A length that points into noise: the unit goes out with it, and after the
    // gap every unit is preceded by the parameter sets again. The noise
    // crosses the reader's window edges.
    void damagedLengthCostsNothing()
    {
        const QByteArray noise = Noise(40000);
        const QByteArray damaged = beWords({2000}) + char(0x41) + QByteArray(99, 0x5A);
        const QByteArray file = kMdat + Unit(0x65, 500) + damaged + noise + Unit(0x41, 700) + Unit(0x01, 800);
        const ScanResult r = scan(file, true);
        QCOMPARE(r.gaps, 1);
        QCOMPARE(r.units.size(), 4);
        QCOMPARE(r.units[1], file.mid(8 + 504 + 4, 2000));
        QVERIFY(r.stream.endsWith(kParams + kSc + Unit(0x01, 800).mid(4)));
    }

    void interleavedAudio()
    {
        m_facts.audioSampleRate = 44100;
        const QByteArray p2 = QByteArray::fromHex("211A93");
        QByteArray file = kMdat;
        QList<QByteArray> video;
        QList<int> audioSizes;
        for (int run = 0; run < 4; ++run) {
            const QList<QByteArray> v = {Unit(run == 0 ? 0x65 : 0x41, 900 + run), Unit(0x01, 400 + run)};
            file += v.join(QByteArray()) + AudioFrame(300 + run) + AudioFrame(310, p2);
            video += v;
            audioSizes << 300 + run << 310;
        }
        video << Unit(0x41, 100) << Unit(0x01, 60);
        file += video[8] + video[9];

        const ScanResult r = scan(file, true, {kPattern, p2});
        QCOMPARE(r.units, Payloads(video));
        QCOMPARE(r.gaps, 0);
        QCOMPARE(r.audioRuns, 3);   // counted from -1: four runs ended on a valid chain
        QCOMPARE(r.audioFrames, audioSizes.size());
        // Each frame behind a 44.1 kHz ADTS header with its own length.
        int at = 0;
        for (int size : audioSizes) {
            QCOMPARE(uint8_t(r.audio[at]), uint8_t(0xFF));
            QCOMPARE((uint8_t(r.audio[at + 2]) >> 2) & 0xF, 4);
            QCOMPARE(AdtsLength(r.audio.constData() + at), size + 7);
            at += size + 7;
        }
        QCOMPARE(at, r.audio.size());
        // The parameter block stands before every unit from the end of the
        // second audio run on, and not before.
        QCOMPARE(r.stream.count(kParams), 1 + 3 * 2);
    }

    void overlongAudioFrameIsCut()
    {
        // Above the cap the frame is cut to the sample's mean size; with no
        // mean size it is dropped.
        for (int size : {8184, 8185, 9000}) {
            m_facts.averageAudioFrame = size == 9000 ? 0 : 640;
            const QByteArray file = kMdat + Unit(0x65, 100) + Unit(0x41, 80) + AudioFrame(size) + Unit(0x41, 90)
                                  + Unit(0x01, 70);
            const ScanResult r = scan(file, true, {kPattern});
            QCOMPARE(r.audio.size(), size == 9000 ? 0 : 7 + (size == 8184 ? 8184 : 640));
            if (size != 9000) {
                QCOMPARE(r.audioFrames, 1);
                QCOMPARE(r.audio.mid(7, 3), kPattern);
            }
        }
    }

    void fileStartingWithAudio()
    {
        // Noise in front of the first frame, however long, is passed.
        for (int noise : {0, 40000}) {
            const QByteArray file = kMdat + Noise(noise) + AudioFrame(200) + AudioFrame(220) + Unit(0x65, 300)
                                  + Unit(0x41, 40);
            const ScanResult r = scan(file, true, {kPattern});
            QCOMPARE(r.audioFrames, 2);
            QCOMPARE(r.units.size(), 2);
        }
    }

    void uniqueReduction()
    {
        const QString src = m_dir + QStringLiteral("/src"), dst = m_dir + QStringLiteral("/dst");
        auto reduce = [&](const QByteArray& in) {
            writeAll(src, in);
            ReduceToUnique(src, dst);
            return readAll(dst);
        };
        QCOMPARE(reduce(QByteArray::fromHex("010203")), QByteArray::fromHex("010203"));
        QCOMPARE(reduce(kPattern.repeated(1000) + "xy"), kPattern);   // a short tail is ignored
        QCOMPARE(reduce(QByteArray::fromHex("090000 010000 090000 050000 010000")),
                 QByteArray::fromHex("090000010000050000"));   // first-seen order, not sorted
        for (int n : {10000, 10001}) {
            QByteArray distinct;
            for (int i = 0; i < n; ++i)
                distinct += char(i >> 16) + QByteArray(1, char(i >> 8)) + char(i);
            QCOMPARE(reduce(distinct), distinct.left(30000));
        }
        // A missing source leaves an empty target and the chain goes on.
        ReduceToUnique(m_dir + QStringLiteral("/missing"), dst);
        QCOMPARE(readAll(dst), QByteArray());
    }

    void patternsIgnoreZeroFill()
    {
        PatternSet set;
        set.add(0);
        MemoryReader r(QByteArray::fromHex("0000000000"));
        QVERIFY(set.matchAt(r, 2));
        QVERIFY(!set.matchAt(r, 3));   // two real bytes and one of fill

        // Triples that share their first two bytes, or only the last two,
        // with a member are no members.
        PatternSet aac;
        aac.add(0x211A0B);
        aac.add(0x01409F);
        QVERIFY(aac.has(0x211A0B) && aac.has(0x01409F));
        for (const uint32_t t : {0x211A0Cu, 0x211A8Bu, 0x211B0Bu, 0x001A0Bu, 0x01409Eu, 0x21409Fu, 0x011A0Bu})
            QVERIFY2(!aac.has(t), qPrintable(QString::number(t, 16)));
    }
};

QTEST_GUILESS_MAIN(TestStreamScanner)
#include "test_stream_scanner.moc"
