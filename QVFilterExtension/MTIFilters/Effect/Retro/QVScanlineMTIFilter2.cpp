#include "QVFilterExtension/MTIFilters/Effect/Retro/QVScanlineMTIFilter2.h"

namespace qv {

namespace {
using Effect = QVScanlineMTIFilter2;
}  // namespace

const QVFilterClass QVScanlineMTIFilter2Class{
    .name = "QVScanlineMTIFilter2",
    .superclass = &QVEffectMTIFilterClass,
    .help = "The lines of a television tube, under a second name",
    .factory = makeFilter<QVScanlineMTIFilter2>,
    .category = QVFilterCategory::retro,
    .fragmentFunction = "QVScanlineMTIFilter",
    .properties =
        {
            qvProperty<&Effect::value, &Effect::setValue>("value", 0, 1, "strength of the pattern"),
        },
};

}  // namespace qv
