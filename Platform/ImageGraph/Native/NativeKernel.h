#pragma once

#include <cstdint>

namespace qv {

/// Pixels that a kernel draws at once, and by which rows are padded.
inline constexpr int kKernelLanes = 16;

/// A texture in memory. Rows begin at multiples of 64 bytes; behind the last pixel of a row and behind the
/// last row there is room for `kKernelLanes` more pixels and another row, so that a kernel may read and write
/// whole groups; what stands there means nothing, and no result may depend on it.
struct NativeImage {
    std::uint8_t* pixels = nullptr;
    std::int64_t rowBytes = 0;
    std::int32_t width = 0, height = 0;  ///< pixels
};

/// What a kernel is called with. Compiled code reads it by offset.
struct NativeKernelArguments {
    const std::uint32_t* words = nullptr;     ///< the pushed block of the pass, kMaximumPushedWords of them
    const std::int32_t* selectors = nullptr;  ///< by constant id
    std::uint32_t resampled = 0;              ///< bit n: readHere(n) samples instead of fetching
    std::uint32_t reserved = 0;
    const NativeImage* inputs = nullptr;  ///< by binding; each of the format that the kernel was compiled for
    NativeImage target;
};

/// Draws the rows [firstRow, endRow) of a pass. Thread-safe: bands of one pass may be drawn at the same time.
using NativeKernel = void (*)(const NativeKernelArguments*, std::int32_t firstRow, std::int32_t endRow);

/// The symbol of the kernel in its object.
inline constexpr char kNativeKernelSymbol[] = "qv_kernel";

}  // namespace qv
