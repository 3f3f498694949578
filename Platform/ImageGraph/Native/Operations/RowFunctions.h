#pragma once

#include <cstdint>

#include "Platform/ImageGraph/Native/NativeCompiler.h"

namespace qv {

/// Values that row functions work on at once: they read and write rows rounded up to a multiple of them.
inline constexpr int kRowGroup = 64;

/// Arithmetic on rows of four channels, in integers. "Words" are 8-bit values × 64, a little less than 0 or
/// more than 255 × 64 where rounding leads there. Weights are fractions of 32768. Rows may begin anywhere.
struct RowFunctions {
    /// Σ weight × (upper + lower) of so many pairs of rows of words, or of bytes; the weights make one half
    /// together.
    void (*sumOfPairs)(const void* const* upper, const void* const* lower, const std::int16_t* weights,
                       int pairs, int values, std::int16_t* out);
    void (*sumOfBytePairs)(const void* const* upper, const void* const* lower, const std::int16_t* weights,
                           int pairs, int values, std::int16_t* out);
    /// a + weight × (b − a)
    void (*mixed)(const std::int16_t* a, const std::int16_t* b, std::int16_t weight, int values,
                  std::int16_t* out);
    void (*mixedBytes)(const std::uint8_t* a, const std::uint8_t* b, std::int16_t weight, int values,
                       std::int16_t* out);
    /// Of groups of pixels side by side, `pixels` pairs of them, what two groups make together: their mean,
    /// and their mean with the weights 1 3 5 … In place too.
    void (*joined)(const std::int16_t* means, const std::int16_t* ramps, int pixels, std::int16_t* meansOut,
                   std::int16_t* rampsOut);
    /// Of each group and the one behind it the mean with the weights 1 3 5 … 5 3 1.
    void (*tents)(const std::int16_t* means, const std::int16_t* ramps, int values, std::int16_t* out);
    /// Bytes of `pixels` that lie between pixels of a row: `left` is the one to the left, `weights` four
    /// times its own and four times that of the next.
    void (*between)(const std::int16_t* row, const std::int32_t* left, const std::int16_t* weights,
                    int pixels, std::uint8_t* out);
    /// Rounded and clamped.
    void (*bytes)(const std::int16_t* row, int values, std::uint8_t* out);

    void (*opaque)(const std::uint8_t* in, int pixels, std::uint8_t* out);
    /// Rounded to the nearest.
    void (*premultiplied)(const std::uint8_t* in, int pixels, std::uint8_t* out);
    void (*alphas)(const std::uint8_t* in, int pixels, std::uint8_t* out);
};

/// Compiled for the instruction set; portable code stands for those of other machines.
const RowFunctions& rowFunctions(NativeTarget instructions);

}  // namespace qv
