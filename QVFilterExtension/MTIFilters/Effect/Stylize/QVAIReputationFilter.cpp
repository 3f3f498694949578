#include "QVFilterExtension/MTIFilters/Effect/Stylize/QVAIReputationFilter.h"

namespace qv {

namespace {
using Effect = QVAIReputationFilter;
}  // namespace

const QVFilterClass QVAIReputationFilterClass{
    .name = "QVAIReputationFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "The picture repeated along a line, fainter each time",
    .factory = makeFilter<QVAIReputationFilter>,
    .category = QVFilterCategory::stylize,
    .properties =
        {
            qvProperty<&Effect::distanceValue, &Effect::setDistanceValue>(
                "distanceValue", 0, 1, "distance of two repetitions, half shorter sides of the frame"),
        },
};

MTIParameters QVAIReputationFilter::parameters() const {
    return {{"angleValue", effectValue()}, {"distanceValue", float(distanceValue_)}};
}

}  // namespace qv
