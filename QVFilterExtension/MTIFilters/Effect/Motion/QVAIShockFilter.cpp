#include "QVFilterExtension/MTIFilters/Effect/Motion/QVAIShockFilter.h"

#include <cmath>

namespace qv {

namespace {
using Effect = QVAIShockFilter;
}  // namespace

const QVFilterClass QVAIShockFilterClass{
    .name = "QVAIShockFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Shock copies",
    .help = "Translucent copies punch out of the picture",
    .tags = {"shock", "punch", "pulse", "zoom", "ghost", "bass"},
    .factory = makeFilter<QVAIShockFilter>,
    .category = QVFilterCategory::motion,
    .properties =
        {
            qvProperty<&Effect::filterNumber, &Effect::setFilterNumber>({
                .name = "filterNumber",
                .title = "Copies",
                .help = "number of copies",
                .maximum = 8,
                .unit = QVUnit::count,
            }),
        },
};

MTIParameters QVAIShockFilter::parameters() const {
    const double p = 1 / (7 * double(effectValue()) + 3);
    const double beats = iTime() / p;
    return {
        {"amplitude", 1.0f}, {"period", float(beats - std::floor(beats))}, {"filterNumber", filterNumber_}};
}

}  // namespace qv
