#include "core/thread_video_repair.h"

#include <algorithm>

// Blocks of 1 MiB rather than 512 bytes: the stop flag is still polled
// between blocks, and a copy runs at the speed of the disk.
uint64_t ThreadVideoRepair::CopyFileRange(ByteReader& from, FileWriter& to, uint64_t length, uint64_t start)
{
    constexpr uint64_t kBlock = 1u << 20;
    uint64_t done = 0;
    while (done < length && !g_stopRequested) {
        const uint64_t n = std::min(kBlock, length - done);
        to.copyFrom(from, start + done, n);
        done += n;
    }
    return done;
}
