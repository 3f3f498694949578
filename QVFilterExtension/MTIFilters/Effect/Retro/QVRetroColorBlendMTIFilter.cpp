#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroColorBlendMTIFilter.h"

#include <array>

namespace qv {

namespace {
using Filter = QVRetroColorBlendMTIFilter;
constexpr std::array<std::string_view, 4> kSides = {"left", "top", "right", "bottom"};
}  // namespace

const QVFilterClass QVRetroColorBlendMTIFilterClass{
    .name = "QVRetroColorBlendMTIFilter",
    .superclass = &QVMTITwoInputFilterClass,
    .title = "Coloured light from a side",
    .help = "Lights the picture with another one, coloured by the side that it comes from",
    .tags = {"light leak", "colour", "blend", "flash"},
    .factory = makeFilter<QVRetroColorBlendMTIFilter>,
    .category = QVFilterCategory::retro,
    .properties = {qvProperty<&Filter::blendFlashSide, &Filter::setBlendFlashSide>({
        .name = "blendFlashSide",
        .title = "Side",
        .help = "where the light comes from",
        .maximum = kSides.size() - 1,
        .variants = kSides,
    })},
};

}  // namespace qv
