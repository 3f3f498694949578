#include "QVFilterExtension/MTIFilters/Effect/Glitch/QVAIRGBFilter.h"

namespace qv {

namespace {
using Effect = QVAIRGBFilter;
}  // namespace

const QVFilterClass QVAIRGBFilterClass{
    .name = "QVAIRGBFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Copies of one colour each swing around the picture",
    .factory = makeFilter<QVAIRGBFilter>,
    .category = QVFilterCategory::glitch,
    .properties =
        {
            qvProperty<&Effect::filterNumber, &Effect::setFilterNumber>("filterNumber", 1, 8,
                                                                        "number of copies"),
        },
};

MTIParameters QVAIRGBFilter::parameters() const {
    return {
        {"filterNum", filterNumber_}, {"changeFrequency", float(iTime())}, {"distanceValue", effectValue()}};
}

}  // namespace qv
