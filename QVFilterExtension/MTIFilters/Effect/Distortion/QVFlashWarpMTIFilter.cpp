#include "QVFilterExtension/MTIFilters/Effect/Distortion/QVFlashWarpMTIFilter.h"

namespace qv {

namespace {
using Effect = QVFlashWarpMTIFilter;
}  // namespace

const QVFilterClass QVFlashWarpMTIFilterClass{
    .name = "QVFlashWarpMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Flickering glass",
    .help = "The picture flows in waves and flickers, like light through moving glass",
    .tags = {"wave", "ripple", "refraction", "light"},
    .factory = makeFilter<QVFlashWarpMTIFilter>,
    .category = QVFilterCategory::distortion,
    .properties =
        {
            qvProperty<&Effect::time, &Effect::setTime>({
                .name = "time",
                .title = "Time",
                .help = "when; the same time gives the same waves",
                .minimum = -kUnlimited,
                .maximum = kUnlimited,
                .unit = QVUnit::seconds,
                .driver = QVPropertyDriver::host,
            }),
        },
};

MTIParameters QVFlashWarpMTIFilter::parameters() const {
    return {{"iTime", float(time_)}};
}

}  // namespace qv
