#include "QVFilterCore/QVPeriodicEffectMTIFilter.h"

#include <cmath>

namespace qv {

const QVFilterClass QVPeriodicEffectMTIFilterClass{
    .name = "QVPeriodicEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .factory = makeFilter<QVPeriodicEffectMTIFilter>,
    .category = QVFilterCategory::animation,
};

namespace {

/// Position in the period, 0..1; 0 for a time that is not a number.
double phase(double seconds) {
    if (!std::isfinite(seconds)) return 0;
    const double cycles = seconds / QVPeriodicEffectMTIFilter::kPeriod;
    return cycles - std::floor(cycles);
}

}  // namespace

bool QVPeriodicEffectMTIFilter::isEffectWithTime(double seconds) const {
    return phase(seconds) < kActiveFraction;
}

MTIParameters QVPeriodicEffectMTIFilter::parameters() const {
    MTIParameters all = QVEffectMTIFilter::parameters();
    const double beat = isEffectWithTime(iTime()) ? phase(iTime()) / kActiveFraction : 0.0;
    all.set("progress", float(beat));
    return all;
}

}  // namespace qv
