// Bit strings, ADTS headers and the NAL start byte tests.
#include "core/byte_reader.h"
#include "recovery/h264/bit_tools.h"
#include "recovery/h264/nal_sets.h"

#include <QtTest>

class TestBitTools : public QObject {
    Q_OBJECT

    static QByteArray header()
    {
        QByteArray out;
        for (int b : AdtsHeaderBytes)
            out.append(char(b));
        return out;
    }

private Q_SLOTS:
    void bitStrings()
    {
        QCOMPARE(IntToBitString(0, 3), QStringLiteral("000"));
        QCOMPARE(IntToBitString(2, 3), QStringLiteral("010"));
        QCOMPARE(IntToBitString(8191, 13), QString(13, QLatin1Char('1')));
        QCOMPARE(IntToBitString(-5, 3), QStringLiteral("000"));
        QCOMPARE(IntToBitString(9, 3), QStringLiteral("1001"));   // not cut
        QCOMPARE(BitStringToHexText(QStringLiteral("11111111111100010101000010000000")),
                 QStringLiteral("FF F1 50 80"));
        const uint8_t be[4] = {0x12, 0x34, 0x56, 0x78};
        QCOMPARE(ReadBigEndian32(be), 0x12345678u);
        QCOMPARE(ReadBigEndian32(nullptr), 0u);
    }

    void adtsHeaders()
    {
        for (int64_t rate : {int64_t(0), int64_t(1000)}) {
            g_audioSampleRate = rate;
            g_audioChannels = 1;
            QVERIFY(BuildAdtsHeader(100));
            QCOMPARE(g_audioSampleRate, int64_t(48000));
            QCOMPARE(g_audioChannels, int64_t(2));   // always two
            QCOMPARE((AdtsHeaderBytes[2] >> 2) & 0xF, 3);   // "0011"
        }
        g_audioSampleRate = 44100;
        QVERIFY(BuildAdtsHeader(0x173 - 7));
        QCOMPARE(header(), QByteArray::fromHex("FFF150802E7FFC"));
        QCOMPARE((AdtsHeaderBytes[2] >> 2) & 0xF, 4);   // "0100"
        // Length field: thirteen bits spread over bytes 3..5, header included.
        QVERIFY(BuildAdtsHeader(8184));
        const int len = ((AdtsHeaderBytes[3] & 3) << 11) | (AdtsHeaderBytes[4] << 3) | (AdtsHeaderBytes[5] >> 5);
        QCOMPARE(len, 8191);
        QCOMPARE((AdtsHeaderBytes[2] & 1) << 2 | AdtsHeaderBytes[3] >> 6, 2);   // channels
        g_audioSampleRate = 12345;   // no frequency index: refused
        QVERIFY(!BuildAdtsHeader(100));
    }

    void nalStarts()
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
        QVERIFY(pass(0x0C, 0, NalStartSet::StreamBytes));
        QVERIFY(!pass(0x0C, 0, NalStartSet::StreamFirstBytes));
        QVERIFY(!pass(0x67, 0, NalStartSet::IndexScanBytes));
        QVERIFY(pass(0x67, 0, NalStartSet::StreamFirstBytes));
        QVERIFY(pass(0x02, 0x01, NalStartSet::VideoOnlyBytes));
        QVERIFY(!pass(0x02, 0x00, NalStartSet::VideoOnlyFirstBytes));
        QVERIFY(!pass(0x02, 0x01, NalStartSet::StreamBytes));
        QVERIFY(pass(0x40, 0, NalStartSet::VideoOnlyFirstBytes));
        QVERIFY(!pass(0x40, 0, NalStartSet::ReferenceNalBytes));
        // Past the end the missing bytes read as zero.
        MemoryReader tail(QByteArray::fromHex("000000"));
        QVERIFY(!IsNalStart(tail, 0, NalStartSet::StreamBytes));
    }

    void fillerRuns()
    {
        QByteArray data(128, '\0');
        data.append(QByteArray(128, char(0xFF)));
        data.append(QByteArray(127, char(0xFF)) + '\x01');
        MemoryReader r(data);
        QVERIFY(IsFillerRun(r, 0, 128));
        QVERIFY(IsFillerRun(r, 128, 128));
        QVERIFY(!IsFillerRun(r, 64, 128));   // mixed zeros and 0xFF
        QVERIFY(!IsFillerRun(r, 256, 128));
    }
};

QTEST_GUILESS_MAIN(TestBitTools)
#include "test_bit_tools.moc"
