// The frame index scanners on bytes built by hand. A row is a list of pieces
// marked V (picture), A (sound), Z (zero run) or - (no line).
#include "core/byte_reader.h"
#include "recovery/h264/h264_recovery.h"
#include "recovery/h264/index_scanners.h"
#include "support/bytes.h"

#include <QtTest>

namespace {

// A length-prefixed unit: header byte, a second byte, then filler that holds
// no zero byte (so nothing inside it looks like a length field).
QByteArray Unit(uint8_t header, uint8_t second, int payload, char fill = '\x11')
{
    return testvideo::be(quint32(2 + payload)) + char(header) + char(second) + QByteArray(payload, fill);
}

const QByteArray kIdr = Unit(0x65, 0x88, 30);   // a picture's first slice (first_mb 0)
const QByteArray kP = Unit(0x41, 0x9A, 30);     // the next picture's first slice
const QByteArray kSei = Unit(0x06, 0x05, 20);
const QByteArray kAud = QByteArray::fromHex("000000020910");
const QByteArray kMdat = QByteArray::fromHex("00100000") + "mdat";
QByteArray Sound(int n) { return QByteArray(n, '\x55'); }
QByteArray Zeros(int n) { return QByteArray(n, '\0'); }

// An HEVC slice; the third payload byte holds first_slice_segment_in_pic_flag.
QByteArray HevcSlice(uint8_t header, bool firstInPicture)
{
    QByteArray u = Unit(header, 0x01, 30);
    u[6] = char(firstInPicture ? 0x80 : 0x11);
    return u;
}

QString LineText(const IndexLine& l)
{
    return QStringLiteral("%1%2+%3").arg(QLatin1Char("VAZ"[l.kind])).arg(l.pos).arg(l.size);
}

QString Scan(const QString& scanner, const QByteArray& bytes)
{
    QStringList lines;
    MemoryReader r(bytes);
    IndexScanner s(r, [&](const IndexLine& l) { lines << LineText(l); });
    PatternSet patterns;
    for (uint32_t p : {0x658811u, 0x060511u, 0x260180u})
        patterns.add(p);
    if (scanner == QLatin1String("sowt"))
        s.runSowt(patterns, false);
    else if (scanner == QLatin1String("twos"))
        s.runTwos(1024);
    else
        s.runHevcPcm(patterns);
    return lines.join(QLatin1Char(' '));
}

void Row(const char* tag, const char* scanner, std::initializer_list<std::pair<char, QByteArray>> pieces)
{
    QByteArray bytes;
    QStringList lines;
    for (const auto& p : pieces) {
        if (p.first != '-')
            lines << QStringLiteral("%1%2+%3").arg(QLatin1Char(p.first)).arg(bytes.size()).arg(p.second.size());
        bytes += p.second;
    }
    QTest::newRow(tag) << QString::fromLatin1(scanner) << bytes << lines.join(QLatin1Char(' '));
}

} // namespace

class TestIndexScanners : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lines_data()
    {
        QTest::addColumn<QString>("scanner");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("lines");
        // Each picture is a line of its own; a sound run needs 101 bytes.
        Row("sowt gap 100", "sowt", {{'V', kIdr}, {'V', kP}, {'-', Sound(100)}, {'V', kIdr}, {'V', kP}});
        Row("sowt gap 101", "sowt", {{'V', kIdr}, {'V', kP}, {'A', Sound(101)}, {'V', kIdr}, {'V', kP}});
        Row("sowt sound ahead of the first picture", "sowt",
            {{'-', Sound(500)}, {'V', kIdr}, {'V', kP}, {'A', Sound(300)}, {'V', kIdr}, {'V', kP}});
        // Delimiter, SEI and slice of one picture share a line; an SEI ahead
        // of the first delimiter joins the first picture.
        Row("sowt access units", "sowt", {{'V', kSei + kAud + kIdr}, {'V', kAud + kP}});
        // A clur block inside zero padding doesn't split the run.
        Row("sowt zero run with clur", "sowt",
            {{'V', kIdr}, {'V', kP}, {'Z', Zeros(200) + QByteArray::fromHex("00800000636c7572") + Zeros(60)},
             {'V', kIdr}, {'V', kP}});
        Row("sowt zero run ends at a gap marker", "sowt",
            {{'V', kIdr}, {'V', kP}, {'Z', Zeros(300)}, {'A', QByteArray::fromHex("001C0100") + Sound(200)},
             {'V', kIdr}, {'V', kP}});
        // A few zero samples at the head of the sound are sound, not padding:
        // a run cut there would shift every sample behind it.
        Row("sowt short zero stretch stays sound", "sowt",
            {{'V', kIdr}, {'V', kP}, {'A', Zeros(20) + Sound(400)}, {'V', kIdr}, {'V', kP}});
        Row("sowt second mdat ends the sound", "sowt",
            {{'V', kIdr}, {'V', kP}, {'A', Sound(300)}, {'-', kMdat}, {'V', kIdr}, {'V', kP}});
        Row("sowt unit past the end", "sowt", {{'V', kIdr}, {'V', kP}, {'V', kIdr}, {'-', kP.left(kP.size() - 5)}});
        Row("twos pictures open with a delimiter", "twos",
            {{'-', QByteArray(8, '\x22')}, {'V', kAud + kIdr}, {'V', kAud + kP}, {'A', Sound(300)},
             {'V', kAud + kIdr}, {'-', Sound(99)}, {'V', kAud + kP}});
        Row("twos second mdat ends the sound", "twos",
            {{'V', kAud + kIdr}, {'A', Sound(300)}, {'-', kMdat}, {'V', kAud + kIdr}});
        // The atoms ahead of mdat are passed (a free atom's zeros hold no
        // first frame), slices of one picture share a line, and a parameter
        // set ends the chain, so what follows it up to the next picture is sound.
        const QByteArray head = QByteArray::fromHex("00000010667479707174202000000000") + QByteArray::fromHex("00000100")
                              + "free" + Zeros(248) + QByteArray::fromHex("00000000") + "mdat";
        const QByteArray idr = HevcSlice(0x26, true) + HevcSlice(0x26, false), trail = HevcSlice(0x02, true);
        Row("hevc", "hevc", {{'-', head}, {'V', idr}, {'V', trail}, {'A', Unit(0x44, 0x01, 10) + Sound(400)},
                             {'V', idr}, {'V', trail}});
    }
    void lines()
    {
        QFETCH(QString, scanner);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, lines);
        QCOMPARE(Scan(scanner, bytes), lines);
    }

    void pcmTexts()
    {
        QCOMPARE(PcmFormatText(16, QStringLiteral("s24le")), QStringLiteral("s16le"));
        QCOMPARE(PcmFormatText(24, QStringLiteral("s16le")), QStringLiteral("s24le"));
        QCOMPARE(PcmFormatText(32, QStringLiteral("s16le")), QStringLiteral("s32le"));
        QCOMPARE(PcmFormatText(0, QStringLiteral("s16le")), QStringLiteral("s24le"));
        QCOMPARE(PcmFormatText(12, QStringLiteral("s16le")), QStringLiteral("s16le"));   // no name: unchanged
        QCOMPARE(PcmRateText(0), QStringLiteral("48000"));
        QCOMPARE(PcmChannelText(6), QStringLiteral("2"));
        QCOMPARE(PcmChannelText(1), QStringLiteral("1"));
    }
};

QTEST_GUILESS_MAIN(TestIndexScanners)
#include "test_index_scanners.moc"
