#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <memory>
#include <vector>

#include "Platform/Media/Bitmap.h"

/// Pictures as tests work with them.
namespace qv::test {

/// Premultiplied colour and alpha.
using Pixel = std::array<float, 4>;

/// A rendered image, or the picture that it should be.
struct Picture {
    int width = 0, height = 0;
    std::vector<float> values;  ///< four a pixel, top row first

    Pixel at(int x, int y) const {
        const float* p = values.data() + (std::size_t(y) * std::size_t(width) + std::size_t(x)) * 4;
        return {p[0], p[1], p[2], p[3]};
    }
};

/// A bitmap of straight 0..1 colours, which are premultiplied and rounded to nearest.
inline Bitmap makeBitmap(int width, int height, const std::function<Pixel(int x, int y)>& straightColor) {
    auto pixels = std::make_shared<std::vector<std::uint8_t>>();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Pixel color = straightColor(x, y);
            for (int c = 0; c < 3; ++c)
                pixels->push_back(std::uint8_t(std::lround(color[std::size_t(c)] * color[3] * 255)));
            pixels->push_back(std::uint8_t(std::lround(color[3] * 255)));
        }
    }
    return {width, height, std::move(pixels)};
}

/// The values that a bitmap holds.
inline Picture pictureOf(const Bitmap& bitmap) {
    Picture picture{bitmap.width, bitmap.height, {}};
    for (std::uint8_t value : *bitmap.pixels) picture.values.push_back(float(value) / 255);
    return picture;
}

/// Largest difference of any component, infinite when the sizes differ or a value is not a number.
inline double worstDifference(const Picture& a, const Picture& b) {
    if (a.width != b.width || a.height != b.height) return INFINITY;
    double worst = 0;
    for (std::size_t i = 0; i < a.values.size(); ++i) {
        const double difference = std::abs(double(a.values[i]) - double(b.values[i]));
        if (!(difference <= worst)) worst = std::isnan(difference) ? INFINITY : difference;
    }
    return worst;
}

/// Largest difference of any component.
inline double difference(const Pixel& a, const Pixel& b) {
    double worst = 0;
    for (std::size_t c = 0; c < 4; ++c) worst = std::max(worst, std::abs(double(a[c]) - double(b[c])));
    return worst;
}

/// Mean difference of the components.
inline double meanDifference(const Picture& a, const Picture& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.values.size(); ++i)
        sum += std::abs(double(a.values[i]) - double(b.values[i]));
    return sum / double(a.values.size());
}

}  // namespace qv::test
