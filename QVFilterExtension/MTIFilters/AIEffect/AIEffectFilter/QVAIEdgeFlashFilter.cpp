#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIEdgeFlashFilter.h"

#include <algorithm>

#include "QVFilterExtension/Private/Flashes.h"

namespace qv {

namespace {

constexpr double kMostGlints = 520, kSeconds = 3.0, kGlintSeconds = 0.35;
constexpr int kSparks = 2;
constexpr double kTail = 0.25;  ///< of the way around

UIColor between(const UIColor& a, const UIColor& b, double share) {
    const auto mix = [&](double from, double to) { return from + (to - from) * share; };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()),
            mix(a.alpha(), b.alpha())};
}

}  // namespace

const QVFilterClass QVAIEdgeFlashFilterClass{
    .name = "QVAIEdgeFlashFilter",
    .superclass = &QVAIEdgeSpiritFilterClass,
    .title = "Running sparks",
    .help = "Sparks run around the subject and leave its edge glittering",
    .tags = {"fuse", "sparkler", "glitter", "comet", "firework"},
    .factory = makeFilter<QVAIEdgeFlashFilter>,
    .kind = QVFilterKind::effect,
};

QVAIEdgeFlashFilter::QVAIEdgeFlashFilter(const QVFilterClass& filterClass)
    : QVAIEdgeSpiritFilter(filterClass),
      star_(spiritTextureNamed("celebrate_star17.png")),
      glint_(spiritTextureNamed("celebrate_particle.png")) {}

std::vector<UIColor> QVAIEdgeFlashFilter::defaultColors() const {
    return {{1, 0.96, 0.86}, {1, 0.62, 0.16}};
}

std::vector<QVEdgeSpirit> QVAIEdgeFlashFilter::edgeSpiritParam() const {
    const std::vector<UIColor> palette = colors().empty() ? defaultColors() : colors();
    const double strength = std::clamp(double(effectValue()), 0.0, 1.0);
    const double turn = iTime() / kSeconds;
    const auto fraction = [](double value) { return value - std::floor(value); };
    std::vector<QVEdgeSpirit> sprites;
    const int glints = int(kMostGlints * strength + 0.5);
    for (int i = 0; i < glints; ++i) {
        FlashLife life(std::uint32_t(i), iTime(), kGlintSeconds);
        const double place = fraction((i + life.next()) / glints);
        // How long ago, in shares of the way, the nearest spark was here.
        const double ago = fraction((turn - place) * kSparks) / kSparks;
        const double heat = std::max(1 - ago / kTail, 0.0);
        const double twinkle = 4 * life.age() * (1 - life.age()), size = life.next(), far = life.next();
        if (heat <= 0) continue;
        const bool isStar = i % 3 == 0;
        const double side = (0.010 + 0.026 * size * size * heat) * (isStar ? 2.2 : 1);
        sprites.push_back({.place = place,
                           .distance = (1 - heat) * 0.05 * (far - 0.35),
                           .rise = -0.03 * (1 - heat) * (1 - heat) * far,
                           .size = {side, side},
                           .alpha = float(std::sqrt(heat) * (0.45 + 0.55 * twinkle)),
                           .tint = between(palette.back(), palette.front(), heat * heat),
                           .texture = isStar ? star_ : glint_});
    }
    for (int i = 0; i < (glints > 0 ? kSparks : 0); ++i) {
        FlashLife life(std::uint32_t(i), iTime(), 0.08);
        const double size = (0.12 + 0.10 * strength) * (0.8 + 0.4 * life.next());
        sprites.push_back({.place = fraction(turn + double(i) / kSparks),
                           .size = {size, size},
                           .angle = 0.8 * life.next(),
                           .tint = palette.front(),
                           .texture = star_});
    }
    return sprites;
}

}  // namespace qv
