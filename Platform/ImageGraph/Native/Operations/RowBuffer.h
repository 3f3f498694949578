#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "Platform/ImageGraph/Native/Operations/RowFunctions.h"

namespace qv {

/// Values that a row of `pixels` takes with what row functions read and write behind it.
constexpr std::size_t paddedValues(int pixels) {
    return (std::size_t(pixels) * 4 + 2 * kRowGroup - 1) / kRowGroup * kRowGroup;
}

/// A row of words with room for pixels that lie before and behind it.
class RowBuffer {
  public:
    RowBuffer(int before, int pixels, int behind)
        : before_(before), pixels_(pixels), behind_(behind), words_(paddedValues(before + pixels + behind)) {}

    std::int16_t* row() { return words_.data() + std::size_t(before_) * 4; }
    /// Repeats the outermost pixels in the room beside them.
    void extend() {
        for (int i = 1; i <= before_; ++i) std::memcpy(row() - 4 * i, row(), kPixelBytes);
        const std::int16_t* last = row() + std::size_t(pixels_ - 1) * 4;
        for (int i = 0; i < behind_; ++i)
            std::memcpy(row() + std::size_t(pixels_ + i) * 4, last, kPixelBytes);
    }

  private:
    static constexpr std::size_t kPixelBytes = 4 * sizeof(std::int16_t);
    int before_, pixels_, behind_;
    std::vector<std::int16_t> words_;
};

/// Where each pixel of a row lies in another row: right of one pixel and left of the next.
struct Placement {
    std::vector<std::int32_t> left;
    std::vector<std::int16_t> weights;  ///< as RowFunctions::between takes them

    /// For `pixels` and what row functions draw besides.
    explicit Placement(int pixels) {
        const std::size_t padded = paddedValues(pixels) / 4;
        left.resize(padded);
        weights.resize(padded * 8);
    }
    /// `share`: how much of the next pixel, 0..32767 for all of it.
    void set(int x, int leftPixel, int share) {
        left[std::size_t(x)] = leftPixel;
        const auto to = weights.begin() + std::ptrdiff_t(x) * 8;
        std::fill_n(to, 4, std::int16_t(32767 - share));
        std::fill_n(to + 4, 4, std::int16_t(share));
    }
};

inline const std::uint8_t* rowOf(const NativeImage& image, int y) {
    return image.pixels + std::int64_t(std::clamp(y, 0, image.height - 1)) * image.rowBytes;
}

}  // namespace qv
