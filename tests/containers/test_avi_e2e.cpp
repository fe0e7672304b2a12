// AVI and DivX repair end to end, through reelwright-batch on ffmpeg-made
// clips (MPEG-4 video tagged XVID, with MP3, PCM or no sound): whole, with
// the index cut off, with holes in the media, and with the header zeroed and
// a sample given. The output must open and decode; the input stays as it was.
#include "support/test_videos.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QRandomGenerator>
#include <QtEndian>
#include <QtTest>

using namespace testvideo;

namespace {

constexpr int kHole = 32 * 1024;

quint32 le32(const QByteArray& b, qint64 pos) { return qFromLittleEndian<quint32>(b.constData() + pos); }

QStringList mpeg4Args(int seconds, const QString& sound)
{
    QStringList args = lavfiVideo(seconds);
    if (!sound.isEmpty())
        args += lavfiAudio(seconds);
    // Noise keeps frames large, so that a 32 KiB hole touches only a few.
    args << QStringLiteral("-vf") << QStringLiteral("noise=alls=20:allf=t") << QStringLiteral("-c:v")
         << QStringLiteral("mpeg4") << QStringLiteral("-vtag") << QStringLiteral("XVID") << QStringLiteral("-q:v")
         << QStringLiteral("3");
    if (sound.isEmpty())
        args << QStringLiteral("-an");
    else
        args << QStringLiteral("-c:a") << sound;
    return args;
}

// Decoded frames of the first audio stream, or -1 when there is none.
int decodedAudioFrames(const QString& path)
{
    QByteArray out;
    const int rc = run(QStringLiteral("ffprobe"),
                       {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-count_frames"),
                        QStringLiteral("-select_streams"), QStringLiteral("a:0"), QStringLiteral("-show_entries"),
                        QStringLiteral("stream=nb_read_frames"), QStringLiteral("-of"), QStringLiteral("csv=p=0"), path},
                       &out);
    bool ok = false;
    const int n = out.trimmed().toInt(&ok);
    return rc == 0 && ok ? n : -1;
}

struct MediaChunk {
    qint64 pos;
    quint32 size;
    bool video;
};

// The chunks of an intact file's movi list, and where its idx1 stands.
QList<MediaChunk> moviChunks(const QByteArray& f, qint64* moviStart, qint64* idx1Pos)
{
    QList<MediaChunk> chunks;
    qint64 pos = 12;
    while (pos + 12 <= f.size()) {
        const quint32 size = le32(f, pos + 4);
        if (f.mid(int(pos), 4) == "LIST" && f.mid(int(pos) + 8, 4) == "movi") {
            *moviStart = pos + 12;
            for (qint64 c = pos + 12; c + 8 <= pos + 8 + size;) {
                const quint32 n = le32(f, c + 4);
                chunks << MediaChunk{c, n, f.mid(int(c) + 2, 2) == "dc"};
                c += 8 + n + (n & 1);
            }
        } else if (f.mid(int(pos), 4) == "idx1") {
            *idx1Pos = pos;
        }
        pos += 8 + size + (size & 1);
    }
    return chunks;
}

} // namespace

class TestAviE2e : public QObject {
    Q_OBJECT
    QString m_dir;

    struct Source {
        QString clip, sample;
        bool sound;
    };
    QHash<QString, Source> m_sources;

