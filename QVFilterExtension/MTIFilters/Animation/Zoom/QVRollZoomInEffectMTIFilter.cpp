#include "QVFilterExtension/MTIFilters/Animation/Zoom/QVRollZoomInEffectMTIFilter.h"

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

const QVFilterClass QVRollZoomInEffectMTIFilterClass{
    .name = "QVRollZoomInEffectMTIFilter",
    .superclass = &QVProgressBasedEffectMTIFilterClass,
    .help = "A push into the frame by a camera that rolls",
    .factory = makeFilter<QVRollZoomInEffectMTIFilter>,
    .levelCount = 3,
};

float QVRollZoomInEffectMTIFilter::progress() const {
    return QVTransitionMTIFilter::easeInOutCubic(QVProgressBasedEffectMTIFilter::progress());
}

}  // namespace qv
