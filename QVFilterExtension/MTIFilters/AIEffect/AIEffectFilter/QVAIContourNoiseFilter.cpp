#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIContourNoiseFilter.h"

#include "QVFilterExtension/QVMTIFilterUtil.h"

namespace qv {

const QVFilterClass QVAIContourNoiseFilterClass{
    .name = "QVAIContourNoiseFilter",
    .superclass = &QVAIContourHaloFilterClass,
    .title = "Stardust edge",
    .help = "The subject's edge sheds dust that floats up and twinkles",
    .tags = {"particles", "glitter", "sparkle", "magic", "dissolve", "outline"},
    .factory = makeFilter<QVAIContourNoiseFilter>,
    .kind = QVFilterKind::effect,
};

MTIParameters QVAIContourNoiseFilter::parameters() const {
    return {{"iTime", float(iTime())},
            {"effectValue", effectValue()},
            {"lineColor", rgbVectorFromUIColor(lineColor())},
            {"secondColor", rgbVectorFromUIColor(HueColor(secondColor(), getOffsetH()))}};
}

MTIImage QVAIContourNoiseFilter::outputImage() {
    calcPointsArray();
    const MTIImage line = drawLine(lineThickness(), lightScale());
    const auto kernel = filterClass().kernel();
    if (!line || !kernel || !maskImage()) return inputImage();
    return composed(placed(kernel->applyToInputImages({line}, parameters(), line.size(), outputPixelFormat())));
}

}  // namespace qv
