// A failing disk for tests, preloaded into the program under test: reads of
// the file named by REELWRIGHT_EIO_FILE fail with EIO where they touch one of
// the ranges in REELWRIGHT_EIO_RANGES ("start-end,start-end", bytes, end
// exclusive). A read that starts before a bad range stops short of it, as a
// disk does.
#include <dlfcn.h>
#include <errno.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/types.h>
#include <unistd.h>

extern "C" {

static int is_target(int fd)
{
    const char* const want = getenv("REELWRIGHT_EIO_FILE");
    char link[64], path[PATH_MAX];
    if (!want || fd < 0)
        return 0;
    snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
    const ssize_t n = readlink(link, path, sizeof path - 1);
    if (n <= 0)
        return 0;
    path[n] = 0;
    return strcmp(path, want) == 0;
}

// How many of the n bytes at off can be read before a bad range: n when none
// is touched.
static size_t readable(long long off, size_t n)
{
    const char* p = getenv("REELWRIGHT_EIO_RANGES");
    size_t ok = n;
    while (p && *p) {
        char* end;
        const long long from = strtoll(p, &end, 10);
        const long long to = *end == '-' ? strtoll(end + 1, &end, 10) : from;
        if (from < off + (long long)n && to > off) {
            const size_t before = from > off ? (size_t)(from - off) : 0;
            if (before < ok)
                ok = before;
        }
        p = *end == ',' ? end + 1 : nullptr;
    }
    return ok;
}

#define REAL(name) (reinterpret_cast<decltype(&name)>(dlsym(RTLD_NEXT, #name)))

// How many of the n bytes at off of the failing file can be read: -1 (EIO)
// when the first of them is bad.
static ssize_t positioned(size_t n, long long off)
{
    const size_t ok = readable(off, n);
    if (ok == 0 && n > 0) {
        errno = EIO;
        return -1;
    }
    return (ssize_t)ok;
}

ssize_t pread64(int fd, void* buf, size_t n, off64_t off)
{
    const ssize_t k = is_target(fd) ? positioned(n, off) : (ssize_t)n;
    return k < 0 ? -1 : REAL(pread64)(fd, buf, (size_t)k, off);
}

ssize_t pread(int fd, void* buf, size_t n, off_t off)
{
    return pread64(fd, buf, n, off);
}

ssize_t read(int fd, void* buf, size_t n)
{
    const ssize_t k = is_target(fd) ? positioned(n, lseek(fd, 0, SEEK_CUR)) : (ssize_t)n;
    return k < 0 ? -1 : REAL(read)(fd, buf, (size_t)k);
}

ssize_t copy_file_range(int in, off64_t* inOff, int out, off64_t* outOff, size_t n, unsigned flags)
{
    const ssize_t k = is_target(in) ? positioned(n, inOff ? *inOff : lseek(in, 0, SEEK_CUR)) : (ssize_t)n;
    return k < 0 ? -1 : REAL(copy_file_range)(in, inOff, out, outOff, (size_t)k, flags);
}

} // extern "C"
