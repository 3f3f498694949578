#include "QVFilterExtension/MTIFilters/Effect/Stylize/QVGhostMTIFilter.h"

#include <algorithm>
#include <cmath>

#include "QVFilterCore/QVClipTime.h"

namespace qv {

const QVFilterClass QVGhostMTIFilterClass{
    .name = "QVGhostMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Ghost",
    .help = "The picture's pale ghost rises from it, wavers and dissolves",
    .tags = {"soul", "spirit", "double exposure", "halloween", "echo", "trail"},
    .factory = makeFilter<QVGhostMTIFilter>,
    .category = QVFilterCategory::stylize,
    .isPhotoTimeConst = false,
};

QVGhostMTIFilter::QVGhostMTIFilter(const QVFilterClass& filterClass) : QVEffectMTIFilter(filterClass) {
    QVGhostMTIFilter::setEffectValue(effectValue());
}

void QVGhostMTIFilter::setEffectValue(float value) {
    QVEffectMTIFilter::setEffectValue(value);
    ghostOpacity_ = std::sqrt(std::max(double(value), 0.0));
    ghostDistance_ = 0.1 + 0.2 * double(value);
}

MTIParameters QVGhostMTIFilter::parameters() const {
    return {{"effectValue", effectValue()},
            {"ghostOpacity", float(ghostOpacity_)},
            {"ghostDistance", float(ghostDistance_)},
            {"life", float(timeCycleAt(iTime(), kLife).part)}};
}

}  // namespace qv
