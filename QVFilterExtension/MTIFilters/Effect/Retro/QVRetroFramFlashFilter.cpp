#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroFramFlashFilter.h"

#include <algorithm>

#include "QVFilterExtension/Private/RandomSeed.h"
#include "QVFilterExtension/Private/RetroClock.h"

namespace qv {

namespace {

using Effect = QVRetroFramFlashFilter;
constexpr std::int64_t kFramesPerSecond = 30;
/// The last second whose frames count in 32 bits.
constexpr std::int64_t kLastSecond = 143165576;
constexpr std::int32_t kPhotoSide = 3;

/// The time's frame; nothing flashes before the start.
std::int64_t frameOf(const Effect& effect) {
    return std::max<std::int64_t>(retroFrameAt(effect.iTime()), 0);
}

}  // namespace

const QVFilterClass QVRetroFramFlashFilterClass{
    .name = "QVRetroFramFlashFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Edge flash",
    .help = "Warm light sweeps in from an edge of the frame, another one each second",
    .tags = {"light leak", "flash", "film burn", "warm", "vintage"},
    .factory = makeFilter<QVRetroFramFlashFilter>,
    .category = QVFilterCategory::retro,
};

QVRetroFramFlashFilter::QVRetroFramFlashFilter(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass),
      framColors_{getColorVectorWithRGB(1.0, 143.0 / 255, 45.0 / 255),
                  getColorVectorWithRGB(254.0 / 255, 195.0 / 255, 45.0 / 255),
                  getColorVectorWithRGB(1.0, 249.0 / 255, 231.0 / 255),
                  getColorVectorWithRGB(1.0, 242.0 / 255, 199.0 / 255)} {
    flash_.color = framColors_[0];
}

MTIVector QVRetroFramFlashFilter::getColorVectorWithRGB(double red, double green, double blue) {
    return {float(red), float(green), float(blue)};
}

float QVRetroFramFlashFilter::getMotionProgress() const {
    const float swept = float(frameOf(*this) % kFramesPerSecond) / 5;
    return flash_.motion = isPhoto() ? effectValue() : std::clamp(swept, 0.0f, 1.0f);
}

const MTIVector& QVRetroFramFlashFilter::getColorVector() const {
    if (frameOf(*this) / kFramesPerSecond <= kLastSecond)
        flash_.color = framColors_[std::size_t(flash_.side) % framColors_.size()];
    return flash_.color;
}

std::int32_t QVRetroFramFlashFilter::sideAt(std::int64_t frame) const {
    const std::int64_t second = frame / kFramesPerSecond;
    if (second > kLastSecond) return flash_.side;
    const double seed = 4 * double(effectValue()) + double(kFramesPerSecond * second) + 1250;
    return randomFromSeed(randomSeedFromDouble(seed)) % 4;
}

std::int32_t QVRetroFramFlashFilter::getFlashSide() const {
    return flash_.side = isPhoto() ? kPhotoSide : sideAt(frameOf(*this));
}

void QVRetroFramFlashFilter::settle() {
    const std::int64_t frame = frameOf(*this);
    flash_.side = isPhoto() ? kPhotoSide : frame > 0 ? sideAt(frame - 1) : 0;
}

MTIParameters QVRetroFramFlashFilter::parameters() const {
    MTIParameters all;
    all.set("motionProgress", getMotionProgress());
    all.set("color", getColorVector());
    all.set("side", getFlashSide());
    return all;
}

}  // namespace qv
