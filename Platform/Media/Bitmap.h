#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace qv {

/// Pixels in memory: 8-bit RGBA, top row first, rows without padding, colour premultiplied by alpha.
/// The pixels are shared and never change once a bitmap is handed on.
struct Bitmap {
    int width = 0, height = 0;  ///< pixels
    std::shared_ptr<const std::vector<std::uint8_t>>
        pixels;  ///< width × height × 4 bytes; nil for a nil bitmap

    explicit operator bool() const { return pixels != nullptr; }
    /// Bytes of a row.
    std::size_t rowBytes() const { return std::size_t(width) * 4; }
    /// The row `y` from the top; the bitmap is not nil.
    const std::uint8_t* row(int y) const { return pixels->data() + std::size_t(y) * rowBytes(); }
};

/// Sides above this are refused everywhere: a frame of this size still fits the counters and the devices.
inline constexpr int kMaximumImageSide = 16384;

/// In place, rounding to nearest.
void premultiply(std::uint8_t* rgba, std::size_t pixelCount);
/// In place, rounding to nearest; a transparent pixel becomes transparent black.
void unpremultiply(std::uint8_t* rgba, std::size_t pixelCount);

}  // namespace qv
