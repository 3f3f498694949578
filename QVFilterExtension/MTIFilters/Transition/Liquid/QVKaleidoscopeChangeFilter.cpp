#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVKaleidoscopeChangeFilter.h"

#include "QVFilterExtension/MTIFilters/Transition/Liquid/LiquidEasing.h"

namespace qv {

const QVFilterClass QVKaleidoscopeChangeFilterClass{
    .name = "QVKaleidoscopeChangeFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Turning kaleidoscope",
    .help = "A turning kaleidoscope opens over the picture and closes over the next clip",
    .tags = {"mirror", "psychedelic", "pattern"},
    .factory = makeFilter<QVKaleidoscopeChangeFilter>,
};

MTIParameters QVKaleidoscopeChangeFilter::parameters() const {
    const double time = 2.0 * double(progress());
    // The middle itself still belongs to the first curve.
    const double eased =
        progress() <= 0.5f ? EaseCurve{0.37, 0, 0, 1}(time) : EaseCurve{1, 0.33, 1, 1}(time - 1);
    const double half = eased > 0.93 ? 0.5 : 0.5 * eased;
    return {{"progress", float(progress() < 0.5f ? half : half + 0.5)}};
}

MTIImage QVKaleidoscopeChangeFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    constexpr double kHalfTurn = 3.14159;
    const double time = 2.0 * double(progress());
    const MTIImage& source = clipThatShows();
    kaleidoscopeMTIFilter_.setInputImage1(source);
    kaleidoscopeMTIFilter_.setRotateAngle(
        float(progress() < 0.5f ? time * kHalfTurn : kHalfTurn - (time - 1) * kHalfTurn));
    kaleidoscopeMTIFilter_.setSplitNumber(16);
    return render({kaleidoscopeMTIFilter_.outputImage(), source});
}

}  // namespace qv
