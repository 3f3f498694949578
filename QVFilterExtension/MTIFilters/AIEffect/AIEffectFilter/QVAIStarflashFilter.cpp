#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIStarflashFilter.h"

#include <algorithm>

#include "QVFilterExtension/Private/Flashes.h"

namespace qv {

namespace {
constexpr double kMostStars = 110, kSeconds = 0.9;
}  // namespace

const QVFilterClass QVAIStarflashFilterClass{
    .name = "QVAIStarflashFilter",
    .superclass = &QVAIEdgeSpiritFilterClass,
    .title = "Sparkling edge",
    .help = "Sparkles flash up along the subject's outline",
    .tags = {"glitter", "stars", "bling", "twinkle", "beauty"},
    .factory = makeFilter<QVAIStarflashFilter>,
    .kind = QVFilterKind::effect,
};

QVAIStarflashFilter::QVAIStarflashFilter(const QVFilterClass& filterClass)
    : QVAIEdgeSpiritFilter(filterClass), star_(spiritTextureNamed("celebrate_star17.png")) {}

std::vector<UIColor> QVAIStarflashFilter::defaultColors() const {
    return {{1, 1, 1}, {1, 0.86, 0.52}, {1, 0.80, 0.88}};
}

std::vector<QVEdgeSpirit> QVAIStarflashFilter::edgeSpiritParam() const {
    const std::vector<UIColor> palette = colors().empty() ? defaultColors() : colors();
    const double strength = std::clamp(double(effectValue()), 0.0, 1.0);
    std::vector<QVEdgeSpirit> stars;
    for (int i = 0; i < int(kMostStars * strength + 0.5); ++i) {
        FlashLife life(std::uint32_t(i), iTime(), kSeconds);
        const double place = life.next(), draw = life.next(), turn = life.next(), distance = life.next();
        // Up fast, down slowly; few are large.
        const double rise = std::min(life.age() / 0.22, 1.0),
                     fall = 1 - std::max(life.age() - 0.22, 0.0) / 0.78;
        const double light = rise * rise * (3 - 2 * rise) * fall;
        const double size = (0.06 + 0.12 * draw * draw * draw) * (0.45 + 0.55 * light);
        stars.push_back({.place = place,
                         .distance = 0.03 * distance - 0.01,
                         .size = {size, size},
                         .angle = 0.35 * (turn - 0.5) + 0.5 * (life.age() - 0.5),
                         .alpha = float(light),
                         .tint = palette[std::size_t(i) % palette.size()],
                         .texture = star_});
    }
    return stars;
}

}  // namespace qv
