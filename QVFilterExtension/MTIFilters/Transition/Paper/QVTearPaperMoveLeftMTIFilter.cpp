#include "QVFilterExtension/MTIFilters/Transition/Paper/QVTearPaperMoveLeftMTIFilter.h"

#include <algorithm>
#include <array>
#include <numbers>

#include "Platform/Foundation/NSCache.h"
#include "QVFilterExtension/MTIFilters/Transition/Paper/QVPaperVideoBlendFilter.h"

namespace qv {

const QVFilterClass QVTearPaperMoveLeftMTIFilterClass{
    .name = "QVTearPaperMoveLeftMTIFilter",
    .superclass = &QVTearPaperTransitionMTIFilterClass,
    .title = "Torn paper, move left",
    .help = "A collage of torn paper in stop motion; a large sheet enters from the right",
    .tags = {"rip", "tear", "collage", "stop motion", "scrapbook"},
    .factory = makeFilter<QVTearPaperMoveLeftMTIFilter>,
};

namespace {

constexpr double step(int n) {
    return n / 180.0;
}

enum Phase { A0, A1, A2, A3, A4, A5, A6, A7, A8, A9, kPhaseCount };

/// The progress at which A1 to A9 begin.
constexpr std::array<double, kPhaseCount - 1> kBegins{step(29),  step(44),  step(59),  step(74), step(89),
                                                      step(104), step(119), step(134), step(149)};
/// The sheet is laid over the bottom layer from here on, a step after it begins.
constexpr double kMiddleShows = step(75);

Phase phaseAt(double progress) {
    return Phase(std::ranges::count_if(kBegins, [&](double begin) { return progress >= begin; }));
}

using PerPhase = std::array<double, kPhaseCount>;

/// Where a layer stands: scale, shift in fractions of the frame, and turn in radians anticlockwise.
struct Movement {
    PerPhase scale{}, x{}, y{}, angle{};

