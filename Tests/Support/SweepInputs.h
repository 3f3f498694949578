#pragma once

#include <algorithm>
#include <cmath>
#include <string_view>

#include "QVFilterCore/QVAIEffectMTIFilter.h"
#include "QVFilterCore/QVMTITwoInputFilter.h"
#include "QVFilterCore/QVTransitionMTIFilter.h"
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

inline MTIImage disc(int width, int height) {
    return MTIImage::imageWithBitmap(makeBitmap(width, height, [&](int x, int y) {
        const float r = std::hypot(float(x) / float(width) - 0.5f, float(y) / float(height) - 0.5f);
        const float inside = std::clamp((0.35f - r) * 20, 0.0f, 1.0f);
        return Pixel{inside, inside, inside, 1};
    }));
}

inline void setInputs(QVMTIFilter& filter, int width, int height, bool cutOut = false) {
    if (auto* one = dynamic_cast<QVMTIOneInputFilter*>(&filter))
        one->setInputImage(photo(width, height, 0, cutOut));
    if (auto* two = dynamic_cast<QVMTITwoInputFilter*>(&filter)) two->setInputImage2(photo(width, height, 1));
    if (auto* subject = dynamic_cast<QVAIEffectMTIFilter*>(&filter))
        subject->setMaskImage(disc(width, height));
    if (auto* transition = dynamic_cast<QVTransitionMTIFilter*>(&filter)) {
        transition->setInputImage1(photo(width, height, 0, cutOut));
        transition->setInputImage2(photo(width, height, 1));
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

/// A moment: seconds for effects, a fraction of the passage for transitions.
inline void setMoment(QVMTIFilter& filter, double fraction) {
    setNumber(filter, "iTime", fraction * 3);
    setNumber(filter, "startTime", 0);
    setNumber(filter, "endTime", 3);
    if (dynamic_cast<QVTransitionMTIFilter*>(&filter)) setNumber(filter, "progress", fraction);
}

}  // namespace qv::test
