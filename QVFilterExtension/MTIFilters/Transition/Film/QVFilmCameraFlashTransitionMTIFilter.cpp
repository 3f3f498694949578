#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmCameraFlashTransitionMTIFilter.h"

#include <algorithm>

#include "QVFilterExtension/MTIFilters/Transition/Film/FilmTiming.h"
#include "QVFilterExtension/Private/FittedImage.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

namespace {

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

constexpr double kInset = 86;  ///< of the finder's corners

/// Of the asset, drawn for 1920×1080.
double finderScale(CGSize frame) {
    return std::min(frame.width / 1920, frame.height / 1080);
}

/// Only empty places are stretched: the brackets in the middle and the figures in the corners keep their
/// shape.
UIImage fittedFrame(const UIImage& finder, CGSize size) {
    return fittedByCuts(finder, size, finderScale(size), {520, 660, 1260, 1400}, {260, 370, 710, 820});
}

}  // namespace

const QVFilterClass QVFilmCameraFlashTransitionMTIFilterClass{
    .name = "QVFilmCameraFlashTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Camera flashes",
    .help = "A photographer's flashes: pictures of both clips, seen through the viewfinder and in the camera",
    .tags = {"photo", "viewfinder", "snapshot", "shutter", "paparazzi"},
    .factory = makeFilter<QVFilmCameraFlashTransitionMTIFilter>,
};

MTIImage QVFilmCameraFlashTransitionMTIFilter::frameImage() const {
    return assets().fittedImage("transitions_CameraFrame.png", inputImage1().size(), fittedFrame);
}

float QVFilmCameraFlashTransitionMTIFilter::flash() const {
    float left = 0;
    for (const float begin : kFlashes) {
        if (progress() < begin) continue;
        left = 1 - wayBetween(progress(), begin, begin + kGlow);
    }
    return left * left;
}

MTIParameters QVFilmCameraFlashTransitionMTIFilter::parameters() const {
    const float p = progress();
    const bool inGate = p >= kFlashes[0] && p < kFlashes[2];
    const float cover = std::min(wayBetween(p, 0, 0.12), wayBetween(p, 0.98, 0.82));
    return {{"cover", inGate ? 0.0f : cover},
            {"inset", float(kInset * finderScale(inputImage1().size()))},
            {"flash", flash()}};
}

MTIImage QVFilmCameraFlashTransitionMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const float p = progress();
    MTIImage picture = p < kFlashes[1] ? inputImage1() : inputImage2().resize(inputImage1().size());
    if (p >= kFlashes[0] && p < kFlashes[2]) {
        const float since = p < kFlashes[1] ? wayBetween(p, kFlashes[0], kFlashes[1])
                                            : wayBetween(p, kFlashes[1], kFlashes[2]);
        radiusFrameFilter_.setInputImage1(picture);
        radiusFrameFilter_.setZoomValue(kZoomFrom + (kZoomTo - kZoomFrom) * since);
        picture = radiusFrameFilter_.outputImage();
    }
    exposureFilter_.setInputImage1(picture);
    exposureFilter_.setExposureValue(kStops * flash());
    return applyKernel({exposureFilter_.outputImage(), frameImage()}, parameters());
}

}  // namespace qv