    CGAffineTransform scaling(Phase phase) const {
        return CGAffineTransformScale(CGAffineTransformIdentity, scale[phase], scale[phase]);
    }
    CGAffineTransform shift(Phase phase, CGSize frame) const {
        return CGAffineTransformTranslate(CGAffineTransformIdentity, x[phase] * frame.width,
                                          y[phase] * frame.height);
    }
    CGAffineTransform turn(Phase phase) const { return CGAffineTransformMakeRotation(angle[phase]); }
};

constexpr double degrees(double angle) {
    return angle / 180 * std::numbers::pi;
}

constexpr Movement kButtom{.scale = {1.0, 1.0, 1.05, 1.1, 1.12, 1.25, 1.3, 1.4, 1.5, 0},
                           .x = {0, 0, 0, 0, -0.03}};
constexpr Movement kMask1{
    .scale = {0, 0, 0, 1.4, 1.57, 0.8, 1.0, 1.2}, .x = {0, 0, 0, -0.18, -0.2}, .y = {0, 0, 0, 0.05, 0.18}};
constexpr Movement kMask2{.scale = {0, 0, 0, 0, 1.2, 1.4, 1.25, 1.2, 1.1, 1.0}};
constexpr Movement kTop{
    .scale = {0, 1.0, 0.35, 0.65, 0.8, 1.0, 1.0, 1.0},
    .x = {0, 0.07, -0.03, 0.07, -0.13, -0.22, -0.3, -0.35},
    .y = {0, -0.03, 0.04, 0.09, 0.11, 0.15, 0.5, 0.52},
    .angle = {0, 0, 0, 0, -0.005 * std::numbers::pi, degrees(-2), degrees(12), degrees(15)}};
constexpr Movement kMiddle{.x = {0, 0, 0, 0, 0.9, 0.75, 0.51, 0.25, 0.05},
                           .y = {0, 0, 0, 0, -0.32},
                           .angle = {0, 0, 0, 0, degrees(-15)}};

using AssetCache = NSCache<std::string, MTIImage>;

/// The asset as `draw` makes it for a frame's size, drawn again when what is kept has another size.
template <typename Draw>
MTIImage keptAsset(AssetCache& cache, CGSize frame, const std::string& fileName, Draw&& draw) {
    const std::string key = NSStringFromCGSize(frame) + fileName;
    if (const auto kept = cache.objectForKey(key); kept && kept->size() == frame) return *kept;
    const MTIImage made = MTIImage::imageWithUIImage(draw(), MTIAlphaType::premultiplied, fileName);
    cache.setObject(made, key);
    return made;
}

}  // namespace

QVTearPaperMoveLeftMTIFilter::QVTearPaperMoveLeftMTIFilter(const QVFilterClass& filterClass)
    : QVTearPaperTransitionMTIFilter(filterClass),
      videoBlendFilter_(std::make_unique<QVTransitionMTIFilter>(QVPaperVideoBlendFilterClass)) {}

MTIImage QVTearPaperMoveLeftMTIFilter::getDispatchImageWithImageName(const std::string& fileName) const {
    static auto& cache = *new AssetCache(4);
    return keptAsset(cache, inputImage1().size(), fileName, [&] { return drawnInMiddle(fileName).canvas; });
}

MTIImage QVTearPaperMoveLeftMTIFilter::getFrameImageWithImageName(const std::string& fileName) const {
    static auto& cache = *new AssetCache(2);
    return keptAsset(cache, inputImage1().size(), fileName, [&] { return drawnAtFrameHeight(fileName); });
}

CGAffineTransform QVTearPaperMoveLeftMTIFilter::getButtomTransformWithProgress(double progress) const {
    const Phase phase = phaseAt(progress);
    return CGAffineTransformConcat(kButtom.scaling(phase), kButtom.shift(phase, inputImage1().size()));
}

CGAffineTransform QVTearPaperMoveLeftMTIFilter::getMask1BlendImageTransformWithProgress(
    double progress) const {
    const Phase phase = phaseAt(progress);
    return CGAffineTransformConcat(kMask1.scaling(phase), kMask1.shift(phase, inputImage1().size()));
}

CGAffineTransform QVTearPaperMoveLeftMTIFilter::getMask2BlendImageTransformWithProgress(
    double progress) const {
    return kMask2.scaling(phaseAt(progress));
}

CGAffineTransform QVTearPaperMoveLeftMTIFilter::getTopImageRotateTransformWithProgress(
    double progress) const {
    const Phase phase = phaseAt(progress);
    const CGAffineTransform placed =
        CGAffineTransformConcat(kTop.scaling(phase), kTop.shift(phase, inputImage1().size()));
    return CGAffineTransformConcat(placed, kTop.turn(phase));
}

CGAffineTransform QVTearPaperMoveLeftMTIFilter::getMiddleImageRotateTransformWithProgress(
    double progress) const {
    const Phase phase = phaseAt(progress);
    return CGAffineTransformConcat(kMiddle.turn(phase), kMiddle.shift(phase, inputImage1().size()));
}

MTIImage QVTearPaperMoveLeftMTIFilter::blended(const MTIImage& background, const MTIImage& image) {
    normalBlendFilter_.setInputBackgroundImage(background);
    normalBlendFilter_.setInputImage(image);
    return normalBlendFilter_.outputImage();
}

MTIImage QVTearPaperMoveLeftMTIFilter::onPaper(const MTIImage& clipFrame, const MTIImage& size,
                                               const MTIImage& buttom) {
    videoBlendFilter_->setInputImage1(clipFrame);
    videoBlendFilter_->setInputImage2(size);
    return blended(buttom, videoBlendFilter_->outputImage());
}

MTIImage QVTearPaperMoveLeftMTIFilter::getTopMaterialImageWithProgress(double progress,
                                                                       const MTIImage& materialImage) {
    const Phase phase = phaseAt(progress);
    if (phase == A1) return middleImage1();
    if (phase == A2) return middleImage2();
    if (phase < A3 || phase > A7) return {};
    const MTIImage clipFrame =
        materialImage.imageByApplyingTransform(getMask1BlendImageTransformWithProgress(progress));
    return onPaper(clipFrame, videoSizeImage(), videoButtomImage());
}

MTIImage QVTearPaperMoveLeftMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const double p = progress();
    const Phase phase = phaseAt(p);
    const MTIImage bottom = inputImage1().imageByApplyingTransform(getButtomTransformWithProgress(p));
    const MTIImage& material = phase < A5 ? inputImage1() : inputImage2();

    MTIImage result = bottom;
    if (p >= kMiddleShows) {
        MTIImage middle = material.imageByApplyingTransform(getMask2BlendImageTransformWithProgress(p));
        if (phase < A9)
            middle = onPaper(middle, biggerVideoSizeImage(), biggerVideoButtomImage())
                         .imageByApplyingTransform(getMiddleImageRotateTransformWithProgress(p));
        result = blended(bottom, middle);
    }
    if (phase >= A1 && phase <= A7) {
        const MTIImage top = getTopMaterialImageWithProgress(p, material)
                                 .imageByApplyingTransform(getTopImageRotateTransformWithProgress(p));
        result = blended(result, top);
    }
    return result;
}

}  // namespace qv
