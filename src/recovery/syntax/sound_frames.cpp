#include "recovery/syntax/sound_frames.h"

#include "core/code_search.h"

namespace syntax {

bool AacElementPlausible(const uint8_t* p)
{
    // A single or paired channel element of tag 0 whose stream info has its
    // reserved bit clear, a band count in range and no prediction. A fill or
    // data element in front is left out: a decoder takes such a "frame" over
    // almost any bytes.
    const uint32_t bits = ByteReader::loadBe32(p);
    auto field = [bits](int at, int width) { return (bits >> (32 - at - width)) & ((1u << width) - 1); };
    const uint32_t id = field(0, 3);
    if ((id != 0 && id != 1) || field(3, 4) != 0 || (id == 0 && field(7, 8) == 0))
        return false;   // (a gain of 0 is silence no encoder writes; zeros of a hole start with it)
    int at = 7;
    if (id == 1) {              // channel pair: common_window
        if (!field(7, 1))
            return true;        // each channel's info follows its gain: not checked here
        at = 8;
    } else {
        at = 15;                // global_gain comes first
    }
    if (field(at, 1))           // ics_reserved_bit
        return false;
    const bool shortWindows = field(at + 1, 2) == 2;
    const uint32_t maxSfb = shortWindows ? field(at + 4, 4) : field(at + 4, 6);
    if (maxSfb > (shortWindows ? 15u : 51u))
        return false;
    return shortWindows || !field(at + 10, 1);   // predictor_data_present
}

AacRangeSplitter::AacRangeSplitter(const QByteArray& asc, ByteReader& reader,
                                   const std::vector<ByteReader*>& threadReaders, const std::atomic<bool>* stop)
    : m_stop(stop), m_asc(asc), m_threadReaders(threadReaders)
{
    m_own.reader = &reader;
    m_ok = m_own.framer.init(reinterpret_cast<const uint8_t*>(asc.constData()), size_t(asc.size()));
}

void AacRangeSplitter::startThreads()
{
    m_threadsStarted = true;
    const auto* config = reinterpret_cast<const uint8_t*>(m_asc.constData());
    for (ByteReader* r : m_threadReaders) {
        auto c = std::make_unique<Cutter>();
        c->reader = r;
        if (!m_ok || !r || !c->framer.init(config, size_t(m_asc.size())))
            continue;
        m_cutters.push_back(std::move(c));
        Cutter* cutter = m_cutters.back().get();
        m_threads.emplace_back([this, cutter] { work(*cutter); });
    }
}

AacRangeSplitter::~AacRangeSplitter()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_closing = true;
    }
    m_wake.notify_all();
    for (std::thread& t : m_threads)
        t.join();
}

size_t AacRangeSplitter::submit(uint64_t begin, uint64_t end)
{
    // The threads start with the first stretch: many files have none.
    if (!m_threadsStarted)
        startThreads();
    const size_t index = m_submitted++;
    if (m_threads.empty()) {
        m_done[index] = split(m_own, begin, end);
        return index;
    }
    std::lock_guard<std::mutex> lock(m_mutex);
    m_queue.push_back({index, {begin, end}});
    m_wake.notify_one();
    return index;
}

bool AacRangeSplitter::take(size_t index, Result& result, bool wait)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    auto found = m_done.find(index);
    while (found == m_done.end()) {
        if (!wait || index >= m_submitted)
            return false;
        m_cut.wait(lock);
        found = m_done.find(index);
    }
    result = std::move(found->second);
    m_done.erase(found);
    return true;
}

void AacRangeSplitter::work(Cutter& c)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_closing || !m_queue.empty(); });
        if (m_queue.empty())
            return;
        const auto job = m_queue.front();
        m_queue.pop_front();
        lock.unlock();
        Result r = split(c, job.second.first, job.second.second);
        lock.lock();
        m_done[job.first] = std::move(r);
        m_cut.notify_all();
    }
}

AacRangeSplitter::Result AacRangeSplitter::split(Cutter& c, uint64_t begin, uint64_t end)
{
    Result result;
    Run run;
    uint64_t q = begin;
    while (q < end && !(m_stop && m_stop->load())) {
        const uint32_t f = c.framer.frameSize(*c.reader, q, end);
        if (f) {
            if (run.frames.empty())
                run.offset = q;
            run.frames.push_back(f);
            q += f;
            continue;
        }
        // Damage inside the sound: the frames go on where two chain again.
        if (!run.frames.empty())
            result.runs.push_back(std::move(run));
        run = Run();
        const uint64_t from = q;
        q = resume(c, q + 1, end);
        result.skipped += q - from;
    }
    if (!run.frames.empty())
        result.runs.push_back(std::move(run));
    return result;
}

uint64_t AacRangeSplitter::resume(Cutter& c, uint64_t from, uint64_t end)
{
    // A plausible element (id 0 or 1, tag 0) and a hole's zeros both start
    // with a byte whose top two and tag bits are clear: the bytes between
    // them are passed a block at a time.
    constexpr uint8_t kNotAnElement = 0xDE;
    uint64_t p = from;
    while (p + 4 <= end) {
        p = FindFirstWhere(*c.reader, p, end - 3, [](const uint8_t* b, uint64_t) { return !(b[0] & kNotAnElement); });
        if (p + 4 > end)
            break;
        const uint8_t* v = c.reader->view(p, 4);
        if (ByteReader::loadBe32(v) == 0) {
            // Zeros (a hole): no frame of sound starts in them (its gain is
            // not 0); on to three bytes before the next byte that isn't.
            const uint64_t nonZero = NextNonZero(*c.reader, p, end);
            if (nonZero >= end)
                return end;
            p = std::max(p, nonZero >= 4 ? nonZero - 4 : 0) + 1;
            continue;
        }
        if (AacElementPlausible(v)) {
            const uint32_t f = c.framer.frameSize(*c.reader, p, end);
            if (f && (p + f >= end || c.framer.frameSize(*c.reader, p + f, end)))
                return p;
        }
        ++p;
    }
    return end;
}

} // namespace syntax
