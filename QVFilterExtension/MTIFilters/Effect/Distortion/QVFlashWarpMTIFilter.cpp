#include "QVFilterExtension/MTIFilters/Effect/Distortion/QVFlashWarpMTIFilter.h"

namespace qv {

namespace {
using Effect = QVFlashWarpMTIFilter;
}  // namespace

const QVFilterClass QVFlashWarpMTIFilterClass{
    .name = "QVFlashWarpMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .help = "The picture flows in waves and flickers, like light through moving glass",
    .factory = makeFilter<QVFlashWarpMTIFilter>,
    .category = QVFilterCategory::distortion,
    .properties =
        {
            qvProperty<&Effect::time, &Effect::setTime>("time", -1e9, 1e9,
                                                        "seconds; the same time gives the same waves"),
        },
};

MTIParameters QVFlashWarpMTIFilter::parameters() const {
    return {{"iTime", float(time_)}};
}

}  // namespace qv
