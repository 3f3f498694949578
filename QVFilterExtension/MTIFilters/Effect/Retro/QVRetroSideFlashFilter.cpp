#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroSideFlashFilter.h"

#include <algorithm>

#include "QVFilterExtension/Private/RandomSeed.h"
#include "QVFilterExtension/Private/RetroClock.h"

namespace qv {

namespace {

using Effect = QVRetroSideFlashFilter;

/// The remainder that is never negative.
std::int64_t floorModulo(std::int64_t value, std::int64_t divisor) {
    return (value % divisor + divisor) % divisor;
}

bool isSectionValue(std::int64_t value, std::int64_t maxValue, std::int64_t minValue) {
    return minValue <= value && value <= maxValue;
}

/// The phase of the burst in a frame, of which there is one in 90 frames.
std::int32_t getColorType(std::int64_t frame) {
    const std::int64_t f = frame % 90;
    if (isSectionValue(f, 9, 7)) return 1;
    if (isSectionValue(f, 11, 9)) return 2;
    return isSectionValue(f, 12, 11) ? 1 : 0;
}

}  // namespace

const QVFilterClass QVRetroSideFlashFilterClass{
    .name = "QVRetroSideFlashFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Side flash",
    .help = "A warm glow jumps about at the side of the frame",
    .tags = {"light leak", "flash", "glow", "film", "vintage"},
    .factory = makeFilter<QVRetroSideFlashFilter>,
    .category = QVFilterCategory::retro,
    .properties = {qvProperty<&Effect::mixColor, &Effect::setMixColor>({
        .name = "mixColor",
        .title = "Two colours",
        .help = "a rose and turquoise burst every three seconds",
    })},
};

std::int64_t QVRetroSideFlashFilter::period() const {
    const double e = effectValue();
    const double frames = e < 0.5 ? 10 - 14 * e : 3 - 4 * (e - 0.5);
    return frames > 1 ? std::int64_t(std::min(frames, 1000.0)) : 1;
}

void QVRetroSideFlashFilter::drawPlace(std::int64_t frame) const {
    const auto seed = std::uint32_t(period() + frame);
    flash_.y = std::clamp(double(randomUnitFromSeed(seed + 1367)), 0.5, 1.0);
    flash_.x = std::clamp(double(randomUnitFromSeed(seed + 1323)), mixColor_ ? 0.18 : 0.1, 0.2);
}

void QVRetroSideFlashFilter::settle() {
    const std::int64_t frame = retroFrameAt(iTime());
    drawPlace(frame - floorModulo(frame, period()));
}

MTIParameters QVRetroSideFlashFilter::parameters() const {
    const std::int64_t frame = retroFrameAt(iTime());
    const bool isFirst = flash_.x == 0 && flash_.y == 0;
    if (isFirst || floorModulo(frame, period()) == 0) drawPlace(frame);
    if (mixColor_) flash_.colorType = getColorType(frame);
    return {{"randomX", float(flash_.x)},
            {"randomY", float(flash_.y)},
            {"mixColor", mixColor_},
            {"colorType", flash_.colorType}};
}

}  // namespace qv
