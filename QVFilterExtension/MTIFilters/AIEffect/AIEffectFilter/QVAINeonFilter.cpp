#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAINeonFilter.h"

#include <algorithm>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/MTIFilters/QVInterlayerFilter.h"
#include "QVFilterExtension/Private/LineDrawing.h"
#include "QVFilterExtension/Private/UIBezierPath+QVFESmooth.h"

namespace qv {

namespace {

constexpr double kUnit = 0.001953125;
constexpr double kRadius = 8.0, kExpandLength = 12.0, kGlowWidth = 10.0, kCoreWidth = 6.0;
constexpr double kGlowBlur = 0.3;  ///< of the glow's width

double longerSide(const PixelBuffer& mask) {
    return std::max(mask.width(), mask.height());
}

}  // namespace

const QVFilterClass QVAINeonFilterClass{
    .name = "QVAINeonFilter",
    .superclass = &QVAIEffectMTIFilterClass,
    .title = "Neon outline",
    .help = "A neon tube around the subject",
    .tags = {"glow", "tube", "light", "cyberpunk", "club"},
    .factory = makeFilter<QVAINeonFilter>,
    .ignored = {"effectValue"},
};

UIBezierPath QVAINeonFilter::contourPath() const {
    const PixelBuffer& mask = maskPixelBuffer();
    if (!mask) return {};
    const double longer = longerSide(mask);
    const QVOutlineSet outlines = QVObjectContour::getApproxContourPointsWithMask(
        mask, int(longer * kRadius * kUnit), float(1.0 / longer));
    return getExtraTransformPath(smoothPathWithPointArray(
        outlines, CGRectMake(0, 0, mask.width(), mask.height()), longer * kExpandLength * kUnit));
}

MTIImage QVAINeonFilter::contourUIImage(const UIColor& color, CGSize size, double lineWidth) const {
    UIBezierPath path = contourPath();
    path.applyTransform(fittingTransform(maskImage().size(), size));
    return strokedPathImage(path, size, lineWidth, color);
}

MTIImage QVAINeonFilter::contourLineImage() const {
    if (!maskPixelBuffer()) return {};
    const CGSize frame = inputImage().size();
    const double longer = longerSide(maskPixelBuffer()), glowWidth = longer * kGlowWidth * kUnit;
    const MTIImage core = contourUIImage(UIColor::whiteColor(), frame, longer * kCoreWidth * kUnit);
    if (!core) return {};

    MTIGaussianBlurFilter blurFilter;
    blurFilter.setInputImage(contourUIImage(UIColor::whiteColor(), maskImage().size(), glowWidth));
    blurFilter.setRadius(float(glowWidth * kGlowBlur));
    const UIColor color = lineColor();
    MTIBlendWithMaskFilter glowFilter;
    glowFilter.setInputImage(MTIImage::initWithColor(
        {float(color.red()), float(color.green()), float(color.blue()), float(color.alpha())}, false,
        {1, 1}));
    glowFilter.setInputMask({blurFilter.outputImage()});
    glowFilter.setInputBackgroundImage(MTIImage::initWithColor({}, false, frame));
    MTIBlendFilter blendFilter(MTIBlendMode::normal);
    blendFilter.setInputImage(core);
    blendFilter.setInputBackgroundImage(glowFilter.outputImage());
    return blendFilter.outputImage();
}

MTIImage QVAINeonFilter::outputImage() {
    const MTIImage line = inputImage() && maskImage() ? contourLineImage() : MTIImage();
    if (!line) return inputImage();
    QVInterlayerFilter interlayerFilter;
    interlayerFilter.setInputImage(inputImage());
    interlayerFilter.setMaskImage(maskImage());
    interlayerFilter.setInterlayerImage(line);
    interlayerFilter.setOutputPixelFormat(outputPixelFormat());
    return interlayerFilter.outputImage();
}

}  // namespace qv
