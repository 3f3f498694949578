#include "QVFilterExtension/MTIFilters/Effect/Glitch/QVAIRGBFilter.h"

namespace qv {

namespace {
using Effect = QVAIRGBFilter;
}  // namespace

const QVFilterClass QVAIRGBFilterClass{
    .name = "QVAIRGBFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Swinging colours",
    .help = "Copies of one colour each swing around the picture",
    .tags = {"chromatic", "rgb", "aberration", "colour shift", "glitch", "ghost"},
    .factory = makeFilter<QVAIRGBFilter>,
    .category = QVFilterCategory::glitch,
    .properties =
        {
            qvProperty<&Effect::filterNumber, &Effect::setFilterNumber>({
                .name = "filterNumber",
                .title = "Copies",
                .help = "number of copies",
                .minimum = 1,
                .maximum = 8,
                .unit = QVUnit::count,
            }),
        },
};

MTIParameters QVAIRGBFilter::parameters() const {
    return {
        {"filterNum", filterNumber_}, {"changeFrequency", float(iTime())}, {"distanceValue", effectValue()}};
}

}  // namespace qv
