#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmBlurFlashTransitionMTIFilter.h"

#include <algorithm>
#include <cmath>

#include "QVFilterExtension/MTIFilters/Transition/Film/FilmTiming.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

namespace {

constexpr double kReferenceSide = 1080;

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

/// 0 at both ends, 1 in the middle.
float toMiddle(float progress) {
    return wayBetween(std::min(progress, 1 - progress), 0.1, 0.5);
}

}  // namespace

const QVFilterClass QVFilmBlurFlashTransitionMTIFilterClass{
    .name = "QVFilmBlurFlashTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Through the lens",
    .help = "Seen through a lens, the clip blooms out of focus, and the next one comes into it",
    .tags = {"focus", "blur", "bloom", "camera", "glow"},
    .factory = makeFilter<QVFilmBlurFlashTransitionMTIFilter>,
};

MTIImage QVFilmBlurFlashTransitionMTIFilter::frameImage() const {
    const CGSize frame = inputImage1().size();
    const double side = std::min(frame.width, frame.height);
    return assets().fittedImage(
        "transitions_flim_lens3.png", CGSize{side, side},
        [](const UIImage& lens, CGSize shorter) { return scale(lens, shorter.width / kReferenceSide); });
}

MTIParameters QVFilmBlurFlashTransitionMTIFilter::parameters() const {
    const float p = progress(), closed = easeInOutCubic(wayBetween(std::min(p, 1 - p), 0, 0.3));
    const float angle = kTurn * (p - 0.5f);
    return {{"opening", std::pow(kWideOpening, 1 - closed)},
            {"turn", MTIVector{std::cos(angle), std::sin(angle)}},
            {"cover", std::min(closed * 40, 1.0f)}};
}

MTIImage QVFilmBlurFlashTransitionMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const CGSize frame = inputImage1().size();
    const float near = toMiddle(progress());
    blurFilter_.setInputImage(progress() < 0.5f ? inputImage1() : inputImage2().resize(frame));
    blurFilter_.setRadius(kBlur * near * near * float(std::min(frame.width, frame.height) / kReferenceSide));
    exposureFilter_.setInputImage1(blurFilter_.outputImage());
    exposureFilter_.setExposureValue(kStops * near * near * near * near);
    return applyKernel({exposureFilter_.outputImage(), frameImage()}, parameters());
}

}  // namespace qv
