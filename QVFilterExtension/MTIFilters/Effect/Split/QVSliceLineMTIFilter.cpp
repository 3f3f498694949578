#include "QVFilterExtension/MTIFilters/Effect/Split/QVSliceLineMTIFilter.h"

#include <cmath>

#include "QVFilterCore/QVClipTime.h"

namespace qv {

const QVFilterClass QVSliceLineMTIFilterClass{
    .name = "QVSliceLineMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Slice lines",
    .help = "Blades of light cut the picture, its pieces slip and come together",
    .tags = {"slash", "cut", "katana", "slice", "pieces", "action"},
    .factory = makeFilter<QVSliceLineMTIFilter>,
    .category = QVFilterCategory::split,
    .isPhotoTimeConst = false,
};

MTIParameters QVSliceLineMTIFilter::parameters() const {
    const QVTimeCycle cycle = timeCycleAt(iTime(), kRound);
    const double now = cycle.part * kRound;
    const double back = clipProgress(now, 1.7, 2.1);
    float slip[3], flash[3], blade[3];
    for (int i = 0; i < 3; ++i) {
        const double since = now - kStrikes[i];
        const bool isCut = since > 0;
        slip[i] = isCut ? float((1 - std::exp(-since / 0.08)) * (1 - back * back * (3 - 2 * back))) : 0;
        flash[i] = isCut ? float(std::exp(-since / 0.22)) : 0;
        blade[i] = float(clipProgress(since, 0, 0.08));
    }
    return {{"effectValue", effectValue()},
            {"round", cycle.wrappedNumber()},
            {"slip", MTIVector{slip[0], slip[1], slip[2]}},
            {"flash", MTIVector{flash[0], flash[1], flash[2]}},
            {"blade", MTIVector{blade[0], blade[1], blade[2]}}};
}

}  // namespace qv
