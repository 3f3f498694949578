#include "QVFilterExtension/MTIFilters/Effect/Stylize/QVAIReputationFilter.h"

namespace qv {

namespace {
using Effect = QVAIReputationFilter;
}  // namespace

const QVFilterClass QVAIReputationFilterClass{
    .name = "QVAIReputationFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Echoes in a row",
    .help = "A row of cards with the picture, each smaller and fainter",
    .tags = {"echo", "trail", "repeat", "repetition", "clone", "step and repeat"},
    .factory = makeFilter<QVAIReputationFilter>,
    .category = QVFilterCategory::stylize,
    .properties =
        {
            qvProperty<&Effect::distanceValue, &Effect::setDistanceValue>({
                .name = "distanceValue",
                .title = "Distance",
                .help = "of two repetitions: of half the frame's shorter side",
                .unit = QVUnit::fraction,
            }),
        },
};

MTIParameters QVAIReputationFilter::parameters() const {
    return {
        {"angleValue", effectValue()}, {"distanceValue", float(distanceValue_)}, {"cutOut", int(cutOut_)}};
}

}  // namespace qv
