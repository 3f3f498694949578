#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBlurClassFilter.h"

namespace qv {

const QVFilterClass QVBlurClassFilterClass{
    .name = "QVBlurClassFilter",
    .superclass = &QVBaseRemainMTIFilterClass,
    .title = "Clearing at an end of a clip",
    .help = "An effect over one end of a clip that holds for a shorter time and stays clear for longer",
    .factory = makeFilter<QVBlurClassFilter>,
};

double QVBlurClassFilter::getRateOfChangeWithProgress(float progress) const {
    const double p = progress;
    return p < 0.5 ? 0.16 * p : 0.18 * p + 0.08;
}

double QVBlurClassFilter::getClearRemainTimeWithProgress(float progress) const {
    const double p = progress;
    return p < 0.5 ? 2.5 - 2 * p : 1.5 - 3 * (p - 0.5);
}

}  // namespace qv
