#pragma once
// The AVI and DivX route. The suffix table takes MakeAviRoute(); the maker
// with a part limit lets a test see an output in several RIFF parts without
// writing gigabytes.
#include "core/route.h"

#include <cstdint>
#include <memory>

// An output whose RIFF would pass this many bytes is written in parts of
// about this size, as players expect of a large AVI.
constexpr uint64_t kAviPartLimit = uint64_t(1) << 30;

std::unique_ptr<Route> MakeAviRoute();
std::unique_ptr<Route> MakeAviRoute(uint64_t partLimit);
