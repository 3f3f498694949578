#include "QVFilterExtension/MTIFilters/Effect/Blur/QVBlurMTIFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "QVFilterCore/QVClipTime.h"

namespace qv {

namespace {

// Passes of the shader.
constexpr std::int32_t kHalve = 0, kGather = 1, kFill = 2, kShow = 3;
/// Of the disc's radius: the radius of what fills the gaps between its taps.
constexpr float kFilling = 0.27f;

}  // namespace

const QVFilterClass QVBlurMTIFilterClass{
    .name = "QVBlurMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Breathing bokeh",
    .help = "Out of focus, lights open into discs, and the focus breathes",
    .tags = {"blur", "bokeh", "defocus", "dreamy", "lens", "lights"},
    .factory = makeFilter<QVBlurMTIFilter>,
    .category = QVFilterCategory::blur,
    .isPhotoTimeConst = false,
};

QVBlurMTIFilter::QVBlurMTIFilter(const QVFilterClass& filterClass) : QVEffectMTIFilter(filterClass) {
    QVBlurMTIFilter::setEffectValue(effectValue());
}

void QVBlurMTIFilter::setEffectValue(float value) {
    QVEffectMTIFilter::setEffectValue(value);
    discRadius_ = 0.045 * double(value);
}

double QVBlurMTIFilter::defocus(double seconds) {
    return 0.65 + 0.35 * std::cos(2 * std::numbers::pi * timeCycleAt(seconds, kPeriod).part);
}

MTIImage QVBlurMTIFilter::outputImage() {
    const auto kernel = filterClass().kernel();
    if (!inputImage() || !kernel || !(discRadius_ > 0)) return inputImage();
    const CGSize size = inputImage().size();
    const CGSize half{std::ceil(size.width / 2), std::ceil(size.height / 2)};
    const double open = defocus(iTime());
    const double radius = discRadius_ * open * std::min(size.width, size.height);
    const auto pass = [&](std::vector<MTIImage> inputs, CGSize target, MTIParameters parameters) {
        return kernel->applyToInputImages(std::move(inputs), std::move(parameters), target,
                                          outputPixelFormat());
    };
    const MTIImage halved = pass({inputImage()}, half, {{"pass", kHalve}});
    const MTIImage disc = pass({halved}, half, {{"pass", kGather}, {"radius", float(radius / 2)}});
    const MTIImage filled = pass({disc}, half, {{"pass", kFill}, {"radius", kFilling * float(radius / 2)}});
    return pass({filled, inputImage()}, size,
                {{"pass", kShow},
                 {"zoom", float(1 + 0.03 * double(effectValue()) * open)},
                 {"share", float(std::min(radius / 2.5, 1.0))}});
}

}  // namespace qv
