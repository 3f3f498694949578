#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionAssistFilter.h"

namespace qv {

extern const QVFilterClass QVFilmTransitionRadiusBlackFrameFilterClass;
const QVFilterClass QVFilmTransitionRadiusBlackFrameFilterClass{
    .name = "QVFilmTransitionRadiusBlackFrameFilter",
    .superclass = &QVFilmTransitionAssistFilterClass,
    .title = "Film gate",
    .help = "The picture in a film gate with rounded corners, black around it",
    .tags = {"frame", "border", "rounded corners", "vintage"},
    .factory = makeFilter<QVFilmTransitionAssistFilter>,
};

}  // namespace qv
