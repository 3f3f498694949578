#pragma once

#include "Platform/ImageGraph/ImageNode.h"
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

/// Red grows to the right, green downwards, each from 0 to 1 between the borders.
inline Bitmap rampsBitmap(int width, int height, float blue = 0.5f) {
    return makeBitmap(width, height, [&](int x, int y) {
        return Pixel{(float(x) + 0.5f) / float(width), (float(y) + 0.5f) / float(height), blue, 1};
    });
}
inline MTIImage rampsImage(int width, int height, float blue = 0.5f) {
    return MTIImage::imageWithBitmap(rampsBitmap(width, height, blue));
}

/// A uniform's value; without one of this name and type the test fails.
template <typename Value>
Value uniform(const MTIParameters& parameters, std::string_view name) {
    const MTIValue* value = parameters.find(name);
    if (value && std::holds_alternative<Value>(*value)) return std::get<Value>(*value);
    ADD_FAILURE() << "no " << name << " of this type";
    return {};
}

inline std::vector<std::string> keysOf(const MTIParameters& parameters) {
    std::vector<std::string> names;
    for (const auto& [name, value] : parameters) names.push_back(name);
    return names;
}

/// The kernel passes behind an image, inputs first. They keep what they tell of.
struct DrawnPass {
    std::string function;
    std::shared_ptr<const ImageNode> node;
    const MTIParameters* parameters;
};
inline std::vector<DrawnPass> drawnPasses(const MTIImage& image) {
    std::vector<DrawnPass> passes;
    for (const ImageNode* node : evaluationOrder(image))
        if (const auto* pass = std::get_if<KernelPass>(&node->operation))
            passes.push_back({pass->kernel->fragmentFunctionDescriptor().name, node->shared_from_this(),
                              &pass->parameters});
    return passes;
}

}  // namespace qv::test
