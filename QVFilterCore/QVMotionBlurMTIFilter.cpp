#include "QVFilterCore/QVMotionBlurMTIFilter.h"

#include <cmath>

namespace qv {

namespace {

using Blur = QVMotionBlurMTIFilter;

constexpr int kTaps = 8;  // of the shader
/// A bright dot leaves a mark of 255/taps levels for each tap, so the more taps the farther they may lie
/// apart.
constexpr double kLongestOfOnePass = 10, kLongestOfTwoPasses = 128;
/// Steps from this length on are rounded to whole pixels, which reads faster and shows no more.
constexpr double kNearestStep = 8;

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
    const int passes = blurSize_ <= kLongestOfOnePass ? 1 : blurSize_ <= kLongestOfTwoPasses ? 2 : 3;
    double step = blurSize_ / std::pow(kTaps, passes);
    MTIImage image = inputImage();
    for (int pass = 0; pass < passes; ++pass, step *= kTaps) {
        const MTIVector stepPixels{float(step * std::cos(blurAngle_)), float(-step * std::sin(blurAngle_))};
        image = applyKernel({image},
                            {{"stepPixels", stepPixels}, {"nearest", std::int32_t(step >= kNearestStep)}});
    }
    return image;
}

}  // namespace qv
