#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBlackFilmShakeMTIFilterClass;
const QVFilterClass QVBlackFilmShakeMTIFilterClass{
    .name = "QVBlackFilmShakeMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Projector jitter",
    .help = "The picture, or a frame to lay over one, jitters and flickers in a projector's gate",
    .tags = {"gate weave", "old film", "shake", "vintage", "overlay"},
    .category = QVFilterCategory::film,
};

}  // namespace qv
