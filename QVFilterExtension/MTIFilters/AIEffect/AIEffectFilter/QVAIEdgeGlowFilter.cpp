#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIEdgeGlowFilter.h"

#include "QVFilterExtension/MTIFilters/QVInterlayerFilter.h"
#include "QVFilterExtension/Private/QVSubjectCutOut.h"

namespace qv {

const QVFilterClass QVAIEdgeGlowFilterClass{
    .name = "QVAIEdgeGlowFilter",
    .superclass = &QVAIBaseLineMTIFilterClass,
    .title = "Glowing edges",
    .help = "The world behind the subject goes dark, its edges glow, and a line runs around the subject",
    .tags = {"neon", "tron", "hologram", "outline", "blueprint"},
    .factory = makeFilter<QVAIEdgeGlowFilter>,
    .ignored = {"effectValue"},
    .kind = QVFilterKind::effect,
};

MTIImage QVAIEdgeGlowFilter::innerLineImage() const {
    constexpr float kRatio = 0.001953125f;
    constexpr double kWidth = 4.0;
    return getUIBezierPathImageWithPath(getBezierPathWithRadiusRatio(kRatio), kWidth, lineColor());
}

MTIParameters QVAIEdgeGlowFilter::parameters() const {
    return {{"edgeGlowColor", rgbVectorFromUIColor(lineColor())}};
}

MTIImage QVAIEdgeGlowFilter::imageWithLine() {
    const MTIImage line = innerLineImage();
    const MTIImage world = applyKernel({inputImage(), maskImage()}, parameters());
    if (!line || !world) return {};
    QVInterlayerFilter interlayerFilter;
    interlayerFilter.setInputImage(world);
    interlayerFilter.setInterlayerImage(line);
    interlayerFilter.setOutputPixelFormat(outputPixelFormat());
    return over(interlayerFilter.outputImage(), softSubjectCutOut(*this));
}

}  // namespace qv
