#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBlackFilmShakeMTIFilterClass;
const QVFilterClass QVBlackFilmShakeMTIFilterClass{
    .name = "QVBlackFilmShakeMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Jitters the picture, or a frame to lay over one, as in a projector's gate",
    .category = QVFilterCategory::film,
};

}  // namespace qv
