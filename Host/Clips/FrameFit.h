#pragma once

#include <optional>
#include <string_view>

#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/Media/ClipInfo.h"

namespace qv::host {

/// How a picture comes into a frame of another shape. None distorts it but `stretch`.
enum class Fit {
    cover,    ///< fills the frame; what juts out is cut off
    contain,  ///< all of it is seen; black beside it
    stretch,
};

/// "cover", "contain" or "stretch"; nothing for another name.
std::optional<Fit> fitNamed(std::string_view name);
std::string_view fitName(Fit fit);

/// A frame as a viewer sees it: upright.
struct FrameShape {
    CGSize size;             ///< pixels
    double pixelAspect = 1;  ///< width of a pixel to its height

    /// Width to height, as it is seen.
    double aspect() const { return size.width * pixelAspect / size.height; }
};

/// The shape of a clip's frames once they are turned upright.
FrameShape uprightShape(const ClipVideoFormat& video);

/// An upright picture, whose pixels are `pixelAspect` wide, in a frame of the given shape; the picture itself
/// when it has that shape.
MTIImage fitted(const MTIImage& image, double pixelAspect, const FrameShape& frame, Fit fit);

/// A mask of an upright picture of one shape, made the mask of that picture once it is fitted.
PixelBuffer fittedMask(const PixelBuffer& gray, const FrameShape& picture, const FrameShape& frame, Fit fit);

}  // namespace qv::host
