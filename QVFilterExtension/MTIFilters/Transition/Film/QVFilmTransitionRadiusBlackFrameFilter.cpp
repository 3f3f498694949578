#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionAssistFilter.h"

namespace qv {

extern const QVFilterClass QVFilmTransitionRadiusBlackFrameFilterClass;
const QVFilterClass QVFilmTransitionRadiusBlackFrameFilterClass{
    .name = "QVFilmTransitionRadiusBlackFrameFilter",
    .superclass = &QVFilmTransitionAssistFilterClass,
    .help = "The picture in a film gate with rounded corners, black around it",
    .factory = makeFilter<QVFilmTransitionAssistFilter>,
};

}  // namespace qv
