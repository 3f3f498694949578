#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "Tests/Support/TestContext.h"

namespace qv::test {

/// A new effect by the name of its class, as a host gets it; nil, with a failure, when it is not an `Effect`.
template <typename Effect = QVEffectMTIFilter>
std::unique_ptr<Effect> makeEffect(std::string_view name) {
    auto filter = createFilter(name);
    auto* effect = dynamic_cast<Effect*>(filter.get());
    if (!effect) {
        ADD_FAILURE() << name << " is not the effect that it should be";
        return nullptr;
    }
    static_cast<void>(filter.release());
    return std::unique_ptr<Effect>(effect);
}

/// An opaque picture of one colour.
inline MTIImage plainImage(int width, int height, Pixel color) {
    return MTIImage::imageWithBitmap(makeBitmap(width, height, [&](int, int) { return color; }));
}

/// Shapes, gradients and fine detail of many colours, opaque.
inline MTIImage sceneImage(int width, int height) {
    return MTIImage::imageWithBitmap(makeBitmap(width, height, [&](int x, int y) {
        const float u = (float(x) + 0.5f) / float(width), v = (float(y) + 0.5f) / float(height);
        const bool disc = std::hypot(u - 0.4f, v - 0.6f) < 0.22f;
        const float detail = float((x * 7 + y * 3) % 5) / 20;
        return disc ? Pixel{0.85f, 0.3f + detail, 0.15f, 1}
                    : Pixel{0.2f + 0.6f * u, 0.75f - 0.5f * v, 0.4f + detail, 1};
    }));
}

/// Mean difference of the components.
inline double meanDifference(const Picture& a, const Picture& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.values.size(); ++i)
        sum += std::abs(double(a.values[i]) - double(b.values[i]));
    return sum / double(a.values.size());
}

}  // namespace qv::test
