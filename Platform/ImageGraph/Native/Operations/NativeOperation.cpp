#include "Platform/ImageGraph/Native/Operations/NativeOperation.h"

#include <string_view>
#include <unordered_map>

#include "Platform/ImageGraph/Native/Operations/GaussianOperation.h"
#include "Platform/ImageGraph/Native/Operations/LineOperations.h"
#include "Platform/ImageGraph/Native/Operations/PixelOperations.h"
#include "Platform/ImageGraph/Private/GaussianBlur.h"

namespace qv {

namespace {

using Operation = std::unique_ptr<const NativeOperation>;

/// A pass with one input, which is there.
struct OneInputPass {
    const PlanPass& pass;
    const PlanTexture &input, &output;
    NativeTarget instructions;

    bool isOfFormats(TextureFormat from, TextureFormat to) const {
        return input.format == from && output.format == to;
    }
    bool isRGBA8() const { return isOfFormats(TextureFormat::rgba8, TextureFormat::rgba8); }
    bool keepsSize() const { return input.width == output.width && input.height == output.height; }
    float number(std::string_view uniform, int component = 0) const {
        return numberOf(pass, uniform, component);
    }
    LineStep step(std::string_view uniform) const { return {number(uniform), number(uniform, 1)}; }
    int selector(std::string_view name) const { return selectorOf(pass, name); }
};

Operation copy(const OneInputPass& p) {
    if (p.input.format != p.output.format || !p.keepsSize()) return nullptr;
    return cropOperation(texelBytes(p.output.format), 0, 0, p.output.height);
}

Operation crop(const OneInputPass& p) {
    if (p.input.format != p.output.format) return nullptr;
    return cropOperation(texelBytes(p.output.format), int(p.number("origin")), int(p.number("origin", 1)),
                         p.output.height);
}

Operation opaque(const OneInputPass& p) {
    if (!p.isRGBA8() || !p.keepsSize()) return nullptr;
    return opaqueOperation(p.output.height, p.instructions);
}

Operation premultiply(const OneInputPass& p) {
    if (!p.isRGBA8() || !p.keepsSize()) return nullptr;
    return premultiplyOperation(p.output.height, p.instructions);
}

Operation alpha(const OneInputPass& p) {
    if (!p.isOfFormats(TextureFormat::rgba8, TextureFormat::r8) || !p.keepsSize()) return nullptr;
    return alphaOperation(p.output.height, p.instructions);
}

Operation resize(const OneInputPass& p) {
    if (!p.isRGBA8() || p.selector("across") * p.selector("down") > 1) return nullptr;
    return resizeOperation(p.input.width, p.input.height, p.output.width, p.output.height, p.instructions);
}

Operation gaussian(const OneInputPass& p) {
    const float deviation = p.number("deviation");
    if (!p.isRGBA8() || !p.keepsSize() || !blursVisibly(deviation)) return nullptr;
    return gaussianOperation(deviation, p.output.width, p.output.height, p.instructions);
}

Operation lineGather(const OneInputPass& p) {
    if (!p.isRGBA8()) return nullptr;
    return lineGatherOperation({.reduction = p.selector("reduction"),
                                .lightsOnly = p.selector("lightsOnly") != 0,
                                .isOnGrid = p.selector("isOnGrid") != 0,
                                .isTurned = p.selector("isTurned") != 0,
                                .tap = p.step("tapStep"),
                                .origin = p.step("origin"),
                                .column = p.step("columnStep"),
                                .row = p.step("rowStep"),
                                .width = p.output.width,
                                .height = p.output.height},
                               p.instructions);
}

Operation lineBox(const OneInputPass& p) {
    if (!p.isRGBA8() || !p.keepsSize() || p.selector("lightsOnly") != 0) return nullptr;
    return lineBoxOperation(p.step("tapStep"), p.number("steps"), p.output.height, p.instructions);
}

using Maker = Operation (*)(const OneInputPass&);

const std::unordered_map<const ShaderFunction*, Maker>& makers() {
    static const auto table = [] {
        std::unordered_map<const ShaderFunction*, Maker> made;
        const auto& library = ShaderLibrary::platform();
        const std::pair<const char*, Maker> list[] = {{"MTICopy", copy},
                                                      {"MTICropPixels", crop},
                                                      {"MTIOpaque", opaque},
                                                      {"MTIPremultiply", premultiply},
                                                      {"MTIAlphaToPlane", alpha},
                                                      {"MTIResize", resize},
                                                      {"MTIGaussianBlur", gaussian},
                                                      {"MTILineGather", lineGather},
                                                      {"MTILineBox", lineBox}};
        for (const auto& [name, maker] : list) {
            if (const auto function = library ? library->function(name) : nullptr)
                made.emplace(function.get(), maker);
        }
        return made;
    }();
    return table;
}

}  // namespace

Operation nativeOperationFor(const RenderPlan& plan, const PlanPass& pass, NativeTarget instructions) {
    const auto maker = makers().find(pass.function.get());
    if (maker == makers().end() || pass.clearColor || pass.inputs.empty() || pass.inputs.front() < 0)
        return nullptr;
    return maker->second({pass, plan.textures[std::size_t(pass.inputs.front())],
                          plan.textures[std::size_t(pass.output)], instructions});
}

}  // namespace qv
