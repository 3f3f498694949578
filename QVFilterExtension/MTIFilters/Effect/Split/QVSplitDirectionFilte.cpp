#include "QVFilterExtension/MTIFilters/Effect/Split/QVSplitDirectionFilte.h"

#include <array>

namespace qv {

namespace {
using Effect = QVSplitDirectionFilte;
constexpr std::array<std::string_view, 2> kDirections = {"horizontal", "vertical"};
}  // namespace

const QVFilterClass QVSplitDirectionFilteClass{
    .name = "QVSplitDirectionFilte",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Split screen in two",
    .help = "Two panels, each the middle of the frame",
    .tags = {"multi screen", "side by side", "repeat"},
    .factory = makeFilter<QVSplitDirectionFilte>,
    .category = QVFilterCategory::split,
    .properties =
        {
            qvLevels({.title = "Direction",
                      .help = "side by side, or one above the other",
                      .variants = kDirections}),
            qvProperty<&Effect::direction, &Effect::setDirection>({
                .name = "direction",
                .title = "Panels",
                .help = "side by side, or one above the other",
                .variants = kDirections,
            }),
        },
    .ignored = {"effectValue"},
};

void QVSplitDirectionFilte::setLevel(std::int64_t level) {
    if (!isValidLevel(level, kDirections.size())) return;
    QVEffectMTIFilter::setLevel(level);
    direction_ = int(level);
}

MTIParameters QVSplitDirectionFilte::parameters() const {
    return {{"splitNumber", 2.0f}, {"splitDirection", direction_}};
}

}  // namespace qv
