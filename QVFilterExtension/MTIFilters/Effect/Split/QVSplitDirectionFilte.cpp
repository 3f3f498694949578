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
    .help = "Two panels, each the middle of the frame",
    .factory = makeFilter<QVSplitDirectionFilte>,
    .category = QVFilterCategory::split,
    .levelCount = int(kDirections.size()),
    .properties =
        {
            qvProperty<&Effect::direction, &Effect::setDirection>(
                "direction", 0, 1, "0 side by side, 1 one above the other", kDirections),
        },
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
