#include "QVFilterExtension/MTIFilters/Effect/Motion/QVAIShockFilter.h"

#include <cmath>

namespace qv {

namespace {
using Effect = QVAIShockFilter;
}  // namespace

const QVFilterClass QVAIShockFilterClass{
    .name = "QVAIShockFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Translucent copies punch out of the picture",
    .factory = makeFilter<QVAIShockFilter>,
    .category = QVFilterCategory::motion,
    .properties =
        {
            qvProperty<&Effect::filterNumber, &Effect::setFilterNumber>("filterNumber", 0, 8,
                                                                        "number of copies"),
        },
};

MTIParameters QVAIShockFilter::parameters() const {
    const double p = 1 / (7 * double(effectValue()) + 3);
    const double beats = iTime() / p;
    return {
        {"amplitude", 1.0f}, {"period", float(beats - std::floor(beats))}, {"filterNumber", filterNumber_}};
}

}  // namespace qv
