#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRepeatScrollIFilterClass;
const QVFilterClass QVRepeatScrollIFilterClass{
    .name = "QVRepeatScrollIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Lost vertical hold",
    .help = "A television without vertical hold: repeated strips that roll",
    .tags = {"vhs", "crt", "tv", "rolling", "retro", "analog"},
    .category = QVFilterCategory::glitch,
};

}  // namespace qv
