#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIDoubleLineMTIFilter.h"

namespace qv {

const QVFilterClass QVAIDoubleLineMTIFilterClass{
    .name = "QVAIDoubleLineMTIFilter",
    .superclass = &QVAIBaseLineMTIFilterClass,
    .title = "Double outline",
    .help = "A strong line around the subject and a fine one around that",
    .tags = {"sticker", "stroke", "border", "echo", "comic"},
    .factory = makeFilter<QVAIDoubleLineMTIFilter>,
    .ignored = {"effectValue"},
    .kind = QVFilterKind::effect,
};

MTIImage QVAIDoubleLineMTIFilter::innerLineImage() const {
    constexpr float kRatio = 0.015625f;
    constexpr double kWidth = 6.0;
    return getUIBezierPathImageWithPath(getBezierPathWithRadiusRatio(kRatio), kWidth, lineColor());
}

MTIImage QVAIDoubleLineMTIFilter::outSideLineImage() const {
    constexpr float kRatio = 0.033203125f;
    constexpr double kWidth = 2.0;
    return getUIBezierPathImageWithPath(getBezierPathWithRadiusRatio(kRatio), kWidth, lineColor());
}

MTIImage QVAIDoubleLineMTIFilter::imageWithLine() {
    MTIImage result = inputImage();
    for (const MTIImage& line : {innerLineImage(), outSideLineImage()}) {
        if (line) result = behindSubject(result, line);
    }
    return result;
}

}  // namespace qv
