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
    .title = "Film grain",
    .help = "A layer of film grain, to be overlaid on the picture",
    .tags = {"noise", "texture", "analog", "overlay", "vintage"},
    .factory = makeFilter<QVFilmNoisyMTIFilter>,
    .category = QVFilterCategory::film,
    .properties =
        {
            qvProperty<&Noisy::iTime, &Noisy::setITime>({
                .name = "iTime",
                .title = "Time",
                .help = "when; the same time gives the same grain",
                .minimum = -kUnlimited,
                .maximum = kUnlimited,
                .unit = QVUnit::seconds,
                .driver = QVPropertyDriver::host,
            }),
            qvProperty<&Noisy::opacity, &Noisy::setOpacity>({
                .name = "opacity",
                .help = "strength of the grain",
                .unit = QVUnit::fraction,
            }),
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
