// The frame index scanners on bytes built by hand: which runs become lines,
// where the lines start and how long they are; and the PCM texts given to
// the muxer.
#include "core/byte_reader.h"
#include "recovery/h264/h264_recovery.h"
#include "recovery/h264/index_scanners.h"

#include <QtTest>

namespace {

// A length-prefixed unit: header byte, a second byte, then filler that holds
// no zero byte (so nothing inside it looks like a length field).
QByteArray Unit(uint8_t header, uint8_t second, int payload)
{
    QByteArray u;
    const int length = 2 + payload;
    u.append(char(length >> 24)).append(char(length >> 16)).append(char(length >> 8)).append(char(length));
    u.append(char(header)).append(char(second));
    u.append(QByteArray(payload, '\x11'));
    return u;
}

const QByteArray kIdr = Unit(0x65, 0x88, 30);   // a picture's first slice (first_mb 0)
const QByteArray kP = Unit(0x41, 0x9A, 30);     // the next picture's first slice
const QByteArray kAud = QByteArray::fromHex("000000020910");

PatternSet IdrPattern()
{
    PatternSet p;
    p.add(0x658811);
    return p;
}

struct Scan {
    QList<IndexLine> lines;
    QList<IndexLine> of(IndexLine::Kind k) const
    {
        QList<IndexLine> out;
        for (const IndexLine& l : lines)
            if (l.kind == k)
                out << l;
        return out;
    }
};

Scan RunSowt(const QByteArray& bytes)
{
    Scan s;
    MemoryReader r(bytes);
    IndexScanner scanner(r, [&](const IndexLine& l) { s.lines << l; });
    const PatternSet patterns = IdrPattern();
    scanner.runSowt(patterns, false);
    return s;
}

Scan RunTwos(const QByteArray& bytes)
{
    Scan s;
    MemoryReader r(bytes);
    IndexScanner scanner(r, [&](const IndexLine& l) { s.lines << l; });
    scanner.runTwos(1024);
    return s;
}

} // namespace

