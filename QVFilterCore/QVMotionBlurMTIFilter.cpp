#include "QVFilterCore/QVMotionBlurMTIFilter.h"

#include <cmath>

namespace qv {

namespace {

using Blur = QVMotionBlurMTIFilter;

// Taps of the shader's two kinds of pass.
constexpr double kFineTaps = 8, kCoarseTaps = 16;
/// A line that one fine pass fills without gaps, pixels.
constexpr double kLongestFineLine = 10;
/// A line from which on the steps of a coarse pass, four pixels and more, may be rounded to whole pixels: a
/// bright dot's smear varies by two levels then.
constexpr double kShortestCoarseLine = 64;

}  // namespace

const QVFilterClass QVMotionBlurMTIFilterClass{
    .name = "QVMotionBlurMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .help = "smears the picture along a direction",
    .factory = makeFilter<QVMotionBlurMTIFilter>,
    .category = QVFilterCategory::blur,
    .properties =
        {
            qvProperty<&Blur::blurSize, &Blur::setBlurSize>("blurSize", 0, 4096,
                                                            "whole length of the smear, pixels"),
            qvProperty<&Blur::blurAngle, &Blur::setBlurAngle>(
                "blurAngle", -1000, 1000, "direction, radians anticlockwise from the horizontal"),
        },
};

MTIImage QVMotionBlurMTIFilter::outputImage() {
    if (!(blurSize_ > 0) || !std::isfinite(blurSize_) || !std::isfinite(blurAngle_)) return inputImage();
    MTIImage image = inputImage();
    // Each pass leaves the gaps between its taps for the next to fill.
    double line = blurSize_;
    auto pass = [&](double taps, bool coarse) {
        line /= taps;
        const MTIVector stepPixels{float(line * std::cos(blurAngle_)), float(-line * std::sin(blurAngle_))};
        image = applyKernel({image}, {{"stepPixels", stepPixels}, {"coarse", std::int32_t(coarse)}});
    };
    if (line > kShortestCoarseLine) pass(kCoarseTaps, true);
    while (line > kLongestFineLine) pass(kFineTaps, false);
    pass(kFineTaps, false);
    return image;
}

}  // namespace qv
