#include "QVFilterExtension/Saber/QVContourNoiseFilter.h"

namespace qv {

const QVFilterClass QVContourNoiseFilterClass{
    .name = "QVContourNoiseFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Line noise",
    .help = "Lets a line flicker like a blade of light",
    .tags = {"distort", "flicker", "energy", "turbulence"},
    .factory = makeFilter<QVContourNoiseFilter>,
    .category = QVFilterCategory::subject,
    .ignored = {"effectValue"},
    .kind = QVFilterKind::auxiliary,
};

std::unique_ptr<QVInternalContourNoiseFilter> QVContourNoiseFilter::internalFilterWithType(int distortType) {
    switch (distortType) {
        case 0:
            return std::make_unique<QVInternalContourNoiseFilter>();
        case 1:
            return std::make_unique<QVInternalContourNoiseFilter>(QVInternalContourNoiseFilter1Class);
        case 3:
            return std::make_unique<QVInternalContourNoiseFilter>(QVInternalContourNoiseFilter3Class);
        default:
            return nullptr;
    }
}

MTIImage QVContourNoiseFilter::outputImage() {
    const auto filter = internalFilterWithType(param_.distortType);
    if (!filter) return inputImage();
    filter->setInputImage(inputImage());
    filter->setITime(iTime() * 1000.0);
    filter->setParam(param_);
    return filter->outputImage();
}

}  // namespace qv
