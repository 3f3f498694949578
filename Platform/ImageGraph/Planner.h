#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/ShaderLibrary.h"

namespace qv {

/// Texels that passes read and write: channels, and bits of each.
enum class TextureFormat { rgba8, rgba16Float, rgba32Float, r8, rg8, r16, bgra8 };

/// The format of a host's image, a VkFormat; nothing when it is none that is rendered from and into.
std::optional<TextureFormat> textureFormatOfVulkan(std::int32_t format);
/// The layouts, VkImageLayout, in which a host's image can be read.
inline constexpr std::int32_t kVulkanLayoutGeneral = 1, kVulkanLayoutShaderReadOnly = 5;

/// Bytes of one texel.
inline int texelBytes(TextureFormat format) {
    switch (format) {
        case TextureFormat::r8:
            return 1;
        case TextureFormat::rg8:
        case TextureFormat::r16:
            return 2;
        case TextureFormat::rgba8:
        case TextureFormat::bgra8:
            return 4;
        case TextureFormat::rgba16Float:
            return 8;
        case TextureFormat::rgba32Float:
            return 16;
    }
    return 0;
}

/// What a context renders for and on.
struct PlanTarget {
    bool processor = false;  ///< the device is a processor: planes are converted beside it
    bool native = false;     ///< the context draws blurs of 8-bit textures by code of its own
    TextureFormat working = TextureFormat::rgba8;  ///< stands for an unspecified format
    TextureFormat output = TextureFormat::rgba8;   ///< of the image itself
    const PixelBuffer* planes = nullptr;  ///< convert the image to this buffer's Y'CbCr planes in passes
};

/// A texture of a plan: filled from a source before the passes, or written by one pass.
struct PlanTexture {
    int width = 0, height = 0;                    ///< pixels
    TextureFormat format = TextureFormat::rgba8;  ///< of its texels
    const ImageNode* source = nullptr;            ///< the picture in memory, or its blur, to fill it with
    int plane = 0;                                ///< of the source, when it is taken in by planes
    int lastReader = -1;  ///< index of the last pass that reads it, −1 when none does
    std::optional<std::array<float, 4>>
        color;                       ///< of every pixel, where that is known: premultiplied, as stored
    std::vector<PixelRect> covered;  ///< it is transparent elsewhere; empty: not known
};

/// One draw of a function over its target, then what lies on top of it. With those that continue it, it is
/// one render pass.
struct PlanPass {
    std::shared_ptr<const ShaderFunction> function;          ///< what is drawn
    std::array<std::uint32_t, kMaximumPushedWords> words{};  ///< its pushed block
    std::vector<std::int32_t> selectors;                     ///< by constant id
    std::vector<int> inputs;                                 ///< indices of textures, −1 for a nil image
    std::uint32_t resampled = 0;  ///< bit n: input n has another size than the output
    std::uint32_t given = 0;      ///< bit n: uniform n, selectors not counted, has a value; else it is 0
    int output = 0;               ///< index of the texture that it writes
    std::vector<const PassOverlay*> overlays;  ///< what to draw on top, in order
    int samples = 1;                           ///< of a pixel; as many as each overlay wants
    /// Drawn by code of the context's own in the function's place: other passes cannot take it in.
    bool standsAlone = false;
    /// What the function gives for every pixel, where that is known, premultiplied, as stored: the target is
    /// cleared to it, and nothing drawn but the overlays.
    std::optional<std::array<float, 4>> clearColor;
    /// Where it is drawn; empty: everywhere. What lies elsewhere in its target nobody reads, or another pass
    /// has drawn.
    std::vector<PixelRect> parts;
    bool continues = false;  ///< it draws into the target of the pass before it
    bool isBlended = false;  ///< over what is there, instead of replacing it
};

/// Component `index` of a uniform of floats, as the pass sends it. Its function has one of this name.
float numberOf(const PlanPass& pass, std::string_view uniform, int index = 0);
/// The same of a selector.
int selectorOf(const PlanPass& pass, std::string_view selector);

/// What a context runs, in order. Points into the graph, which must outlive it.
struct RenderPlan {
    std::vector<PlanTexture> textures;  ///< all that are read or written
    std::vector<PlanPass> passes;       ///< in order
    std::vector<int> outputs;           ///< the texture of the image, or one per plane
};

/// Turns the graph behind `image` into passes. Empty passes when the image is nil or a stock function is
/// missing.
RenderPlan planRender(const MTIImage& image, const PlanTarget& target);

/// Bytes of the textures that are needed at once, most at any time: sources until their last reader, results
/// to the end.
std::uint64_t peakTextureBytes(const RenderPlan& plan);

/// Notes for every texture which pass reads it last; to be called when passes have changed.
void noteLastReaders(RenderPlan& plan);

}  // namespace qv
