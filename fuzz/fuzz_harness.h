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
    bool fixedSample = false;       // the bytes are the damaged file of an Advance Repair
                                    // pass with a fixed H.264/AAC sample (the stream scanner)
};

// Prepares a private workspace (TMPDIR, a fake muxer). Call once per process.
void FuzzSetUp();

// Runs one input. Returns 0.
int FuzzThroughDriver(const uint8_t* data, size_t size, const FuzzOptions& options);

// The routes by name, for the regression runner: "mov", "mov-reference",
// "avi", "avi-reference", "wmv", "flv", "mts", "mkv", "mkv-reference", "mpg",
// "mpg-reference", "mov-scan". False for an unknown name.
bool FuzzOptionsForRoute(const QString& route, FuzzOptions& options);
