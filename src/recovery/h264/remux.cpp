// Handing the recovered elementary streams (or a damaged file whose own index
// is usable) to the external muxer, and the command lines it gets.
#include "recovery/h264/bit_tools.h"
#include "recovery/h264/h264_recovery.h"

#include "core/muxer.h"
#include "core/quicktime_route.h"

#include <QDir>
#include <QFile>
#include <utility>
#include <QFileInfo>

namespace {

QString Quoted(const QString& s)
{
    return QLatin1Char('"') + s + QLatin1Char('"');
}

// The muxer's result is judged by its file, not by its exit code.
bool OutputReady(const QString& path)
{
    const QFileInfo info(path);
    return info.isFile() && info.size() > 0;
}

// The second run timed the video at the recording's own rate (the first ran
// at the default): its file, when it made one, takes the first one's place,
// so that the result under the file's name plays at the right speed.
void KeepRatedOutput(const QString& workDir, const ChainFacts& facts)
{
    const QString rated = workDir + QLatin1Char('/') + facts.outputNameRated;
    if (!OutputReady(rated)) {
        QFile::remove(rated);
        return;
    }
    const QString plain = workDir + QLatin1Char('/') + facts.outputName;
    QFile::remove(plain);
    QFile::rename(rated, plain);
}

} // namespace

ChainPaths ChainPaths::in(const QString& workDir, const QString& input)
{
    ChainPaths p;
    p.input = input;
    p.video = workDir + QStringLiteral("/video.h264");
    p.videoText = workDir + QStringLiteral("/videotext.txt");
    p.indexing = workDir + QStringLiteral("/Indexing");
    p.videoUnique = workDir + QStringLiteral("/VideoUNIQUEfile.txt");
    p.audioText = workDir + QStringLiteral("/audio.txt");
    p.audio = workDir + QStringLiteral("/audio.aac");
    p.audioUnique = workDir + QStringLiteral("/AudioUNIQUEfile.txt");
    p.pcm = workDir + QStringLiteral("/Audio.pcm");
    return p;
}

QByteArray ChainPaths::parameterBlock() const
{
    QFile f(indexing);
    return f.open(QIODevice::ReadOnly | QIODevice::Unbuffered) ? f.readAll() : QByteArray();
}

QString MuxVideoAndAudioCommand(const QString& video, const QString& audio, const QString& out,
                                const QString& rate)
{
    const QString r = rate.isEmpty() ? QStringLiteral("30") : rate;
    return MuxerPrefix() + QStringLiteral(" -r ") + r + QStringLiteral(" -i ") + Quoted(video)
         + QStringLiteral(" -i ") + Quoted(audio)
         + QStringLiteral(" -bsf:a aac_adtstoasc -c:v copy -c:a copy ") + Quoted(out);
}

QString MuxVideoOnlyCommand(const QString& video, const QString& out, const QString& rate)
{
    const QString r = rate.isEmpty() ? QStringLiteral("30000/1001") : rate;
    return MuxerPrefix() + QStringLiteral(" -r ") + r + QStringLiteral(" -i ") + Quoted(video)
         + QStringLiteral(" -c:v copy ") + Quoted(out);
}

QString RemuxDamagedCommand(const QString& input, const QString& name, bool withAudio)
{
    return MuxerPrefix() + QStringLiteral(" -i ") + Quoted(input)
         + (withAudio ? QStringLiteral(" -vcodec copy -acodec copy -movflags faststart ")
                      : QStringLiteral(" -vcodec copy -movflags faststart "))
         + Quoted(name);
}

QString MuxVideoAndPcmCommand(const QString& video, const QString& format, const QString& sampleRate,
                              const QString& channels, const QString& audio, const QString& out)
{
    // Two blanks behind the program's name, as this line has always had.
    return MuxerPrefix() + QStringLiteral("  -i ") + Quoted(video) + QStringLiteral(" -f ") + format
         + QStringLiteral(" -ar ") + sampleRate + QStringLiteral(" -ac ") + channels
         + QStringLiteral(" -i ") + Quoted(audio)
         + QStringLiteral(" -c:v copy -c:a aac -preset ultrafast ") + Quoted(out);
}

int ComputeFrameRate(uint32_t sampleCount, uint32_t duration, uint32_t timescale, int fallback)
{
    if (sampleCount == 0 || timescale == 0)
        return fallback;
    const uint32_t seconds = duration / timescale;
    if (seconds == 0)
        return fallback;   // a sample under one second has no whole-second rate
    const uint32_t rate = sampleCount / seconds;
    return rate == 0 || rate > 1000 ? fallback : int(rate);
}

void QuickTimeRoute::H264PassFailed()
{
    // The driver sends the file's one verdict when the pass returns.
    g_moovRead = false;
    m_passFailed = true;
}

void QuickTimeRoute::RemoveChainFiles(const ChainPaths& p)
{
    for (const QString& f : {p.video, p.audio, p.videoText, p.audioText, p.indexing, p.videoUnique,
                             p.audioUnique, p.pcm})
        QFile::remove(f);
}

