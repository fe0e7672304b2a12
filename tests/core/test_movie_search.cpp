// Locating the movie: the top-level walk, the two windows near the end, the
// first MiB, the IMKH mark and bad sizes. Files are sparse, made by code.
#include "core/thread_video_repair.h"
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace testvideo;

namespace {

QByteArray be32(uint32_t v)
{
    QByteArray b(4, '\0');
    b[0] = char(v >> 24); b[1] = char(v >> 16); b[2] = char(v >> 8); b[3] = char(v);
    return b;
}

QByteArray atom(const char* code, const QByteArray& body, int sizeDelta = 0)
{
    return be32(uint32_t(8 + body.size() + sizeDelta)) + QByteArray(code, 4) + body;
}

// A small movie: mvhd and one video track with a tkhd of 320x240.
QByteArray smallMoov()
{
    QByteArray tkhd(80, '\0');   // with mid(4): 76 bytes before the width
    tkhd.append(be32(320 << 16)).append(be32(240 << 16));
    QByteArray mdhd(12, '\0');
    mdhd.append(be32(12800)).append(QByteArray(8, '\0'));
    const QByteArray stbl = atom("stbl", atom("stsd", QByteArray(16, '\0')) + atom("stsc", QByteArray(8, '\0')));
    const QByteArray trak = atom("trak", atom("tkhd", tkhd.mid(4))
                                         + atom("mdia", atom("mdhd", mdhd) + atom("minf", atom("vmhd", QByteArray(12, '\0')) + stbl)));
    return atom("moov", atom("mvhd", QByteArray(100, '\0')) + trak);
}

// A sparse file of size with the given pieces written at their positions.
void sparse(const QString& path, qint64 size, const QList<QPair<qint64, QByteArray>>& pieces)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QVERIFY(f.resize(size));
    for (const auto& p : pieces) {
        QVERIFY(f.seek(p.first));
        QVERIFY(f.write(p.second) == p.second.size());
    }
}

struct Run {
    bool found = false;
    bool imkh = false;
    uint64_t moovPos = 0;
    bool moovRead = false;
    uint32_t width = 0;
    QList<ulong> ranges;
    int progressSignals = 0;
};

Run search(const QString& path, bool reference = false)
{
    ThreadVideoRepair t;
    Run out;
    QObject::connect(&t, &ThreadVideoRepair::SetProgressBarRange, [&](ulong r) { out.ranges << r; });
    QObject::connect(&t, &ThreadVideoRepair::setProgressvalue, [&](ulong) { ++out.progressSignals; });
    g_moovRead = false;
    g_frameWidth = 0;
    if (reference) {
        out.found = t.FindReferenceMovie(path);
        if (t.m_refFile)
            t.m_refFile.reset();
    } else {
        t.m_file = ThreadVideoRepair::OpenReadOnly(path);
        t.m_fileSize = g_inputSize = t.m_file->size();
        out.found = t.FindDamagedMovie(out.imkh);
    }
    out.moovPos = t.m_moovPos;
    out.moovRead = g_moovRead;
    out.width = g_frameWidth;
    return out;
}

} // namespace

