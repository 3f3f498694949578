#include "QVFilterExtension/MTIFilters/Effect/Particle/QVInterstellarMTIFilter.h"

#include <cmath>
#include <numbers>

#include "QVFilterCore/QVClipTime.h"

namespace qv {

const QVFilterClass QVInterstellarMTIFilterClass{
    .name = "QVInterstellarMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Wormhole",
    .help = "A flight through stars into the picture at the end of a wormhole",
    .tags = {"interstellar", "space", "stars", "black hole", "lensing", "hyperspace", "galaxy"},
    .factory = makeFilter<QVInterstellarMTIFilter>,
    .category = QVFilterCategory::particle,
    .isPhotoTimeConst = false,
};

QVInterstellarMTIFilter::Flight QVInterstellarMTIFilter::flightAt(double seconds) {
    constexpr double kTurn = 2 * std::numbers::pi, kUnevenness = 0.8;
    const double part = timeCycleAt(seconds, kPeriod).part;
    return {part - kUnevenness / kTurn * std::sin(kTurn * part), 0.5 - 0.5 * std::cos(kTurn * part)};
}

MTIParameters QVInterstellarMTIFilter::parameters() const {
    const Flight flight = flightAt(iTime());
    return {{"effectValue", effectValue()}, {"way", float(flight.way)}, {"surge", float(flight.surge)}};
}

}  // namespace qv
