#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <span>

#include "Platform/Geometry/Geometry.h"

namespace qv {

/// One to four floats for a shader: a point, a size, a colour.
class MTIVector {
  public:
    MTIVector() = default;
    /// Values past the fourth are dropped.
    MTIVector(std::initializer_list<float> values) : MTIVector(std::span(values.begin(), values.size())) {}
    /// The same from memory.
    explicit MTIVector(std::span<const float> values) {
        for (float value : values.first(values.size() < 4 ? values.size() : 4)) values_[count_++] = value;
    }

    /// Two floats: x and y, or width and height, narrowed.
    static MTIVector vectorWithCGPoint(CGPoint point) { return {float(point.x), float(point.y)}; }
    static MTIVector vectorWithCGSize(CGSize size) { return {float(size.width), float(size.height)}; }

    /// How many values there are, 0..4.
    std::size_t count() const { return count_; }
    /// 0 outside the vector.
    float operator[](std::size_t index) const { return index < count_ ? values_[index] : 0.0f; }
    /// As many as `count`; valid as long as the vector is.
    std::span<const float> values() const { return {values_.data(), count_}; }

    bool operator==(const MTIVector&) const = default;

  private:
    std::array<float, 4> values_{};
    std::size_t count_ = 0;
};

}  // namespace qv