class TestMovieSearch : public QObject {
    Q_OBJECT
    QString m_dir;
    QString path(const char* name) { return m_dir + QLatin1Char('/') + QLatin1String(name); }

private Q_SLOTS:
    void init()
    {
        m_dir = freshDir(QStringLiteral("movie_search"));
        g_stopRequested = false;
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void walkFindsMovieAtTheEnd()
    {
        const QByteArray head = atom("ftyp", QByteArray(12, 'x'));
        const qint64 mdatSize = 64 << 20;
        QByteArray mdatHead = be32(uint32_t(mdatSize)) + QByteArray("mdat");
        const QString p = path("end.mov");
        sparse(p, head.size() + mdatSize, {{0, head}, {head.size(), mdatHead}});
        QFile f(p);
        QVERIFY(f.open(QIODevice::Append));
        f.write(smallMoov());
        f.close();
        const Run r = search(p);
        QVERIFY(r.found);
        QVERIFY(r.moovRead);
        QCOMPARE(r.width, 320u);
        QCOMPARE(r.moovPos, uint64_t(head.size() + mdatSize + 4));
        QCOMPARE(r.ranges, QList<ulong>());            // the walk sends no range of its own
    }

    void windowsAndFirstMiB_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::addColumn<qint64>("moovAt");
        QTest::addColumn<ulong>("range");
        QTest::newRow("last 4 MiB behind broken mdat") << qint64(64 << 20) << qint64((64 << 20) - (3 << 20)) << ulong(50000);
        QTest::newRow("between 4 and 10 MiB from the end") << qint64(64 << 20) << qint64((64 << 20) - (8 << 20)) << ulong(50000);
        QTest::newRow("first MiB behind damage") << qint64(64 << 20) << qint64(0x80000) << ulong(50000);
        QTest::newRow("2 MiB file") << qint64(2 << 20) << qint64(1 << 20) << ulong(5000);
        QTest::newRow("3.5 MiB file, window wraps to 0") << qint64(0x380000) << qint64(0x200000) << ulong(50000);
    }
    void windowsAndFirstMiB()
    {
        QFETCH(qint64, size);
        QFETCH(qint64, moovAt);
        QFETCH(ulong, range);
        // A broken mdat size at the head makes the walk jump past the end.
        const QByteArray head = atom("ftyp", QByteArray(12, 'x')) + be32(0x7fffffff) + QByteArray("mdat");
        const QString p = path("win.mov");
        sparse(p, size, {{0, head}, {moovAt, smallMoov()}});
        const Run r = search(p);
        QVERIFY(r.found);
        QVERIFY(r.moovRead);
        QCOMPARE(r.moovPos, uint64_t(moovAt + 4));
        QCOMPARE(r.ranges, QList<ulong>({range}));
    }

    void nothingFoundIn4GiBSparse()
    {
        const QString p = path("empty.mp4");
        sparse(p, 4ll << 30, {{0, atom("ftyp", QByteArray(12, 'x'))}});
        QElapsedTimer timer;
        timer.start();
        const Run r = search(p);
        QVERIFY(!r.found);
        QVERIFY(!r.moovRead);
        QCOMPARE(r.progressSignals, 50000);   // steps 0..49999 of the first window
        QVERIFY2(timer.elapsed() < 10000, "search of a 4 GiB file took too long");
    }

    void imkhMark()
    {
        const QString p = path("cam.mp4");
        sparse(p, 4096, {{0, QByteArray("IMKH0123")}});
        const Run r = search(p);
        QVERIFY(r.found);
        QVERIFY(r.imkh);
    }

    void badInputEnds_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("8 bytes") << QByteArray("\0\0\0\x08" "ftyp", 8);
        QTest::newRow("zero size") << QByteArray("\0\0\0\0" "free", 8) + QByteArray(100, '\0');
        QTest::newRow("64-bit size that wraps") << QByteArray("\0\0\0\x01" "mdat\xff\xff\xff\xff\xff\xff\xff\xf0", 16);
        QTest::newRow("truncated moov") << QByteArray("\0\0\x10\0" "moov\0\0\0\x6c" "mv", 14);
        QTest::newRow("moov inside mdat") << atom("mdat", smallMoov().left(60)) + QByteArray(50, '\0');
    }
    void badInputEnds()
    {
        QFETCH(QByteArray, bytes);
        const QString p = path("bad.mov");
        writeAll(p, bytes);
        const QString before = sha256(p);
        search(p);          // ends, with or without a movie
        QCOMPARE(sha256(p), before);
    }

    void referenceOf3GiB()
    {
        const qint64 size = 3ll << 30;
        const QString p = path("ref.mov");
        const QByteArray head = atom("ftyp", QByteArray(12, 'x')) + be32(16) + QByteArray("mdat");
        sparse(p, size, {{0, head}, {size - (5 << 20), smallMoov()}});
        const Run r = search(p, true);
        QVERIFY(r.found);
        QVERIFY(r.moovRead);
        QCOMPARE(r.moovPos, uint64_t(size - (5 << 20) + 4));
        QCOMPARE(g_referenceFullPath, QFileInfo(p).absoluteFilePath());
    }

    void referenceMissing()
    {
        QVERIFY(!search(path("nothing.mov"), true).found);
    }
};

QTEST_GUILESS_MAIN(TestMovieSearch)
#include "test_movie_search.moc"
