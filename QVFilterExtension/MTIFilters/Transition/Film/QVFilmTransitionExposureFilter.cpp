#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionExposureFilter.h"

namespace qv {

const QVFilterClass QVFilmTransitionExposureFilterClass{
    .name = "QVFilmTransitionExposureFilter",
    .superclass = &QVFilmTransitionAssistFilterClass,
    .title = "Film exposure",
    .help = "Film exposed more or less, with a soft shoulder",
    .tags = {"brightness", "stops", "light"},
    .factory = makeFilter<QVFilmTransitionExposureFilter>,
    .properties = {qvProperty<&QVFilmTransitionExposureFilter::exposureValue,
                              &QVFilmTransitionExposureFilter::setExposureValue>({
        .name = "exposureValue",
        .title = "Exposure",
        .help = "0 leaves the picture as it is",
        .minimum = -8,
        .maximum = 8,
        .unit = QVUnit::stops,
        .step = 0.1,
    })},
};

}  // namespace qv
