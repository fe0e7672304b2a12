// The QuickTime rebuild: a new file from the frames listed in logFile.txt,
// copied in index order into one mdat, and a new moov behind it.
#include "core/quicktime_route.h"

#include "core/log_cipher.h"
#include "core/muxer.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <cmath>

namespace {

struct IndexEntry {
    bool audio = false;
    uint64_t pos = 0;
    uint32_t size = 0;
};

// Reads the frame lines of a FrameIndexFile. Lines that don't decipher, lines
// of other forms, and frames that don't lie wholly inside the damaged file are
// passed over, the same way in every pass, so all tables agree with the mdat.
class FrameIndexReader {
public:
    FrameIndexReader(const QString& path, uint64_t fileSize) : m_file(path), m_fileSize(fileSize)
    {
        m_file.open(QIODevice::ReadOnly);
    }
    bool isOpen() const { return m_file.isOpen(); }
    bool next(IndexEntry& e)
    {
        while (!m_file.atEnd()) {
            const QByteArray raw = m_file.readLine(1 << 16).trimmed();
            if (raw.isEmpty())
                continue;
            const QString line = m_cipher.decryptToString(QString::fromLatin1(raw));
            if (m_cipher.lastError() != LogCipher::NoError)
                continue;
            const QStringList f = line.split(QLatin1Char(' '));
            if (f.size() < 7)
                continue;
            const bool video = f[0] == QLatin1String("AVC(Vide)");
            const bool audio = f[0] == QLatin1String("AAC(soun)");
            if (!video && !audio)
                continue;
            bool ok1 = false, ok2 = false;
            const qulonglong pos = f[3].toULongLong(&ok1);
            const qulonglong size = f[6].toULongLong(&ok2);
            // A frame ending exactly at the end of the file is complete, so
            // the test is "not past the end"; an empty or oversized frame is dropped.
            if (!ok1 || !ok2 || size == 0 || size > 0xFFFFFFFFull || pos > m_fileSize
                || size > m_fileSize - pos)
                continue;
            e.audio = audio;
            e.pos = pos;
            e.size = uint32_t(size);
            return true;
        }
        return false;
    }

private:
    QFile m_file;
    LogCipher m_cipher;
    uint64_t m_fileSize;
};

void WriteMatrix(FileWriter& w, int bytes = 36)
{
    static const uint8_t m[36] = {0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0,
                                  0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x40, 0, 0, 0};
    w.write(m, size_t(bytes));
}

void WriteTkhd(FileWriter& w, uint32_t trackId, uint32_t duration, uint32_t width, uint32_t height)
{
    w.be32(92);
    w.fourcc("tkhd");
    w.be32(0x0000000F);   // version 0, flags
    w.be32(0);            // creation
    w.be32(0);            // modification
    w.be32(trackId);
    w.be32(0);            // reserved
    w.be32(duration);
    w.zeros(8);           // reserved
    w.be16(0);            // layer
    w.be16(0);            // alternate group
    w.be16(0x0100);       // volume
    w.be16(0);            // reserved
    // The size words stand two bytes early, so their low halves are the
    // integer parts of the 16.16 width and height.
    WriteMatrix(w, 34);
    w.be32(width);
    w.be32(height);
    w.be16(0);
}

void WriteMdhd(FileWriter& w, uint32_t timeScale, uint32_t duration)
{
    w.be32(32);
    w.fourcc("mdhd");
    w.be32(0);            // version, flags
    w.be32(0);            // creation
    w.be32(0);            // modification
    w.be32(timeScale);
    w.be32(duration);
    w.be16(0x15C7);       // language
    w.be16(0);            // quality
}

void WriteHdlr(FileWriter& w, const char* type, const char* subtype)
{
    w.be32(34);
    w.fourcc("hdlr");
    w.be32(0);
    w.fourcc(type);
    w.fourcc(subtype);
    w.zeros(14);
}

void WriteDinf(FileWriter& w)
{
    static const uint8_t d[36] = {0, 0, 0, 0x24, 'd', 'i', 'n', 'f', 0, 0, 0, 0x1C, 'd', 'r', 'e', 'f', 0, 0, 0, 0,
                                  0, 0, 0, 1, 0, 0, 0, 0x0C, 'a', 'l', 'i', 's', 0, 0, 0, 1};
    w.write(d, 36);
}

void WriteStsdCopy(FileWriter& w, QByteArray& stsd, uint32_t size)
{
    // A copy that doesn't hold a whole atom head, or an atom of 700 bytes or
    // more, isn't written; the atom sizes follow what is written.
    if (size >= 16 && size < 700 && uint32_t(stsd.size()) >= size)
        w.write(stsd.constData(), size);
    stsd.clear();
}

void WriteStts(FileWriter& w, uint32_t count, uint32_t duration)
{
    w.be32(24);
    w.fourcc("stts");
    w.be32(0);
    w.be32(1);
    w.be32(count);
    w.be32(duration);
}

// Sample-to-chunk: chunks 1 .. completedRuns - 1 get an entry each, as the
// runs were counted; later chunks get one only when their count changes, so
// the last runs are told right however the interleaving varies.
template <typename CountOf>
void WriteStsc(FileWriter& w, const QuickTimeRoute::ChunkTable& chunks, uint64_t completedRuns, CountOf countOf)
{
    w.beginBox("stsc");
    w.be32(0);
    const uint64_t countAt = w.pos();
    w.be32(0);
    uint32_t entries = 0;
    uint32_t previous = 0;
    uint64_t k = 0;
    QuickTimeRoute::RebuildChunk c;
    for (auto r = chunks.reader(); r.next(c); ++k) {
        const uint32_t n = countOf(c);
        if (k + 1 < completedRuns || k == 0 || n != previous) {
            w.be32(uint32_t(k + 1));
            w.be32(n);
            w.be32(1);
            ++entries;
        }
        previous = n;
    }
    w.patchBe32(countAt, entries);
    w.endBox();
}

void WriteCo64(FileWriter& w, const QuickTimeRoute::ChunkTable& chunks)
{
    w.beginBox("co64");
    w.be64(chunks.size());   // version and flags 0, then the count
    QuickTimeRoute::RebuildChunk c;
    for (auto r = chunks.reader(); r.next(c);)
        w.be64(c.offset);
    w.endBox();
}

} // namespace

