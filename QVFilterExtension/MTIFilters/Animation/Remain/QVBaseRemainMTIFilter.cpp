#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBaseRemainMTIFilter.h"

#include <array>
#include <cmath>

namespace qv {

namespace {
constexpr std::array<std::string_view, 2> kEnds = {"start", "end"};
}  // namespace

const QVFilterClass QVBaseRemainMTIFilterClass{
    .name = "QVBaseRemainMTIFilter",
    .superclass = &QVProgressBasedEffectMTIFilterClass,
    .title = "Effect at an end of a clip",
    .help = "An effect over one end of a clip that leaves the rest clear",
    .factory = makeFilter<QVBaseRemainMTIFilter>,
    .defaultEffectValue = 0.0f,
    .properties =
        {qvLevels({.title = "End of the clip", .help = "which end of the clip it is at", .variants = kEnds}),
         qvProperty<&QVEffectMTIFilter::extractValues, &QVEffectMTIFilter::setExtractValues>({
             .name = "extractValues",
             .title = "Hold",
             .help = "the first: how long the effect holds before it goes; 0.5 without",
             .unit = QVUnit::fraction,
             .driver = QVPropertyDriver::host,
         })},
    .ignored = {"effectValue"},
};

double QVBaseRemainMTIFilter::getMixStrength() const {
    const float setting = extractValues().empty() ? kDefaultEffectValue : float(extractValues().front());
    const float progress = std::isfinite(setting) ? setting : kDefaultEffectValue;
    const double start = startTime(), end = endTime(), time = iTime();

    constexpr double kShortClip = 3.0;  // seconds
    const double duration = end - start;
    const bool isShort = duration < kShortClip;
    const double hold = isShort ? getRateOfChangeWithProgress(progress) * duration : double(1.2f * progress);
    const double share = isShort ? duration / kShortClip : 1.0;
    const double a = start + hold;
    const double b = end - share * getClearRemainTimeWithProgress(progress);

    const auto passed = [&](double since) {
        const double part = (time - since) / (b - a);
        return std::isfinite(part) ? part : 1.0;  // of a span without end
    };
    if (level() == 0) {
        if (start <= time && time <= a) return 0;
        return a < time && time <= b ? passed(a) : 1;
    }
    const double c = start + (end - b), e = end + start - a;
    if (start <= time && time <= c) return 1;
    if (!(c < time && time <= e)) return 0;
    // The last trace of the clear picture goes at once.
    constexpr double kTrace = 0.05;
    const double strength = 1 - passed(c);
    return strength < kTrace ? 0 : strength;
}

double QVBaseRemainMTIFilter::getRateOfChangeWithProgress(float progress) const {
    const double p = progress;
    return p < 0.5 ? 0.3 * p : 0.18 * p + 0.15;
}

double QVBaseRemainMTIFilter::getClearRemainTimeWithProgress(float progress) const {
    const double p = progress;
    return p < 0.5 ? 2.2 - 2 * p : 1.5 - 3 * (p - 0.5);
}

MTIParameters QVBaseRemainMTIFilter::parameters() const {
    return {{"filterStrength", float(mixStrength())}};
}

}  // namespace qv
