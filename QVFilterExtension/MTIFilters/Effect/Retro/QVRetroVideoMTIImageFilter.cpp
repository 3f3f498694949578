#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

/// Video of the first pocket cameras: few pixels, edges drawn sharp, lights that clip, run down their column of the
/// sensor and fringe violet, cool shadows, blotches of colour noise, and two fields that comb.
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
