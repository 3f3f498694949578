#include "QVFilterExtension/MTIFilters/Effect/Split/QVSplitThreeFilter.h"

#include <cmath>
#include <numbers>

#include "QVFilterCore/QVClipTime.h"

namespace qv {

const QVFilterClass QVSplitThreeFilterClass{
    .name = "QVSplitThreeFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Split screen in three",
    .help = "Three strips show the shot from far to near",
    .tags = {"triptych", "multi screen", "close-up", "strips"},
    .factory = makeFilter<QVSplitThreeFilter>,
    .category = QVFilterCategory::split,
    .isPhotoTimeConst = false,
};

MTIParameters QVSplitThreeFilter::parameters() const {
    constexpr double kPeriod = 6;
    const double turn = timeCycleAt(iTime(), kPeriod).part * 2 * std::numbers::pi;
    return {{"effectValue", effectValue()}, {"drift", float(std::sin(turn))}};
}

}  // namespace qv
