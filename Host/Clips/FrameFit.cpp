#include "Host/Clips/FrameFit.h"

#include <algorithm>
#include <cmath>

#include "Platform/ImageGraph/MTIFilters.h"

namespace qv::host {

namespace {

double whole(double side) {
    return std::max(1.0, std::round(side));
}

/// Whole pixels around the image's centre; black where the region is larger than the image.
MTIImage centered(const MTIImage& image, CGSize region) {
    const CGSize size = image.size();
    MTICropFilter crop;
    crop.setInputImage(image);
    crop.setCropRegion(MTICropRegionMake(std::floor((size.width - region.width) / 2),
                                         std::floor((size.height - region.height) / 2), region.width,
                                         region.height));
    return crop.outputImage();
}

}  // namespace

FrameShape uprightShape(const ClipVideoFormat& video) {
    const double aspect = video.pixelAspect.value() > 0 ? video.pixelAspect.value() : 1;
    const CGSize stored{double(video.width), double(video.height)};
    if (video.rotation % 180 == 0) return {stored, aspect};
    return {{stored.height, stored.width}, 1 / aspect};
}

MTIImage fitted(const MTIImage& image, double pixelAspect, const FrameShape& frame, Fit fit) {
    const CGSize from = image.size(), to = frame.size;
    // Of the picture's pixels in the frame's: what one unit of its width is worth.
    const double widen = pixelAspect / frame.pixelAspect;
    const bool sameShape = from == to && std::abs(widen - 1) < 1e-6;
    if (sameShape) return image;
    if (fit == Fit::stretch) return image.resize(to);
    const double across = to.width / (from.width * widen), down = to.height / from.height;
    if (fit == Fit::cover) {
        const double scale = std::max(across, down);
        const CGSize seen{std::min(from.width, whole(to.width / (scale * widen))),
                          std::min(from.height, whole(to.height / scale))};
        return (seen == from ? image : centered(image, seen)).resize(to);
    }
    const double scale = std::min(across, down);
    const CGSize inside{std::min(to.width, whole(from.width * widen * scale)),
                        std::min(to.height, whole(from.height * scale))};
    const MTIImage scaled = inside == from ? image : image.resize(inside);
    return (inside == to ? scaled : centered(scaled, to)).imageWithAlphaType(MTIAlphaType::alphaIsOne);
}

}  // namespace qv::host
