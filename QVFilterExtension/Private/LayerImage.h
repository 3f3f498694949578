#pragma once

#include <string>
#include <vector>

#include "Platform/Drawing/UIImage.h"
#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/ImageGraph/PassOverlay.h"

namespace qv {

/// Where a picture is not transparent: rectangles that do not overlap, of whole tiles of 8 pixels, cut off at
/// its sides.
std::vector<PixelRect> coveredParts(const Bitmap& picture);

/// What the parts cover, by parts that do not overlap.
std::vector<PixelRect> apart(const std::vector<PixelRect>& parts);

/// An image of a picture that is laid over others, and that shows something in some parts of it only: looked
/// through once, it costs nothing elsewhere. `name` as in `MTIImage::imageWithUIImage`.
MTIImage imageOfLayer(const UIImage& picture, std::string name = {});

}  // namespace qv
