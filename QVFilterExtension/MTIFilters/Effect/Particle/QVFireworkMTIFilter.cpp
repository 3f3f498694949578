#include <array>

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

namespace {
constexpr std::array<std::string_view, 5> kKinds = {"chrysanthemum", "golden willow", "double ring", "heart",
                                                    "crackling stars"};
}  // namespace

extern const QVFilterClass QVFireworkMTIFilterClass;
const QVFilterClass QVFireworkMTIFilterClass{
    .name = "QVFireworkMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Fireworks",
    .help = "Fireworks over a darkened picture, in five kinds",
    .tags = {"celebration", "party", "new year", "sparks", "night"},
    .category = QVFilterCategory::particle,
    .isPhotoTimeConst = false,
    .properties = {qvLevels({.title = "Kind", .help = "what the rockets burst into", .variants = kKinds})},
};

}  // namespace qv
