#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIContourNoiseFilter.h"

#include "QVFilterExtension/QVMTIFilterUtil.h"

namespace qv {

namespace {
/// Size of the line, sizes of the frame: it is soft.
constexpr double kLineScale = 0.5;
}  // namespace

const QVFilterClass QVAIContourNoiseFilterClass{
    .name = "QVAIContourNoiseFilter",
    .superclass = &QVAIContourHaloFilterClass,
    .title = "Stardust edge",
    .help = "The subject's edge sheds dust that floats up and twinkles",
    .tags = {"particles", "glitter", "sparkle", "magic", "dissolve", "outline"},
    .factory = makeFilter<QVAIContourNoiseFilter>,
    .properties = {kLightColors,
                   qvProperty<&QVEffectMTIFilter::effectValue, &QVEffectMTIFilter::setEffectValue>(
                       {.name = "effectValue",
                        .title = "Strength",
                        .help = "how much light there is and how far it reaches",
                        .unit = QVUnit::fraction})},
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
    // Grains come and arcs end within few steps of its fall-off.
    const MTIImage line = drawLine(lineThickness(), kLineScale, MTIPixelFormat::rgba16Float);
    const auto kernel = filterClass().kernel();
    if (!line || !kernel || !maskImage()) return inputImage();
    const double scale = lightScale() / kLineScale;
    const CGSize size = {line.size().width * scale, line.size().height * scale};
    return composed(placed(kernel->applyToInputImages({line}, parameters(), size, outputPixelFormat())));
}

}  // namespace qv
