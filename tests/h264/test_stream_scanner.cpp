// The stream scanner on crafted byte streams: chains of length-prefixed units,
// filler runs, the two-byte delimiter, a damaged length, interleaved audio,
// and the frame-size cap. Also the reduction to unique records and the
// pattern set it feeds.
#include "core/byte_reader.h"
#include "core/file_writer.h"
#include "recovery/h264/bit_tools.h"
#include "recovery/h264/h264_recovery.h"
#include "recovery/h264/stream_scanner.h"
#include "support/test_videos.h"

#include <QDir>
#include <QtTest>

using namespace testvideo;

namespace {

const QByteArray kParams = QByteArray::fromHex("0000000167640028AC") + QByteArray::fromHex("0000000168EE3C80");

QByteArray Be32(uint32_t v)
{
    QByteArray b(4, '\0');
    for (int i = 0; i < 4; ++i)
        b[i] = char(v >> (24 - 8 * i));
    return b;
}

// A unit of the given NAL header byte and payload length (header included).
QByteArray Unit(uint8_t header, int length, char fill = 0x5A)
{
    return Be32(uint32_t(length)) + char(header) + QByteArray(length - 1, fill);
}

// An audio frame that starts with a learnt pattern.
QByteArray AudioFrame(int size, QByteArray start = QByteArray::fromHex("211A8F"))
{
    return start + QByteArray(size - 3, 0x33);
}

// The mdat's size is not checked by the scan; any size but 0 and 1 puts the
// scan right behind the header.
QByteArray MdatHead(uint32_t size = 1u << 20)
{
    return Be32(size) + "mdat";
}

// Splits an Annex B stream at its start codes.
QList<QByteArray> Units(const QByteArray& stream)
{
    QList<QByteArray> out;
    const QByteArray sc = QByteArray::fromHex("00000001");
    int at = stream.indexOf(sc);
    while (at >= 0) {
        const int next = stream.indexOf(sc, at + 4);
        out << stream.mid(at + 4, next < 0 ? -1 : next - at - 4);
        at = next;
    }
    return out;
}

struct ScanResult {
    QList<QByteArray> units;
    QByteArray audio;
    int gaps = 0;
    int audioRuns = 0;
    uint64_t audioFrames = 0;
};

} // namespace

