#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIGhostFilter.h"

#include <array>
#include <cmath>
#include <numbers>

namespace qv {

namespace {

using Effect = QVAIGhostFilter;

/// The ghost's movement repeats after this many seconds.
constexpr double kSway = 8;
/// Where the doubles hover, on the way from the picture to the ghost.
constexpr std::array<float, 3> kParts{0.3f, 0.62f, 1};

}  // namespace

const QVFilterClass QVAIGhostFilterClass{
    .name = "QVAIGhostFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Hovering ghost",
    .help = "A pale, wavering double leaves the picture and hovers above it",
    .tags = {"spirit", "soul", "double exposure", "apparition", "spooky", "echo"},
    .factory = makeFilter<QVAIGhostFilter>,
    .category = QVFilterCategory::stylize,
    .properties =
        {
            qvProperty<&Effect::distance, &Effect::setDistance>({
                .name = "distance",
                .title = "Distance",
                .help = "how far the ghost hovers from the picture: of the frame's shorter side",
                .unit = QVUnit::fraction,
            }),
            qvProperty<&Effect::presence, &Effect::setPresence>({
                .name = "presence",
                .title = "Presence",
                .help = "how much there is of the ghost",
                .unit = QVUnit::fraction,
            }),
            qvProperty<&Effect::inFront, &Effect::setInFront>({
                .name = "inFront",
                .title = "In front",
                .help = "share of the ghost's light that falls in front of the picture",
                .unit = QVUnit::fraction,
            }),
        },
};

QVAIGhostFilter::QVAIGhostFilter(const QVFilterClass& filterClass) : QVEffectMTIFilter(filterClass) {
    QVAIGhostFilter::setEffectValue(effectValue());
}

void QVAIGhostFilter::setEffectValue(float value) {
    QVEffectMTIFilter::setEffectValue(value);
    distance_ = 0.22 * double(value);
    presence_ = double(value) * (1.6 - 0.6 * double(value));
}

MTIParameters QVAIGhostFilter::parameters() const {
    const double time = iTime() / kSway;
    std::array<float, 3> sways, heaves;
    for (std::size_t i = 0; i < kParts.size(); ++i) {
        const double part = double(kParts[i]), late = (time - 0.06 * part) * 2 * std::numbers::pi;
        sways[i] = float(part * 0.4 * std::cos(2 * late));
        heaves[i] = float(part * (0.85 + 0.15 * std::cos(3 * late + 0.6 * std::numbers::pi)));
    }
    return {{"iTime", float(time - std::floor(time))},
            {"parts", MTIVector(kParts)},
            {"sways", MTIVector(sways)},
            {"heaves", MTIVector(heaves)},
            {"distance", float(distance_)},
            {"presence", float(presence_)},
            {"inFront", float(inFront_)}};
}

}  // namespace qv
