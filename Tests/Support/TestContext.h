#pragma once

#include <array>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Platform/ImageGraph/MTIContext.h"

#include <gtest/gtest.h>

namespace qv::test {

/// The context that the tests of one program share, with the validation layer on. Made once; nil, with a
/// failure, when there is no device.
inline const std::shared_ptr<MTIContext>& context() {
    static const std::shared_ptr<MTIContext> instance = [] {
        std::string error;
        MTIContextOptions options;
        options.validation = true;
        options.shaderCacheDirectory = QV_TEST_SHADER_CACHE;
        auto made = MTIContext::create(options, &error);
        if (!made) ADD_FAILURE() << error;
        return made;
    }();
    return instance;
}

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

/// Renders in float. A failure to render, and a message of the validation layer, fail the test.
inline Picture render(const MTIImage& image) {
    Picture picture;
    if (!image || !context()) {
        ADD_FAILURE() << (image ? "no context" : "the image is nil");
        return picture;
    }
    std::string error;
    const std::size_t messagesBefore = context()->validationMessages().size();
    picture.values = context()->renderToFloats(image, &error);
    picture.width = int(image.size().width);
    picture.height = int(image.size().height);
    const auto messages = context()->validationMessages();
    for (std::size_t i = messagesBefore; i < messages.size(); ++i) ADD_FAILURE() << messages[i];
    if (picture.values.size() != std::size_t(picture.width) * std::size_t(picture.height) * 4) {
        ADD_FAILURE() << "not rendered: " << error;
        picture.values.assign(std::size_t(picture.width) * std::size_t(picture.height) * 4, NAN);
    }
    return picture;
}

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

}  // namespace qv::test
