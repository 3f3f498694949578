#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmRotationTransitionMTIFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "QVFilterExtension/MTIFilters/Transition/Film/FilmTiming.h"
#include "QVFilterExtension/Private/FittedImage.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

namespace {

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

/// Its bands keep their width to 0.15 of the frame; the perforation is at its corners.
UIImage fittedFrame(const UIImage& film, CGSize size) {
    constexpr double kBand = 300;
    const double factor =
        std::min(std::min(size.width, size.height) / film.size().height, 0.16 * size.width / kBand);
    const CGSize own = film.size();
    return fittedByCuts(film, size, factor, {kBand, own.width - kBand}, {kBand, own.height - kBand});
}

float turnAt(float progress) {
    const float way = wayBetween(progress, 0.12, 0.88);
    return way * way * (3 - 2 * way);
}

/// What the view turns through while the shutter is open, radians.
float smearAt(float progress) {
    constexpr float kHalf = QVFilmRotationTransitionMTIFilter::kShutter / 2;
    return std::numbers::pi_v<float> * (turnAt(progress + kHalf) - turnAt(progress - kHalf));
}

bool isFast(float progress) {
    return smearAt(progress) > 0.05f;
}

}  // namespace

const QVFilterClass QVFilmRotationTransitionMTIFilterClass{
    .name = "QVFilmRotationTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Wall of film",
    .help = "The view draws back to a wall of film frames, turns half around and closes in on the next clip",
    .tags = {"spin", "turn", "8 mm", "home movie", "vintage"},
    .factory = makeFilter<QVFilmRotationTransitionMTIFilter>,
};

MTIImage QVFilmRotationTransitionMTIFilter::frameImage() const {
    return assets().fittedImage("trans_Film_frame01_2.png", inputImage1().size(), fittedFrame);
}

MTIParameters QVFilmRotationTransitionMTIFilter::parameters() const {
    const float p = progress(), turned = turnAt(p);
    const float angle = std::numbers::pi_v<float> * turned;
    const float covered = easeInOutCubic(std::min(wayBetween(p, 0, 0.16), wayBetween(p, 1, 0.84)));
    const float away = easeInOutCubic(std::min(2 * p, 2 - 2 * p));
    return {{"center", MTIVector{0.5f, 0.5f + turned}},
            {"grow", std::pow(kFarScale, away)},
            {"turn", MTIVector{std::cos(angle), std::sin(angle)}},
            {"opening", kWideOpening + (1 - kWideOpening) * covered},
            {"cover", std::min(covered * 40, 1.0f)},
            {"fast", int(isFast(p))}};
}

MTIImage QVFilmRotationTransitionMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const MTIImage wall =
        applyKernel({inputImage1(), inputImage2().resize(inputImage1().size()), frameImage()}, parameters());
    if (!isFast(progress())) return wall;
    rotationBlurFilter_.setInputImage1(wall);
    rotationBlurFilter_.setBlurFilterValue(smearAt(progress()));
    return rotationBlurFilter_.outputImage();
}

}  // namespace qv
