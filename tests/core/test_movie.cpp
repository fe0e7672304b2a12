// Finding and reading the movie: sparse files made by code, ffmpeg clips of
// every sample-entry kind, and crafted movies.
#include "core/quicktime_route.h"
#include "support/route_job.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QtTest>

#include <iterator>

using namespace testvideo;

namespace {

// One track of a clip, found by atom sizes and told by its handler: the
// position of its trak and ctts (-1: none), its stsd, its mdhd time scale.
struct Track {
    qint64 trak = -1, ctts = -1;
    QByteArray stsd;
    uint32_t timeScale = 0;
};
Track track(const QByteArray& f, const char* handler)
{
    const qint64 moov = findTopLevelAtom(f, "moov");
    for (qint64 at = moov + 8; moov >= 0 && readBe(f, at) >= 8 && at < moov + readBe(f, moov); at += readBe(f, at)) {
        const qint64 end = at + readBe(f, at);
        const auto in = [&](const char* code) {
            const qint64 c = f.indexOf(code, at);
            return c > at && c < end ? c - 4 : -1;
        };
        if (f.mid(at + 4, 4) != "trak" || f.mid(in("hdlr") + 16, 4) != handler)
            continue;
        const qint64 stsd = in("stsd"), mdhd = in("mdhd");
        return {at, in("ctts"), f.mid(stsd, int(readBe(f, stsd))), readBe(f, mdhd + (f[int(mdhd) + 8] == 1 ? 28 : 20))};
    }
    return {};
}

// The route object of one file, with the reader and the log it borrows.
struct MovieRoute : QuickTimeRoute {
    MovieRoute() { m_log = &logFile; }
    std::unique_ptr<ByteReader> own;
    FileWriter logFile;
};

QString flagsOf(const QuickTimeRoute& t)
{
    QStringList f;
    const QList<QPair<bool, const char*>> all = {
        {t.m_movie.isJpeg, "jpeg"}, {t.m_movie.isProRes, "prores"}, {t.m_movie.isHevc, "hevc"}, {t.m_movie.isMpeg4In3gp, "mpeg4in3gp"},
        {t.m_movie.isTwos, "twos"}, {t.m_movie.isSowt, "sowt"}, {t.m_movie.isLpcm, "lpcm"}, {t.m_movie.isLpcmHevc, "lpcmHevc"}};
    for (const auto& flag : all)
        if (flag.first)
            f << QLatin1String(flag.second);
    return f.join(QLatin1Char(' '));
}

void clearGlobals()
{
    g_stopRequested = g_moovRead = false;
}

// The driver's part for the damaged file: open it, take its size, search.
// True when a movie was found and it isn't a camera file.
bool readDamaged(MovieRoute& t, const QString& path, bool* imkh = nullptr)
{
    t.own = QuickTimeRoute::OpenReadOnly(path);
    t.m_file = t.own.get();
    if (!t.m_file)
        return false;
    t.m_fileSize = t.m_inputSize = t.m_file->size();
    t.m_carried->is3gp = path.endsWith(QLatin1String(".3gp"));
    bool mark = false;
    const bool found = t.FindDamagedMovie(mark);
    if (imkh)
        *imkh = mark;
    return found && !mark;
}

bool readReference(MovieRoute& t, const QString& path)
{
    t.m_carried->is3gp = path.endsWith(QLatin1String(".3gp"));
    return t.FindReferenceMovie(path);
}

const char* kH264 = "-c:v libx264 -preset veryfast -bf 2 -pix_fmt yuv420p";
const char* kAac = "-c:a aac -b:a 64k";

QStringList clipArgs(const QString& video, const QString& audio, int sampleRate = 48000, bool faststart = false,
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

// A video stsd with one avc1 entry, padded to make the atom totalSize bytes.
QByteArray videoStsd(int totalSize)
{
    return qtAtom("stsd", beWords({0, 1, uint32_t(totalSize - 16)}) + "avc1" + QByteArray(totalSize - 24, '\0'));
}

using CttsEntries = QList<QPair<uint32_t, uint32_t>>;
QByteArray cttsAtom(const CttsEntries& entries)
{
    QByteArray body = beWords({0, uint32_t(entries.size())});
    for (const auto& e : entries)
        body += beWords({e.first, e.second});
    return qtAtom("ctts", body);
}

// A movie made by code: a 640x480 video track (time scale 30000, delta 1001)
// and an AAC-like sound track (48000, 1024, sizes 300 350 320).
QByteArray craftedMoov(int stsdSize = 120, const QByteArray& ctts = QByteArray())
{
    QByteArray tkhd(76, '\0');
    tkhd += beWords({640 << 16, 480 << 16});
    const auto mdhd = [](uint32_t scale) { return qtAtom("mdhd", QByteArray(12, '\0') + beWords({scale}) + QByteArray(8, '\0')); };
    const QByteArray videoStbl = videoStsd(stsdSize) + qtAtom("stts", beWords({0, 1, 30, 1001})) + ctts
                               + qtAtom("stsc", QByteArray(8, '\0'));
    const QByteArray soundStbl = qtAtom("stsd", beWords({0, 1}) + qtAtom("mp4a", QByteArray(28, '\0')))
                               + qtAtom("stts", beWords({0, 1, 10, 1024})) + qtAtom("stsc", QByteArray(8, '\0'))
                               + qtAtom("stsz", beWords({0, 0, 3, 300, 350, 320}));
    const QByteArray video = qtAtom("trak", qtAtom("tkhd", tkhd) + qtAtom("mdia", mdhd(30000)
        + qtAtom("minf", qtAtom("vmhd", QByteArray(12, '\0')) + qtAtom("stbl", videoStbl))));
    const QByteArray sound = qtAtom("trak", qtAtom("tkhd", QByteArray(84, '\0')) + qtAtom("mdia", mdhd(48000)
        + qtAtom("minf", qtAtom("smhd", QByteArray(8, '\0')) + qtAtom("stbl", soundStbl))));
    return qtAtom("moov", qtAtom("mvhd", QByteArray(100, '\0')) + video + sound);
}

// A sparse file of size with the given pieces written at their positions.
void sparse(const QString& path, qint64 size, const QList<QPair<qint64, QByteArray>>& pieces)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QVERIFY(f.resize(size));
    for (const auto& p : pieces)
        QVERIFY(f.seek(p.first) && f.write(p.second) == p.second.size());
}

const QByteArray kFtyp = qtAtom("ftyp", QByteArray(12, 'x'));

} // namespace