void QuickTimeRoute::PrepareMuxOutput()
{
    m_chainFacts.outputName = m_fileName;
    m_chainFacts.outputNameRated = QStringLiteral("1_") + m_fileName;
    QDir().mkpath(m_workDir);
    // The muxer asks before it overwrites, and nobody would answer.
    QFile::remove(m_workDir + QLatin1Char('/') + m_chainFacts.outputName);
    QFile::remove(m_workDir + QLatin1Char('/') + m_chainFacts.outputNameRated);
}

// The first run: during the scan when that worked, else now from the files.
void QuickTimeRoute::MuxVideoAndAudio(const ChainPaths& p)
{
    m_chainFacts.frameRate =
        ComputeFrameRate(m_chainFacts.videoSampleCount, m_chainFacts.movieDuration, m_chainFacts.movieTimescale);
    const QString rateText = QString::number(m_chainFacts.frameRate);
    m_remuxed = g_remuxRan = g_muxerBusy = true;
    if (!std::exchange(m_firstMuxDone, false)) {
        PrepareMuxOutput();
        RunMuxer(MuxVideoAndAudioCommand(p.video, p.audio, m_chainFacts.outputName), m_workDir);
    }
    if (NeedsSecondRun(m_chainFacts.frameRate) && !g_stopRequested) {
        RunMuxer(MuxVideoAndAudioCommand(p.video, p.audio, m_chainFacts.outputNameRated, rateText), m_workDir);
        KeepRatedOutput(m_workDir, m_chainFacts);
    }
    RemoveChainFiles(p);
    g_muxerBusy = false;
    if (!OutputReady(m_workDir + QLatin1Char('/') + m_chainFacts.outputName) && !g_stopRequested)
        H264PassFailed();
}

void QuickTimeRoute::MuxVideoOnly(const ChainPaths& p)
{
    g_muxerBusy = true;
    m_chainFacts.frameRate =
        ComputeFrameRate(m_chainFacts.videoSampleCount, m_chainFacts.movieDuration, m_chainFacts.movieTimescale);
    const QString rateText = QString::number(m_chainFacts.frameRate);
    m_remuxed = g_remuxRan = true;
    if (!std::exchange(m_firstMuxDone, false)) {
        PrepareMuxOutput();
        RunMuxer(MuxVideoOnlyCommand(p.video, m_chainFacts.outputName), m_workDir);
    }
    if (NeedsSecondRun(m_chainFacts.frameRate) && !g_stopRequested) {
        RunMuxer(MuxVideoOnlyCommand(p.video, m_chainFacts.outputNameRated, rateText), m_workDir);
        KeepRatedOutput(m_workDir, m_chainFacts);
    }
    RemoveChainFiles(p);
    g_muxerBusy = false;
    if (!OutputReady(m_workDir + QLatin1Char('/') + m_chainFacts.outputName) && !g_stopRequested)
        H264PassFailed();
}

void QuickTimeRoute::RemuxDamagedFile(const QString& inputPath)
{
    m_report->setRange(100);
    RemuxOwnIndex(inputPath, true);
}

QString RemuxDamagedSowtCommand(const QString& input, const QString& out)
{
    return RemuxDamagedCommand(input, out, true);
}

void QuickTimeRoute::RemuxDamagedFileLpcm(const QString& inputPath)
{
    RemuxOwnIndex(inputPath, false);
}

void QuickTimeRoute::RemuxDamagedFileSowt(const QString& inputPath)
{
    m_chainFacts.outputName = m_fileName;
    m_movie.hasSoundTrak = true;   // the sowt command always copies the sound
    RemuxOwnIndex(inputPath, false);
    QFile::remove(m_workDir + QStringLiteral("/videotext.txt"));
}

// The muxer rewrites a damaged file around its own index, into a file of the
// source's name; the sound is copied when a sound track was noted.
void QuickTimeRoute::RemuxOwnIndex(const QString& inputPath, bool halfwayProgress)
{
    m_remuxed = g_remuxRan = g_muxerBusy = true;
    QDir().mkpath(m_workDir);
    if (halfwayProgress)
        m_report->setValue(50);
    const QString out = m_workDir + QLatin1Char('/') + m_fileName;
    QFile::remove(out);
    RunMuxer(RemuxDamagedCommand(inputPath, m_fileName, m_movie.hasSoundTrak), m_workDir);
    m_movie.hasSoundTrak = false;
    g_muxerBusy = false;
    if (!OutputReady(out) && !g_stopRequested)
        H264PassFailed();
}

void QuickTimeRoute::MuxVideoAndPcm(const ChainPaths& p)
{
    m_remuxed = g_remuxRan = g_muxerBusy = true;
    m_chainFacts.outputName = m_fileName;
    QString& format = m_carried->pcmFormat;
    format = PcmFormatText(m_chainFacts.pcmBits, format);
    QDir().mkpath(m_workDir);
    const QString out = m_workDir + QLatin1Char('/') + m_chainFacts.outputName;
    QFile::remove(out);
    RunMuxer(MuxVideoAndPcmCommand(p.video, format, PcmRateText(m_chainFacts.audioSampleRate),
                                   PcmChannelText(m_chainFacts.pcmChannels), p.pcm, m_chainFacts.outputName),
             m_workDir);
    RemoveChainFiles(p);
    g_muxerBusy = false;
    if (!OutputReady(out) && !g_stopRequested)
        H264PassFailed();
}
