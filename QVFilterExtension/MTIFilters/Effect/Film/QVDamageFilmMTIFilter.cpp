#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVDamageFilmMTIFilterClass;
const QVFilterClass QVDamageFilmMTIFilterClass{
    .name = "QVDamageFilmMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Worn film: scratches, stains, flicker, weave and faded colours",
    .category = QVFilterCategory::film,
};

}  // namespace qv
