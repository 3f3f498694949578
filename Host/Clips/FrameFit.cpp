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

std::optional<Fit> fitNamed(std::string_view name) {
    for (const Fit fit : {Fit::cover, Fit::contain, Fit::stretch}) {
        if (fitName(fit) == name) return fit;
    }
    return std::nullopt;
}

std::string_view fitName(Fit fit) {
    return fit == Fit::cover ? "cover" : fit == Fit::contain ? "contain" : "stretch";
}

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

PixelBuffer fittedMask(const PixelBuffer& gray, const FrameShape& picture, const FrameShape& frame, Fit fit) {
    const double wider = frame.aspect() / picture.aspect();
    if (fit == Fit::stretch || std::abs(wider - 1) < 1e-6) return gray;
    // As much of the mask as is seen, or more than it where there is nothing beside the picture.
    const bool across = (wider < 1) == (fit == Fit::cover);
    const double share = across ? wider : 1 / wider;
    const int width = across ? int(whole(gray.width() * share)) : gray.width();
    const int height = across ? gray.height() : int(whole(gray.height() * share));
    PixelBuffer result = PixelBuffer::create(PixelFormat::gray8, width, height);
    if (!result) return gray;
    const int left = (width - gray.width()) / 2, top = (height - gray.height()) / 2;
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = result.plane(0).data + std::size_t(y) * result.plane(0).rowBytes;
        std::fill_n(row, width, std::uint8_t(0));
        const int from = y - top;
        if (from < 0 || from >= gray.height()) continue;
        const std::uint8_t* source = gray.plane(0).data + std::size_t(from) * gray.plane(0).rowBytes;
        std::copy_n(source + std::max(0, -left), std::min(width, gray.width()), row + std::max(0, left));
    }
    return result;
}

}  // namespace qv::host
