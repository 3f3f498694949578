#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMattingRGBCopyFilter.h"

namespace qv {

const QVFilterClass QVAIMattingRGBCopyFilterClass{
    .name = "QVAIMattingRGBCopyFilter",
    .superclass = &QVAIMattingCopyFilterClass,
    .title = "Subject in swinging colours",
    .help = "Copies of the subject in one colour each swing around it",
    .tags = {"rgb", "chromatic", "clone", "glitch", "cutout", "mask"},
    .factory = makeFilter<QVAIMattingRGBCopyFilter>,
    .defaultEffectValue = 0.0f,
    .properties =
        {
            qvLevels(
                {.title = "Copies", .help = "number of copies; sets the strength", .variants = kCopyLevels}),
            qvProperty<&QVEffectMTIFilter::extractValues, &QVEffectMTIFilter::setExtractValues>({
                .name = "extractValues",
                .title = "Distance",
                .help = "the first: how far the copies swing; 0.5 without",
                .unit = QVUnit::fraction,
                .driver = QVPropertyDriver::host,
            }),
        },
};

MTIImage QVAIMattingRGBCopyFilter::outputImage() {
    repetitionRGBFilter_.setFilterNumber(copiesOfLevel());
    repetitionRGBFilter_.setITime(iTime());
    repetitionRGBFilter_.setEffectValue(firstSetting(0.5f));
    return overFrame(repetitionRGBFilter_);
}

}  // namespace qv
