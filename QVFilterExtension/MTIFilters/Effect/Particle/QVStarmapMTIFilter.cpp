#include "QVFilterExtension/MTIFilters/Effect/Particle/QVStarmapMTIFilter.h"

#include <algorithm>
#include <cmath>

namespace qv {

namespace {
constexpr float kSmallestRadius = 0.1f, kLargestRadius = 0.8f;
}  // namespace

const QVFilterClass QVStarmapMTIFilterClass{
    .name = "QVStarmapMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Star flight",
    .help = "Stars fly outward from the frame's centre",
    .tags = {"space", "warp speed", "galaxy", "hyperspace"},
    .factory = makeFilter<QVStarmapMTIFilter>,
    .category = QVFilterCategory::particle,
};

QVStarmapMTIFilter::QVStarmapMTIFilter(const QVFilterClass& filterClass)
    : SpriteScatterEffect(filterClass, "filter_star.png") {}

void QVStarmapMTIFilter::setEffectValue(float value) {
    QVEffectMTIFilter::setEffectValue(value);
    const double strength = value;
    float speed = float(strength + 0.2);
    if (speed > 0.7) speed = float((6 * (speed - 0.7) + 1) * speed);
    maxMovementSpeed_ = speed;
    starCount_ = spriteCount(20 * strength + 30);
}

std::vector<SpiritParam> QVStarmapMTIFilter::sprites(float aspect) const {
    std::vector<SpiritParam> stars;
    for (std::int64_t index = 0; index < starCount_; ++index) {
        const double i = double(index);
        const float size = float(fract(std::sin(7.1234 * i)));
        const float radius = kSmallestRadius + (kLargestRadius - kSmallestRadius) * size;
        const float start = float(2 * fract(std::sin(8.2345 * i)));
        const float speed = (size + 0.1f) * maxMovementSpeed_;
        const float distance = float(std::fmod(iTime() * speed + start, 2.0));
        const float direction = float(2 * fract(std::sin(5.3456 * i)) * 3.14);
        const float x = std::cos(direction) * distance;
        const float y = aspect * (std::sin(direction) * distance);
        const double scale = radius * 0.6 * (distance * 0.5);
        const float alpha = float(std::clamp(distance * 0.5f * 5.0f - 0.05, 0.0, 1.0));
        stars.push_back(SpiritParam::paramWithTrans(
            CGAffineTransformScale(CGAffineTransformMakeTranslation(x, y), scale, scale), alpha,
            spiritTexture()));
    }
    return stars;
}

}  // namespace qv
