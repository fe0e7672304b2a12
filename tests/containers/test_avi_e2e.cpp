// AVI and DivX repair end to end, through reelwright-batch on ffmpeg-made
// clips (MPEG-4 video tagged XVID, with MP3, PCM or no sound): whole, with
// the index cut off, with holes in the media, and with the header zeroed and
// a sample given.
#include "batch_check.h"

#include <QDir>
#include <QtEndian>
#include <QtTest>

using namespace testvideo;
using containers::repairedPath;

namespace {

constexpr int kHole = 32 * 1024;

quint32 le32(const QByteArray& b, qint64 pos) { return qFromLittleEndian<quint32>(b.constData() + pos); }

QStringList mpeg4Args(int seconds, const QString& sound)
{
    // Noise keeps frames large, so that a 32 KiB hole touches only a few.
    QStringList args = lavfiVideo(seconds) + (sound.isEmpty() ? QStringList() : lavfiAudio(seconds));
    args << "-vf" << "noise=alls=20:allf=t" << "-c:v" << "mpeg4" << "-vtag" << "XVID" << "-q:v" << "3";
    return args + (sound.isEmpty() ? QStringList{"-an"} : QStringList{"-c:a", sound});
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
    for (qint64 pos = 12; pos + 12 <= f.size();) {
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
        int frames = 0, sound = -1;   // what the intact clip decodes
    };
    QHash<QString, Source> m_sources;

private Q_SLOTS:
    void initTestCase()
    {
        const QHash<QString, QString> sound{{"mp3", "libmp3lame"}, {"pcm", "pcm_s16le"}, {"only", QString()}};
        for (auto it = sound.begin(); it != sound.end(); ++it) {
            Source s{make("xvid_" + it.key() + ".avi", mpeg4Args(8, it.value())),
                     make("xvid_" + it.key() + "_sample.avi", mpeg4Args(2, it.value()))};
            QVERIFY2(!s.clip.isEmpty() && !s.sample.isEmpty(), "ffmpeg could not make the AVI clips");
            s.frames = decodedVideoFrames(s.clip);
            s.sound = decodedFrames(s.clip, "a:0");
            QVERIFY(s.frames > 150);
            QCOMPARE(s.sound > 0, !it.value().isEmpty());
            m_sources[it.key()] = s;
        }
    }
    void init() { m_dir = freshDir("avi-e2e"); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void repairs_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QString>("damage");
        for (const QString in : {"mp3 avi", "pcm avi", "only avi", "mp3 divx"})
            for (const char* d : {"whole", "idx1 cut", "holes", "header zeroed"})
                QTest::newRow(qPrintable(in + ' ' + d)) << in.section(' ', 0, 0) << in.section(' ', 1) << QString(d);
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
        if (damage == "idx1 cut") {
            cutFrom(bytes, idx1Pos);
        } else if (damage == "holes") {
            for (int k = 1; k <= 3; ++k) {
                const qint64 at = moviStart + (idx1Pos - moviStart) * k / 4;
                zeroRange(bytes, at, kHole);
                for (const MediaChunk& c : chunks)
                    if (c.pos < at + kHole && c.pos + 8 + c.size > at)
                        ++(c.video ? touchedVideo : touchedAudio);
            }
        } else if (damage == "header zeroed") {
            zeroRange(bytes, 0, 4096);
            args << "--reference" << src.sample;
        }
        const QString input = m_dir + "/clip." + suffix;
        const containers::Batch b = containers::repairBytes(input, bytes, args);
        QVERIFY2(b.fault.isEmpty(), qPrintable(b.fault));
        QCOMPARE(b.signalNames, QStringList{"WriteAVIFileStatus"});
        QVERIFY(b.ok());
        const QString out = repairedPath(input);
        QCOMPARE(b.outputs.value(0), out);

        const bool holes = damage == "holes";
        const int decoded = decodedVideoFrames(out);
        const int wanted = std::max((src.frames * 95 + 99) / 100, holes ? src.frames - touchedVideo : 0);
        QVERIFY2(decoded >= wanted, qPrintable(QString("%1 of %2 frames decode, %3 wanted").arg(decoded).arg(src.frames).arg(wanted)));
        const int sound = decodedFrames(out, "a:0");
        if (src.sound < 0) {
            QCOMPARE(sound, -1);
            return;
        }
        // A damaged MP3 frame can take its neighbour along (bit reservoir).
        const int wantedSound = std::max((src.sound * 95 + 99) / 100, holes ? src.sound - touchedAudio - 3 : 0);
        QVERIFY2(sound >= wantedSound, qPrintable(QString("%1 of %2 sound frames decode").arg(sound).arg(src.sound)));
    }

    void badInput()
    {
        const QByteArray clip = readAll(m_sources.value("mp3").clip);
        QByteArray hugeFormat = clip;
        hugeFormat.replace(hugeFormat.indexOf("strf") + 4, 4, QByteArray("\x00\x28\x6b\xee", 4));   // 4 000 000 000
        QByteArray zeroedHeader = clip;
        zeroRange(zeroedHeader, 0, 4096);
        // A recording cut short, with sizes that point far past its end.
        QByteArray pastEnd = clip;
        qint64 moviStart = -1, idx1Pos = -1;
        const QList<MediaChunk> chunks = moviChunks(pastEnd, &moviStart, &idx1Pos);
        for (int i = 10; i < chunks.size(); i += 25)
            pastEnd.replace(int(chunks[i].pos) + 4, 4, QByteArray("\xf0\xff\xff\x7f", 4));
        cutFrom(pastEnd, chunks[chunks.size() / 2].pos + 100);

        // The zeroed header without a sample waits for one: nothing written.
        const QList<QPair<QString, QByteArray>> files{{"random.avi", containers::randomBytes(3 << 20, 11)},
                                                      {"huge_strf.avi", hugeFormat},
                                                      {"zeroed_header.avi", zeroedHeader},
                                                      {"past_end.avi", pastEnd}};
        QStringList inputs;
        for (const auto& f : files) {
            inputs << m_dir + '/' + f.first;
            QVERIFY(writeAll(inputs.last(), f.second));
        }
        const containers::Batch b = containers::repairFiles(inputs);
        QVERIFY2(b.fault.isEmpty(), qPrintable(b.fault));
        QCOMPARE(b.repaired, QList<bool>({false, false, false, true}));
        QCOMPARE(b.outputs, QStringList{repairedPath(inputs[3])});
        for (int i = 0; i < 3; ++i)
            QVERIFY(!QFile::exists(repairedPath(inputs[i])));
        QVERIFY(decodedVideoFrames(repairedPath(inputs[3])) > 50);
    }
};

QTEST_GUILESS_MAIN(TestAviE2e)
#include "test_avi_e2e.moc"
