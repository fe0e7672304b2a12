#pragma once
// Test videos made by ffmpeg at test time (cached in the build tree) and
// damaged by code, deterministically; helpers to run the engine and the
// batch runner, and to look at outputs with ffprobe.
#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <initializer_list>

namespace testvideo {

QString binDir();

// Runs a program and returns its exit code (-1 when it could not start);
// stdout and stderr are returned through the pointers when given.
int run(const QString& program, const QStringList& args, QByteArray* out = nullptr,
        QByteArray* err = nullptr, int timeoutMs = 600000);

// Makes dataDir()/name once with "ffmpeg -y -v error <args> OUT" and returns
// its path; an empty string when ffmpeg failed. Concurrent tests are safe:
// the file is written under a temporary name and renamed.
QString make(const QString& name, const QStringList& ffmpegArgs);

// Common inputs: testsrc2 video and a sine tone, `seconds` long.
QStringList lavfiVideo(int seconds = 4, const QString& size = QStringLiteral("320x240"), int rate = 25);
QStringList lavfiAudio(int seconds = 4, int sampleRate = 48000);

// A 6 s clip with sound for each route, by its suffix (mov, avi, wmv, flv,
// mts, mkv, mpg, dat), in that order.
QList<QPair<QString, QString>> oneClipPerRoute();

// A healthy H.264 + AAC clip in the given container (mp4, mov, ...).
QString h264Aac(const QString& suffix);

QByteArray readAll(const QString& path);
bool writeAll(const QString& path, const QByteArray& bytes);
QString sha256(const QString& path);

// Top-level atom of a QuickTime file: position of its size word, or -1.
qint64 findTopLevelAtom(const QByteArray& file, const char* fourcc);
// Damage helpers, all in place.
void cutFrom(QByteArray& file, qint64 pos);                 // keep [0, pos)
void cutAtFraction(QByteArray& file, double fraction);
void zeroRange(QByteArray& file, qint64 pos, qint64 length);
void cutMoov(QByteArray& file);                             // drop a moov at the end

// Frames of the first video stream that decode, or -1 when the file doesn't open.
int decodedVideoFrames(const QString& path);
// Frames of one stream ("a:0", "v:0") that decode, or -1.
int decodedFrames(const QString& path, const QString& stream);

struct BatchResult {
    int exitCode = -1;
    QList<QJsonObject> lines;      // stdout, one object per line
    QByteArray stderrText;
    QJsonObject end() const;       // the last object ("event":"end"), or empty
    QList<QJsonObject> verdicts() const;
    QString output() const;        // the first output when the last verdict is positive, or ""
};
BatchResult runBatch(const QStringList& args, int timeoutMs = 600000);

// Advance Repair through the batch runner: writes damaged to dir/name, runs a
// first pass, then a pass with sample. Fails the current test when the
// input changed or the second pass gave no verdict. Returns the output's
// path, "" when the second pass made none.
QString repairWithSample(const QString& dir, const QString& name, const QByteArray& damaged,
                         const QString& sample, bool* firstPassRepaired);

// Makes folder/ffmpeg, a shell script with the given body, as a stand-in
// for the muxer; returns the folder (for g_appDir).
QString fakeMuxer(const QString& folder, const QByteArray& body);

// The packets of one stream ("v:0", "a:0") as the file's own index has them.
struct Packet {
    qint64 pos, size;
    bool key;
};
QList<Packet> packets(const QString& path, const QString& stream);

// A fresh folder under the system temp folder, removed by the caller.
QString freshDir(const QString& tag);

// Command-line words of a text, split at blanks.
QStringList splitArgs(const QString& text);
// ffprobe's values of one stream ("v:0", "a:0") for -show_entries entries,
// as csv without keys, trimmed.
QByteArray probeEntries(const QString& path, const QString& stream, const QString& entries);

// A clip as a camera records it: 640x360 H.264 at `rate`, a key frame every
// 30 frames, 4 Mbit/s, high profile, with 48 kHz stereo AAC of a 440 Hz tone,
// ten seconds. A sample differs only in its picture (the hue).
QString cameraClip(bool sample, int rate = 25, const QString& suffix = QStringLiteral("mov"), bool audio = true,
                   bool audioFirst = false);

// Hand-made bytes: big-endian words, a QuickTime atom around a body, the
// big-endian value of `bytes` bytes at pos (0 when it runs past the end),
// and a word written in place.
QByteArray beWords(std::initializer_list<quint32> words);
QByteArray qtAtom(const char* fourcc, const QByteArray& body);
quint32 readBe(const QByteArray& b, qint64 pos, int bytes = 4);
void putBe32(QByteArray& b, qint64 pos, quint32 v);

} // namespace testvideo
