#include "QVFilterExtension/MTIFilters/Effect/Retro/QVTVMTIFilter.h"

#include <algorithm>

#include "QVFilterCore/QVClipTime.h"

namespace qv {

namespace {

/// Lit height of the tube while it shows a line, and width of the dot.
constexpr double kLine = 0.006, kDot = 0.01;
constexpr double kSnowSeconds = 1.0 / 24;

double smooth(double t) {
    return t * t * (3 - 2 * t);
}

/// 0 up to 1 and down to 0 while channels change.
double changeAt(double second, double start) {
    const double t = clipProgress(second, start, start + 0.35);
    return std::min(4 * t, 1.0) * smooth(1 - t);
}

}  // namespace

const QVFilterClass QVTVMTIFilterClass{
    .name = "QVTVMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Old television",
    .help = "A television that is switched on, changes channels and is switched off",
    .tags = {"tv", "crt", "tube", "channel", "retro", "static", "turn off"},
    .factory = makeFilter<QVTVMTIFilter>,
    .category = QVFilterCategory::retro,
    .isPhotoTimeConst = false,
};

QVTVMTIFilter::Programme QVTVMTIFilter::programmeAt(double seconds) {
    Programme shown;
    const QVTimeCycle cycle = timeCycleAt(seconds, kPeriod);
    if (!cycle.isValid) return shown;
    const double s = cycle.part * kPeriod;
    const double opens = smooth(clipProgress(s, 0.15, 0.5)), falls = smooth(clipProgress(s, 5.35, 5.55));
    const double grows = smooth(clipProgress(s, 0, 0.15)), shrinks = smooth(clipProgress(s, 5.55, 5.8));
    shown.height = kLine + (1 - kLine) * opens * (1 - falls);
    shown.width = kDot + (1 - kDot) * grows * (1 - shrinks);
    const double goneOut = clipProgress(s, 5.75, 5.85);
    shown.flash = std::max(1 - smooth(clipProgress(s, 0.3, 0.8)), falls) * (1 - goneOut);
    if (goneOut >= 1) shown.width = shown.height = 0;
    shown.trouble = std::max(changeAt(s, 2), changeAt(s, 3.6));
    shown.channel = int(s >= 2.1) + int(s >= 3.7);
    return shown;
}

MTIParameters QVTVMTIFilter::parameters() const {
    const Programme shown = programmeAt(iTime());
    return {
        {"effectValue", effectValue()},    {"opening", MTIVector{float(shown.width), float(shown.height)}},
        {"flash", float(shown.flash)},     {"trouble", float(shown.trouble)},
        {"channel", float(shown.channel)}, {"draw", timeCycleAt(iTime(), kSnowSeconds).wrappedNumber()}};
}

}  // namespace qv
