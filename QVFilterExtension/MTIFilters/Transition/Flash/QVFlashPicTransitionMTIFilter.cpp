#include "QVFilterExtension/MTIFilters/Transition/Flash/QVFlashPicTransitionMTIFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Platform/Foundation/Random.h"
#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVExposureMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Distortion/QVFlashWarpMTIFilter.h"
#include "QVFilterExtension/Private/QVAssetCache.h"
#include "QVFilterExtension/Private/RandomSeed.h"

namespace qv {

namespace {

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

const QVFilterClass QVFlashPicTransitionMTIFilterClass{
    .name = "QVFlashPicTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Flickering light",
    .help = "Warm light flickers over a cut, ever more often towards the middle, where the picture flares",
    .tags = {"flash", "strobe", "light leak", "film burn", "warm"},
    .factory = makeFilter<QVFlashPicTransitionMTIFilter>,
    .inputs = {{kInputImage1, kInputImage2,
                qvInput<&QVFlashPicTransitionMTIFilter::setSrcLightPic>(
                    {.name = "srcLightPic",
                     .role = QVInputRole::texture,
                     .help = "light on black; without it the picture only flares",
                     .isRequired = false})}},
};

QVFlashPicTransitionMTIFilter::QVFlashPicTransitionMTIFilter(const QVFilterClass& filterClass)
    : QVTransitionMTIFilter(filterClass), srcLightPic_(assets().mtiImageNamed("light_warp2.jpg")) {}

QVFlashPicTransitionMTIFilter::QVFlashPicTransitionMTIFilter(const UIImage& image,
                                                             const QVFilterClass& filterClass)
    : QVTransitionMTIFilter(filterClass), srcLightPic_(MTIImage::imageWithUIImage(image)) {}

std::int32_t QVFlashPicTransitionMTIFilter::gRandonm(double t, std::int64_t off) const {
    const double tenths = CMTimeGetSeconds(timeRange().duration) * 10 * 3 / 3;
    return randomFromSeed(randomSeedFromDouble(tenths * t + double(timeRange().start.value) + double(off)));
}

void QVFlashPicTransitionMTIFilter::setProgress(float progress) {
    QVTransitionMTIFilter::setProgress(progress);
    const double p = progress, fromMiddle = std::abs(p - 0.5);
    const double duration = CMTimeGetSeconds(timeRange().duration);

    const bool isLit = (1 - 2 * fromMiddle) * 40.0 + 10.0 > gRandonm(p, 10) % 100;
    // Within a fifth of a second of the cut the light is always on.
    const bool isOn = isLit || fromMiddle < 0.2 / duration;
    alpha_ = isOn ? std::abs(std::sin(duration * 10 * 3 / 3 * p * std::numbers::pi)) : 0.0;
    time_ = CMTimeGetSeconds(timeRange().start) + gRandonm(p, 6) % 10000 / 100.0;
    brightness_ = std::max(0.0f, float((1 - 8 * fromMiddle) * 0.6));
}

MTIImage QVFlashPicTransitionMTIFilter::outputImage() {
    MTIImage source = progress() <= 0.5f ? inputImage1() : inputImage2();
    // The result keeps the outgoing frame's size.
    if (inputImage1() && source.size() != inputImage1().size()) source = source.resize(inputImage1().size());

    if (srcLightPic_) {
        MTIOpacityFilter opacity;
        opacity.setInputImage(srcLightPic_);
        opacity.setOpacity(float(alpha_));
        QVFlashWarpMTIFilter warp;
        warp.setInputImage(opacity.outputImage());
        warp.setTime(time_);
        MTIBlendFilter blend(MTIBlendMode::screen);
        blend.setInputBackgroundImage(source);
        blend.setInputImage(warp.outputImage());
        source = blend.outputImage();
    }
    QVExposureMTIFilter exposure;
    exposure.setInputImage(source);
    exposure.setOutputPixelFormat(outputPixelFormat());
    exposure.setExposure(float(brightness_));
    return exposure.outputImage();
}

}  // namespace qv
