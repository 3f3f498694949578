#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIBaseLineMTIFilter.h"

#include <algorithm>
#include <cmath>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/MTIFilters/QVInterlayerFilter.h"
#include "QVFilterExtension/Private/LineDrawing.h"
#include "QVFilterExtension/Private/UIBezierPath+QVFESmooth.h"

namespace qv {

namespace {

using Effect = QVAIBaseLineMTIFilter;

/// Widths and lengths are counted in these of the longer side.
constexpr double kUnit = 0.001953125;
constexpr double kExpandLength = 12.0;
constexpr float kContourRatio = 0.0078125f;

}  // namespace

const QVFilterClass QVAIBaseLineMTIFilterClass{
    .name = "QVAIBaseLineMTIFilter",
    .superclass = &QVAIEffectMTIFilterClass,
    .title = "Subject line",
    .help = "What the lines along a subject's outline share; draws nothing itself",
    .factory = makeFilter<QVAIBaseLineMTIFilter>,
    .category = QVFilterCategory::subject,
    .inputs = {{kInputImage,
                qvInput<&Effect::setMaskImage>(
                    {.name = "maskImage", .role = QVInputRole::mask, .help = "white where the subject is"}),
                qvInput<&Effect::setMaskPixelBuffer>({.name = "maskPixelBuffer",
                                                      .role = QVInputRole::mask,
                                                      .help = "the same in memory; its outline is drawn",
                                                      .isRequired = false})}},
    .kind = QVFilterKind::auxiliary,
};

UIBezierPath QVAIBaseLineMTIFilter::getBezierPathWithRadiusRatio(float ratio) const {
    const PixelBuffer& mask = maskPixelBuffer();
    if (!mask) return {};
    const double longer = std::max(mask.width(), mask.height());
    const QVOutlineSet outlines = QVObjectContour::getApproxContourPointsWithMask(
        mask, int(std::lround(double(ratio) * longer)), float(1.0 / longer));
    return getExtraTransformPath(smoothPathWithPointArray(
        outlines, CGRectMake(0, 0, mask.width(), mask.height()), longer * kExpandLength * kUnit));
}

UIBezierPath QVAIBaseLineMTIFilter::contourPath() const {
    return getBezierPathWithRadiusRatio(kContourRatio);
}

MTIImage QVAIBaseLineMTIFilter::getUIBezierPathImageWithPath(UIBezierPath path, double width,
                                                             const UIColor& color) const {
    const CGSize frame = inputImage().size();
    path.applyTransform(fittingTransform(maskImage().size(), frame));
    return strokedPathImage(path, frame, std::max(frame.width, frame.height) * width * kUnit, color);
}

MTIImage QVAIBaseLineMTIFilter::behindSubject(const MTIImage& image, const MTIImage& layer,
                                              const MTIImage& mask) const {
    QVInterlayerFilter interlayerFilter;
    interlayerFilter.setInputImage(image);
    interlayerFilter.setMaskImage(mask);
    interlayerFilter.setInterlayerImage(layer);
    interlayerFilter.setOutputPixelFormat(outputPixelFormat());
    return interlayerFilter.outputImage();
}

MTIImage QVAIBaseLineMTIFilter::over(const MTIImage& background, const MTIImage& image) const {
    MTIBlendFilter blendFilter(MTIBlendMode::normal);
    blendFilter.setInputImage(image);
    blendFilter.setInputBackgroundImage(background);
    blendFilter.setOutputPixelFormat(outputPixelFormat());
    return blendFilter.outputImage();
}

MTIImage QVAIBaseLineMTIFilter::outputImage() {
    if (!inputImage() || !maskImage()) return {};
    const MTIImage result = imageWithLine();
    return result ? result : inputImage();
}

}  // namespace qv
