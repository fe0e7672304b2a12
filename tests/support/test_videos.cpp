#include "support/test_videos.h"

#include <QJsonArray>
#include <QtTest>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QProcess>
#include <QUuid>

namespace testvideo {

static QString dataDir() { return REELWRIGHT_TEST_DATA; }
QString binDir() { return REELWRIGHT_BIN_DIR; }

int run(const QString& program, const QStringList& args, QByteArray* out, QByteArray* err, int timeoutMs)
{
    QProcess p;
    p.start(program, args);
    if (!p.waitForStarted(30000))
        return -1;
    p.closeWriteChannel();
    if (!p.waitForFinished(timeoutMs)) {
        p.kill();
        p.waitForFinished();
        return -1;
    }
    if (out)
        *out = p.readAllStandardOutput();
    if (err)
        *err = p.readAllStandardError();
    return p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
}

QString make(const QString& name, const QStringList& ffmpegArgs)
{
    // The cache is keyed by the arguments too, so two tests that pick the same
    // name for different clips never share a file.
    const QByteArray key = QCryptographicHash::hash(ffmpegArgs.join(QLatin1Char('\n')).toUtf8(),
                                                    QCryptographicHash::Sha1).toHex().left(10);
    const QString folder = dataDir() + QLatin1Char('/') + QString::fromLatin1(key);
    const QString path = folder + QLatin1Char('/') + name;
    if (QFileInfo(path).size() > 0)
        return path;
    QDir().mkpath(folder);
    const QString suffix = QFileInfo(name).suffix();
    const QString tmp = folder + QStringLiteral("/.tmp-") + QUuid::createUuid().toString(QUuid::Id128)
                      + QLatin1Char('.') + suffix;
    QByteArray err;
    if (run("ffmpeg", QStringList{"-y", "-v", "error", "-nostdin"} + ffmpegArgs << tmp, nullptr, &err) != 0) {
        qWarning("ffmpeg failed for %s: %s", qPrintable(name), err.constData());
        QFile::remove(tmp);
        return QString();
    }
    QFile::remove(path);
    if (!QFile::rename(tmp, path))
        QFile::remove(tmp);   // another test made it meanwhile
    return path;
}

QStringList lavfiVideo(int seconds, const QString& size, int rate)
{
    return {"-f", "lavfi", "-i", QStringLiteral("testsrc2=size=%1:rate=%2:duration=%3").arg(size).arg(rate).arg(seconds)};
}

QStringList lavfiAudio(int seconds, int sampleRate)
{
    return {"-f", "lavfi", "-i", QStringLiteral("sine=frequency=440:sample_rate=%1:duration=%2").arg(sampleRate).arg(seconds)};
}

QString h264Aac(const QString& suffix)
{
    return make("h264_aac." + suffix,
                lavfiVideo() + lavfiAudio() + splitArgs("-c:v libx264 -preset ultrafast -g 25 -pix_fmt yuv420p -c:a aac -b:a 96k"));
}

QByteArray readAll(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    return f.readAll();
}

bool writeAll(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return f.write(bytes) == bytes.size();
}

QString sha256(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QString();
    QCryptographicHash h(QCryptographicHash::Sha256);
    h.addData(&f);
    return QString::fromLatin1(h.result().toHex());
}

qint64 findTopLevelAtom(const QByteArray& file, const char* fourcc)
{
    qint64 pos = 0;
    while (pos + 8 <= file.size()) {
        const uchar* p = reinterpret_cast<const uchar*>(file.constData()) + pos;
        quint64 size = quint64(p[0]) << 24 | quint64(p[1]) << 16 | quint64(p[2]) << 8 | p[3];
        if (memcmp(p + 4, fourcc, 4) == 0)
            return pos;
        if (size == 1 && pos + 16 <= file.size()) {
            size = 0;
            for (int i = 8; i < 16; ++i)
                size = size << 8 | p[i];
        }
        if (size < 8)
            return -1;
        pos += qint64(size);
    }
    return -1;
}

void cutFrom(QByteArray& file, qint64 pos)
{
    if (pos >= 0 && pos < file.size())
        file.truncate(int(pos));
}

void cutAtFraction(QByteArray& file, double fraction)
{
    cutFrom(file, qint64(file.size() * fraction));
}

void zeroRange(QByteArray& file, qint64 pos, qint64 length)
{
    for (qint64 i = pos; i < pos + length && i < file.size(); ++i)
        file[int(i)] = 0;
}

void cutMoov(QByteArray& file)
{
    cutFrom(file, findTopLevelAtom(file, "moov"));
}

int decodedVideoFrames(const QString& path) { return decodedFrames(path, "v:0"); }

int decodedFrames(const QString& path, const QString& stream)
{
    QByteArray out;
    if (run("ffprobe", splitArgs("-v error -count_frames -show_entries stream=nb_read_frames -of csv=p=0 -select_streams")
                           << stream << path, &out) != 0)
        return -1;
    bool ok = false;
    // Streams with side data (MPEG-2's CPB properties) add empty fields: "200,".
    const int n = out.trimmed().split('\n').value(0).split(',').value(0).trimmed().toInt(&ok);
    return ok ? n : -1;
}

QString repairWithSample(const QString& dir, const QString& name, const QByteArray& damaged,
                         const QString& sample, bool* firstPassRepaired)
{
    const QString in = dir + '/' + name;
    writeAll(in, damaged);
    const QString before = sha256(in);
    const BatchResult first = runBatch({"--quiet", in});
    *firstPassRepaired = !first.verdicts().isEmpty() && first.verdicts().last().value("repaired").toBool();
    const BatchResult second = runBatch({"--quiet", "--reference", sample, in});
    [&] { QCOMPARE(sha256(in), before); }();
    [&] { QVERIFY2(!second.verdicts().isEmpty(), "no verdict"); }();
    return second.output();
}

QString fakeMuxer(const QString& folder, const QByteArray& body)
{
    QDir().mkpath(folder);
    const QString exe = folder + "/ffmpeg";
    writeAll(exe, "#!/bin/sh\n" + body);
    QFile::setPermissions(exe, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return folder;
}

QJsonObject BatchResult::end() const
{
    for (auto it = lines.crbegin(); it != lines.crend(); ++it)
        if (it->value("event").toString() == "end")
            return *it;
    return QJsonObject();
}

QString BatchResult::output() const
{
    const QList<QJsonObject> v = verdicts();
    const QJsonArray outputs = end().value("outputs").toArray();
    return v.isEmpty() || !v.last().value("repaired").toBool() || outputs.isEmpty() ? QString() : outputs.first().toString();
}

QList<QPair<QString, QString>> oneClipPerRoute()
{
    const QStringList h264{"-c:v", "libx264", "-preset", "ultrafast", "-g", "25", "-pix_fmt", "yuv420p"};
    const QStringList av = lavfiVideo(6) + lavfiAudio(6, 44100);
    const QList<QPair<QString, QStringList>> recipes = {
        {"mov", h264 + QStringList{"-c:a", "aac"}},
        {"avi", {"-c:v", "mpeg4", "-c:a", "libmp3lame"}},
        {"wmv", {"-c:v", "wmv2", "-c:a", "wmav2"}},
        {"flv", {"-c:v", "flv1", "-c:a", "libmp3lame"}},
        {"mts", h264 + QStringList{"-c:a", "ac3", "-f", "mpegts", "-mpegts_m2ts_mode", "1"}},
        {"mkv", h264 + QStringList{"-c:a", "aac"}},
        {"mpg", {"-c:v", "mpeg2video", "-c:a", "mp2", "-f", "mpeg"}},
        {"dat", {"-target", "ntsc-vcd"}}};
    QList<QPair<QString, QString>> clips;
    for (const auto& r : recipes)
        clips.append({r.first, make(QStringLiteral("eio.") + r.first, av + r.second)});
    return clips;
}

QList<QJsonObject> BatchResult::verdicts() const
{
    QList<QJsonObject> v;
    for (const QJsonObject& o : lines)
        if (o.value("event").toString() == "verdict")
            v << o;
    return v;
}

BatchResult runBatch(const QStringList& args, int timeoutMs)
{
    BatchResult r;
    QByteArray out;
    r.exitCode = run(binDir() + "/reelwright-batch", args, &out, &r.stderrText, timeoutMs);
    for (const QByteArray& line : out.split('\n'))
        if (!line.trimmed().isEmpty())
            r.lines << QJsonDocument::fromJson(line).object();
    return r;
}

QList<Packet> packets(const QString& path, const QString& stream)
{
    QByteArray out;
    run("ffprobe", splitArgs("-v error -show_entries packet=pos,size,flags -of json -select_streams") << stream << path, &out);
    QList<Packet> list;
    for (const QJsonValue& v : QJsonDocument::fromJson(out)["packets"].toArray())
        list.append({v["pos"].toString().toLongLong(), v["size"].toString().toLongLong(), v["flags"].toString().startsWith('K')});
    return list;
}

QString freshDir(const QString& tag)
{
    const QString dir = QDir::tempPath() + "/rw-" + tag + '-' + QUuid::createUuid().toString(QUuid::Id128).left(12);
    QDir().mkpath(dir);
    return dir;
}

QStringList splitArgs(const QString& text) { return text.split(QLatin1Char(' '), Qt::SkipEmptyParts); }

QByteArray probeEntries(const QString& path, const QString& stream, const QString& entries)
{
    QByteArray out;
    run("ffprobe", splitArgs(QStringLiteral("-v error -select_streams %1 -show_entries %2 -of csv=p=0").arg(stream, entries)) << path, &out);
    return out.trimmed();
}

QString cameraClip(bool sample, int rate, const QString& suffix, bool audio, bool audioFirst)
{
    QStringList a = splitArgs(QStringLiteral("-f lavfi -i testsrc2=size=640x360:rate=%1").arg(rate));
    if (audio)
        a += splitArgs(QStringLiteral("-f lavfi -i sine=frequency=440:sample_rate=48000"));
    a += splitArgs(QStringLiteral("-t 10 -vf hue=h=%1 -c:v libx264 -preset veryfast -profile:v high -g 30 -b:v 4M "
                                  "-pix_fmt yuv420p").arg(sample ? 90 : 0));
    if (audio)
        a += splitArgs(QStringLiteral("-c:a aac -ac 2 -b:a 128k"));
    if (audioFirst)
        a += splitArgs(QStringLiteral("-map 1:a -map 0:v"));
    return make(QStringLiteral("camera_%1_%2%3%4.%5").arg(rate).arg(sample ? QStringLiteral("sample") : QStringLiteral("clip"))
                    .arg(audio ? QString() : QStringLiteral("_mute"))
                    .arg(audioFirst ? QStringLiteral("_audiofirst") : QString()).arg(suffix), a);
}

QByteArray beWords(std::initializer_list<quint32> words)
{
    QByteArray b;
    for (quint32 w : words)
        b += QByteArray(1, char(w >> 24)) + char(w >> 16) + char(w >> 8) + char(w);
    return b;
}

QByteArray qtAtom(const char* fourcc, const QByteArray& body) { return beWords({quint32(body.size() + 8)}) + fourcc + body; }

quint32 readBe(const QByteArray& b, qint64 pos, int bytes)
{
    if (pos < 0 || pos + bytes > b.size())
        return 0;
    quint32 v = 0;
    for (int i = 0; i < bytes; ++i)
        v = v << 8 | quint8(b[int(pos) + i]);
    return v;
}

void putBe32(QByteArray& b, qint64 pos, quint32 v) { b.replace(int(pos), 4, beWords({v})); }

} // namespace testvideo
