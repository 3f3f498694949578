#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

namespace {
constexpr double kLongestTime = 1e9;
using Effect = QVEffectMTIFilter;
}  // namespace

const QVFilterClass QVEffectMTIFilterClass{
    .name = "QVEffectMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .help = "An effect over one frame, by a strength, a level and the time",
    .factory = makeFilter<QVEffectMTIFilter>,
    .defaultEffectValue = kDefaultEffectValue,
    .isPhotoTimeConst = true,
    .properties =
        {
            qvProperty<&Effect::effectValue, &Effect::setEffectValue>("effectValue", 0, 1, "strength"),
            qvProperty<&Effect::level, &Effect::setLevel>("level", -1e9, 1e9, "index of a preset"),
            qvProperty<&Effect::iTime, &Effect::setITime>("iTime", -kLongestTime, kLongestTime,
                                                          "seconds since the effect started"),
            qvProperty<&Effect::isPhoto, &Effect::setIsPhoto>("isPhoto", "the input is a still picture"),
            qvProperty<&Effect::extractValues, &Effect::setExtractValues>("extractValues",
                                                                          "extra settings of the effect"),
        },
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
