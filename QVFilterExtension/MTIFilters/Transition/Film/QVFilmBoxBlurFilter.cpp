#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmBoxBlurFilter.h"

namespace qv {

const QVFilterClass QVFilmBoxBlurFilterClass{
    .name = "QVFilmBoxBlurFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Blurred cross-fade",
    .help = "A cross-fade under a wide box blur",
    .tags = {"box blur", "crossfade", "dissolve"},
    .factory = makeFilter<QVFilmBoxBlurFilter>,
    .kind = QVFilterKind::auxiliary,
};

}  // namespace qv
