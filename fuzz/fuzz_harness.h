#pragma once
// Feeds bytes through the repair driver exactly as a user's file would go,
// and checks after each input that nothing outside the Repaired folder was
// written and that the input is unchanged. A violation aborts, so that the
// fuzzer (or the regression test) reports it.
#include <QString>
#include <cstddef>
#include <cstdint>

struct FuzzOptions {
    const char* suffix = "mov";     // suffix of the damaged file
    bool asReference = false;       // the bytes are the sample of an Advance Repair pass
    // When set, the bytes are the damaged file of an Advance Repair pass with
    // a fixed sample of this kind ("h264-aac", "h264-sowt", "h264-twos",
    // "h264-lpcm", "hevc-aac", "hevc-lpcm"): the stream and index scanners.
    const char* fixedSample = nullptr;
    bool indexScanners = false;     // the bytes go to the index scanners directly
};

// Prepares a private workspace (TMPDIR, a fake muxer). Call once per process.
void FuzzSetUp();

// Runs one input. Returns 0.
int FuzzThroughDriver(const uint8_t* data, size_t size, const FuzzOptions& options);

// The routes by name, for the regression runner: "mov", "mov-reference",
// "avi", "avi-reference", "wmv", "flv", "mts", "mkv", "mkv-reference", "mpg",
// "mpg-reference", and the scanner routes "mov-scan", "sowt-scan",
// "twos-scan", "lpcm-scan", "hevc-scan", "hevc-lpcm-scan", "index-scan". False for an
// unknown name.
bool FuzzOptionsForRoute(const QString& route, FuzzOptions& options);
