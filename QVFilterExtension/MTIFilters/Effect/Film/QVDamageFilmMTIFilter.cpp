#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVDamageFilmMTIFilterClass;
const QVFilterClass QVDamageFilmMTIFilterClass{
    .name = "QVDamageFilmMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Worn film",
    .help = "Worn film: scratches, stains, flicker, weave and faded colours",
    .tags = {"old film", "scratches", "dust", "vintage", "8mm", "flicker", "grain"},
    .category = QVFilterCategory::film,
};

}  // namespace qv
