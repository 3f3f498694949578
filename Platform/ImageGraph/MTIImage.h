#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Platform/Drawing/UIImage.h"
#include "Platform/Geometry/Geometry.h"
#include "Platform/ImageGraph/MTIVulkan.h"
#include "Platform/Media/PixelBuffer.h"

namespace qv {

struct ImageNode;

/// How the alpha of pixels is to be read. `alphaIsOne`: as opaque, whatever it holds.
enum class MTIAlphaType { unknown = 0, nonPremultiplied = 1, premultiplied = 2, alphaIsOne = 3 };

/// Formats of textures. `unspecified` stands for the working format of the context that renders.
enum class MTIPixelFormat { unspecified, rgba8Unorm, rgba16Float };

/// Four floats, not premultiplied.
struct MTIColor {
    /// Gamma encoded, 0..1; not clamped.
    float red = 0, green = 0, blue = 0, alpha = 0;
    bool operator==(const MTIColor&) const = default;
};

/// A picture that may still have to be computed: a cheap handle to an immutable node of an image graph.
/// Nothing is rendered until an MTIContext is asked to. Nil when default-constructed; every operation on nil
/// gives nil. Handles may be copied and released on any thread.
class MTIImage {
  public:
    MTIImage() = default;
    /// A handle to a node, or nil.
    explicit MTIImage(std::shared_ptr<const ImageNode> node) : node_(std::move(node)) {}

    /// Nil when the picture is nil. The texture made of it lives as long as the node does. `name` appears in
    /// listings of the image graph: the asset that the picture is, or was drawn from.
    static MTIImage imageWithUIImage(const UIImage& image,
                                     MTIAlphaType alphaType = MTIAlphaType::premultiplied,
                                     std::string name = {});
    static MTIImage imageWithBitmap(const Bitmap& bitmap,
                                    MTIAlphaType alphaType = MTIAlphaType::premultiplied,
                                    std::string name = {});
    /// A video frame or a mask; Y'CbCr is converted when the image is rendered. Only `alphaIsOne` changes how
    /// a buffer is read: its alpha channel, if any, is ignored.
    static MTIImage imageWithPixelBuffer(const PixelBuffer& buffer,
                                         MTIAlphaType alphaType = MTIAlphaType::nonPremultiplied);
    /// Reads a picture file now; nil when that fails.
    static MTIImage imageWithContentsOfFile(const std::string& path,
                                            MTIAlphaType alphaType = MTIAlphaType::premultiplied);
    /// A host's own image, read where it lies, by contexts on the device that it belongs to. Nil for a format
    /// or a layout that cannot be read. `alphaIsOne` makes it opaque.
    static MTIImage imageWithVulkanImage(const MTIVulkanImage& image,
                                         MTIAlphaType alphaType = MTIAlphaType::premultiplied);
    /// One colour; colours are processed gamma encoded as they are, whatever `sRGB` says. Nil for a size
    /// outside 1..kMaximumImageSide.
    static MTIImage initWithColor(MTIColor color, bool sRGB, CGSize size);

    explicit operator bool() const { return node_ != nullptr; }
    bool operator==(const MTIImage&) const = default;  ///< the same node

    /// Pixels; zero for nil.
    CGSize size() const;
    /// {0, 0, width, height}.
    CGRect extent() const;
    /// `unknown` for nil.
    MTIAlphaType alphaType() const;
    /// The node, for whoever walks the graph.
    const std::shared_ptr<const ImageNode>& node() const { return node_; }

    /// Moves the picture by `transform` in pixels, with the origin at its centre, x right and y up. The
    /// result keeps the size and is transparent outside; bilinear.
    MTIImage imageByApplyingTransform(const CGAffineTransform& transform) const;
    /// The same; with the minimum enclosing viewport the result has the size of the transformed bounding box
    /// (rounded up) and nothing is cut off.
    MTIImage imageByApplyingTransform(const CGAffineTransform& transform,
                                      bool minimumEnclosingViewport) const;
    /// Bilinear, with the mean of what a pixel covers when it shrinks by more than half. Sides are truncated
    /// to integers; nil when one is outside 1..kMaximumImageSide. An unspecified format is the image's own.
    MTIImage resize(CGSize size, MTIPixelFormat pixelFormat = MTIPixelFormat::unspecified) const;
    /// The same pixels with another reading of alpha; `alphaIsOne` makes the image opaque.
    MTIImage imageWithAlphaType(MTIAlphaType alphaType) const;

  private:
    std::shared_ptr<const ImageNode> node_;
};

}  // namespace qv
