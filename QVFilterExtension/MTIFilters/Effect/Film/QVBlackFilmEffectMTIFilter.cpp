#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBlackFilmEffectMTIFilterClass;
const QVFilterClass QVBlackFilmEffectMTIFilterClass{
    .name = "QVBlackFilmEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Silver film in an old projector: greys, grain, dark corners, flicker",
    .category = QVFilterCategory::film,
};

}  // namespace qv
