#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMattingShockFilter.h"

namespace qv {

const QVFilterClass QVAIMattingShockFilterClass{
    .name = "QVAIMattingShockFilter",
    .superclass = &QVAIMattingCopyFilterClass,
    .title = "Subject shock",
    .help = "Translucent copies of the subject punch towards the viewer",
    .tags = {"shock", "punch", "pulse", "clone", "zoom", "cutout", "mask"},
    .factory = makeFilter<QVAIMattingShockFilter>,
    .properties =
        {
            qvLevels(
                {.title = "Copies", .help = "number of copies; sets the strength", .variants = kCopyLevels}),
            qvProperty<&QVEffectMTIFilter::extractValues, &QVEffectMTIFilter::setExtractValues>({
                .name = "extractValues",
                .title = "Pace",
                .help = "the first: how fast the punches follow each other; 0 without",
                .unit = QVUnit::fraction,
                .driver = QVPropertyDriver::host,
            }),
        },
};

MTIImage QVAIMattingShockFilter::outputImage() {
    shockFilter_.setITime(iTime());
    shockFilter_.setEffectValue(firstSetting(0));
    shockFilter_.setFilterNumber(copiesOfLevel());
    return overFrame(shockFilter_);
}

}  // namespace qv
