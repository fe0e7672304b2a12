#pragma once
// The end of a QThread's run() and the wait() that sees it end. Qt's own
// locks order everything run() did before what the waiting thread does
// next, but Qt is not built with ThreadSanitizer, which can't see them and
// takes run()'s last accesses and the waiter's first ones (a destructor, the
// next start) for races. A RunEnd made in run() right after the lock it holds
// to its end (so that it marks the end while that lock is still held), and
// Joined() after a wait() that returned or after taking that lock, state
// that order; in other builds they are nothing.
#if defined(__SANITIZE_THREAD__)
#define REELWRIGHT_TSAN_ORDER 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define REELWRIGHT_TSAN_ORDER 1
#endif
#endif

#ifdef REELWRIGHT_TSAN_ORDER
#include <sanitizer/tsan_interface.h>
#endif

namespace threadjoin {

class RunEnd {
public:
    explicit RunEnd(const void* thread) : m_thread(const_cast<void*>(thread)) {}
#ifdef REELWRIGHT_TSAN_ORDER
    ~RunEnd() { __tsan_release(m_thread); }
#endif
    RunEnd(const RunEnd&) = delete;
    RunEnd& operator=(const RunEnd&) = delete;

private:
    [[maybe_unused]] void* m_thread;
};

inline void Joined([[maybe_unused]] const void* thread)
{
#ifdef REELWRIGHT_TSAN_ORDER
    __tsan_acquire(const_cast<void*>(thread));
#endif
}

} // namespace threadjoin
