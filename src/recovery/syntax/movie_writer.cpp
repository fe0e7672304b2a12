#include "recovery/syntax/movie_writer.h"

#include "core/file_writer.h"

#include <QFile>
#include <algorithm>

namespace syntax {
namespace {

constexpr uint32_t kMovieScale = 1000;

struct TrackOut {
    const TrackModel* model = nullptr;
    bool sound = false;
    uint32_t id = 0;
    uint64_t samples = 0;
    uint64_t mediaDuration = 0;   // in the track's time scale
    uint64_t editStart = 0;       // media time the presentation starts at
    // Sound: the samples ahead of editStart (the encoder's priming) are not
    // played. Video: editStart only shifts the composition times, which are
    // all that far behind the decode times, and every frame is played.
    uint64_t shown() const { return sound ? mediaDuration - std::min(mediaDuration, editStart) : mediaDuration; }
    uint64_t chunks = 0;
    uint64_t lastChunk = 0;               // the last chunk's offset in the new file
    uint32_t shift = 0;                   // video: added to every composition offset; 0: no offsets
};

// Where the scanned media lie in the new file.
struct Placement {
    uint64_t rangeBegin = 0;   // of the media range in the damaged file
    uint64_t dataStart = 0;    // of its copy in the new file
    uint64_t at(const ScannedChunk& c) const { return dataStart + (c.offset - rangeBegin); }
};

uint64_t ToMovieTime(uint64_t t, uint32_t scale) { return scale ? t * kMovieScale / scale : 0; }

void Matrix(FileWriter& w)
{
    for (uint32_t v : {0x00010000u, 0u, 0u, 0u, 0x00010000u, 0u, 0u, 0u, 0x40000000u})
        w.be32(v);
}

void WriteTkhd(FileWriter& w, const TrackOut& t, uint64_t duration)
{
    const bool wide = duration > 0xFFFFFFFFu;
    w.beginBox("tkhd");
    w.be32((wide ? 0x01000000u : 0u) | 0x3);   // version, flags: enabled, in movie
    if (wide) { w.be64(0); w.be64(0); } else { w.be32(0); w.be32(0); }   // creation, modification
    w.be32(t.id);
    w.be32(0);                                  // reserved
    if (wide) w.be64(duration); else w.be32(uint32_t(duration));
    w.zeros(8);                                 // reserved
    w.be16(0);                                  // layer
    w.be16(t.sound ? 1 : 0);                    // alternate group
    w.be16(t.sound ? 0x0100 : 0);               // volume
    w.be16(0);
    Matrix(w);
    w.be32(t.sound ? 0 : t.model->width);
    w.be32(t.sound ? 0 : t.model->height);
    w.endBox();
}

void WriteMdhd(FileWriter& w, const TrackModel& m, uint64_t duration)
{
    const bool wide = duration > 0xFFFFFFFFu;
    w.beginBox("mdhd");
    w.be32(wide ? 0x01000000u : 0u);
    if (wide) { w.be64(0); w.be64(0); } else { w.be32(0); w.be32(0); }
    w.be32(m.timeScale);
    if (wide) w.be64(duration); else w.be32(uint32_t(duration));
    w.be16(m.language ? m.language : 0x55C4);   // "und"
    w.be16(0);
    w.endBox();
}

void WriteHdlr(FileWriter& w, uint32_t component, const char* type)
{
    w.beginBox("hdlr");
    w.be32(0);
    w.be32(component);   // 'mhlr' in a QuickTime movie, 0 in an ISO one
    w.fourcc(type);
    w.zeros(12);         // manufacturer, flags, mask
    w.u8(0);             // empty name (a counted string or a C string alike)
    w.endBox();
}

void WriteDinf(FileWriter& w, bool quickTime)
{
    w.beginBox("dinf");
    w.beginBox("dref");
    w.be32(0);
    w.be32(1);
    w.be32(12);
    w.fourcc(quickTime ? "alis" : "url ");
    w.be32(1);           // self-contained
    w.endBox();
    w.endBox();
}

// ctts: the video's composition offsets (in frames, shift added), as runs
// of equal values.
void WriteCtts(FileWriter& w, const ScanResult& scan, uint32_t shift, uint32_t sampleDelta)
{
    w.beginBox("ctts");
    w.be32(0);
    const uint64_t countAt = w.pos();
    w.be32(0);
    uint32_t entries = 0, count = 0, value = 0;
    auto put = [&] {
        w.be32(count);
        w.be32(value * sampleDelta);
        ++entries;
    };
    CompositionOffsets(scan.video.frames, shift, [&](uint32_t offset) {
        if (count && offset == value && count < 0xFFFFFFF0u) {
            ++count;
            return;
        }
        if (count)
            put();
        count = 1;
        value = offset;
    });
    if (count)
        put();
    w.patchBe32(countAt, entries);
    w.endBox();
}

// stsz's count and sizes, the size of each record given by sizeOf.
template <typename Record, typename SizeOf>
void WriteSizes(FileWriter& w, const RecordTable<Record>& table, SizeOf sizeOf)
{
    w.be32(uint32_t(table.size()));
    Record r;
    for (auto it = table.reader(); it.next(r);)
        w.be32(sizeOf(r));
}

void WriteSampleTables(FileWriter& w, const TrackOut& t, const ScanResult& scan, const Placement& place)
{
    const TrackModel& m = *t.model;
    w.beginBox("stbl");
    w.write(m.stsd);
    // stts: every sample lasts the sample's usual duration.
    w.beginBox("stts");
    w.be32(0);
    w.be32(t.samples ? 1 : 0);
    if (t.samples) {
        w.be32(uint32_t(std::min<uint64_t>(t.samples, 0xFFFFFFFFu)));
        w.be32(m.sampleDelta);
    }
    w.endBox();
    if (!t.sound && t.shift)
        WriteCtts(w, scan, t.shift, m.sampleDelta);
    if (!t.sound) {
        const RecordTable<VideoFrame>& frames = scan.video.frames;
        VideoFrame f;
        uint64_t keys = 0;
        for (auto r = frames.reader(); r.next(f);)
            keys += f.keyframe ? 1 : 0;
        if (keys != frames.size()) {
            w.beginBox("stss");
            w.be32(0);
            w.be32(uint32_t(keys));
            uint32_t i = 0;
            for (auto r = frames.reader(); r.next(f);) {
                ++i;
                if (f.keyframe)
                    w.be32(i);
            }
            w.endBox();
        }
    }
    // stsc: an entry where the samples per chunk change.
    w.beginBox("stsc");
    w.be32(0);
    const uint64_t countAt = w.pos();
    w.be32(0);
    uint32_t entries = 0;
    uint64_t k = 0, before = 0;
    for (const ScannedChunk& c : scan.chunks) {
        if (c.sound != t.sound)
            continue;
        if (k++ == 0 || c.samples != before) {
            w.be32(uint32_t(k));
            w.be32(uint32_t(c.samples));
            w.be32(1);
            ++entries;
        }
        before = c.samples;
    }
    w.patchBe32(countAt, entries);
    w.endBox();
    w.beginBox("stsz");
    w.be32(0);
    if (t.sound && m.sound == SoundCodec::Pcm) {
        w.be32(m.pcmFrameBytes);
        w.be32(uint32_t(t.samples));
    } else {
        w.be32(0);
        if (t.sound)
            WriteSizes(w, scan.soundSizes, [](uint32_t s) { return s; });
        else
            WriteSizes(w, scan.video.frames, [](const VideoFrame& f) { return f.size; });
    }
    w.endBox();
    const bool wide = t.lastChunk > 0xFFFFFFFFu;
    w.beginBox(wide ? "co64" : "stco");
    w.be32(0);
    w.be32(uint32_t(t.chunks));
    for (const ScannedChunk& c : scan.chunks) {
        if (c.sound != t.sound)
            continue;
        if (wide)
            w.be64(place.at(c));
        else
            w.be32(uint32_t(place.at(c)));
    }
    w.endBox();
    w.endBox();
}

void WriteTrack(FileWriter& w, const TrackOut& t, const ScanResult& scan, const Placement& place, bool quickTime)
{
    const TrackModel& m = *t.model;
    const uint64_t duration = ToMovieTime(t.shown(), m.timeScale);
    w.beginBox("trak");
    WriteTkhd(w, t, duration);
    if (t.editStart) {
        w.beginBox("edts");
        w.beginBox("elst");
        w.be32(0);
        w.be32(1);
        w.be32(uint32_t(std::min<uint64_t>(duration, 0xFFFFFFFFu)));
        w.be32(uint32_t(t.editStart));
        w.be32(0x00010000);
        w.endBox();
        w.endBox();
    }
    w.beginBox("mdia");
    WriteMdhd(w, m, t.mediaDuration);
    WriteHdlr(w, m.handler, t.sound ? "soun" : "vide");
    w.beginBox("minf");
    if (t.sound) {
        w.beginBox("smhd");
        w.be32(0);
        w.be32(0);
        w.endBox();
    } else {
        w.beginBox("vmhd");
        w.be32(1);
        w.zeros(8);
        w.endBox();
    }
    if (quickTime)
        WriteHdlr(w, ByteReader::fourcc("dhlr"), "alis");
    WriteDinf(w, quickTime);
    WriteSampleTables(w, t, scan, place);
    w.endBox();   // minf
    w.endBox();   // mdia
    w.endBox();   // trak
}

// composition: the video's composition offsets too (the figures don't need them).
std::vector<TrackOut> PlanTracks(const MovieModel& model, const ScanResult& scan, bool composition)
{
    std::vector<TrackOut> tracks;
    for (int index : {model.videoTrack, model.soundTrack}) {
        if (index < 0)
            continue;
        TrackOut t;
        t.model = &model.tracks[size_t(index)];
        t.sound = index == model.soundTrack;
        if (t.sound) {
            t.samples = t.model->sound == SoundCodec::Pcm ? scan.pcmFrames : scan.soundSizes.size();
            if (t.samples == 0)
                continue;
            t.editStart = std::min<uint64_t>(uint64_t(t.model->editMediaTime), t.samples * t.model->sampleDelta / 2);
        } else {
            t.samples = scan.video.frames.size();
            if (composition && scan.video.hasPoc) {
                // A first pass over the frames for the shift alone; the
                // offsets are computed again as ctts is written.
                t.shift = CompositionOffsets(scan.video.frames, 0, nullptr);
                t.editStart = uint64_t(t.shift) * t.model->sampleDelta;
            }
        }
        t.mediaDuration = t.samples * t.model->sampleDelta;
        tracks.push_back(std::move(t));
    }
    // Tracks keep the movie's order.
    std::sort(tracks.begin(), tracks.end(), [&](const TrackOut& a, const TrackOut& b) { return a.model < b.model; });
    for (size_t i = 0; i < tracks.size(); ++i)
        tracks[i].id = uint32_t(i + 1);
    return tracks;
}

} // namespace

MovieFigures FiguresOf(const MovieModel& model, const ScanResult& scan)
{
    MovieFigures f;
    f.videoFrames = scan.video.frames.size();
    for (const TrackOut& t : PlanTracks(model, scan, false)) {
        const double seconds = t.model->timeScale ? double(t.shown()) / t.model->timeScale : 0.0;
        (t.sound ? f.audioSeconds : f.videoSeconds) = seconds;
    }
    return f;
}

MovieOutput::~MovieOutput()
{
    if (m_out.isOpen())
        abandon();
}

bool MovieOutput::start(const QString& path, const QString& srcPath, MediaRange range, const QByteArray& ftyp,
                        const std::atomic<bool>* stop)
{
    // Where the kernel can't copy the bytes page for page, the writer takes
    // them a MiB at a time through the reader: a window of one such step
    // (and the page its start is rounded down to) stays in the cache
    // between the read and the write.
    m_src = FileReader::open(srcPath, (1u << 20) + ByteReader::kAlign);
    if (!m_src || !m_out.open(path))
        return false;
    m_range = range;
    m_stop = stop;
    m_quickTime = ftyp.size() < 12 || ftyp.mid(8, 4) == "qt  ";
    if (ftyp.size() >= 8) {
        m_out.write(ftyp);
    } else {
        static const uint8_t qt[20] = {0, 0, 0, 20, 'f', 't', 'y', 'p', 'q', 't', ' ', ' ', 0, 0, 2, 0, 'q', 't', ' ', ' '};
        m_out.write(qt, sizeof qt);
    }
    const uint64_t bytes = range.end - range.begin;
    m_out.beginBox("mdat", bytes + 8 > 0xFFFFFFFFu);
    m_dataStart = m_out.pos();
    // Pieces of 64 MiB, so that a stop ends even the copy of a huge file soon.
    auto copy = [this, bytes] {
        constexpr uint64_t kPiece = 64u << 20;
        for (uint64_t done = 0; done < bytes && !(m_stop && m_stop->load()); done += kPiece)
            m_out.copyFrom(*m_src, m_range.begin + done, std::min(kPiece, bytes - done));
    };
    // Beside the scan on a thread of its own; under a MiB it is done sooner
    // than a thread starts.
    constexpr uint64_t kThreadedCopy = 1u << 20;
    if (bytes < kThreadedCopy)
        copy();
    else
        m_copier = std::thread(copy);
    return true;
}

void MovieOutput::join()
{
    if (m_copier.joinable())
        m_copier.join();
}

void MovieOutput::abandon()
{
    join();
    const QString path = m_out.path();
    m_out.close();
    QFile::remove(path);
}

bool MovieOutput::finish(const MovieModel& model, const ScanResult& scan)
{
    join();
    if (scan.video.frames.empty() || (m_stop && m_stop->load()) || m_out.pos() != m_dataStart + (m_range.end - m_range.begin)) {
        abandon();
        return false;
    }
    FileWriter& w = m_out;
    w.endBox();   // mdat
    std::vector<TrackOut> tracks = PlanTracks(model, scan, true);
    TrackOut* video = nullptr;
    TrackOut* sound = nullptr;
    for (TrackOut& t : tracks)
        (t.sound ? sound : video) = &t;
    Placement place;
    place.rangeBegin = m_range.begin;
    place.dataStart = m_dataStart;
    for (const ScannedChunk& c : scan.chunks) {
        if (TrackOut* t = c.sound ? sound : video) {
            ++t->chunks;
            t->lastChunk = place.at(c);
        }
    }
    uint64_t movieDuration = 0;
    for (const TrackOut& t : tracks)
        movieDuration = std::max(movieDuration, ToMovieTime(t.shown(), t.model->timeScale));
    w.beginBox("moov");
    const bool wide = movieDuration > 0xFFFFFFFFu;
    w.beginBox("mvhd");
    w.be32(wide ? 0x01000000u : 0u);
    if (wide) { w.be64(0); w.be64(0); } else { w.be32(0); w.be32(0); }
    w.be32(kMovieScale);
    if (wide) w.be64(movieDuration); else w.be32(uint32_t(movieDuration));
    w.be32(0x00010000);   // rate
    w.be16(0x0100);       // volume
    w.zeros(10);
    Matrix(w);
    w.zeros(24);          // preview, poster, selection, current time
    w.be32(uint32_t(tracks.size() + 1));
    w.endBox();
    for (const TrackOut& t : tracks)
        WriteTrack(w, t, scan, place, m_quickTime);
    w.endBox();
    if (!scan.tablesKept()) {   // a frame table's file could not be written or read back
        abandon();
        return false;
    }
    const QString path = w.path();
    if (!w.close()) {
        QFile::remove(path);
        return false;
    }
    return true;
}

MovieFigures ReadFigures(const QString& path)
{
    MovieFigures f;
    std::unique_ptr<FileReader> r = FileReader::open(path);
    uint64_t body = 0, end = 0;
    if (!r || !LocateMovie(*r, body, end))
        return f;
    const MovieModel m = ReadMovie(*r, body, end);
    for (const TrackModel& t : m.tracks) {
        if (!t.timeScale)
            continue;
        const double seconds = double(t.mediaDuration) / t.timeScale;
        if (t.kind == TrackKind::Video && f.videoFrames == 0) {
            f.videoFrames = t.sampleCount;
            f.videoSeconds = seconds;
        } else if (t.kind == TrackKind::Sound && f.audioSeconds == 0) {
            f.audioSeconds = seconds;
        }
    }
    return f;
}

} // namespace syntax
