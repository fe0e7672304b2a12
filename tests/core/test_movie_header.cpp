// Reading the movie: RepairFlags and track facts of clips made by ffmpeg for
// each sample-entry kind, with the movie at the end and at the start, by the
// damaged-file reader and by the sample's reader; ctts, stsd copies and the
// early return on crafted movies.
#include "core/thread_video_repair.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QtTest>

#include <iterator>

using namespace testvideo;

namespace {

QByteArray be32(uint32_t v)
{
    QByteArray b(4, '\0');
    b[0] = char(v >> 24); b[1] = char(v >> 16); b[2] = char(v >> 8); b[3] = char(v);
    return b;
}

uint32_t word(const QByteArray& f, qint64 at)
{
    if (at < 0 || at + 4 > f.size())
        return 0;
    return ByteReader::loadBe32(reinterpret_cast<const uint8_t*>(f.constData() + at));
}

QByteArray atom(const char* code, const QByteArray& body)
{
    return be32(uint32_t(8 + body.size())) + QByteArray(code, 4) + body;
}

// ---- An honest parse by atom sizes, to compare the byte-wise readers with ----

struct Box {
    qint64 at = -1;      // position of the size word
    qint64 size = 0;
    bool valid() const { return at >= 0; }
    qint64 body() const { return at + 8; }
    qint64 code() const { return at + 4; }
};

QList<Box> children(const QByteArray& f, qint64 from, qint64 to, const char* code)
{
    QList<Box> out;
    qint64 pos = from;
    while (pos + 8 <= to) {
        qint64 size = word(f, pos);
        if (size == 1)
            size = qint64(quint64(word(f, pos + 8)) << 32 | word(f, pos + 12));
        if (size < 8 || pos + size > to)
            break;
        if (f.mid(int(pos + 4), 4) == QByteArray(code))
            out << Box{pos, size};
        pos += size;
    }
    return out;
}

Box child(const QByteArray& f, const Box& parent, const char* path)
{
    Box b = parent;
    for (const QByteArray& code : QByteArray(path).split('/')) {
        const QList<Box> c = children(f, b.body(), b.at + b.size, code.constData());
        if (c.isEmpty())
            return Box();
        b = c.first();
    }
    return b;
}

struct TrackFacts {
    Box trak, stsd, ctts;
};

// The video and sound tracks of a file, told by their hdlr.
struct MovieFacts {
    TrackFacts video, sound;
};

MovieFacts parseMovie(const QByteArray& f)
{
    MovieFacts m;
    const QList<Box> moov = children(f, 0, f.size(), "moov");
    if (moov.isEmpty())
        return m;
    for (const Box& trak : children(f, moov.first().body(), moov.first().at + moov.first().size, "trak")) {
        const Box hdlr = child(f, trak, "mdia/hdlr");
        const QByteArray type = f.mid(int(hdlr.body() + 8), 4);
        TrackFacts t{trak, child(f, trak, "mdia/minf/stbl/stsd"), child(f, trak, "mdia/minf/stbl/ctts")};
        if (type == "vide")
            m.video = t;
        else if (type == "soun")
            m.sound = t;
    }
    return m;
}

// Time scales of the first video and audio stream as ffprobe sees them.
void probeTimeScales(const QString& path, uint32_t& video, uint32_t& sound)
{
    video = sound = 0;
    QByteArray out;
    run(QStringLiteral("ffprobe"), {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                                    QStringLiteral("stream=codec_type,time_base"), QStringLiteral("-of"),
                                    QStringLiteral("csv=p=0"), path},
        &out);
    for (const QByteArray& line : out.split('\n')) {
        const QList<QByteArray> parts = line.trimmed().split(',');
        if (parts.size() != 2)
            continue;
        const uint32_t scale = parts[1].mid(parts[1].indexOf('/') + 1).toUInt();
        if (parts[0] == "video" && !video)
            video = scale;
        else if (parts[0] == "audio" && !sound)
            sound = scale;
    }
}

QString flagsOf(const ThreadVideoRepair& t)
{
    QStringList f;
    if (t.m_isJpeg) f << QStringLiteral("jpeg");
    if (t.m_isProRes) f << QStringLiteral("prores");
    if (t.m_isHevc) f << QStringLiteral("hevc");
    if (t.m_isMpeg4In3gp) f << QStringLiteral("mpeg4in3gp");
    if (t.m_isTwos) f << QStringLiteral("twos");
    if (t.m_isSowt) f << QStringLiteral("sowt");
    if (t.m_isLpcm) f << QStringLiteral("lpcm");
    if (t.m_isLpcmHevc) f << QStringLiteral("lpcmHevc");
    return f.join(QLatin1Char(' '));
}

void clearGlobals()
{
    g_stopRequested = false;
    g_moovRead = false;
    g_hasSoundTrak = false;
    g_videoTimeScale = g_soundTimeScale = g_frameWidth = g_frameHeight = 0;
    g_videoSampleDelta = g_audioSampleDelta = g_audioFrameSize = 0;
}

// The driver's part for the damaged file: open it, take its size, search.
bool readDamaged(ThreadVideoRepair& t, const QString& path)
{
    t.m_file = ThreadVideoRepair::OpenReadOnly(path);
    if (!t.m_file)
        return false;
    t.m_fileSize = g_inputSize = t.m_file->size();
    g_is3gp = path.endsWith(QLatin1String(".3gp"));
    bool imkh = false;
    const bool found = t.FindDamagedMovie(imkh);
    return found && !imkh;
}

bool readReference(ThreadVideoRepair& t, const QString& path)
{
    g_is3gp = path.endsWith(QLatin1String(".3gp"));
    return t.FindReferenceMovie(path);
}

QStringList clipArgs(const QString& video, const QString& audio, int sampleRate, bool faststart,
                     bool audioFirst = false)
{
    QStringList a = lavfiVideo(1, QStringLiteral("160x120"), 25) + lavfiAudio(1, sampleRate);
    if (audioFirst)
        a << QStringLiteral("-map") << QStringLiteral("1:a") << QStringLiteral("-map") << QStringLiteral("0:v");
    a << video.split(QLatin1Char(' '), Qt::SkipEmptyParts) << audio.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (faststart)
        a << QStringLiteral("-movflags") << QStringLiteral("faststart");
    return a;
}

const char* kH264 = "-c:v libx264 -preset veryfast -bf 2 -pix_fmt yuv420p";
const char* kAac = "-c:a aac -b:a 64k";

// A small movie made by code: mvhd, a video track and a sound track. The
// video stbl holds `videoStbl`; sound is AAC-like with a 48000 time scale.
QByteArray craftedMoov(const QByteArray& videoStbl)
{
    QByteArray tkhd(76, '\0');
    tkhd.append(be32(640 << 16)).append(be32(480 << 16));
    QByteArray mdhdV(12, '\0'), mdhdS(12, '\0');   // version, two dates
    mdhdV.append(be32(30000)).append(QByteArray(8, '\0'));
    mdhdS.append(be32(48000)).append(QByteArray(8, '\0'));
    const QByteArray video = atom("trak", atom("tkhd", tkhd)
        + atom("mdia", atom("mdhd", mdhdV) + atom("minf", atom("vmhd", QByteArray(12, '\0')) + atom("stbl", videoStbl))));
    QByteArray stsdS = be32(0) + be32(1) + atom("mp4a", QByteArray(28, '\0'));
    const QByteArray sttsS = be32(0) + be32(1) + be32(10) + be32(1024);
    const QByteArray stszS = be32(0) + be32(0) + be32(3) + be32(300) + be32(350) + be32(320);
    const QByteArray sound = atom("trak", atom("tkhd", QByteArray(84, '\0'))
        + atom("mdia", atom("mdhd", mdhdS) + atom("minf", atom("smhd", QByteArray(8, '\0'))
            + atom("stbl", atom("stsd", stsdS) + atom("stts", sttsS) + atom("stsc", QByteArray(8, '\0'))
                           + atom("stsz", stszS)))));
    return atom("moov", atom("mvhd", QByteArray(100, '\0')) + video + sound);
}

QByteArray videoStsd(int totalSize)
{
    // stsd: version, count 1, one avc1 entry padded to make the atom totalSize.
    const int entry = totalSize - 16;
    return atom("stsd", be32(0) + be32(1) + be32(uint32_t(entry)) + QByteArray("avc1") + QByteArray(entry - 8, '\0'));
}

using CttsEntries = QList<QPair<uint32_t, uint32_t>>;

QByteArray cttsAtom(const CttsEntries& entries)
{
    QByteArray body = be32(0) + be32(uint32_t(entries.size()));
    for (const auto& e : entries)
        body += be32(e.first) + be32(e.second);
    return atom("ctts", body);
}

QByteArray sttsVideo() { return atom("stts", be32(0) + be32(1) + be32(30) + be32(1001)); }

} // namespace

