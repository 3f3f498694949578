#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroSideFlashLightFilter.h"

namespace qv {

const QVFilterClass QVRetroSideFlashLightFilterClass{
    .name = "QVRetroSideFlashLightFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Side light",
    .help = "Warm light through a film's perforation along both sides",
    .tags = {"light leak", "glow", "perforation", "super 8"},
    .factory = makeFilter<QVRetroSideFlashLightFilter>,
    .category = QVFilterCategory::retro,
    .properties =
        {qvProperty<&QVRetroSideFlashLightFilter::strength, &QVRetroSideFlashLightFilter::setStrength>({
            .name = "strength",
            .help = "how bright the light is",
            .unit = QVUnit::fraction,
        })},
};

}  // namespace qv
