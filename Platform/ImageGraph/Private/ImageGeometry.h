#pragma once

#include "Platform/ImageGraph/ImageNode.h"

namespace qv {

/// An affine picture of an image.
struct ImageMove {
    MTIImage image;
    /// From the output to the image, both in pixels from their centre, x right, y up.
    CGAffineTransform toInput;
    CGSize outputSize;  ///< whole pixels
    MTIPixelFormat pixelFormat = MTIPixelFormat::unspecified;
    StockDescription description{};
};

/// Bilinear, transparent outside, with the mean of what a pixel covers along each axis of the image that
/// shrinks by more than half.
MTIImage movedImage(const ImageMove& move);

/// The image stretched to another size, in whole pixels that an image can have.
MTIImage resizedImage(const MTIImage& image, CGSize size, MTIPixelFormat pixelFormat);

}  // namespace qv
