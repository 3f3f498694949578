#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

/// Video of the first pocket cameras: few pixels, edges drawn sharp, lights that clip, run down their column
/// of the sensor and fringe violet, cool shadows, blotches of colour noise, and two fields that comb.
///
/// With the strength e, 0..1: 480 − 180 e lines to the frame's shorter side; every other one lies up to 0.1 +
/// 0.4 e of its pixels aside and is 0.07 e darker; rims add 1.1 + 1.2 e times the difference to both
/// neighbours; columns take up to 0.12 e from five of their pixels; noise, in pixels and in blotches of four
/// by four, is another one 25 times a second.
extern const QVFilterClass QVRetroVideoMTIImageFilterClass;
const QVFilterClass QVRetroVideoMTIImageFilterClass{
    .name = "QVRetroVideoMTIImageFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Pocket camera video",
    .help = "Early digital video: clipped lights that smear, cool shadows, hard edges, combing fields",
    .tags = {"y2k", "digicam", "camcorder", "2000s", "interlace", "low resolution", "ccd"},
    .category = QVFilterCategory::retro,
};

}  // namespace qv
