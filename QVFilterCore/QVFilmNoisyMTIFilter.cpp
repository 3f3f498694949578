#include "QVFilterCore/QVFilmNoisyMTIFilter.h"

#include <algorithm>
#include <cmath>

namespace qv {

namespace {

using Noisy = QVFilmNoisyMTIFilter;

constexpr double kFramesPerSecond = 24;
constexpr double kGrain = 1.5, kReferenceSide = 1080;

}  // namespace

const QVFilterClass QVFilmNoisyMTIFilterClass{
    .name = "QVFilmNoisyMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .help = "a layer of film grain, to be overlaid on the picture",
    .factory = makeFilter<QVFilmNoisyMTIFilter>,
    .category = QVFilterCategory::film,
    .properties =
        {
            qvProperty<&Noisy::iTime, &Noisy::setITime>("iTime", -1e9, 1e9, "seconds"),
            qvProperty<&Noisy::opacity, &Noisy::setOpacity>("opacity", 0, 1, "strength of the grain"),
        },
};

MTIParameters QVFilmNoisyMTIFilter::parameters() const {
    // Frame numbers repeat after eight days of film, long before they stop being exact.
    constexpr double kFrames = 1 << 24;
    const double frame =
        std::isfinite(iTime_) ? std::fmod(std::floor(iTime_ * kFramesPerSecond), kFrames) : 0;
    const CGSize size = inputImage().size();
    const double grain = kGrain * std::min(size.width, size.height) / kReferenceSide;
    return {
        {"frame", std::int32_t(frame)}, {"grainSize", float(std::max(1.0, grain))}, {"opacity", opacity_}};
}

}  // namespace qv