    QString repairedPath(const QString& input) const
    {
        return QFileInfo(input).absolutePath() + QStringLiteral("/Repaired/") + QFileInfo(input).fileName();
    }

private Q_SLOTS:
    void initTestCase()
    {
        const QString mp3 = QStringLiteral("libmp3lame"), pcm = QStringLiteral("pcm_s16le");
        m_sources[QStringLiteral("mp3")] = {make(QStringLiteral("xvid_mp3.avi"), mpeg4Args(8, mp3)),
                                            make(QStringLiteral("xvid_mp3_sample.avi"), mpeg4Args(2, mp3)), true};
        m_sources[QStringLiteral("pcm")] = {make(QStringLiteral("xvid_pcm.avi"), mpeg4Args(8, pcm)),
                                            make(QStringLiteral("xvid_pcm_sample.avi"), mpeg4Args(2, pcm)), true};
        m_sources[QStringLiteral("video")] = {make(QStringLiteral("xvid_only.avi"), mpeg4Args(8, QString())),
                                              make(QStringLiteral("xvid_only_sample.avi"), mpeg4Args(2, QString())), false};
        for (const Source& s : qAsConst(m_sources))
            QVERIFY2(!s.clip.isEmpty() && !s.sample.isEmpty(), "ffmpeg could not make the AVI clips");
    }
    void init()
    {
        m_dir = freshDir(QStringLiteral("avi-e2e"));
    }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void repairs_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QString>("damage");
        const QStringList damages{QStringLiteral("whole"), QStringLiteral("idx1 cut"), QStringLiteral("holes"),
                                  QStringLiteral("header zeroed")};
        const QList<QPair<QString, QString>> inputs{{QStringLiteral("mp3"), QStringLiteral("avi")},
                                                   {QStringLiteral("pcm"), QStringLiteral("avi")},
                                                   {QStringLiteral("video"), QStringLiteral("avi")},
                                                   {QStringLiteral("mp3"), QStringLiteral("divx")}};
        for (const auto& in : inputs)
            for (const QString& d : damages)
                QTest::newRow(qPrintable(in.first + QLatin1Char(' ') + in.second + QLatin1Char(' ') + d))
                    << in.first << in.second << d;
    }
    void repairs()
    {
        QFETCH(QString, source);
        QFETCH(QString, suffix);
        QFETCH(QString, damage);
        const Source src = m_sources.value(source);
        QByteArray bytes = readAll(src.clip);
        qint64 moviStart = -1, idx1Pos = -1;
        const QList<MediaChunk> chunks = moviChunks(bytes, &moviStart, &idx1Pos);
        QVERIFY(moviStart > 0 && idx1Pos > moviStart && !chunks.isEmpty());

        // Frames and sound packets whose chunk a hole touches may be lost.
        int touchedVideo = 0, touchedAudio = 0;
        QStringList args;
        if (damage == QLatin1String("idx1 cut")) {
            cutFrom(bytes, idx1Pos);
        } else if (damage == QLatin1String("holes")) {
            const qint64 span = idx1Pos - moviStart;
            for (int k = 1; k <= 3; ++k) {
                const qint64 at = moviStart + span * k / 4;
                zeroRange(bytes, at, kHole);
                for (const MediaChunk& c : chunks)
                    if (c.pos < at + kHole && c.pos + 8 + c.size > at)
                        ++(c.video ? touchedVideo : touchedAudio);
            }
        } else if (damage == QLatin1String("header zeroed")) {
            zeroRange(bytes, 0, 4096);
            args << QStringLiteral("--reference") << src.sample;
        }
        const QString input = m_dir + QStringLiteral("/clip.") + suffix;
        QVERIFY(writeAll(input, bytes));
        const QString before = sha256(input);

        const BatchResult r = runBatch(args << QStringLiteral("--quiet") << input);
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(r.verdicts().size(), 1);
        QCOMPARE(r.verdicts()[0].value(QStringLiteral("signal")).toString(), QStringLiteral("WriteAVIFileStatus"));
        QVERIFY(r.verdicts()[0].value(QStringLiteral("repaired")).toBool());
        const QString out = repairedPath(input);
        QCOMPARE(r.end().value(QStringLiteral("outputs")).toArray().first().toString(), out);
        QCOMPARE(sha256(input), before);

        const int original = decodedVideoFrames(src.clip);
        const int decoded = decodedVideoFrames(out);
        QVERIFY(original > 150);
        const bool holes = damage == QLatin1String("holes");
        const int wanted = std::max((original * 95 + 99) / 100, holes ? original - touchedVideo : 0);
        QVERIFY2(decoded >= wanted, qPrintable(QStringLiteral("%1 of %2 frames decode, %3 wanted")
                                                   .arg(decoded).arg(original).arg(wanted)));
        const int originalSound = decodedAudioFrames(src.clip);
        const int sound = decodedAudioFrames(out);
        if (src.sound) {
            // A damaged MP3 frame can take its neighbour along (bit reservoir).
            const int wantedSound = std::max((originalSound * 95 + 99) / 100,
                                             holes ? originalSound - touchedAudio - 3 : 0);
            QVERIFY2(sound >= wantedSound, qPrintable(QStringLiteral("%1 of %2 sound frames decode")
                                                          .arg(sound).arg(originalSound)));
        } else {
            QCOMPARE(sound, -1);
        }
    }

    void zeroedHeaderWithoutSampleWaitsForOne()
    {
        QByteArray bytes = readAll(m_sources.value(QStringLiteral("mp3")).clip);
        zeroRange(bytes, 0, 4096);
        const QString input = m_dir + QStringLiteral("/clip.avi");
        QVERIFY(writeAll(input, bytes));
        const BatchResult r = runBatch({QStringLiteral("--quiet"), input});
        QCOMPARE(r.verdicts().size(), 1);
        QVERIFY(!r.verdicts()[0].value(QStringLiteral("repaired")).toBool());
        QVERIFY(r.end().value(QStringLiteral("outputs")).toArray().isEmpty());
        QVERIFY(!QFile::exists(repairedPath(input)));
    }

    void badInput()
    {
        const QByteArray clip = readAll(m_sources.value(QStringLiteral("mp3")).clip);
        QByteArray random(3 << 20, '\0');
        QRandomGenerator(11).fillRange(reinterpret_cast<quint32*>(random.data()), random.size() / 4);
        QByteArray hugeFormat = clip;
        const int strf = hugeFormat.indexOf("strf");
        hugeFormat.replace(strf + 4, 4, QByteArray("\x00\x28\x6b\xee", 4));   // 4 000 000 000
        // A recording cut short, with sizes that point far past its end.
        QByteArray pastEnd = clip;
        qint64 moviStart = -1, idx1Pos = -1;
        const QList<MediaChunk> chunks = moviChunks(pastEnd, &moviStart, &idx1Pos);
        for (int i = 10; i < chunks.size(); i += 25)
            pastEnd.replace(int(chunks[i].pos) + 4, 4, QByteArray("\xf0\xff\xff\x7f", 4));
        cutFrom(pastEnd, chunks[chunks.size() / 2].pos + 100);

        QStringList inputs;
        const QList<QPair<QString, QByteArray>> files{{QStringLiteral("random.avi"), random},
                                                      {QStringLiteral("huge_strf.avi"), hugeFormat},
                                                      {QStringLiteral("past_end.avi"), pastEnd}};
        QStringList hashes;
        for (const auto& f : files) {
            inputs << m_dir + QLatin1Char('/') + f.first;
            QVERIFY(writeAll(inputs.last(), f.second));
            hashes << sha256(inputs.last());
        }
        const BatchResult r = runBatch(QStringList{QStringLiteral("--quiet")} + inputs, 120000);
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(r.verdicts().size(), 3);
        QVERIFY(!r.verdicts()[0].value(QStringLiteral("repaired")).toBool());
        QVERIFY(!r.verdicts()[1].value(QStringLiteral("repaired")).toBool());
        QVERIFY(r.verdicts()[2].value(QStringLiteral("repaired")).toBool());
        QVERIFY(decodedVideoFrames(repairedPath(inputs[2])) > 50);
        for (int i = 0; i < inputs.size(); ++i)
            QCOMPARE(sha256(inputs[i]), hashes[i]);
    }
};

QTEST_GUILESS_MAIN(TestAviE2e)
#include "test_avi_e2e.moc"
