#pragma once

#include <string_view>

#include "Platform/Drawing/UIImage.h"

namespace qv {

/// Reads a picture of the resource bundle by its whole file name; nil when it is not there. Nothing is
/// cached.
UIImage qv_imageWithFileName(std::string_view name);

/// Redrawn at `factor` times its size, each side rounded to a whole number of points, with the picture's own
/// scale. A nil picture, or a size without pixels, gives nil; so it does below.
UIImage scale(const UIImage& image, double factor);
/// Redrawn to `size` points at scale 1, transparent where the picture is. A resizable picture keeps its caps.
UIImage scaleToSize(const UIImage& image, CGSize size);
/// The same with the picture's own scale.
UIImage scaleToSizeWithSameScale(const UIImage& image, CGSize size);

}  // namespace qv