class TestMovieHeader : public QObject {
    Q_OBJECT
    QString m_dir;

    QString crafted(const char* name, const QByteArray& moov, qint64 pad = 4096)
    {
        const QString p = m_dir + QLatin1Char('/') + QLatin1String(name);
        writeAll(p, atom("ftyp", QByteArray("isom\0\0\0\0", 8)) + atom("mdat", QByteArray(int(pad), '\x11')) + moov);
        return p;
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("movie_header"));
        clearGlobals();
        g_is3gp = false;
    }
    void cleanup()
    {
        QDir(m_dir).removeRecursively();
        g_is3gp = false;
        FileReader::setDefaultWindow(0);
    }

    void sampleEntries_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("flags");       // of the damaged-file reader
        QTest::addColumn<QString>("refFlags");    // of the sample's reader
        QTest::addColumn<uint32_t>("audioDelta");

        const QString h264 = QLatin1String(kH264), aac = QLatin1String(kAac);
        const QString hvc1 = QStringLiteral("-c:v libx265 -preset ultrafast -x265-params log-level=error -pix_fmt yuv420p -tag:v hvc1");
        const QString hev1 = QStringLiteral("-c:v libx265 -preset ultrafast -x265-params log-level=error -pix_fmt yuv420p -tag:v hev1");
        const QString mjpeg = QStringLiteral("-c:v mjpeg -q:v 5 -pix_fmt yuvj420p");
        const QString prores = QStringLiteral("-c:v prores_ks");
        const QString mpeg4 = QStringLiteral("-c:v mpeg4 -q:v 5");
        const QString s16le = QStringLiteral("-c:a pcm_s16le"), s16be = QStringLiteral("-c:a pcm_s16be");

        for (const bool faststart : {false, true}) {
            const QString at = faststart ? QStringLiteral("start") : QStringLiteral("end");
            auto row = [&](const QString& label, const QString& name, const QString& video, const QString& audio,
                           int rate, const char* flags, const char* refFlags, uint32_t audioDelta) {
                const QString file = QFileInfo(name).completeBaseName() + QLatin1Char('_') + at + QLatin1Char('.')
                                   + QFileInfo(name).suffix();
                QTest::newRow(qPrintable(label + QStringLiteral(", movie at the ") + at))
                    << file << clipArgs(video, audio, rate, faststart) << QString::fromLatin1(flags)
                    << QString::fromLatin1(refFlags) << audioDelta;
            };
            row("H.264/AAC mov", "h264_aac.mov", h264, aac, 48000, "", "", 1024);
            row("H.264/AAC mp4", "h264_aac.mp4", h264, aac, 48000, "", "", 1024);
            row("hvc1/AAC mov", "hvc1_aac.mov", hvc1, aac, 48000, "hevc", "hevc", 1024);
            row("hvc1/AAC mp4", "hvc1_aac.mp4", hvc1, aac, 48000, "hevc", "hevc", 1024);
            row("hev1/AAC mov", "hev1_aac.mov", hev1, aac, 48000, "hevc", "hevc", 1024);
            row("hev1/AAC mp4", "hev1_aac.mp4", hev1, aac, 48000, "hevc", "hevc", 1024);
            // ffmpeg writes lpcm entries only above 65535 Hz.
            row("hvc1/lpcm mov", "hvc1_lpcm.mov", hvc1, s16le, 96000, "lpcm lpcmHevc", "lpcm lpcmHevc", 1);
            row("MJPEG mov", "mjpeg.mov", mjpeg, aac, 48000, "jpeg", "", 1024);
            row("ProRes mov", "prores.mov", prores, aac, 48000, "prores", "prores", 1024);
            row("MPEG-4 3gp", "mpeg4.3gp", mpeg4, aac, 48000, "mpeg4in3gp", "mpeg4in3gp", 1024);
            row("MPEG-4 mov", "mpeg4.mov", mpeg4, aac, 48000, "", "", 1024);
            row("H.264/sowt mov", "h264_sowt.mov", h264, s16le, 48000, "sowt", "sowt", 1);
            row("H.264/twos mov", "h264_twos.mov", h264, s16be, 48000, "twos", "twos", 1);
        }
    }
    void sampleEntries()
    {
        QFETCH(QString, name);
        QFETCH(QStringList, args);
        QFETCH(QString, flags);
        QFETCH(QString, refFlags);
        QFETCH(uint32_t, audioDelta);
        const QString src = make(name, args);
        QVERIFY2(!src.isEmpty(), "ffmpeg could not make the clip");
        const QByteArray bytes = readAll(src);
        const MovieFacts facts = parseMovie(bytes);
        QVERIFY(facts.video.stsd.valid() && facts.sound.stsd.valid());
        uint32_t videoScale = 0, soundScale = 0;
        probeTimeScales(src, videoScale, soundScale);
        QVERIFY(videoScale && soundScale);

        // The damaged-file reader, on a healthy file.
        {
            ThreadVideoRepair t;
            QVERIFY(readDamaged(t, src));
            QVERIFY(g_moovRead);
            QCOMPARE(flagsOf(t), flags);
            QCOMPARE(g_frameWidth, 160u);
            QCOMPARE(g_frameHeight, 120u);
            QCOMPARE(g_videoTimeScale, videoScale);
            QCOMPARE(g_soundTimeScale, soundScale);
            QCOMPARE(g_videoSampleDelta, videoScale / 25);
            QCOMPARE(g_audioSampleDelta, audioDelta);
            QVERIFY(g_hasSoundTrak);
            // x265 writes its settings into hvcC, which makes a stsd of some 2.5 KB:
            // too big to be copied from the damaged file.
            QCOMPARE(qint64(t.m_videoStsdSize), facts.video.stsd.size);
            QCOMPARE(t.m_videoStsd, facts.video.stsd.size < 1000
                                        ? bytes.mid(int(facts.video.stsd.at), int(facts.video.stsd.size))
                                        : QByteArray());
            QCOMPARE(qint64(t.m_audioStsdSize), facts.sound.stsd.size);
            QCOMPARE(t.m_audioStsd, bytes.mid(int(facts.sound.stsd.at), int(facts.sound.stsd.size)));
            if (soundScale < 65536)   // the integer part of the sound description's rate
                QCOMPARE(t.m_audioStsdRate, soundScale);
            // The per-byte count-down of the input size stays within the file.
            QVERIFY(g_inputSize < uint64_t(bytes.size()));
            QVERIFY(g_inputSize > 0);
        }

        // The sample's reader: same facts, its own flags, two plain log lines.
        clearGlobals();
        {
            ThreadVideoRepair t;
            const QString log = m_dir + QStringLiteral("/log.txt");
            QVERIFY(t.m_logHandle.open(log));
            QVERIFY(readReference(t, src));
            QVERIFY(t.m_logHandle.close());
            QVERIFY(g_moovRead);
            QVERIFY(!t.m_refFile);   // closed by the reader
            QCOMPARE(flagsOf(t), refFlags);
            QCOMPARE(g_frameWidth, 160u);
            QCOMPARE(g_frameHeight, 120u);
            QCOMPARE(g_videoTimeScale, videoScale);
            QCOMPARE(g_soundTimeScale, soundScale);
            QCOMPARE(g_videoSampleDelta, videoScale / 25);
            QCOMPARE(g_audioSampleDelta, audioDelta);
            QCOMPARE(t.m_videoStsd, bytes.mid(int(facts.video.stsd.at), int(facts.video.stsd.size)));
            QCOMPARE(t.m_audioStsd, bytes.mid(int(facts.sound.stsd.at), int(facts.sound.stsd.size)));
            QCOMPARE(readAll(log), QByteArray("FrameWidth = 160\r\nFrameHeight = 120\r\n"));
        }
    }

    // B-frames give a ctts; the damaged-file reader takes its first entries.
    // The sample's reader leaves the video track at its stts, before the ctts.
    void cttsFromBFrames()
    {
        const QString src = make(QStringLiteral("h264_bframes.mp4"),
                                 clipArgs(QLatin1String(kH264), QLatin1String(kAac), 48000, false));
        QVERIFY(!src.isEmpty());
        const QByteArray bytes = readAll(src);
        const Box ctts = parseMovie(bytes).video.ctts;
        QVERIFY2(ctts.valid(), "x264 with -bf 2 should give a ctts");
        const qint64 c = ctts.code();
        QVERIFY(word(bytes, c + 8) > 1);

        ThreadVideoRepair t;
        QVERIFY(readDamaged(t, src));
        QVERIFY(t.m_hasCtts);
        QCOMPARE(t.m_cttsEntries, word(bytes, c + 8));
        QCOMPARE(t.m_cttsCount0, word(bytes, c + 12));
        QCOMPARE(t.m_cttsOffset0, word(bytes, c + 16));
        QCOMPARE(t.m_cttsCount1, word(bytes, c + 20));
        QCOMPARE(t.m_cttsOffset1, word(bytes, c + 24));
        // The video track ends at its ctts; the sound track is still read.
        QVERIFY(g_hasSoundTrak);
        QCOMPARE(g_soundTimeScale, 48000u);

        ThreadVideoRepair ref;
        QVERIFY(readReference(ref, src));
        QVERIFY(!ref.m_hasCtts);
    }

    void cttsThirdOffset_data()
    {
        QTest::addColumn<CttsEntries>("entries");
        QTest::addColumn<bool>("hasCtts");
        QTest::addColumn<uint32_t>("offset2");
        using E = CttsEntries;
        QTest::newRow("(1,a) (2,b): b") << E{{1, 1024}, {2, 2048}} << true << 2048u;
        QTest::newRow("(1,a) (1,b) (1,c): c") << E{{1, 1024}, {1, 2560}, {1, 512}} << true << 512u;
        QTest::newRow("(1,a) (3,b): none") << E{{1, 1024}, {3, 2048}, {1, 512}} << true << 0u;
        QTest::newRow("one entry: no ctts") << E{{30, 1001}} << false << 0u;
    }
    void cttsThirdOffset()
    {
        QFETCH(CttsEntries, entries);
        QFETCH(bool, hasCtts);
        QFETCH(uint32_t, offset2);
        const QString p = crafted("ctts.mov", craftedMoov(videoStsd(120) + sttsVideo() + cttsAtom(entries)
                                                          + atom("stsc", QByteArray(8, '\0'))));
        ThreadVideoRepair t;
        QVERIFY(readDamaged(t, p));
        QCOMPARE(t.m_hasCtts, hasCtts);
        QCOMPARE(t.m_cttsEntries, uint32_t(entries.size()));
        QCOMPARE(t.m_cttsOffset2, offset2);
        QCOMPARE(g_videoTimeScale, 30000u);
        QCOMPARE(g_videoSampleDelta, 1001u);
        QCOMPARE(g_frameWidth, 640u);
        QCOMPARE(g_frameHeight, 480u);
        QCOMPARE(g_soundTimeScale, 48000u);
        QCOMPARE(g_audioSampleDelta, 1024u);
        QCOMPARE(g_audioFrameSize, 300u);   // first size 300 isn't 4: the second less 50
    }

    // The damaged file's video stsd is copied below 1000 bytes only; the
    // sample's is always copied.
    void videoStsdOf1000Bytes_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("copied");
        QTest::newRow("999") << 999 << true;
        QTest::newRow("1000") << 1000 << false;
    }
    void videoStsdOf1000Bytes()
    {
        QFETCH(int, size);
        QFETCH(bool, copied);
        const QByteArray stsd = videoStsd(size);
        QCOMPARE(stsd.size(), size);
        const QString p = crafted("stsd.mov", craftedMoov(stsd + sttsVideo() + atom("stsc", QByteArray(8, '\0'))));
        {
            ThreadVideoRepair t;
            QVERIFY(readDamaged(t, p));
            QCOMPARE(t.m_videoStsdSize, uint32_t(size));
            QCOMPARE(t.m_videoStsd, copied ? stsd : QByteArray());
            QCOMPARE(g_frameWidth, 640u);     // the rest of the movie is read all the same
            QCOMPARE(g_soundTimeScale, 48000u);
        }
        {
            ThreadVideoRepair t;
            QVERIFY(readReference(t, p));
            QCOMPARE(t.m_videoStsdSize, uint32_t(size));
            QCOMPARE(t.m_videoStsd, stsd);
        }
    }

    // A stsd whose size word runs past the end of the file is copied only
    // as far as the file goes.
    void stsdSizePastTheEnd()
    {
        QByteArray moov = craftedMoov(videoStsd(120) + sttsVideo() + atom("stsc", QByteArray(8, '\0')));
        const int at = moov.indexOf("stsd") - 4;
        moov.replace(at, 4, be32(900));
        const QString p = crafted("stsd_past.mov", moov.left(at + 60));
        ThreadVideoRepair t;
        QVERIFY(readDamaged(t, p));
        QCOMPARE(t.m_videoStsdSize, 900u);
        QVERIFY(t.m_videoStsd.size() < 900);
        QVERIFY(readAll(p).endsWith(t.m_videoStsd));
    }

    // The scan passes over stretches that hold no code in large steps; a code
    // must be found at any alignment, also next to near-misses ("stsx",
    // "trac") and across the reader's window edges.
    void codesAtEveryAlignment()
    {
        static const char* const tokens[] = {"stsx", "trac", "mdh", "zzzz", "\0\0\0", "apcx", "uvw", "s", "lpc"};
        FileReader::setDefaultWindow(2 * ByteReader::kAlign);
        QRandomGenerator gen(17);
        for (int shift = 0; shift < 40; ++shift) {
            QByteArray filler;
            while (filler.size() < 9000 + shift)
                filler += QByteArray(tokens[gen.bounded(int(std::size(tokens)))]);
            QByteArray moov = craftedMoov(videoStsd(120) + sttsVideo() + cttsAtom({{1, 10}, {1, 20}, {1, 30}})
                                          + atom("stsc", QByteArray(8, '\0')));
            // The filler goes between mvhd and the first track, inside moov.
            const int trak = moov.indexOf("trak") - 4;
            moov.insert(trak, atom("free", filler));
            moov.replace(0, 4, be32(uint32_t(moov.size())));
            const QString p = crafted("align.mov", moov, 4096 + shift);
            ThreadVideoRepair t;
            clearGlobals();
            QVERIFY(readDamaged(t, p));
            QCOMPARE(g_frameWidth, 640u);
            QCOMPARE(g_videoTimeScale, 30000u);
            QCOMPARE(g_videoSampleDelta, 1001u);
            QCOMPARE(t.m_cttsOffset2, 30u);
            QCOMPARE(t.m_videoStsdSize, 120u);
            QCOMPARE(g_soundTimeScale, 48000u);
            QCOMPARE(g_audioFrameSize, 300u);
            ThreadVideoRepair ref;
            clearGlobals();
            QVERIFY(readReference(ref, p));
            QCOMPARE(g_frameWidth, 640u);
            QCOMPARE(g_soundTimeScale, 48000u);
        }
        FileReader::setDefaultWindow(0);
    }

    // A moov whose size word is not below the file size: the reader returns
    // with every field cleared, and g_moovRead stays as it was.
    void moovSizeNotBelowFileSize_data()
    {
        QTest::addColumn<bool>("moovReadBefore");
        QTest::newRow("was clear") << false;
        QTest::newRow("was set") << true;
    }
    void moovSizeNotBelowFileSize()
    {
        QFETCH(bool, moovReadBefore);
        QByteArray moov = craftedMoov(videoStsd(120) + sttsVideo() + atom("stsc", QByteArray(8, '\0')));
        const QString p = crafted("big.mov", moov);
        const qint64 fileSize = QFileInfo(p).size();
        QByteArray bytes = readAll(p);
        bytes.replace(int(findTopLevelAtom(bytes, "moov")), 4, be32(uint32_t(fileSize)));
        writeAll(p, bytes);

        ThreadVideoRepair t;
        t.m_isHevc = t.m_isSowt = t.m_hasCtts = true;
        t.m_videoStsd = "old";
        g_frameWidth = 7;
        g_videoTimeScale = 7;
        g_moovRead = moovReadBefore;
        QVERIFY(readDamaged(t, p));
        QCOMPARE(g_moovRead, moovReadBefore);
        QCOMPARE(flagsOf(t), QString());
        QVERIFY(!t.m_hasCtts);
        QVERIFY(t.m_videoStsd.isEmpty());
        QCOMPARE(g_frameWidth, 0u);
        QCOMPARE(g_videoTimeScale, 0u);

        // The sample's reader returns the same way and leaves the file open.
        ThreadVideoRepair ref;
        g_moovRead = false;
        QVERIFY(readReference(ref, p));
        QVERIFY(!g_moovRead);
        QVERIFY(ref.m_refFile);
        QCOMPARE(g_frameWidth, 0u);
    }

    // m_isJpeg belongs to the damaged file: the sample's reader neither sets
    // nor clears it.
    void sampleReaderLeavesJpegAlone()
    {
        const QString h264 = make(QStringLiteral("h264_aac_end.mov"),
                                  clipArgs(QLatin1String(kH264), QLatin1String(kAac), 48000, false));
        QVERIFY(!h264.isEmpty());
        ThreadVideoRepair t;
        t.m_isJpeg = true;
        QVERIFY(readReference(t, h264));
        QVERIFY(t.m_isJpeg);
        t.m_isJpeg = false;
        QVERIFY(readDamaged(t, h264));
        QVERIFY(!t.m_isJpeg);
    }

    // Sound first, video second: the scan runs on through the video track
    // and still finds both sets of facts. With sowt sound under a .3gp name
    // the sample's reader clears g_is3gp before it meets mp4v.
    void soundTrackFirst()
    {
        const QString made = make(QStringLiteral("mpeg4_sowt_soundfirst.mov"),
                                  clipArgs(QStringLiteral("-c:v mpeg4 -q:v 5"), QStringLiteral("-c:a pcm_s16le"),
                                           48000, false, true));
        QVERIFY(!made.isEmpty());
        const QByteArray bytes = readAll(made);
        const MovieFacts facts = parseMovie(bytes);
        QVERIFY(facts.sound.trak.at < facts.video.trak.at);
        const QString src = m_dir + QStringLiteral("/soundfirst.3gp");
        QVERIFY(QFile::copy(made, src));

        {
            ThreadVideoRepair t;
            QVERIFY(readDamaged(t, src));
            QCOMPARE(flagsOf(t), QStringLiteral("mpeg4in3gp sowt"));
            QCOMPARE(g_frameWidth, 160u);
            QCOMPARE(g_frameHeight, 120u);
            QCOMPARE(g_soundTimeScale, 48000u);
            QVERIFY(g_videoTimeScale > 0);
            QCOMPARE(t.m_videoStsd, bytes.mid(int(facts.video.stsd.at), int(facts.video.stsd.size)));
            QVERIFY(g_is3gp);
        }
        clearGlobals();
        {
            ThreadVideoRepair t;
            QVERIFY(readReference(t, src));
            QCOMPARE(flagsOf(t), QStringLiteral("sowt"));
            QVERIFY(!g_is3gp);
            QCOMPARE(g_frameWidth, 160u);
            QCOMPARE(g_soundTimeScale, 48000u);
        }
    }

    // The damaged file's scan runs to the end of the file, past a moov cut
    // short; it ends and counts down no further than the file.
    void truncatedMovieEnds()
    {
        const QString src = make(QStringLiteral("h264_aac_end.mov"),
                                 clipArgs(QLatin1String(kH264), QLatin1String(kAac), 48000, false));
        QVERIFY(!src.isEmpty());
        QByteArray bytes = readAll(src);
        const qint64 mvhd = bytes.indexOf("mvhd");
        QVERIFY(mvhd > 0);
        for (const qint64 keep : {mvhd + 4, mvhd + 30, mvhd + 400, qint64(bytes.size()) - 300}) {
            const QString p = m_dir + QStringLiteral("/cut.mov");
            writeAll(p, bytes.left(int(keep)));
            ThreadVideoRepair t;
            clearGlobals();
            readDamaged(t, p);
            QVERIFY(g_inputSize <= uint64_t(keep));
            ThreadVideoRepair ref;
            readReference(ref, p);
        }
    }
};

QTEST_GUILESS_MAIN(TestMovieHeader)
#include "test_movie_header.moc"
