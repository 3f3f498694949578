#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmBoxBlurFilter.h"

namespace qv {

const QVFilterClass QVFilmBoxBlurFilterClass{
    .name = "QVFilmBoxBlurFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .help = "A cross-fade under a wide box blur",
    .factory = makeFilter<QVFilmBoxBlurFilter>,
    .kind = QVFilterKind::auxiliary,
};

}  // namespace qv
