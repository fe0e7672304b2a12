#pragma once
// Cuts stretches of raw AAC sound into frames, with a decoder measuring each
// frame. A decoder takes about as long per frame as copying its share of
// the file, so given readers of their own, threads cut the stretches while
// the scan goes on (one per reader: the scan itself soon leaves the cores
// to them).
#include "core/byte_reader.h"
#include "recovery/syntax/codec_frames.h"

#include <QByteArray>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace syntax {

// Whether a raw AAC frame of sound (not of padding) can start with these
// four bytes: a cheap test ahead of a decoder's verdict.
bool AacElementPlausible(const uint8_t* p);

class AacRangeSplitter {
public:
    // Frames one after another from offset on.
    struct Run {
        uint64_t offset = 0;
        std::vector<uint32_t> frames;
    };
    struct Result {
        std::vector<Run> runs;
        uint64_t skipped = 0;   // bytes of the stretch in no frame
    };

    // asc: the AudioSpecificConfig. reader: the bytes to cut, on the caller's
    // thread; threadReaders: other readers of the same bytes that nobody else
    // uses, one thread each (none: the caller's thread cuts as it queues).
    AacRangeSplitter(const QByteArray& asc, ByteReader& reader, const std::vector<ByteReader*>& threadReaders,
                     const std::atomic<bool>* stop);
    ~AacRangeSplitter();
    AacRangeSplitter(const AacRangeSplitter&) = delete;
    AacRangeSplitter& operator=(const AacRangeSplitter&) = delete;

    bool ok() const { return m_ok; }
    // Queues [begin, end); returns the number of its result.
    size_t submit(uint64_t begin, uint64_t end);
    // Takes the result of stretch index into result once it is cut (with
    // wait, waits for it); false when it isn't yet. Each result is kept
    // until it is taken, and taken once.
    bool take(size_t index, Result& result, bool wait);

private:
    struct Cutter {
        ByteReader* reader = nullptr;
        AacFramer framer;
    };
    void startThreads();
    Result split(Cutter& c, uint64_t begin, uint64_t end);
    // The next position in [from, end) where two frames follow each other
    // (or one ends the stretch); end when none.
    uint64_t resume(Cutter& c, uint64_t from, uint64_t end);
    void work(Cutter& c);

    const std::atomic<bool>* m_stop;
    QByteArray m_asc;
    std::vector<ByteReader*> m_threadReaders;
    bool m_threadsStarted = false;
    Cutter m_own;                      // on the caller's thread
    std::vector<std::unique_ptr<Cutter>> m_cutters;   // one per thread
    bool m_ok = false;
    size_t m_submitted = 0;
    std::map<size_t, Result> m_done;   // cut and not yet taken
    // The queue of the threads (unused without them).
    std::vector<std::thread> m_threads;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_cut;     // a result is done
    std::deque<std::pair<size_t, std::pair<uint64_t, uint64_t>>> m_queue;
    bool m_closing = false;
};

} // namespace syntax
