#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmHorizontalTransitionMTIFilter.h"

#include <cmath>

#include "QVFilterExtension/MTIFilters/Transition/Film/FilmTiming.h"
#include "QVFilterExtension/Private/FittedImage.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

namespace {

constexpr FilmGauge kGauge{.pitch = 192, .band = 210, .runsDown = false};

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

bool isFast(float progress) {
    return progress >= 0.36f && progress < 0.58f;
}

}  // namespace

const QVFilterClass QVFilmHorizontalTransitionMTIFilterClass{
    .name = "QVFilmHorizontalTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Film strip on a light table",
    .help = "The view draws back to a strip of film on a light table, which is pulled on to the next clip",
    .tags = {"filmstrip", "negative", "slide", "analog", "vintage"},
    .factory = makeFilter<QVFilmHorizontalTransitionMTIFilter>,
};

MTIImage QVFilmHorizontalTransitionMTIFilter::frameImage() const {
    return assets().fittedImage(
        "transitions_flim_02_word.png", inputImage1().size(),
        [](const UIImage& film, CGSize size) { return fittedFilm(film, size, kGauge); });
}

float QVFilmHorizontalTransitionMTIFilter::travel() const {
    const float pull = easeInOutCubic(wayBetween(progress(), 0.28, 0.66));
    const float over = progress() < 0.7f    ? 0.02f * wayBetween(progress(), 0.6, 0.66)
                       : progress() < 0.74f ? -0.01f
                                            : 0.0f;
    return pull * kFrames + over;
}

MTIParameters QVFilmHorizontalTransitionMTIFilter::parameters() const {
    const float p = progress();
    const float away = easeInOutCubic(p < 0.5f ? wayBetween(p, 0, 0.3) : wayBetween(p, 1, 0.7));
    const float lean = away * kLean;
    return {{"travel", travel()},
            {"grow", 1 + (kFarScale - 1) * away},
            {"turn", MTIVector{std::cos(lean), std::sin(lean)}},
            {"opening", kWideOpening + (1 - kWideOpening) * away},
            {"cover", std::fmin(away * 40, 1.0f)},
            {"fast", int(isFast(p))}};
}

MTIImage QVFilmHorizontalTransitionMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const MTIImage strip =
        applyKernel({inputImage1(), inputImage2().resize(inputImage1().size()), frameImage()}, parameters());
    if (!isFast(progress())) return strip;
    blurMTIFilter_.setInputImage1(strip);
    blurMTIFilter_.setInputImage2(strip);
    blurMTIFilter_.setProgress(kSmear);
    return blurMTIFilter_.outputImage();
}

}  // namespace qv
