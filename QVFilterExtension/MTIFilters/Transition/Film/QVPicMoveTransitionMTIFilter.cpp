#include "QVFilterExtension/MTIFilters/Transition/Film/QVPicMoveTransitionMTIFilter.h"

#include <algorithm>
#include <cmath>

#include "QVFilterExtension/MTIFilters/Transition/Film/FilmTiming.h"

namespace qv {

const QVFilterClass QVPicMoveTransitionMTIFilterClass{
    .name = "QVPicMoveTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Moving pictures",
    .help =
        "The clips as panels in a dark room: one turns aside, the next one moves in, both mirrored by the "
        "floor",
    .tags = {"3D", "cover flow", "panel", "reflection", "gallery"},
    .factory = makeFilter<QVPicMoveTransitionMTIFilter>,
};

MTIParameters QVPicMoveTransitionMTIFilter::parameters() const {
    const float p = progress(), moved = easeInOutCubic(wayBetween(p, 0.12, 0.88));
    const float away = easeInOutCubic(std::min(wayBetween(p, 0, 0.5), wayBetween(p, 1, 0.5)));
    const float distance = kFocus * (1 + (kFar - 1) * away);
    const auto panel = [&](float place) {
        const float turn = kTurn * std::clamp(2 * place, -1.0f, 1.0f);
        return MTIVector{2 * ratio() * place * (kNear + kWiden * std::abs(place)), distance, std::cos(turn),
                         std::sin(turn)};
    };
    return {{"ratio", ratio()},
            {"focus", kFocus},
            {"panel1", panel(-moved)},
            {"panel2", panel(1 - moved)},
            {"room", std::min(away * 4, 1.0f)}};
}

}  // namespace qv
