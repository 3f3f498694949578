#include "QVFilterExtension/MTIFilters/Animation/Zoom/QVRollZoomInEffectMTIFilter.h"

#include <array>

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

namespace {
constexpr std::array<std::string_view, 3> kRolls = {"clockwise", "anticlockwise", "upright"};
}  // namespace

const QVFilterClass QVRollZoomInEffectMTIFilterClass{
    .name = "QVRollZoomInEffectMTIFilter",
    .superclass = &QVProgressBasedEffectMTIFilterClass,
    .title = "Rolling zoom in",
    .help = "A push into the frame by a camera that rolls",
    .tags = {"ken burns", "push in", "rotate", "camera move"},
    .factory = makeFilter<QVRollZoomInEffectMTIFilter>,
    .properties = {qvLevels({.title = "Roll", .help = "which way it rolls", .variants = kRolls})},
};

float QVRollZoomInEffectMTIFilter::progress() const {
    return QVTransitionMTIFilter::easeInOutCubic(QVProgressBasedEffectMTIFilter::progress());
}

}  // namespace qv
