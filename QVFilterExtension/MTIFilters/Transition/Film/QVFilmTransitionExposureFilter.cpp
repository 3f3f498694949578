#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionExposureFilter.h"

namespace qv {

const QVFilterClass QVFilmTransitionExposureFilterClass{
    .name = "QVFilmTransitionExposureFilter",
    .superclass = &QVFilmTransitionAssistFilterClass,
    .help = "Film exposed more or less, with a soft shoulder",
    .factory = makeFilter<QVFilmTransitionExposureFilter>,
    .properties = {qvProperty<&QVFilmTransitionExposureFilter::exposureValue,
                              &QVFilmTransitionExposureFilter::setExposureValue>(
        "exposureValue", -8, 8, "stops; 0 leaves the picture as it is")},
};

}  // namespace qv
