#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIGhostContourFilter.h"

#include <algorithm>
#include <cmath>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/Private/QVSubjectCutOut.h"
#include "QVFilterExtension/QVMTIFilterUtil.h"

namespace qv {

namespace {

using Effect = QVAIGhostContourFilter;

/// Outlines are drawn by how far the subject is, which a wide blur of its mask tells. It is smooth: a quarter
/// of the frame's size is enough.
constexpr double kDistanceScale = 0.25;
/// Its standard deviation, of the frame's shorter side; the shader knows it.
constexpr double kDistanceBlur = 0.035;
constexpr double kSeconds = 3;  ///< an outline's life

MTIVector rgbOf(const UIColor& color) {
    const MTIColor c = MTIColorWithUIColor(color);
    return {c.red * c.alpha, c.green * c.alpha, c.blue * c.alpha};
}

}  // namespace

const QVFilterClass QVAIGhostContourFilterClass{
    .name = "QVAIGhostContourFilter",
    .superclass = &QVAIEffectMTIFilterClass,
    .title = "Ghost outlines",
    .help = "Glowing outlines leave the subject, rise and fade",
    .tags = {"contour", "aura", "outline", "neon", "spirit", "soul", "mask"},
    .factory = makeFilter<QVAIGhostContourFilter>,
    .inputs = {{kInputImage, kSubjectMask}},
    .properties =
        {
            qvProperty<&Effect::reach, &Effect::setReach>({
                .name = "reach",
                .title = "Reach",
                .help = "how far an outline swells: of the frame's shorter side",
                .maximum = 0.2,
                .unit = QVUnit::fraction,
            }),
            qvProperty<&Effect::glow, &Effect::setGlow>({
                .name = "glow",
                .title = "Glow",
                .help = "brightness of the outlines",
                .unit = QVUnit::fraction,
            }),
        },
};

QVAIGhostContourFilter::QVAIGhostContourFilter(const QVFilterClass& filterClass)
    : QVAIEffectMTIFilter(filterClass) {
    QVAIGhostContourFilter::setEffectValue(effectValue());
}

void QVAIGhostContourFilter::setEffectValue(float value) {
    QVAIEffectMTIFilter::setEffectValue(value);
    reach_ = 0.03 + 0.07 * double(value);
    glow_ = std::min(2 * double(value), 1.0);
}

MTIParameters QVAIGhostContourFilter::parameters() const {
    const double lives = iTime() / kSeconds;
    const UIColor near = colors().empty() ? UIColor{0.62, 1.0, 0.98} : colors().front();
    const UIColor far =
        colors().empty() ? UIColor{0.56, 0.3, 1.0} : colors()[std::min<std::size_t>(1, colors().size() - 1)];
    return {{"iTime", float(lives - std::floor(lives))},
            {"reach", float(reach_)},
            {"glow", float(glow_)},
            {"nearColor", rgbOf(near)},
            {"farColor", rgbOf(far)}};
}

MTIImage QVAIGhostContourFilter::outputImage() {
    if (!inputImage() || !maskImage()) return {};
    const CGSize size = inputImage().size();
    const auto smaller = [&](double scale) {
        return CGSize{std::ceil(size.width * scale), std::ceil(size.height * scale)};
    };
    // In two steps, which a sample a pixel is enough for. Far from the subject little is left of it, and that
    // little has to be exact.
    const MTIImage half = maskImage().resize(smaller(2 * kDistanceScale), MTIPixelFormat::rgba16Float);
    const CGSize small = smaller(kDistanceScale);
    MTIGaussianBlurFilter blur;
    blur.setInputImage(half.resize(small));
    blur.setRadius(float(kDistanceBlur * std::min(small.width, small.height)));
    blur.setOutputPixelFormat(MTIPixelFormat::rgba16Float);
    return applyKernel({inputImage(), maskImage(), blur.outputImage()}, parameters());
}

}  // namespace qv
