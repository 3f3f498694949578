#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

namespace {
using Effect = QVEffectMTIFilter;
}  // namespace

const QVFilterClass QVEffectMTIFilterClass{
    .name = "QVEffectMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Effect",
    .help = "An effect over one frame, by a strength, a level and the time",
    .factory = makeFilter<QVEffectMTIFilter>,
    .defaultEffectValue = kDefaultEffectValue,
    .isPhotoTimeConst = true,
    .properties =
        {
            qvProperty<&Effect::effectValue, &Effect::setEffectValue>({
                .name = "effectValue",
                .title = "Strength",
                .help = "how strong the effect is",
                .unit = QVUnit::fraction,
            }),
            qvProperty<&Effect::iTime, &Effect::setITime>({
                .name = "iTime",
                .title = "Time",
                .help = "time since the effect started",
                .minimum = -kUnlimited,
                .maximum = kUnlimited,
                .unit = QVUnit::seconds,
                .driver = QVPropertyDriver::host,
            }),
            qvProperty<&Effect::isPhoto, &Effect::setIsPhoto>({
                .name = "isPhoto",
                .title = "Photo",
                .help = "the input is a still picture",
                .driver = QVPropertyDriver::host,
            }),
            qvProperty<&Effect::movesPhotos, &Effect::setMovesPhotos>({
                .name = "movesPhotos",
                .title = "Moves photos",
                .help = "time goes on over a photo too, where the class lets it stand still",
                .driver = QVPropertyDriver::host,
            }),
            qvProperty<&Effect::extractValues, &Effect::setExtractValues>({
                .name = "extractValues",
                .title = "Extra settings",
                .help = "read by the classes that say so",
                .minimum = -kUnlimited,
                .maximum = kUnlimited,
                .driver = QVPropertyDriver::host,
            }),
        },
    .ignored = {"extractValues"},
    .kind = QVFilterKind::effect,
};

QVEffectMTIFilter::QVEffectMTIFilter(const QVFilterClass& filterClass)
    : QVMTIOneInputFilter(filterClass), effectValue_(filterClass.defaultStrength()) {}

MTIParameters QVEffectMTIFilter::parameters() const {
    return {{"iTime", float(iTime())},
            {"level", std::int32_t(level())},
            {"effectValue", effectValue()},
            {"isPhoto", isPhoto()}};
}

}  // namespace qv
