#include "QVFilterExtension/MTIFilters/Transition/Paper/QVTearPaperTransitionMTIFilter.h"

#include <algorithm>

#include "Platform/Drawing/BitmapCanvas.h"
#include "QVFilterExtension/Private/UIImage+QVMTIFilter.h"

namespace qv {

const QVFilterClass QVTearPaperTransitionMTIFilterClass{
    .name = "QVTearPaperTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Torn paper",
    .help = "A transition that shows clips on pieces of torn paper",
};

namespace {

/// Assets are drawn for frames of this width.
constexpr double kReferenceWidth = 1920.0;

UIImage drawn(const UIImage& asset, CGSize canvasSize, const CGRect& place) {
    BitmapCanvas canvas(canvasSize, false, 1.0);
    if (asset) canvas.drawImage(asset, place);
    return canvas.image();
}

}  // namespace

UIImage QVTearPaperTransitionMTIFilter::getScaleFrameImageWithName(const std::string& fileName) {
    DrawnAsset asset = drawnInMiddle(fileName);
    imageSize_ = asset.size;
    return std::move(asset.canvas);
}

UIImage QVTearPaperTransitionMTIFilter::getScaleImageWithName(const std::string& fileName) const {
    const UIImage asset = qv_imageWithFileName(fileName);
    const CGSize canvas = inputImage1().size(), own = asset.size();
    const double width = std::max(canvas.width, canvas.height);
    return drawn(asset, canvas, CGRectMake(0, 0, width, width * own.height / own.width));
}

QVTearPaperTransitionMTIFilter::DrawnAsset QVTearPaperTransitionMTIFilter::drawnInMiddle(
    const std::string& fileName) const {
    return drawnInMiddle(qv_imageWithFileName(fileName));
}

QVTearPaperTransitionMTIFilter::DrawnAsset QVTearPaperTransitionMTIFilter::drawnInMiddle(
    const UIImage& asset) const {
    const CGSize canvas = inputImage1().size(), own = asset.size();
    CGSize size;
    if (asset) {
        size.width = own.width * canvas.width / kReferenceWidth;
        size.height = size.width * own.height / own.width;
    }
    const CGRect place = CGRectMake((canvas.width - size.width) / 2, (canvas.height - size.height) / 2,
                                    size.width, size.height);
    return {drawn(asset, canvas, place), size};
}

UIImage QVTearPaperTransitionMTIFilter::drawnAtFrameHeight(const std::string& fileName) const {
    const UIImage asset = qv_imageWithFileName(fileName);
    const CGSize canvas = inputImage1().size(), own = asset.size();
    return drawn(asset, canvas, CGRectMake(0, 0, canvas.height * own.width / own.height, canvas.height));
}

}  // namespace qv
