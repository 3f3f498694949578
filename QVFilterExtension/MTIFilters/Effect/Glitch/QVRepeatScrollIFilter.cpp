#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRepeatScrollIFilterClass;
const QVFilterClass QVRepeatScrollIFilterClass{
    .name = "QVRepeatScrollIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "A television without vertical hold: repeated strips that roll",
    .category = QVFilterCategory::glitch,
};

}  // namespace qv
