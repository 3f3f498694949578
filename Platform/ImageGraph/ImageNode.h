#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

#include "Platform/ImageGraph/LinePass.h"
#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "Platform/ImageGraph/MTIParameters.h"
#include "Platform/ImageGraph/SpritePass.h"

namespace qv {

// What a node is. Exactly one alternative of ImageNode::Operation.

/// A picture in memory.
struct BitmapSource {
    Bitmap bitmap;     ///< premultiplied, whatever the image's alpha type
    std::string name;  ///< of the asset that it was drawn from, or empty; for listings
};
/// A video frame in memory.
struct PixelBufferSource {
    PixelBuffer buffer;  ///< converted when it is rendered
};
/// A host's image; only contexts on its device can read it.
struct VulkanImageSource {
    MTIVulkanImage image;  ///< read where it lies
};
/// One colour all over.
struct ColorSource {
    MTIColor color;  ///< not premultiplied
};
/// One full-screen pass of a shader function.
struct KernelPass {
    std::shared_ptr<const MTIRenderPipelineKernel> kernel;  ///< whose function is drawn
    MTIParameters parameters;                               ///< its uniforms
};
/// Separable Gaussian with clamped edges; `radius` is the standard deviation in pixels.
struct GaussianBlurPass {
    float radius;  ///< above 0
};

/// What a stock filter says about itself in listings: the filter's kind and its settings by name.
struct StockDescription {
    std::string kind;                                           ///< such as "blend"
    std::vector<std::pair<std::string, std::string>> settings;  ///< name and value
};

/// The textures that contexts made of a source: each lives as long as the node and the context. Of use to
/// contexts only. Thread-safe; nothing is called and nothing let go under the lock.
class Residence {
  public:
    /// What the context of this number made of the plane; nil when it has not.
    std::shared_ptr<void> find(std::uint64_t context, int plane) const;
    /// Keeps a texture until `remove`, or as long as the node.
    void add(std::uint64_t context, int plane, std::shared_ptr<void> texture);
    /// Lets go of all that the context made.
    void remove(std::uint64_t context) noexcept;

  private:
    struct Entry {
        std::uint64_t context;
        int plane;
        std::shared_ptr<void> texture;
    };
    mutable std::mutex mutex_;
    std::vector<Entry> entries_;
};

/// An immutable node of an image graph.
struct ImageNode : std::enable_shared_from_this<ImageNode> {
    /// What a node is: a source without inputs, a pass over its inputs, or what is drawn over its one input;
    /// lines without an input are drawn on nothing.
    using Operation = std::variant<BitmapSource, PixelBufferSource, VulkanImageSource, ColorSource,
                                   KernelPass, GaussianBlurPass, SpritePass, LinePass>;

    Operation operation;           ///< what it is
    std::vector<MTIImage> inputs;  ///< in the order in which the function counts them
    int width = 0, height = 0;     ///< pixels
    MTIPixelFormat pixelFormat = MTIPixelFormat::unspecified;  ///< of its texture
    MTIAlphaType alphaType = MTIAlphaType::premultiplied;      ///< how its pixels are to be read
    StockDescription stock;                                    ///< empty kind: not made by a stock filter
    std::vector<PixelRect> covered;  ///< it is transparent elsewhere; empty: not known

    /// A source's own.
    mutable Residence residence;
};

/// The image, known to be transparent but in these parts, which do not overlap: laid over another one, it may
/// cost nothing elsewhere. Itself where there are none. What lies outside the image is cut off.
MTIImage imageCoveredWithin(const MTIImage& image, std::vector<PixelRect> parts);

/// The nodes that `output` depends on and itself, each once, inputs before readers.
std::vector<const ImageNode*> evaluationOrder(const MTIImage& output);

}  // namespace qv
