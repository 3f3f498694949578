#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIImaginaryFilter.h"

namespace qv {

const QVFilterClass QVAIImaginaryFilterClass{
    .name = "QVAIImaginaryFilter",
    .superclass = &QVAIBaseLineMTIFilterClass,
    .title = "Outline",
    .help = "A clean line around the subject, as of a sticker",
    .tags = {"sticker", "cutout", "stroke", "border", "comic"},
    .factory = makeFilter<QVAIImaginaryFilter>,
    .ignored = {"effectValue"},
    .kind = QVFilterKind::effect,
};

MTIImage QVAIImaginaryFilter::contourUIImage() const {
    constexpr double kWidth = 4.0;
    return getUIBezierPathImageWithPath(contourPath(), kWidth, lineColor());
}

MTIImage QVAIImaginaryFilter::imageWithLine() {
    const MTIImage line = contourUIImage();
    return line ? behindSubject(inputImage(), line) : MTIImage();
}

}  // namespace qv