class TestMovie : public QObject {
    Q_OBJECT
    QString m_dir;

    QString crafted(const QByteArray& moov, qint64 pad = 4096)
    {
        const QString p = m_dir + QStringLiteral("/crafted.mov");
        writeAll(p, qtAtom("ftyp", QByteArray("isom\0\0\0\0", 8)) + qtAtom("mdat", QByteArray(int(pad), '\x11')) + moov);
        return p;
    }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("movie"));
        clearGlobals();
    }
    void cleanup()
    {
        QDir(m_dir).removeRecursively();
        FileReader::setDefaultWindow(0);
    }

    // ---- The search ----

    void search_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::addColumn<uint32_t>("mdatSize");   // the size word of the mdat behind ftyp
        QTest::addColumn<qint64>("moovAt");
        QTest::addColumn<bool>("reference");
        QTest::addColumn<QList<ulong>>("ranges");
        const qint64 mib = 1 << 20, walkEnd = 64 * mib + kFtyp.size();
        QTest::newRow("walk: at the end behind a whole mdat") << walkEnd + craftedMoov().size() << uint32_t(64 * mib)
                                                              << walkEnd << false << QList<ulong>();
        // A broken mdat size makes the walk jump past the end; the windows search.
        const auto row = [&](const char* name, qint64 size, qint64 moovAt, ulong range) {
            QTest::newRow(name) << size << 0x7fffffffu << moovAt << false << QList<ulong>({range});
        };
        row("last 4 MiB behind broken mdat", 64 * mib, 61 * mib, 50000);
        row("between 4 and 10 MiB from the end", 64 * mib, 56 * mib, 50000);
        row("first MiB behind damage", 64 * mib, 0x80000, 50000);
        row("2 MiB file", 2 * mib, mib, 5000);
        row("3.5 MiB file, window wraps to 0", 0x380000, 0x200000, 50000);
        // The sample's search announces its range before the walk, and again for the windows.
        QTest::newRow("3 GiB reference, 5 MiB from its end") << (3ll << 30) << 16u << (3ll << 30) - 5 * mib << true
                                                             << QList<ulong>({50000, 50000});
    }
    void search()
    {
        QFETCH(qint64, size);
        QFETCH(uint32_t, mdatSize);
        QFETCH(qint64, moovAt);
        QFETCH(bool, reference);
        QFETCH(QList<ulong>, ranges);
        const QString p = m_dir + QStringLiteral("/sparse.mov");
        sparse(p, size, {{0, kFtyp + beWords({mdatSize}) + "mdat"}, {moovAt, craftedMoov()}});
        MovieRoute t;
        ProgressRecorder progress;
        t.m_report = &progress;
        QVERIFY(reference ? readReference(t, p) : readDamaged(t, p));
        QVERIFY(g_moovRead);
        QCOMPARE(t.m_movie.frameWidth, 640u);
        QCOMPARE(t.m_moovPos, uint64_t(moovAt + 4));
        QCOMPARE(progress.ranges, ranges);
        if (reference)
            QCOMPARE(t.m_referencePath, QFileInfo(p).absoluteFilePath());
    }

    void nothingFoundIn4GiBSparse()
    {
        const QString p = m_dir + QStringLiteral("/empty.mp4");
        sparse(p, 4ll << 30, {{0, kFtyp}});
        MovieRoute t;
        ProgressRecorder progress;
        t.m_report = &progress;
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!readDamaged(t, p));
        QVERIFY(!g_moovRead);
        QCOMPARE(progress.values, 50000);   // steps 0..49999 of the first window
        QVERIFY2(timer.elapsed() < 10000, "search of a 4 GiB file took too long");
        MovieRoute missing;
        QVERIFY(!readReference(missing, m_dir + QStringLiteral("/nothing.mov")));
    }

    void imkhMark()
    {
        const QString p = m_dir + QStringLiteral("/cam.mp4");
        sparse(p, 4096, {{0, QByteArray("IMKH0123")}});
        MovieRoute t;
        bool imkh = false;
        readDamaged(t, p, &imkh);
        QVERIFY(imkh);
    }

    // ---- The readers ----

    void sampleEntries_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("flags");      // of the damaged-file reader
        QTest::addColumn<QString>("refFlags");   // of the sample's reader
        QTest::addColumn<uint32_t>("audioDelta");
        const QString h264 = QLatin1String(kH264), aac = QLatin1String(kAac);
        const QString x265 = QStringLiteral("-c:v libx265 -preset ultrafast -x265-params log-level=error -pix_fmt yuv420p -tag:v ");
        const QString mjpeg = QStringLiteral("-c:v mjpeg -q:v 5 -pix_fmt yuvj420p"), mpeg4 = QStringLiteral("-c:v mpeg4 -q:v 5");
        const QString s16le = QStringLiteral("-c:a pcm_s16le"), s16be = QStringLiteral("-c:a pcm_s16be");
        for (const bool faststart : {false, true}) {
            const QString at = faststart ? QStringLiteral("start") : QStringLiteral("end");
            // The clip's name is the row's file name with "_end" or "_start" added.
            auto row = [&](const QString& name, const QString& video, const QString& audio, int rate,
                           const char* flags, const char* refFlags, uint32_t audioDelta) {
                const QFileInfo n(name);
                QTest::newRow(qPrintable(name + QStringLiteral(", movie at the ") + at))
                    << n.completeBaseName() + QLatin1Char('_') + at + QLatin1Char('.') + n.suffix()
                    << clipArgs(video, audio, rate, faststart) << QString::fromLatin1(flags)
                    << QString::fromLatin1(refFlags) << audioDelta;
            };
            row("h264_aac.mov", h264, aac, 48000, "", "", 1024);
            row("hvc1_aac.mov", x265 + "hvc1", aac, 48000, "hevc", "hevc", 1024);
            row("hev1_aac.mp4", x265 + "hev1", aac, 48000, "hevc", "hevc", 1024);
            // ffmpeg writes lpcm entries only above 65535 Hz.
            row("hvc1_lpcm.mov", x265 + "hvc1", s16le, 96000, "lpcm lpcmHevc", "lpcm lpcmHevc", 1);
            row("mjpeg.mov", mjpeg, aac, 48000, "jpeg", "", 1024);
            row("prores.mov", QStringLiteral("-c:v prores_ks"), aac, 48000, "prores", "prores", 1024);
            row("mpeg4.3gp", mpeg4, aac, 48000, "mpeg4in3gp", "mpeg4in3gp", 1024);
            row("mpeg4.mov", mpeg4, aac, 48000, "", "", 1024);
            row("h264_sowt.mov", h264, s16le, 48000, "sowt", "sowt", 1);
            row("h264_twos.mov", h264, s16be, 48000, "twos", "twos", 1);
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
        const Track video = track(bytes, "vide"), sound = track(bytes, "soun");
        QVERIFY(!video.stsd.isEmpty() && !sound.stsd.isEmpty() && video.timeScale && sound.timeScale);

        const qint64 ctts = video.ctts;
        if (name.startsWith(QLatin1String("h264")))
            QVERIFY2(ctts > 0 && readBe(bytes, ctts + 12) > 1, "x264 with -bf 2 should give a ctts");
        // m_movie.isJpeg belongs to the damaged file: the sample's reader neither sets
        // nor clears it. Each reader starts with it the other way round.
        const bool jpegBefore = !flags.contains(QLatin1String("jpeg"));

        for (const bool reference : {false, true}) {
            clearGlobals();
            MovieRoute t;
            t.m_movie.isJpeg = jpegBefore;
            const QString log = m_dir + QStringLiteral("/log.txt");
            if (reference) {
                QVERIFY(t.logFile.open(log));
                QVERIFY(readReference(t, src));
                QVERIFY(t.logFile.close());
                QVERIFY(t.m_refFile);   // open for the passes behind the reader
                QCOMPARE(readAll(log), QByteArray("FrameWidth = 160\r\nFrameHeight = 120\r\n"));
                QVERIFY(!t.m_movie.hasCtts);   // the video track ends before its ctts
            } else {
                QVERIFY(readDamaged(t, src));
                // The first entries of a ctts with more than one.
                QCOMPARE(t.m_movie.hasCtts, ctts > 0 && readBe(bytes, ctts + 12) > 1);
                if (t.m_movie.hasCtts)
                    QCOMPARE(beWords({t.m_movie.cttsEntries, t.m_movie.cttsCount0, t.m_movie.cttsOffset0, t.m_movie.cttsCount1, t.m_movie.cttsOffset1}),
                             bytes.mid(int(ctts) + 12, 20));
                QVERIFY(t.m_movie.hasSoundTrak);
                QCOMPARE(qint64(t.m_movie.audioStsdSize), qint64(sound.stsd.size()));
                if (sound.timeScale < 65536)   // the integer part of the sound description's rate
                    QCOMPARE(t.m_movie.audioStsdRate, sound.timeScale);
                // The per-byte count-down of the input size stays within the file.
                QVERIFY(t.m_inputSize > 0 && t.m_inputSize < uint64_t(bytes.size()));
            }
            QVERIFY(g_moovRead);
            QCOMPARE(flagsOf(t), reference ? (QString::fromLatin1(jpegBefore ? "jpeg " : "") + refFlags).trimmed() : flags);
            QCOMPARE((QList<quint64>{t.m_movie.frameWidth, t.m_movie.frameHeight, t.m_movie.videoTimeScale, t.m_movie.soundTimeScale, t.m_movie.videoSampleDelta,
                                     t.m_movie.audioSampleDelta}),
                     (QList<quint64>{160, 120, video.timeScale, sound.timeScale, video.timeScale / 25, audioDelta}));
            QCOMPARE(qint64(t.m_movie.videoStsdSize), qint64(video.stsd.size()));
            // x265 writes its settings into hvcC: a stsd of some 2.5 KB, too big
            // to be copied from the damaged file. The sample's is always copied.
            QCOMPARE(t.m_movie.videoStsd, reference || video.stsd.size() < 1000 ? video.stsd : QByteArray());
            QCOMPARE(t.m_movie.audioStsd, sound.stsd);
        }
    }

    // The third offset is taken only when the first two entries hold one sample each.
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
        MovieRoute t;
        QVERIFY(readDamaged(t, crafted(craftedMoov(120, cttsAtom(entries)))));
        QCOMPARE(t.m_movie.hasCtts, hasCtts);
        QCOMPARE(t.m_movie.cttsEntries, uint32_t(entries.size()));
        QCOMPARE(t.m_movie.cttsOffset2, offset2);
        QCOMPARE(t.m_movie.videoSampleDelta, 1001u);
        QCOMPARE(t.m_movie.audioFrameSize, 300u);   // the first size 300 isn't 4: the second less 50
    }

    // The damaged file's video stsd is copied below 1000 bytes only; the
    // sample's always. One whose size runs past the end is copied as far as the file goes.
    void videoStsdSizes()
    {
        for (const int size : {999, 1000}) {
            const QString p = crafted(craftedMoov(size));
            MovieRoute t, ref;
            QVERIFY(readDamaged(t, p));
            QCOMPARE(t.m_movie.videoStsdSize, uint32_t(size));
            QCOMPARE(t.m_movie.videoStsd, size < 1000 ? videoStsd(size) : QByteArray());
            QCOMPARE(t.m_movie.soundTimeScale, 48000u);   // the rest of the movie is read all the same
            QVERIFY(readReference(ref, p));
            QCOMPARE(ref.m_movie.videoStsd, videoStsd(size));
        }
        QByteArray moov = craftedMoov();
        const int at = moov.indexOf("stsd") - 4;
        moov.replace(at, 4, beWords({900}));
        const QString p = crafted(moov.left(at + 60));
        MovieRoute t;
        QVERIFY(readDamaged(t, p));
        QCOMPARE(t.m_movie.videoStsdSize, 900u);
        QVERIFY(t.m_movie.videoStsd.size() < 900 && readAll(p).endsWith(t.m_movie.videoStsd));
    }

    // Codes are found at any alignment, beside near-misses and across the
    // reader's window edges.
    void codesAtEveryAlignment()
    {
        static const char* const tokens[] = {"stsx", "trac", "mdh", "zzzz", "\0\0\0", "apcx", "uvw", "s", "lpc"};
        FileReader::setDefaultWindow(2 * ByteReader::kAlign);
        QRandomGenerator gen(17);
        for (int shift = 0; shift < 40; ++shift) {
            QByteArray filler;
            while (filler.size() < 9000 + shift)
                filler += QByteArray(tokens[gen.bounded(int(std::size(tokens)))]);
            QByteArray moov = craftedMoov(120, cttsAtom({{1, 10}, {1, 20}, {1, 30}}));
            moov.insert(moov.indexOf("trak") - 4, qtAtom("free", filler));   // between mvhd and the first track
            moov.replace(0, 4, beWords({uint32_t(moov.size())}));
            const QString p = crafted(moov, 4096 + shift);
            MovieRoute t, ref;
            clearGlobals();
            QVERIFY(readDamaged(t, p));
            QCOMPARE(t.m_movie.frameWidth, 640u);
            QCOMPARE(t.m_movie.cttsOffset2, 30u);
            QCOMPARE(t.m_movie.audioFrameSize, 300u);
            clearGlobals();
            QVERIFY(readReference(ref, p));
            QCOMPARE(ref.m_movie.frameWidth, 640u);
            QCOMPARE(ref.m_movie.soundTimeScale, 48000u);
        }
    }

    // A moov whose size is not below the file size: the reader returns with
    // every field cleared and g_moovRead as it was; the sample's reader leaves the file open.
    void moovSizeNotBelowFileSize()
    {
        const QString p = crafted(craftedMoov());
        QByteArray bytes = readAll(p);
        bytes.replace(int(findTopLevelAtom(bytes, "moov")), 4, beWords({uint32_t(bytes.size())}));
        writeAll(p, bytes);
        for (const bool moovReadBefore : {false, true}) {
            MovieRoute t;
            t.m_movie.isHevc = t.m_movie.isSowt = t.m_movie.hasCtts = true;
            t.m_movie.videoStsd = "old";
            t.m_movie.frameWidth = t.m_movie.videoTimeScale = 7;
            g_moovRead = moovReadBefore;
            QVERIFY(readDamaged(t, p));
            QCOMPARE(g_moovRead.load(), moovReadBefore);
            QCOMPARE(flagsOf(t), QString());
            QVERIFY(!t.m_movie.hasCtts && t.m_movie.videoStsd.isEmpty());
            QCOMPARE(t.m_movie.frameWidth + t.m_movie.videoTimeScale, 0u);
        }
        MovieRoute ref;
        g_moovRead = false;
        QVERIFY(readReference(ref, p));
        QVERIFY(!g_moovRead);
        QVERIFY(ref.m_refFile);
        QCOMPARE(ref.m_movie.frameWidth, 0u);
    }

    // Sound first, video second: both are found; with sowt sound under a .3gp
    // name the sample's reader clears the run's 3GPP mark before it meets mp4v.
    void soundTrackFirst()
    {
        const QString made = make(QStringLiteral("mpeg4_sowt_soundfirst.mov"),
                                  clipArgs(QStringLiteral("-c:v mpeg4 -q:v 5"), QStringLiteral("-c:a pcm_s16le"), 48000, false, true));
        QVERIFY(!made.isEmpty());
        const QByteArray bytes = readAll(made);
        QVERIFY(track(bytes, "soun").trak < track(bytes, "vide").trak);
        const QString src = m_dir + QStringLiteral("/soundfirst.3gp");
        QVERIFY(QFile::copy(made, src));
        MovieRoute t, ref;
        QVERIFY(readDamaged(t, src));
        QCOMPARE(flagsOf(t), QStringLiteral("mpeg4in3gp sowt"));
        QCOMPARE(t.m_movie.soundTimeScale, 48000u);
        QCOMPARE(t.m_movie.videoStsd, track(bytes, "vide").stsd);
        QVERIFY(t.m_carried->is3gp);
        clearGlobals();
        QVERIFY(readReference(ref, src));
        QCOMPARE(flagsOf(ref), QStringLiteral("sowt"));
        QVERIFY(!ref.m_carried->is3gp);
        QCOMPARE(ref.m_movie.frameWidth, 160u);
    }

    // A moov inside mdat and movies cut short (other hostile sizes are the
    // fuzz targets'): both readers end, count down no further than the file,
    // and leave it unchanged.
    void badInputEnds_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("moov inside mdat") << qtAtom("mdat", craftedMoov().left(60)) + QByteArray(50, '\0');
        const QByteArray clip = readAll(make(QStringLiteral("h264_aac_end.mov"), clipArgs(QLatin1String(kH264), QLatin1String(kAac))));
        const int mvhd = clip.indexOf("mvhd");
        QTest::newRow("clip cut in mvhd") << clip.left(mvhd + 30);
        QTest::newRow("clip cut in the first track") << clip.left(mvhd + 400);
        QTest::newRow("clip cut 300 bytes short") << clip.left(clip.size() - 300);
    }
    void badInputEnds()
    {
        QFETCH(QByteArray, bytes);
        const QString p = m_dir + QStringLiteral("/bad.mov");
        writeAll(p, bytes);
        MovieRoute t, ref;
        readDamaged(t, p);
        QVERIFY(t.m_inputSize <= uint64_t(bytes.size()));
        readReference(ref, p);
        QCOMPARE(readAll(p), bytes);
    }
};

QTEST_GUILESS_MAIN(TestMovie)
#include "test_movie.moc"
