#pragma once
// What a finished output holds, read back through the muxer program: the
// frames of its first video stream and the seconds of its first sound
// stream. Used by the routes that rebuild a container from a byte scan,
// where the counts of the scan say little about what plays.
#include <QString>
#include <cstdint>

struct OutputFigures {
    bool measured = false;      // the muxer read the file
    uint64_t videoFrames = 0;
    double audioSeconds = 0;
};

// Reads the muxer's frame listing of path (ReadFrameListing) and adds up its
// packet lines.
OutputFigures MeasureOutput(const QString& path);

// The figures from the muxer's framecrc listing (header lines "#tb N: a/b"
// and "#media_type N: video|audio", then "N, dts, pts, duration, size, crc").
OutputFigures ParseFrameListing(const QByteArray& listing);

// Bytes of the input that the output does not carry: what a byte scan
// skipped as damage. Rewritten headers and indexes count against it, so a
// whole input gives about zero; never negative.
inline uint64_t SkippedBytes(uint64_t inputSize, uint64_t outputSize)
{
    return inputSize > outputSize ? inputSize - outputSize : 0;
}
