// One libFuzzer target per route: the route's name is compiled in as
// FUZZ_ROUTE (see fuzz/CMakeLists.txt).
#include "fuzz_harness.h"

#include <cstdlib>

namespace {
FuzzOptions g_options;
}

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    FuzzSetUp();
    if (!FuzzOptionsForRoute(QStringLiteral(FUZZ_ROUTE), g_options))
        std::abort();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    return FuzzThroughDriver(data, size, g_options);
}