class TestStreamScanner : public QObject {
    Q_OBJECT
    QString m_dir;

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
        StreamScanner s(in, video, audioMode ? &audio : nullptr, set, kParams);
        s.run();
        video.close();
        audio.close();
        ScanResult r;
        r.units = Units(readAll(m_dir + QStringLiteral("/video.h264")));
        r.audio = readAll(m_dir + QStringLiteral("/audio.aac"));
        r.gaps = s.frameGapCount();
        r.audioRuns = s.audioRunCount();
        r.audioFrames = s.audioFrames();
        return r;
    }

    // The payloads of the units as the scanner should give them back.
    static QList<QByteArray> Payloads(const QList<QByteArray>& units)
    {
        QList<QByteArray> out;
        for (const QByteArray& u : units)
            out << u.mid(4);
        return out;
    }
    static QList<QByteArray> WithoutParams(const QList<QByteArray>& units)
    {
        QList<QByteArray> out;
        for (const QByteArray& u : units)
            if (u != kParams.mid(4, 5) && u != kParams.mid(13))
                out << u;
        return out;
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("scanner"));
        g_audioSampleRate = 48000;
        g_averageAudioFrame = 0;
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void chainedUnitsInBothModes()
    {
        const QList<QByteArray> units = {Unit(0x06, 20), Unit(0x65, 9000), Unit(0x41, 300),
                                         Unit(0x01, 5000), Unit(0x41, 40000), Unit(0x01, 77)};
        QByteArray file = QByteArray::fromHex("00000014667479706D703432000000006D703432") + MdatHead();
        for (const QByteArray& u : units)
            file += u;
        for (bool audioMode : {true, false}) {
            const ScanResult r = scan(file, audioMode);
            // The parameter sets stand once, at the head; the last unit ends
            // at the end of the file and is whole.
            QCOMPARE(r.units.mid(2), Payloads(units));
            QCOMPARE(r.gaps, 0);
        }
    }

    void delimiterUnitsChain()
    {
        const QByteArray aud = QByteArray::fromHex("0000000209F0");
        const QList<QByteArray> units = {aud, Unit(0x65, 100), aud, Unit(0x41, 50), aud, Unit(0x01, 60)};
        QByteArray file = MdatHead();
        for (const QByteArray& u : units)
            file += u;
        QCOMPARE(scan(file, true).units.mid(2), Payloads(units));
        QCOMPARE(scan(file, false).units.mid(2), Payloads(units));
    }

    void fillerRunsAreCrossed_data()
    {
        QTest::addColumn<char>("fill");
        QTest::addColumn<int>("length");
        QTest::newRow("zeros 300") << '\0' << 300;
        QTest::newRow("0xFF 300") << '\xFF' << 300;
        QTest::newRow("zeros 512") << '\0' << 512;
        QTest::newRow("zeros 4096") << '\0' << 4096;
        QTest::newRow("0xFF 1031") << '\xFF' << 1031;
    }
    void fillerRunsAreCrossed()
    {
        QFETCH(char, fill);
        QFETCH(int, length);
        const QList<QByteArray> before = {Unit(0x65, 1000), Unit(0x41, 200)};
        const QList<QByteArray> after = {Unit(0x41, 300), Unit(0x01, 400), Unit(0x41, 50)};
        QByteArray file = MdatHead();
        for (const QByteArray& u : before)
            file += u;
        file += QByteArray(length, fill);
        for (const QByteArray& u : after)
            file += u;
        for (bool audioMode : {true, false}) {
            const ScanResult r = scan(file, audioMode);
            // No unit is lost to the run: the one before it is judged good
            // when the chain is found again behind it.
            QCOMPARE(WithoutParams(r.units), Payloads(before + after));
            if (audioMode)
                QCOMPARE(r.gaps, 1);
        }
    }

    void damagedLengthCostsNothing()
    {
        // The second unit's length points into noise; a healthy chain starts
        // a few kilobytes on. The damaged unit goes out with its own length.
        QByteArray noise(3000, '\0');
        for (int i = 0; i < noise.size(); ++i)
            noise[i] = char(0x80 | (i * 37 % 127));
        const QByteArray damaged = Be32(2000) + char(0x41) + QByteArray(99, 0x5A);
        QByteArray file = MdatHead() + Unit(0x65, 500) + damaged + noise + Unit(0x41, 700) + Unit(0x01, 800);
        const ScanResult r = scan(file, true);
        QCOMPARE(r.gaps, 1);
        const QList<QByteArray> got = WithoutParams(r.units);
        QCOMPARE(got.size(), 4);
        QCOMPARE(got[1], file.mid(8 + 504 + 4, 2000));
        QCOMPARE(got[3], Unit(0x01, 800).mid(4));
        // After the gap every unit is preceded by the parameter sets again.
        const QByteArray stream = readAll(m_dir + QStringLiteral("/video.h264"));
        QVERIFY(stream.endsWith(kParams + QByteArray::fromHex("00000001") + Unit(0x01, 800).mid(4)));
    }

    void interleavedAudio()
    {
        g_audioSampleRate = 44100;
        const QByteArray p1 = QByteArray::fromHex("211A8F"), p2 = QByteArray::fromHex("211A93");
        QByteArray file = MdatHead();
        QList<QByteArray> video;
        QList<int> audioSizes;
        for (int run = 0; run < 4; ++run) {
            const QList<QByteArray> v = {Unit(run == 0 ? 0x65 : 0x41, 900 + run), Unit(0x01, 400 + run)};
            for (const QByteArray& u : v)
                file += u;
            video += v;
            file += AudioFrame(300 + run, p1) + AudioFrame(310, p2);
            audioSizes << 300 + run << 310;
        }
        file += Unit(0x41, 100) + Unit(0x01, 60);
        video << Unit(0x41, 100) << Unit(0x01, 60);

        const ScanResult r = scan(file, true, {p1, p2});
        QCOMPARE(WithoutParams(r.units), Payloads(video));
        QCOMPARE(r.gaps, 0);
        QCOMPARE(r.audioRuns, 3);   // counted from -1: four runs ended on a valid chain
        QCOMPARE(int(r.audioFrames), audioSizes.size());
        // Each frame behind a 44.1 kHz ADTS header with its own length.
        int at = 0;
        for (int size : audioSizes) {
            const auto* h = reinterpret_cast<const uint8_t*>(r.audio.constData() + at);
            QCOMPARE(h[0], uint8_t(0xFF));
            QCOMPARE((h[2] >> 2) & 0xF, 4);
            const int length = (h[3] & 3) << 11 | h[4] << 3 | h[5] >> 5;
            QCOMPARE(length, size + 7);
            at += length;
        }
        QCOMPARE(at, r.audio.size());
        // The parameter block stands before every unit from the end of the
        // second audio run on, and not before.
        const QByteArray stream = readAll(m_dir + QStringLiteral("/video.h264"));
        QCOMPARE(stream.count(kParams), 1 + 3 * 2);
    }

    void overlongAudioFrameIsCut()
    {
        const QByteArray p = QByteArray::fromHex("211A8F");
        for (int size : {8184, 8185}) {
            g_averageAudioFrame = 640;
            QByteArray file = MdatHead() + Unit(0x65, 100) + Unit(0x41, 80) + AudioFrame(size, p)
                            + Unit(0x41, 90) + Unit(0x01, 70);
            const ScanResult r = scan(file, true, {p});
            QCOMPARE(int(r.audioFrames), 1);
            QCOMPARE(r.audio.size(), 7 + (size == 8184 ? 8184 : 640));
            QCOMPARE(r.audio.mid(7, 3), p);
        }
        // With no mean size from the sample an overlong frame is dropped.
        g_averageAudioFrame = 0;
        const QByteArray file = MdatHead() + Unit(0x65, 100) + Unit(0x41, 80) + AudioFrame(9000, p)
                              + Unit(0x41, 90) + Unit(0x01, 70);
        QCOMPARE(scan(file, true, {p}).audio.size(), 0);
    }

    void fileStartingWithAudioAndHostileBytes()
    {
        const QByteArray p = QByteArray::fromHex("211A8F");
        const QByteArray file = MdatHead() + AudioFrame(200, p) + AudioFrame(220, p) + Unit(0x65, 300) + Unit(0x41, 40);
        const ScanResult r = scan(file, true, {p});
        QCOMPARE(int(r.audioFrames), 2);
        QCOMPARE(WithoutParams(r.units).size(), 2);

        // Zero sizes, lengths past the end, all zeros, all 0xFF: each ends.
        QByteArray hostile = QByteArray::fromHex("00000000667265650000000000000000");
        hostile += Be32(0x00FFFFFF) + char(0x65) + Be32(0x00FFFFFF) + char(0x41);
        for (const QByteArray& f : {hostile, QByteArray(70000, '\0'), QByteArray(70000, '\xFF'),
                                    Be32(5) + "moov" + Unit(0x65, 10) + Be32(0) + "moov"}) {
            scan(f, true, {QByteArray(3, '\0'), p});
            scan(f, false);
        }
    }

    void uniqueReduction()
    {
        const QString src = m_dir + QStringLiteral("/src"), dst = m_dir + QStringLiteral("/dst");
        writeAll(src, QByteArray::fromHex("010203"));
        ReduceToUnique(src, dst);
        QCOMPARE(readAll(dst), QByteArray::fromHex("010203"));

        QByteArray same;
        for (int i = 0; i < 1000; ++i)
            same += QByteArray::fromHex("211A8F");
        writeAll(src, same + "xy");   // a short tail is ignored
        ReduceToUnique(src, dst);
        QCOMPARE(readAll(dst), QByteArray::fromHex("211A8F"));

        // First-seen order, not sorted.
        writeAll(src, QByteArray::fromHex("090000 010000 090000 050000 010000"));
        ReduceToUnique(src, dst);
        QCOMPARE(readAll(dst), QByteArray::fromHex("090000010000050000"));

        for (int n : {10000, 10001}) {
            QByteArray distinct;
            for (int i = 0; i < n; ++i)
                distinct += char(i >> 16) + QByteArray(1, char(i >> 8)) + char(i);
            writeAll(src, distinct);
            ReduceToUnique(src, dst);
            QCOMPARE(readAll(dst), distinct.left(30000));
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
        QVERIFY(set.matchAt(r, 0));
        QVERIFY(set.matchAt(r, 2));
        QVERIFY(!set.matchAt(r, 3));   // two real bytes and one of fill
        QVERIFY(!set.matchAt(r, 100));

        // Triples that share their first two bytes, or only the last two,
        // with a member are no members.
        PatternSet aac;
        aac.add(0x211A0B);
        aac.add(0x01409F);
        for (const uint32_t t : {0x211A0Bu, 0x01409Fu})
            QVERIFY(aac.has(t));
        for (const uint32_t t : {0x211A0Cu, 0x211B0Bu, 0x001A0Bu, 0x01409Eu, 0x21409Fu, 0x011A0Bu})
            QVERIFY2(!aac.has(t), qPrintable(QString::number(t, 16)));
    }
};

QTEST_GUILESS_MAIN(TestStreamScanner)
#include "test_stream_scanner.moc"
