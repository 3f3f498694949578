#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmRadiusFrameFilter.h"

namespace qv {

const QVFilterClass QVFilmRadiusFrameFilterClass{
    .name = "QVFilmRadiusFrameFilter",
    .superclass = &QVFilmTransitionAssistFilterClass,
    .help = "The picture zoomed within a film gate with rounded corners",
    .factory = makeFilter<QVFilmRadiusFrameFilter>,
    .properties = {qvProperty<&QVFilmRadiusFrameFilter::zoomValue, &QVFilmRadiusFrameFilter::setZoomValue>(
        "zoomValue", -0.9, 8, "how much larger the picture is; 0 is its own size")},
};

}  // namespace qv
