#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIContourHaloFilter.h"

#include <algorithm>
#include <cmath>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVHueMTIFilter.h"
#include "QVFilterExtension/MTIFilters/QVInterlayerFilter.h"
#include "QVFilterExtension/Private/UIBezierPath+QVFESmooth.h"
#include "QVFilterExtension/Saber/QVContourNoiseFilter.h"

namespace qv {

const QVFilterClass QVAIContourHaloFilterClass{
    .name = "QVAIContourHaloFilter",
    .superclass = &QVAIEffectMTIFilterClass,
    .title = "Halo",
    .help = "A glowing line along the subject's outline; its look is set in code",
    .tags = {"glow", "aura", "outline", "saber"},
    .factory = makeFilter<QVAIContourHaloFilter>,
    .category = QVFilterCategory::subject,
    .ignored = {"effectValue", "colors", "inputImageOriginalSize"},
    .kind = QVFilterKind::auxiliary,
};

namespace {

double longerSide(const PixelBuffer& mask) {
    return std::max(mask.width(), mask.height());
}

}  // namespace

QVAIContourHaloFilter::QVAIContourHaloFilter(const QVFilterClass& filterClass)
    : QVAIEffectMTIFilter(filterClass) {
    // The rim of a line is soft by itself: more samples would cost three copies and show nothing.
    bezierRender_.setSampleCount(1);
}

double QVAIContourHaloFilter::getOffsetH() const {
    return lineColor().getHueSaturationBrightnessAlpha().hue -
           defaultColors().front().getHueSaturationBrightnessAlpha().hue;
}

const QVOutlineSet& QVAIContourHaloFilter::calcPointsArray() {
    pointsArray_.clear();
    const PixelBuffer& mask = maskPixelBuffer();
    if (!mask) return pointsArray_;
    const double m = longerSide(mask);
    QVOutlineSet outlines = QVObjectContour::getApproxContourPointsWithMask(
        mask, int(std::round(radiusRatio_ * m)), float(1.0 / m));
    const CGRect bounds = CGRectMake(0, 0, mask.width(), mask.height());
    pointsArray_ = adjustCurvePointsArray(expandPointsArray(outlines, bounds, m * 12.0 * 0.001953125),
                                          m * 6.0 * 0.001953125);
    bezierRender_.setContours(std::move(outlines));
    return pointsArray_;
}

MTIImage QVAIContourHaloFilter::drawLine(float thickness, double scale, MTIPixelFormat format) const {
    const PixelBuffer& mask = maskPixelBuffer();
    if (!mask || !inputImage()) return {};
    const CGSize size =
        inputImage().imageByApplyingTransform(CGAffineTransformInvert(extraTransform()), true).size();
    return bezierRender_.renderBlackWhiteBezierWithPointsArray(
        pointsArray_, {double(mask.width()), double(mask.height())}, float(longerSide(mask) * thickness),
        {std::max(size.width * scale, 1.0), std::max(size.height * scale, 1.0)}, format);
}

MTIImage QVAIContourHaloFilter::placed(const MTIImage& image) const {
    return extraTransform() == CGAffineTransformIdentity
               ? image
               : image.imageByApplyingTransform(extraTransform(), true);
}

MTIImage QVAIContourHaloFilter::composed(const MTIImage& light) const {
    if (type_ == 1) {
        MTIBlendFilter blendFilter(MTIBlendMode::normal);
        blendFilter.setInputImage(light);
        blendFilter.setInputBackgroundImage(inputImage());
        blendFilter.setOutputPixelFormat(outputPixelFormat());
        return blendFilter.outputImage();
    }
    QVInterlayerFilter interlayerFilter;
    interlayerFilter.setInputImage(inputImage());
    interlayerFilter.setMaskImage(maskImage());
    interlayerFilter.setInterlayerImage(light);
    interlayerFilter.setOutputPixelFormat(outputPixelFormat());
    return interlayerFilter.outputImage();
}

MTIImage QVAIContourHaloFilter::renderLineWithParam(const QVSaberParam& param) {
    if (param.colorImage) {
        bezierRender_.setColorImage(param.colorImage);
    } else if (param.colArray) {
        bezierRender_.setColArray(param.colArray);
    }
    MTIImage line = placed(bezierRender_.renderColorBezierWithBlackWhiteTexure(drawLine(param.thickness, 1)));
    if (!line) return {};
    if (param.colorImage) {
        QVHueMTIFilter hueFilter;
        hueFilter.setInputImage(line);
        hueFilter.setHue(float(getOffsetH() * 2 * 3.141592653589793));
        line = hueFilter.outputImage();
    }
    QVContourNoiseFilter noiseFilter;
    noiseFilter.setInputImage(line);
    noiseFilter.setParam(param);
    noiseFilter.setITime(iTime());
    return noiseFilter.outputImage();
}

MTIImage QVAIContourHaloFilter::outputImage() {
    const std::optional<QVSaberParam> param = glowParam();
    if (!param) return inputImage();
    calcPointsArray();
    const MTIImage line = renderLineWithParam(*param);
    return line && maskImage() ? composed(line) : inputImage();
}

}  // namespace qv
