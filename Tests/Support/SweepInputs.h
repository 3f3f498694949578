#pragma once

#include <algorithm>
#include <cmath>
#include <string_view>

#include "QVFilterCore/QVMTIFilter.h"
#include "Tests/Support/TestContext.h"

/// What sweeps over all classes drive them with.
namespace qv::test {

/// A picture with ramps, hard edges and fine detail; `seed` makes another one. A cut-out one is a disc with a
/// soft edge, transparent outside.
inline MTIImage photo(int width, int height, int seed = 0, bool cutOut = false) {
    return MTIImage::imageWithBitmap(makeBitmap(width, height, [&](int x, int y) {
        const float u = float(x) / float(width), v = float(y) / float(height);
        const float alpha = cutOut ? std::clamp((0.45f - std::hypot(u - 0.5f, v - 0.5f)) * 8, 0.0f, 1.0f) : 1;
        const bool block = ((x / 7 + y / 5 + seed) % 3) == 0;
        return Pixel{block ? 0.9f : u, 0.2f + 0.6f * v,
                     seed ? 0.8f - 0.5f * u : 0.3f + 0.3f * std::sin(u * 20), alpha};
    }));
}

inline Bitmap discBitmap(int width, int height) {
    return makeBitmap(width, height, [&](int x, int y) {
        const float r = std::hypot(float(x) / float(width) - 0.5f, float(y) / float(height) - 0.5f);
        const float inside = std::clamp((0.35f - r) * 20, 0.0f, 1.0f);
        return Pixel{inside, inside, inside, 1};
    });
}
inline MTIImage disc(int width, int height) {
    return MTIImage::imageWithBitmap(discBitmap(width, height));
}

/// The disc in memory.
inline PixelBuffer discBuffer(int width, int height) {
    const Bitmap picture = discBitmap(width, height);
    PixelBuffer buffer = PixelBuffer::create(PixelFormat::gray8, width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            buffer.plane(0).data[std::size_t(y) * buffer.plane(0).rowBytes + std::size_t(x)] =
                (*picture.pixels)[(std::size_t(y) * std::size_t(width) + std::size_t(x)) * 4];
    }
    return buffer;
}

/// A picture for an input: for every class alike, and another one for every role.
inline QVInputValue pictureFor(const QVInput& input, int width, int height, bool cutOut = false) {
    if (input.isBuffer) return discBuffer(width, height);
    if (input.role == QVInputRole::mask) return disc(width, height);
    if (input.role == QVInputRole::table) return photo(512, 512);
    return photo(width, height, int(input.role), cutOut && input.role == QVInputRole::frame);
}

inline void setInputs(QVMTIFilter& filter, int width, int height, bool cutOut = false) {
    for (const QVInput& input : filter.filterClass().allInputs()) {
        std::string error;
        EXPECT_TRUE(setInput(filter, input.name, pictureFor(input, width, height, cutOut), &error)) << error;
    }
}

inline void setNumber(QVMTIFilter& filter, std::string_view name, double value) {
    const QVProperty* property = filter.filterClass().property(name);
    if (!property) return;
    std::string error;
    const QVPropertyValue typed = property->type == QVPropertyType::integer
                                      ? QVPropertyValue(std::int64_t(value))
                                      : QVPropertyValue(value);
    EXPECT_TRUE(setProperty(filter, name, typed, &error)) << error;
}

/// A moment: seconds for effects, a fraction of the way for transitions.
inline void setMoment(QVMTIFilter& filter, double fraction) {
    setNumber(filter, "iTime", fraction * 3);
    setNumber(filter, "startTime", 0);
    setNumber(filter, "endTime", 3);
    setNumber(filter, "progress", fraction);
}

}  // namespace qv::test