class TestIndexScanners : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lineText()
    {
        QCOMPARE((IndexLine{IndexLine::Video, 36, 14598}).text(), QStringLiteral("AVC(Vide) at = 36 Size = 14598"));
        QCOMPARE((IndexLine{IndexLine::Audio, 7, 101}).text(), QStringLiteral("AAC(soun) at = 7 Size = 101"));
        QCOMPARE((IndexLine{IndexLine::Zero, 0, 3}).text(), QStringLiteral("Zero(Zero) at = 0 Size = 3"));
    }

    void sowtGapBetweenPictures_data()
    {
        QTest::addColumn<int>("gap");
        QTest::addColumn<int>("audioLines");
        QTest::newRow("100 bytes: dropped") << 100 << 0;
        QTest::newRow("101 bytes: a sound line") << 101 << 1;
        QTest::newRow("4000 bytes") << 4000 << 1;
    }
    // Two pictures, sound, two pictures. Each picture is a line of its own;
    // the sound line covers exactly the bytes between the two runs.
    void sowtGapBetweenPictures()
    {
        QFETCH(int, gap);
        QFETCH(int, audioLines);
        const QByteArray head = kIdr + kP;
        const QByteArray bytes = head + QByteArray(gap, '\x55') + kIdr + kP;
        const Scan s = RunSowt(bytes);
        const QList<IndexLine> video = s.of(IndexLine::Video);
        QCOMPARE(video.size(), 4);
        QCOMPARE(video[0].pos, 0u);
        QCOMPARE(video[0].size, uint64_t(kIdr.size()));
        QCOMPARE(video[1].pos, uint64_t(kIdr.size()));
        QCOMPARE(video[2].pos, uint64_t(head.size() + gap));
        const QList<IndexLine> audio = s.of(IndexLine::Audio);
        QCOMPARE(audio.size(), audioLines);
        if (audioLines) {
            QCOMPARE(audio[0].pos, uint64_t(head.size()));
            QCOMPARE(audio[0].size, uint64_t(gap));
        }
    }

    // Sound ahead of the first picture has no line.
    void sowtSoundBeforeFirstPicture()
    {
        const QByteArray bytes = QByteArray(500, '\x55') + kIdr + kP + QByteArray(300, '\x55') + kIdr + kP;
        const Scan s = RunSowt(bytes);
        QCOMPARE(s.of(IndexLine::Video).size(), 4);
        QCOMPARE(s.of(IndexLine::Audio).size(), 1);
        QCOMPARE(s.of(IndexLine::Audio)[0].pos, uint64_t(500 + kIdr.size() + kP.size()));
    }

    // Units of one picture (delimiter, SEI, slice) stay in one line; an SEI
    // ahead of the first delimiter joins the first picture.
    void sowtPicturesAreAccessUnits()
    {
        const QByteArray sei = Unit(0x06, 0x05, 20);
        const QByteArray pic1 = sei + kAud + kIdr;
        const QByteArray pic2 = kAud + kP;
        PatternSet patterns;
        patterns.add(0x060511);
        Scan s;
        const QByteArray bytes = pic1 + pic2;
        MemoryReader r(bytes);
        IndexScanner scanner(r, [&](const IndexLine& l) { s.lines << l; });
        scanner.runSowt(patterns, false);
        const QList<IndexLine> video = s.of(IndexLine::Video);
        QCOMPARE(video.size(), 2);
        QCOMPARE(video[0].size, uint64_t(pic1.size()));
        QCOMPARE(video[1].pos, uint64_t(pic1.size()));
        QCOMPARE(video[1].size, uint64_t(pic2.size()));
    }

    // Zero padding behind a picture gets a line; a clur block inside it is
    // passed over and doesn't split it; the picture behind is found.
    void sowtZeroRunWithClur()
    {
        const QByteArray head = kIdr + kP;
        const QByteArray zeros = QByteArray(200, '\0') + QByteArray::fromHex("00800000636c7572") + QByteArray(60, '\0');
        const QByteArray bytes = head + zeros + kIdr + kP;
        const Scan s = RunSowt(bytes);
        QCOMPARE(s.of(IndexLine::Video).size(), 4);
        QCOMPARE(s.of(IndexLine::Audio).size(), 0);
        const QList<IndexLine> zero = s.of(IndexLine::Zero);
        QCOMPARE(zero.size(), 1);
        QCOMPARE(zero[0].pos, uint64_t(head.size()));
        QCOMPARE(zero[0].size, uint64_t(zeros.size()));
    }

    // A gap marker ends the zero run: the run's line stops at the marker.
    void sowtZeroRunEndsAtMarker()
    {
        const QByteArray head = kIdr + kP;
        const QByteArray bytes = head + QByteArray(300, '\0') + QByteArray::fromHex("001C0100") + QByteArray(200, '\x55')
                               + kIdr + kP;
        const Scan s = RunSowt(bytes);
        const QList<IndexLine> zero = s.of(IndexLine::Zero);
        QCOMPARE(zero.size(), 1);
        QCOMPARE(zero[0].size, 300u);
    }

    // A second mdat header between the media data ends the sound run and
    // is not filed with it, in both scans.
    void secondMdatEndsSound()
    {
        const QByteArray mdat = QByteArray::fromHex("00100000") + QByteArray("mdat");
        const QByteArray head = kIdr + kP;
        const Scan s = RunSowt(head + QByteArray(300, '\x55') + mdat + kIdr + kP);
        QCOMPARE(s.of(IndexLine::Video).size(), 4);
        QCOMPARE(s.of(IndexLine::Audio).size(), 1);
        QCOMPARE(s.of(IndexLine::Audio)[0].size, 300u);
        QCOMPARE(s.of(IndexLine::Video)[2].pos, uint64_t(head.size() + 300 + mdat.size()));

        const QByteArray pic = kAud + kIdr;
        const Scan t = RunTwos(pic + QByteArray(300, '\x55') + mdat + pic);
        QCOMPARE(t.of(IndexLine::Video).size(), 2);
        QCOMPARE(t.of(IndexLine::Audio).size(), 1);
        QCOMPARE(t.of(IndexLine::Audio)[0].size, 300u);
    }

    // A few zero samples at the head of the sound are sound, not padding:
    // the sound line keeps them, so no sample is shifted.
    void sowtShortZeroStretchStaysSound()
    {
        const QByteArray head = kIdr + kP;
        const QByteArray sound = QByteArray(20, '\0') + QByteArray(400, '\x55');
        const Scan s = RunSowt(head + sound + kIdr + kP);
        QCOMPARE(s.of(IndexLine::Zero).size(), 0);
        const QList<IndexLine> audio = s.of(IndexLine::Audio);
        QCOMPARE(audio.size(), 1);
        QCOMPARE(audio[0].pos, uint64_t(head.size()));
        QCOMPARE(audio[0].size, uint64_t(sound.size()));
    }

    // twos: pictures open with a delimiter; timecode markers are stepped
    // over, not filed as sound.
    // HEVC with lpcm sound: the atoms ahead of mdat are passed (the zeros of
    // a free atom hold no first frame), slices of one picture share a line
    // until a slice opens the next picture, and a parameter set ends the
    // chain, so what follows up to the next picture is sound.
    void hevcPcmScan()
    {
        auto slice = [](uint8_t header, bool firstInPicture) {
            QByteArray u = Unit(header, 0x01, 30);
            u[6] = char(firstInPicture ? 0x80 : 0x11);
            return u;
        };
        const QByteArray idr = slice(0x26, true) + slice(0x26, false);   // two slices, one picture
        const QByteArray trail = slice(0x02, true);
        const QByteArray pps = Unit(0x44, 0x01, 10);
        const QByteArray sound(400, '\x55');
        QByteArray head = QByteArray::fromHex("00000010667479707174202000000000");
        head += QByteArray::fromHex("00000100") + "free" + QByteArray(248, '\0');
        head += QByteArray::fromHex("00000000") + "mdat";
        const QByteArray bytes = head + idr + trail + pps + sound + idr + trail;
        PatternSet patterns;
        patterns.add(0x260180);
        Scan s;
        MemoryReader r(bytes);
        IndexScanner scanner(r, [&](const IndexLine& l) { s.lines << l; });
        scanner.runHevcPcm(patterns);
        const QList<IndexLine> video = s.of(IndexLine::Video);
        QCOMPARE(video.size(), 4);
        QCOMPARE(video[0].pos, uint64_t(head.size()));
        QCOMPARE(video[0].size, uint64_t(idr.size()));
        QCOMPARE(video[1].size, uint64_t(trail.size()));
        const QList<IndexLine> audio = s.of(IndexLine::Audio);
        QCOMPARE(audio.size(), 1);
        QCOMPARE(audio[0].pos, uint64_t(head.size() + idr.size() + trail.size()));
        QCOMPARE(audio[0].size, uint64_t(pps.size() + sound.size()));
        QCOMPARE(s.of(IndexLine::Zero).size(), 0);
    }

    void twosSteersByDelimiters()
    {
        const QByteArray pic = kAud + kIdr;
        const QByteArray pic2 = kAud + kP;
        const QByteArray sound = QByteArray(300, '\x55');
        const QByteArray bytes = QByteArray(8, '\x22') + pic + pic2 + sound + pic + QByteArray(99, '\x55') + pic2;
        const Scan s = RunTwos(bytes);
        const QList<IndexLine> video = s.of(IndexLine::Video);
        QCOMPARE(video.size(), 4);
        QCOMPARE(video[0].pos, 8u);
        QCOMPARE(video[0].size, uint64_t(pic.size()));
        const QList<IndexLine> audio = s.of(IndexLine::Audio);
        QCOMPARE(audio.size(), 1);   // the 99-byte gap has no line
        QCOMPARE(audio[0].pos, uint64_t(8 + pic.size() + pic2.size()));
        QCOMPARE(audio[0].size, 300u);
    }

    // A unit whose length runs past the end is not indexed, and noise gives
    // no line at all: the scans end.
    void truncatedAndNoise()
    {
        QByteArray cut = kIdr + kP + kIdr + kP;
        cut.chop(5);
        QCOMPARE(RunSowt(cut).of(IndexLine::Video).size(), 3);

        QByteArray noise(1 << 20, '\0');
        for (int i = 0; i < noise.size(); ++i)
            noise[i] = char((uint32_t(i) * 7919u + uint32_t(i >> 5)) & 0xFF);
        RunSowt(noise);
        RunTwos(noise);
        QCOMPARE(RunTwos(QByteArray()).lines.size(), 0);
        QCOMPARE(RunSowt(QByteArray(1000, '\0')).lines.size(), 0);
    }

    void pcmTexts()
    {
        QCOMPARE(PcmFormatText(16, QStringLiteral("s24le")), QStringLiteral("s16le"));
        QCOMPARE(PcmFormatText(24, QStringLiteral("s16le")), QStringLiteral("s24le"));
        QCOMPARE(PcmFormatText(32, QStringLiteral("s16le")), QStringLiteral("s32le"));
        QCOMPARE(PcmFormatText(0, QStringLiteral("s16le")), QStringLiteral("s24le"));
        QCOMPARE(PcmFormatText(12, QStringLiteral("s16le")), QStringLiteral("s16le"));   // no name: unchanged
        QCOMPARE(PcmRateText(0), QStringLiteral("48000"));
        QCOMPARE(PcmRateText(96000), QStringLiteral("96000"));
        QCOMPARE(PcmChannelText(6), QStringLiteral("2"));
        QCOMPARE(PcmChannelText(0), QStringLiteral("2"));
        QCOMPARE(PcmChannelText(1), QStringLiteral("1"));
        const QString cmd = MuxVideoAndPcmCommand(QStringLiteral("/w d/video.h264"), PcmFormatText(16, QString()),
                                                  PcmRateText(0), PcmChannelText(6), QStringLiteral("/w d/Audio.pcm"),
                                                  QStringLiteral("out.mov"));
        QVERIFY(cmd.endsWith(QStringLiteral(
            "  -i \"/w d/video.h264\" -f s16le -ar 48000 -ac 2 -i \"/w d/Audio.pcm\" -c:v copy -c:a aac "
            "-preset ultrafast \"out.mov\"")));
    }
};

QTEST_GUILESS_MAIN(TestIndexScanners)
#include "test_index_scanners.moc"
