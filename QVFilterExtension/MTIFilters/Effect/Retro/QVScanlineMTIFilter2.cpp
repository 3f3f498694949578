#include "QVFilterExtension/MTIFilters/Effect/Retro/QVScanlineMTIFilter2.h"

namespace qv {

namespace {
using Effect = QVScanlineMTIFilter2;
}  // namespace

const QVFilterClass QVScanlineMTIFilter2Class{
    .name = "QVScanlineMTIFilter2",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Scan lines two",
    .help = "The lines of a television tube, under a second name",
    .tags = {"crt", "vhs", "tv", "interlace", "monitor"},
    .factory = makeFilter<QVScanlineMTIFilter2>,
    .category = QVFilterCategory::retro,
    .fragmentFunction = "QVScanlineMTIFilter",
    .properties =
        {
            qvProperty<&Effect::value, &Effect::setValue>({
                .name = "value",
                .title = "Pattern strength",
                .help = "strength of the pattern",
                .unit = QVUnit::fraction,
            }),
        },
};

}  // namespace qv
