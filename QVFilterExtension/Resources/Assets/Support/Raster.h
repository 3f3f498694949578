#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "QVFilterExtension/Resources/Assets/Support/Noise.h"

namespace qv::assets {

/// A picture in memory; pixel (0, 0) is the top left one and its centre is (0.5, 0.5).
template <class T>
class Raster {
  public:
    Raster() = default;
    Raster(int width, int height, T value = {})
        : width_(width), height_(height), pixels_(std::size_t(width) * std::size_t(height), value) {}

    int width() const { return width_; }
    int height() const { return height_; }
    T* row(int y) { return pixels_.data() + std::size_t(y) * std::size_t(width_); }
    const T* row(int y) const { return pixels_.data() + std::size_t(y) * std::size_t(width_); }
    T& at(int x, int y) { return row(y)[x]; }
    const T& at(int x, int y) const { return row(y)[x]; }
    const T& clamped(int x, int y) const {
        return at(std::clamp(x, 0, width_ - 1), std::clamp(y, 0, height_ - 1));
    }
    /// Linear between pixel centres; the border goes on outside.
    T sample(float x, float y) const {
        const int ix = floorToInt(x - 0.5f), iy = floorToInt(y - 0.5f);
        const float u = x - 0.5f - float(ix), v = y - 0.5f - float(iy);
        const T top = clamped(ix, iy) * (1 - u) + clamped(ix + 1, iy) * u;
        const T bottom = clamped(ix, iy + 1) * (1 - u) + clamped(ix + 1, iy + 1) * u;
        return top * (1 - v) + bottom * v;
    }
    /// The mean of each 2×2 block.
    Raster halved() const {
        Raster half(width_ / 2, height_ / 2);
        for (int y = 0; y < half.height_; ++y)
            for (int x = 0; x < half.width_; ++x)
                half.at(x, y) = (at(2 * x, 2 * y) + at(2 * x + 1, 2 * y) + at(2 * x, 2 * y + 1) +
                                 at(2 * x + 1, 2 * y + 1)) *
                                0.25f;
        return half;
    }

  private:
    int width_ = 0, height_ = 0;
    std::vector<T> pixels_;
};

/// A row moved by a part of a pixel.
class Shift {
  public:
    /// Pixel x then shows what lies `columns` further right.
    explicit Shift(float columns) : whole_(floorToInt(columns)), part_(columns - float(whole_)) {}
    template <class T>
    T of(const Raster<T>& raster, int x, int y) const {
        return raster.clamped(x + whole_, y) * (1 - part_) + raster.clamped(x + whole_ + 1, y) * part_;
    }

  private:
    int whole_;
    float part_;
};

}  // namespace qv::assets
