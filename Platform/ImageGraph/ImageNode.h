#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "Platform/ImageGraph/MTIParameters.h"

namespace qv {

/// A texture atlas entry's source: a sprite's picture, shared by all sprites that show it.
struct SpriteTexture {
    Bitmap bitmap;
    std::string name;  ///< of the asset it was loaded from, or empty; for listings
};

/// One textured quad of a sprite pass, in sprite space: origin at the centre, x −1..1 across the width, y in
/// half-widths, up. Before `transform` the quad spans x −1..1 with its texture's aspect.
struct SpriteInstance {
    CGAffineTransform transform;
    float alpha = 1;
    MTIColor tint{1, 1, 1, 1};  ///< multiplies the texture's colour; not premultiplied
    std::shared_ptr<const SpriteTexture> texture;
};

/// Whether a sprite may colour a pixel of a frame `frameAspect` times as high as wide.
bool isVisible(const SpriteInstance& sprite, double frameAspect);

// What a node is. Exactly one alternative of ImageNode::Operation.

struct BitmapSource {
    Bitmap bitmap;  ///< premultiplied, whatever the image's alpha type
};
struct PixelBufferSource {
    PixelBuffer buffer;
};
/// A host's image; only contexts on its device can read it.
struct VulkanImageSource {
    MTIVulkanImage image;
};
struct ColorSource {
    MTIColor color;
};
/// One full-screen pass of a shader function.
struct KernelPass {
    std::shared_ptr<const MTIRenderPipelineKernel> kernel;
    MTIParameters parameters;
};
/// Separable Gaussian with clamped edges; `radius` is the standard deviation in pixels.
struct GaussianBlurPass {
    float radius;
};
/// Sprites drawn over the input in list order; no pass when none is visible.
struct SpritePass {
    std::vector<SpriteInstance> sprites;
};

/// What a stock filter says about itself in listings: the filter's kind and its settings by name.
struct StockDescription {
    std::string kind;
    std::vector<std::pair<std::string, std::string>> settings;
};

/// An immutable node of an image graph.
struct ImageNode {
    using Operation = std::variant<BitmapSource, PixelBufferSource, VulkanImageSource, ColorSource,
                                   KernelPass, GaussianBlurPass, SpritePass>;

    Operation operation;
    std::vector<MTIImage> inputs;
    int width = 0, height = 0;  ///< pixels
    MTIPixelFormat pixelFormat = MTIPixelFormat::unspecified;
    MTIAlphaType alphaType = MTIAlphaType::premultiplied;
    StockDescription stock;  ///< empty kind: not made by a stock filter

    /// The texture that a context made of a source, kept for as long as the node. Touched only by the
    /// context, under the lock.
    struct Residence {
        std::mutex mutex;
        std::shared_ptr<void> texture;
        std::uint64_t context = 0;  ///< number of the context that made it
    };
    mutable Residence residence;
};

/// The nodes that `output` depends on and itself, each once, inputs before readers.
std::vector<const ImageNode*> evaluationOrder(const MTIImage& output);

}  // namespace qv
