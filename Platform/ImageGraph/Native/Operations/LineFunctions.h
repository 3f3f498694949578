#pragma once

#include <cstdint>

#include "Platform/ImageGraph/Native/NativeCompiler.h"

namespace qv {

/// Lanes that line functions work on at once, at most: what they read is padded to a multiple of it.
inline constexpr int kLineLanes = 16;

/// Most taps that a pixel stands for.
inline constexpr int kMostReduction = 16;

/// Pixels side by side that lie on neighbouring lines: lane n's is pixel x + n of the row, and on the way
/// from there to the next one by `share`, 0..1.
struct LineTap {
    const std::uint8_t* row;
    int x;
    float share;
};

/// What comes out of lines that run down the picture. Each pixel is the mean of twice `reduction` taps with
/// the weights 1 3 5 … 5 3 1; the next one on its line begins `reduction` taps later.
struct LinesDown {
    const LineTap* taps;  ///< reduction × (pixels + 1)
    int reduction;
    bool lightsOnly;  ///< as MTILineGather has it
    bool isOnGrid;    ///< every share is 0
    int width;        ///< of a tap's row, whose outermost pixels go on
    int firstLine, endLine;
    int pixels;                            ///< of every line
    std::uint8_t* out;                     ///< the first line's
    std::int64_t lineStride, pixelStride;  ///< bytes; a line stride of 4 may write kLineLanes more
};

/// A line along a row: taps `upper`, and on the way to `lower` by `shares` unless that is nil. Padded by
/// kLineLanes × reduction.
struct LineAcross {
    const std::uint32_t *upper, *lower;
    const float* shares;
    int reduction;
    bool lightsOnly;
    int pixels;
    std::uint8_t* out;  ///< with room for kLineLanes more
    float* sums;        ///< room for 8 × (pixels + 2 kLineLanes)
};

/// Rows, 256 at most: their sum and that of the two outermost by their weight, by the scale.
struct RowBox {
    const std::uint8_t* const* rows;
    int count;
    const std::uint8_t* outermost[2];
    float weight, scale;
    int pixels;  ///< reads and writes up to kLineLanes more
    std::uint8_t* out;
};

/// Arithmetic on RGBA8 along lines, in floats of at least 8 more bits: what is rounded here would show, since
/// streaks are made stronger afterwards. The same bytes from every instruction set.
struct LineFunctions {
    void (*down)(const LinesDown& lines);
    void (*across)(const LineAcross& line);
    void (*box)(const RowBox& box);
};

/// Compiled for the instruction set; portable code stands for those of other machines.
const LineFunctions& lineFunctions(NativeTarget instructions);

}  // namespace qv
