#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMattingRepetitionFilter.h"

namespace qv {

const QVFilterClass QVAIMattingRepetitionFilterClass{
    .name = "QVAIMattingRepetitionFilter",
    .superclass = &QVAIMattingCopyFilterClass,
    .title = "Subject echoes",
    .help = "The subject repeated along a line, fainter each time",
    .tags = {"echo", "trail", "repeat", "clone", "cutout", "mask"},
    .factory = makeFilter<QVAIMattingRepetitionFilter>,
    .defaultEffectValue = 1.0f,
    .properties =
        {
            qvProperty<&QVEffectMTIFilter::extractValues, &QVEffectMTIFilter::setExtractValues>({
                .name = "extractValues",
                .title = "Distance",
                .help = "the first: distance of two repetitions; 0.3 without",
                .unit = QVUnit::fraction,
                .driver = QVPropertyDriver::host,
            }),
        },
};

MTIImage QVAIMattingRepetitionFilter::outputImage() {
    reputationFilter_.setEffectValue(effectValue());
    reputationFilter_.setDistanceValue(double(firstSetting(0.3f)));
    reputationFilter_.setCutOut(true);
    return overFrame(reputationFilter_);
}

}  // namespace qv
