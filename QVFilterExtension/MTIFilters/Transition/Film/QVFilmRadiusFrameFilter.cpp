#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmRadiusFrameFilter.h"

namespace qv {

const QVFilterClass QVFilmRadiusFrameFilterClass{
    .name = "QVFilmRadiusFrameFilter",
    .superclass = &QVFilmTransitionAssistFilterClass,
    .title = "Film gate with zoom",
    .help = "The picture zoomed within a film gate with rounded corners",
    .tags = {"frame", "border", "rounded corners", "vintage"},
    .factory = makeFilter<QVFilmRadiusFrameFilter>,
    .properties = {qvProperty<&QVFilmRadiusFrameFilter::zoomValue, &QVFilmRadiusFrameFilter::setZoomValue>({
        .name = "zoomValue",
        .title = "Zoom",
        .help = "how much larger the picture is; 0 is its own size",
        .minimum = -0.9,
        .maximum = 8,
        .unit = QVUnit::factor,
        .step = 0.05,
    })},
};

}  // namespace qv
