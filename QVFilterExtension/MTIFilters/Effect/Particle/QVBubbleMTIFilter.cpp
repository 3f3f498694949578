#include "QVFilterExtension/MTIFilters/Effect/Particle/QVBubbleMTIFilter.h"

#include <cmath>

namespace qv {

const QVFilterClass QVBubbleMTIFilterClass{
    .name = "QVBubbleMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Soap bubbles",
    .help = "Soap bubbles drift over the frame",
    .tags = {"overlay", "sprites", "party", "children", "dreamy"},
    .factory = makeFilter<QVBubbleMTIFilter>,
    .category = QVFilterCategory::particle,
    .isPhotoTimeConst = false,
};

QVBubbleMTIFilter::QVBubbleMTIFilter(const QVFilterClass& filterClass)
    : SpriteScatterEffect(filterClass, "filter_bubble.png") {}

void QVBubbleMTIFilter::setEffectValue(float value) {
    QVEffectMTIFilter::setEffectValue(value);
    const double strength = value;
    matterCount_ = spriteCount(29 * strength + 1);
    baseScale_ = 1.3 - 0.75 * strength;
    offsetScale_ = 0.1 + 0.8 * strength;
}

std::vector<SpiritParam> QVBubbleMTIFilter::sprites(float aspect) const {
    const double t = iTime();
    std::vector<SpiritParam> bubbles;
    for (std::int64_t index = 1; index <= matterCount_; ++index) {
        const double i = double(index);
        // A slow drift that wraps round, partly outside the frame, and a wobble on top of it.
        const double driftX = fract(std::sin(1256.23 * i) + std::sin(15.67 * i) * t * 0.03);
        const double driftY = fract(std::sin(2398.34 * i) + std::sin(-89.12 * i) * t * 0.03);
        const double wobbleX = std::cos(std::sin(34.56 * i) * t + i);
        const double wobbleY = std::sin(std::cos(45.67 * i) * t + i);
        const double tx = wobbleX * 0.1 + (2 * driftX - 1) * 1.2;
        const double ty = wobbleY * 0.1 + (2 * driftY - 1) * aspect * 1.2;
        double scale = std::abs(baseScale_ + (std::sin(1267.28 * i) - 0.5) * offsetScale_) * 0.2;
        if (aspect < 1) scale *= aspect;
        bubbles.push_back(SpiritParam::paramWithTrans(
            CGAffineTransformScale(CGAffineTransformMakeTranslation(tx, ty), scale, scale), spiritTexture()));
    }
    return bubbles;
}

}  // namespace qv
