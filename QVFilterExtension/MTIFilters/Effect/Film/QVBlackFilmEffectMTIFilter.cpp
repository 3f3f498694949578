#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBlackFilmEffectMTIFilterClass;
const QVFilterClass QVBlackFilmEffectMTIFilterClass{
    .name = "QVBlackFilmEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Silver film",
    .help = "Silver film in an old projector: greys, grain, dark corners, flicker",
    .tags = {"old film", "silent film", "black and white", "monochrome", "grain", "vignette", "flicker",
             "vintage"},
    .category = QVFilterCategory::film,
};

}  // namespace qv
