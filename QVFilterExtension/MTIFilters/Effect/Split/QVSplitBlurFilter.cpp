#include "QVFilterExtension/MTIFilters/Effect/Split/QVSplitBlurFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "QVFilterCore/QVClipTime.h"

namespace qv {

const QVFilterClass QVSplitBlurFilterClass{
    .name = "QVSplitBlurFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Floating card",
    .help = "The frame as a card before its own blurred enlargement",
    .tags = {"blurred background", "picture in picture", "frame", "card", "split screen"},
    .factory = makeFilter<QVSplitBlurFilter>,
    .category = QVFilterCategory::split,
    .isPhotoTimeConst = false,
};

MTIParameters QVSplitBlurFilter::parameters() const {
    constexpr double kPeriod = 5;
    const double turn = timeCycleAt(iTime(), kPeriod).part * 2 * std::numbers::pi;
    return {{"scale", float(0.94 - 0.4 * double(effectValue()))}, {"lift", float(0.012 * std::sin(turn))}};
}

MTIImage QVSplitBlurFilter::outputImage() {
    if (!inputImage()) return {};
    const CGSize size = inputImage().size();
    blurFilter_.setInputImage(inputImage());
    blurFilter_.setOutputPixelFormat(outputPixelFormat());
    blurFilter_.setRadius(float(0.03 * std::min(size.width, size.height)));
    return applyKernel({inputImage(), blurFilter_.outputImage()}, parameters());
}

}  // namespace qv