void QuickTimeRoute::RebuildQuickTimeFile(const QString& logPath)
{
    if (m_remuxed) {
        g_repairedPaths << m_workDir + QStringLiteral("/") + m_fileName;
        return;
    }
    m_atomSize = 0;
    m_pos = 0;
    m_videoRun = m_videoFrames = m_videoRuns = 0;
    m_audioRun = m_audioFrames = m_audioSamples = m_audioRuns = 0;
    m_audioInIndex = false;
    m_inAudioTrak = false;
    m_rebuildIndexPath = logPath;
    const QString outPath = m_workDir + QStringLiteral("/") + m_fileName;
    // The chunk lists of both tracks; each keeps one block in memory and
    // spills the rest to a hidden work file, removed with the table.
    const QString chunkPath = m_workDir + QStringLiteral("/.rebuild-") + m_fileName;
    ChunkTable videoChunks(chunkPath + QStringLiteral(".video"));
    ChunkTable audioChunks(chunkPath + QStringLiteral(".sound"));
    // Each track has one chunk open, kept when its next chunk starts and at the end.
    RebuildChunk video, audio;
    auto keep = [](ChunkTable& table, const RebuildChunk& open) {
        if (open.frames)
            table.push_back(open);
    };

    if (!m_outFile.open(outPath)) {
        qWarning() << "Can't create" << outPath;
        m_passFailed = true;
        return;
    }
    // ftyp: the damaged file's own when it is a plausible small atom, else the
    // default; a copy of 50 bytes or more is replaced so the file starts with a valid atom.
    m_atomSize32 = 0;
    if (m_file && m_file->is4cc(4, "ftyp")) {
        const uint32_t s = m_file->be32(0);
        if (s >= 8 && s < 50) {
            m_atomSize32 = s;
            m_outFile.copyFrom(*m_file, 0, s);
        }
    }
    if (m_atomSize32 == 0) {
        static const uint8_t ftyp[32] = {0, 0, 0, 0x20, 'f', 't', 'y', 'p', 'q', 't', ' ', ' ', 0x20, 0x05, 0x03, 0,
                                         'q', 't', ' ', ' ', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
        m_outFile.write(ftyp, 32);
        m_atomSize32 = 32;
    }
    m_outFile.beginBox("mdat", true);

    FrameIndexReader index(logPath, m_fileSize);
    const bool bigFile = m_fileSize > 0x9600000;
    if (bigFile)
        m_report->setRange(500000);
    IndexEntry e;
    bool lastAudio = false;
    bool first = true;
    uint64_t offset = m_atomSize32 + 16;
    while (m_file && index.isOpen() && index.next(e)) {
        if (g_stopRequested) {
            m_outFile.close();   // left unfinished; the run ends
            return;
        }
        m_outFile.copyFrom(*m_file, e.pos, e.size);
        m_atomSize += e.size;
        if (e.audio) {
            m_inAudioTrak = true;
            m_audioInIndex = true;
            if (first || !lastAudio) {
                if (m_videoRun) {
                    m_videoRun = 0;
                    ++m_videoRuns;
                }
                keep(audioChunks, audio);
                audio = RebuildChunk{offset};
            }
            ++m_audioRun;
            ++m_audioFrames;
            audio.frames++;
            audio.samples += e.size >> 2;
            m_audioSamples += e.size >> 2;
        } else {
            if (first || lastAudio) {
                if (m_audioRun) {
                    m_audioRun = 0;
                    ++m_audioRuns;
                }
                keep(videoChunks, video);
                video = RebuildChunk{offset};
            }
            ++m_videoRun;
            ++m_videoFrames;
            video.frames++;
        }
        lastAudio = e.audio;
        first = false;
        offset += e.size;
        const uint64_t shown = bigFile ? m_atomSize * 500000 / std::max<uint64_t>(m_fileSize, 1) : m_atomSize;
        m_report->setValue(ulong(shown));
    }
    m_outFile.endBox();   // mdat
    keep(videoChunks, video);
    keep(audioChunks, audio);
    if (m_videoFrames == 0 || !videoChunks.seal() || !audioChunks.seal()) {
        // Nothing was found to rebuild from, or the chunk lists could not be
        // kept (a full disk): no file, and a negative verdict.
        m_outFile.close();
        QFile::remove(outPath);
        m_passFailed = true;
        return;
    }
    g_repairedPaths << outPath;

    m_pos = m_outFile.pos();
    m_moovPos = m_pos;
    m_outFile.beginBox("moov");
    const uint32_t timeScale = m_movie.videoTimeScale ? m_movie.videoTimeScale : 25;
    const uint32_t delta = m_movie.videoSampleDelta ? m_movie.videoSampleDelta : std::max<uint32_t>(1, timeScale / 25);
    m_outFile.be32(108);
    m_outFile.fourcc("mvhd");
    m_outFile.be32(0);                            // version, flags
    m_outFile.be64(0);                            // creation, modification
    m_outFile.be32(timeScale);
    m_outFile.be32(m_videoFrames * delta);        // duration
    m_outFile.be32(0x00010000);                   // rate
    m_outFile.be16(0x0100);                       // volume
    m_outFile.zeros(10);
    WriteMatrix(m_outFile);
    m_outFile.zeros(24);                          // preview, poster, selection, current time
    m_outFile.be32(2);                            // next track id
    m_pos = m_outFile.pos();
    WriteVideoTrack(videoChunks);
    if (m_inAudioTrak)
        WriteAudioTrack(audioChunks);
    m_outFile.endBox();   // moov
    if (videoChunks.failed() || audioChunks.failed()) {
        m_outFile.close();
        QFile::remove(outPath);
        g_repairedPaths.removeAll(outPath);
        m_passFailed = true;
        return;
    }
    if (!m_outFile.close()) {
        qWarning() << "Writing" << outPath << "failed";
        m_passFailed = true;
    }
    if (m_inAudioTrak && !g_stopRequested) {
        if (m_movie.isLpcm) {
            for (const char* name : {"video.hevc", "Audio.pcm", "videotext.txt", "audio.txt", "Indexing",
                                     "VideoUNIQUEfile.txt", "AudioUNIQUEfile.txt"})
                QFile::remove(m_workDir + QLatin1Char('/') + QLatin1String(name));
        }
        if (m_movie.isSowt) {
            // Speed check: a sound track twice as long as the video means the
            // video's timing is half what it should be.
            m_remuxed = false;
            m_movie.isSowt = false;
            const QString f = m_workDir + QLatin1Char('/') + m_fileName;
            RunMuxer(SplitVideoCommand(f), m_workDir);
            RunMuxer(SplitAudioCommand(f), m_workDir);
            ReadTrackDurations(f);
            const double a = m_audioSeconds, v = m_videoSeconds;
            // Without a duration on either side there is no ratio: the file stands.
            const double lo = std::min(a, v), hi = std::max(a, v);
            const long ratio = lo > 0 ? std::lround(hi / lo) : 1;
            if (ratio < 2) {
                QFile::remove(m_workDir + QStringLiteral("/output_audio.mov"));
                QFile::remove(m_workDir + QStringLiteral("/output_video.mov"));
            } else {
                RunMuxer(SpeedChangeCommand(m_workDir + QStringLiteral("/output_video.mov")), m_workDir);
                QFile::remove(f);
                RunMuxer(JoinCommand(m_workDir + QStringLiteral("/ModifiedFile.mov"),
                                     m_workDir + QStringLiteral("/output_audio.mov"), m_fileName), m_workDir);
                for (const char* name : {"ModifiedFile.mov", "output_audio.mov", "output_video.mov"})
                    QFile::remove(m_workDir + QLatin1Char('/') + QLatin1String(name));
            }
        }
    }
}

void QuickTimeRoute::WriteVideoTrack(const ChunkTable& chunks)
{
    FileWriter& w = m_outFile;
    const uint32_t timeScale = m_movie.videoTimeScale ? m_movie.videoTimeScale : 25;
    const uint32_t delta = m_movie.videoSampleDelta ? m_movie.videoSampleDelta : std::max<uint32_t>(1, timeScale / 25);
    const uint32_t duration = m_videoFrames * delta;
    w.beginBox("trak");
    WriteTkhd(w, 1, duration, m_movie.frameWidth, m_movie.frameHeight);
    w.be32(0x24); w.fourcc("edts");
    w.be32(0x1C); w.fourcc("elst");
    w.be32(0); w.be32(1);
    w.be32(duration); w.be32(0); w.be32(0x00010000);
    w.beginBox("mdia");
    WriteMdhd(w, timeScale, duration);
    WriteHdlr(w, "mhlr", "vide");
    w.beginBox("minf");
    w.be32(20); w.fourcc("vmhd"); w.be32(1); w.be16(0x0040); w.be16(0x8000); w.be16(0x8000); w.be16(0x8000);
    WriteHdlr(w, "dhlr", "alis");
    WriteDinf(w);
    w.beginBox("stbl");
    WriteStsdCopy(w, m_movie.videoStsd, m_movie.videoStsdSize);
    WriteStts(w, m_videoFrames, delta);
    if (m_movie.hasCtts) {
        // Made from the first entries of the source, repeated over all frames.
        w.beginBox("ctts");
        w.be32(0);
        const uint64_t countAt = w.pos();
        w.be32(0);
        uint32_t count = 0;
        if (m_movie.cttsOffset0 != 0) {
            while (count < m_videoFrames) {
                for (uint32_t o : {m_movie.cttsOffset0, m_movie.cttsOffset1, m_movie.cttsOffset2}) { w.be32(1); w.be32(o); }
                count += 3;
            }
        } else {
            w.be32(1); w.be32(m_movie.cttsOffset0);
            count = 1;
            while (count < m_videoFrames) {
                for (uint32_t o : {m_movie.cttsOffset1, m_movie.cttsOffset2}) { w.be32(1); w.be32(o); }
                count += 2;
            }
        }
        w.patchBe32(countAt, count);
        w.endBox();
    }
    WriteStsc(w, chunks, m_videoRuns, [](const RebuildChunk& c) { return c.frames; });
    w.beginBox("stsz");
    w.be32(0); w.be32(0); w.be32(m_videoFrames);
    {
        FrameIndexReader index(m_rebuildIndexPath, m_fileSize);
        IndexEntry e;
        uint32_t n = 0;
        while (n < m_videoFrames && index.next(e))
            if (!e.audio) { w.be32(e.size); ++n; }
    }
    w.endBox();
    WriteCo64(w, chunks);
    w.endBox();   // stbl
    w.endBox();   // minf
    w.endBox();   // mdia
    w.endBox();   // trak
    m_pos = w.pos();
}

void QuickTimeRoute::WriteAudioTrack(const ChunkTable& chunks)
{
    FileWriter& w = m_outFile;
    const bool pcm = m_movie.isTwos || m_movie.isSowt;
    uint32_t count = m_audioFrames, delta = 1024;
    if (pcm) {
        count = m_audioSamples;
        delta = 1;
    } else if (m_movie.isProRes) {
        delta = m_movie.audioStsdRate;
    }
    const uint32_t duration = count * delta;
    const uint32_t timeScale = m_movie.soundTimeScale ? m_movie.soundTimeScale : (m_movie.audioStsdRate ? m_movie.audioStsdRate : 48000);
    w.beginBox("trak");
    WriteTkhd(w, 2, duration, 0, 0);
    w.beginBox("mdia");
    WriteMdhd(w, timeScale, duration);
    WriteHdlr(w, "mhlr", "soun");
    w.beginBox("minf");
    w.be32(16); w.fourcc("smhd"); w.be32(0); w.be32(0);
    WriteHdlr(w, "dhlr", "alis");
    WriteDinf(w);
    w.beginBox("stbl");
    WriteStsdCopy(w, m_movie.audioStsd, m_movie.audioStsdSize);
    WriteStts(w, count, delta);
    // Sound samples: one entry per chunk that follows a video run.
    WriteStsc(w, chunks, pcm ? m_videoRuns + 1 : m_audioRuns,
              [pcm](const RebuildChunk& c) { return pcm ? uint32_t(c.samples) : c.frames; });
    w.beginBox("stsz");
    w.be32(0);
    if (pcm) {
        w.be32(4);
        w.be32(m_audioSamples);
    } else {
        w.be32(0);
        w.be32(m_audioFrames);
        FrameIndexReader index(m_rebuildIndexPath, m_fileSize);
        IndexEntry e;
        uint32_t n = 0;
        while (n < m_audioFrames && index.next(e))
            if (e.audio) { w.be32(e.size); ++n; }
    }
    w.endBox();
    WriteCo64(w, chunks);
    w.endBox();   // stbl
    w.endBox();   // minf
    w.endBox();   // mdia
    w.endBox();   // trak
    m_pos = w.pos();
}

void QuickTimeRoute::ReadTrackDurations(const QString& path)
{
    m_remuxed = false;
    m_videoSeconds = m_audioSeconds = 0;
    std::unique_ptr<ByteReader> r = OpenReadOnly(path);
    if (!r)
        return;
    const uint64_t size = r->size();
    static const char* passed[] = {"ftyp", "free", "meta", "wide", "uuid", "thum", "frea", "skip", "beam"};
    uint64_t pos = 4;
    while (pos + 4 <= size && !g_stopRequested) {
        uint64_t s = r->be32(pos - 4);
        const uint32_t code = r->be32(pos);
        if (code == ByteReader::fourcc("moov")) {
            const uint64_t end = std::min<uint64_t>(size, pos - 4 + (s >= 8 ? s : size));
            for (uint64_t p = pos + 4; p + 4 <= end && !g_stopRequested; ++p) {
                if (!r->is4cc(p, "trak"))
                    continue;
                const uint64_t trakEnd = std::min<uint64_t>(end, p - 4 + std::max<uint32_t>(r->be32(p - 4), 8));
                int kind = 0;   // 1 video, 2 sound
                uint64_t q = p + 4;
                for (; q + 4 <= trakEnd; ++q) {
                    const uint32_t c = r->be32(q);
                    if (c == ByteReader::fourcc("vmhd")) { kind = 1; break; }
                    if (c == ByteReader::fourcc("smhd")) { kind = 2; break; }
                    if (c == ByteReader::fourcc("nmhd") || c == ByteReader::fourcc("gmhd")) break;
                }
                if (kind) {
                    for (q = p + 4; q + 4 <= trakEnd; ++q) {
                        if (!r->is4cc(q, "mdhd"))
                            continue;
                        const bool v1 = r->u8(q + 4) == 1;
                        const uint64_t scale = v1 ? r->be32(q + 24) : r->be32(q + 16);
                        const uint64_t dur = v1 ? r->be64(q + 28) : r->be32(q + 20);
                        const double seconds = scale ? double(dur / scale) : 0;
                        (kind == 1 ? m_videoSeconds : m_audioSeconds) = seconds;
                        break;
                    }
                }
                p = trakEnd > p ? trakEnd - 1 : p;
            }
            return;
        }
        bool known = false;
        for (const char* c : passed)
            known = known || code == ByteReader::fourcc(c);
        if (code == ByteReader::fourcc("mdat")) {
            known = true;
            if (s == 1)
                s = r->be64(pos + 4);
        }
        if (!known || s < 8)
            return;
        pos += s;
    }
}
