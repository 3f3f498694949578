#include "QVFilterExtension/MTIFilters/Effect/Particle/QVRibbonMTIFilter.h"

#include <cmath>

namespace qv {

const QVFilterClass QVRibbonMTIFilterClass{
    .name = "QVRibbonMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Confetti ribbons",
    .help = "Pieces of coloured ribbon fall and spin",
    .tags = {"party", "celebration", "birthday", "paper", "sprites"},
    .factory = makeFilter<QVRibbonMTIFilter>,
    .category = QVFilterCategory::particle,
};

QVRibbonMTIFilter::QVRibbonMTIFilter(const QVFilterClass& filterClass)
    : SpriteScatterEffect(filterClass, "filter_ribbon.png") {}

UIColor QVRibbonMTIFilter::randomColor(std::int64_t index) {
    const double k = double(index) * 35678.4223;
    // The remainder keeps its sign: each channel lies up to 0.35 to either side of its base.
    const auto channel = [k](double frequency, double base) {
        return std::fmod(k * std::sin(frequency * k), 0.35) + base;
    };
    return {channel(4738.3174, 0.7), channel(6923.6125, 0.45), channel(2846.3125, 0.45)};
}

std::vector<SpiritParam> QVRibbonMTIFilter::sprites(float aspect) const {
    const double t = iTime(), strength = effectValue();
    const std::int64_t end = spriteCount(70 * strength + 10);
    const double base = 0.04 - 0.017 * strength;
    const double scale = aspect > 1 ? base * aspect : base;
    const double fall = 0.15 * strength + 0.09;
    std::vector<SpiritParam> pieces;
    for (std::int64_t index = 1; index < end; ++index) {
        const double i = double(index);
        const double px = fract(std::sin(72.23 * i) + std::sin(35.67 * i) * t * 0.08);
        const double py = fract(std::sin(23.34 * i) - fall * (std::abs(std::sin(89.12 * i)) + 0.1) * t);
        const double tx = (2 * px - 1) * 1.2, ty = (2 * py - 1) * aspect * 1.2;
        const double angle = std::sin(36.58 * i) * (t + 7.8) * 5.0;
        const CGAffineTransform placed =
            CGAffineTransformScale(CGAffineTransformMakeTranslation(tx, ty), scale, scale);
        pieces.push_back(SpiritParam::paramWithTrans(CGAffineTransformRotate(placed, angle),
                                                     randomColor(index), spiritTexture()));
    }
    return pieces;
}

}  // namespace qv
