#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIWaferflashFilter.h"

#include <algorithm>
#include <numbers>

#include "QVFilterExtension/Private/Flashes.h"

namespace qv {

namespace {
constexpr double kMostWafers = 260, kSeconds = 1.6;
}  // namespace

const QVFilterClass QVAIWaferflashFilterClass{
    .name = "QVAIWaferflashFilter",
    .superclass = &QVAIEdgeSpiritFilterClass,
    .title = "Tumbling wafers",
    .help = "Thin bright discs come off the subject's outline and flash as they tumble",
    .tags = {"confetti", "bokeh", "sequins", "party", "glitter"},
    .factory = makeFilter<QVAIWaferflashFilter>,
    .kind = QVFilterKind::effect,
};

QVAIWaferflashFilter::QVAIWaferflashFilter(const QVFilterClass& filterClass)
    : QVAIEdgeSpiritFilter(filterClass), wafer_(spiritTextureNamed("celebrate_particle.png")) {}

std::vector<UIColor> QVAIWaferflashFilter::defaultColors() const {
    return {{1, 0.84, 0.42}, {1, 0.62, 0.74}, {0.66, 1, 0.84}, {0.62, 0.84, 1}};
}

std::vector<QVEdgeSpirit> QVAIWaferflashFilter::edgeSpiritParam() const {
    const std::vector<UIColor> palette = colors().empty() ? defaultColors() : colors();
    const double strength = std::clamp(double(effectValue()), 0.0, 1.0);
    std::vector<QVEdgeSpirit> wafers;
    for (int i = 0; i < int(kMostWafers * strength + 0.5); ++i) {
        FlashLife life(std::uint32_t(i), iTime(), kSeconds);
        const double place = life.next(), draw = life.next(), spin = life.next(), lean = life.next(),
                     far = life.next();
        const double age = life.age(), slowing = 1 - (1 - age) * (1 - age);
        const double facing = std::cos(2 * std::numbers::pi * (spin + age * (1.2 + 1.6 * lean)));
        const double shown = std::min(age / 0.12, 1.0) * std::min((1 - age) / 0.45, 1.0);
        // It mirrors the light when it faces the viewer; otherwise it is only lit.
        const double flash = std::pow(std::abs(facing), 8);
        const UIColor& color = palette[std::size_t(i) % palette.size()];
        const auto lit = [&](double component) { return component + (1 - component) * 0.7 * flash; };
        const double size = 0.022 + 0.038 * draw * draw;
        wafers.push_back({.place = place,
                          .distance = (0.005 + 0.15 * far) * slowing,
                          .rise = 0.05 * slowing + 0.03 * age * age,
                          .size = {size * std::max(std::abs(facing), 0.12), size},
                          .angle = std::numbers::pi * (lean + 0.3 * age),
                          .alpha = float(shown * (0.8 + 0.2 * flash)),
                          .tint = {lit(color.red()), lit(color.green()), lit(color.blue()), color.alpha()},
                          .texture = wafer_});
    }
    return wafers;
}

}  // namespace qv
