#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVSceneBlendFilter.h"

#include <algorithm>
#include <cmath>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/Utils/QVEffectVideoFrameCacheManager.h"

namespace qv {

namespace {

constexpr std::int32_t kTimescale = 600;
/// Bytes of a mask above this are the subject.
constexpr std::uint8_t kFaintest = 10;
/// Of the subject's height, over which it becomes the scene.
constexpr double kFade = 0.2;

bool isSubject(std::uint8_t byte) {
    return byte > kFaintest;
}

/// The largest middle part of the scene that has the frame's shape, at the frame's size.
MTIImage fittedScene(const MTIImage& scene, CGSize size) {
    const CGSize whole = scene.size();
    const double scale = std::min(whole.width / size.width, whole.height / size.height);
    MTICropFilter crop;
    crop.setInputImage(scene);
    crop.setCropRegion(MTICropRegionMake(whole.width * 0.5 - size.width * scale * 0.5,
                                         whole.height * 0.5 - size.height * scale * 0.5, size.width * scale,
                                         size.height * scale));
    return crop.outputImage().resize(size);
}

}  // namespace

const QVFilterClass QVSceneBlendFilterClass{
    .name = "QVSceneBlendFilter",
    .superclass = &QVAIEffectMTIFilterClass,
    .title = "Subject into a scene",
    .help = "The subject dissolves into a clip",
    .factory = makeFilter<QVSceneBlendFilter>,
    .ignored = {"colors"},
};

CGRect QVSceneBlendFilter::getMinRectFromMask(const PixelBuffer& mask) {
    if (!mask) return CGRectZero;
    const PixelBuffer::Plane& plane = mask.plane(0);
    int left = mask.width(), right = -1, top = -1, bottom = -1;
    for (int y = 0; y < mask.height(); ++y) {
        const std::uint8_t* row = plane.data + std::size_t(y) * plane.rowBytes;
        const std::uint8_t* end = row + mask.width();
        const std::uint8_t* first = std::find_if(row, end, isSubject);
        if (first == end) continue;
        if (top < 0) top = y;
        bottom = y;
        left = std::min(left, int(first - row));
        // Only what widens the box is looked at.
        while (--end > row + std::max(right, 0) && !isSubject(*end)) {
        }
        if (isSubject(*end)) right = std::max(right, int(end - row));
    }
    if (top < 0) return CGRectZero;
    return CGRectMake(left, top, right - left + 1, bottom - top + 1);
}

CGAffineTransform QVSceneBlendFilter::uiTransform() const {
    const PixelBuffer& mask = maskPixelBuffer();
    const CGAffineTransform flip = CGAffineTransformMakeScale(1, -1);
    CGAffineTransform transform = CGAffineTransformMakeTranslation(-mask.width() / 2.0, -mask.height() / 2.0);
    for (const CGAffineTransform& step : {flip, extraTransform(), flip})
        transform = CGAffineTransformConcat(transform, step);
    return transform;
}

MTIImage QVSceneBlendFilter::getGradientMask() const {
    const PixelBuffer& mask = maskPixelBuffer();
    const int height = int(maskImage().size().height);
    if (!mask || height < 1) return {};
    const CGAffineTransform transform = uiTransform();
    const CGRect box = CGRectApplyAffineTransform(getMinRectFromMask(mask), transform);
    const CGRect frame = CGRectApplyAffineTransform(CGRectMake(0, 0, mask.width(), mask.height()), transform);
    const double top = box.minY() - frame.minY();
    const double fades = 1 - double(effectValue()), ends = std::min(fades + kFade, 1.0);

    auto column = std::make_shared<std::vector<std::uint8_t>>();
    for (int y = 0; y < height; ++y) {
        const double at = (y + 0.5 - top) / box.size.height;
        // Where the fade has no length, as where the box has no height, black begins at once.
        const double white = at < fades ? 1 : at < ends ? (ends - at) / (ends - fades) : 0;
        const auto grey = std::uint8_t(std::lround(255 * white));
        column->insert(column->end(), {grey, grey, grey, 255});
    }
    return MTIImage::imageWithBitmap({1, height, std::move(column)}, MTIAlphaType::alphaIsOne);
}

MTIImage QVSceneBlendFilter::outputImage() {
    MTIImage result = inputImage();
    if (!result) return {};
    const CGSize size = result.size();
    MTIImage scene;
    if (!sceneAssetPath_.empty()) {
        scene = QVEffectVideoFrameCacheManager::sharedManager().imageFromVideo(
            sceneAssetPath_, CMTimeMakeWithSeconds(iTime(), kTimescale));
    }
    const auto blend = [&](const MTIImage& background, const MTIImage& mask) {
        MTIBlendWithMaskFilter filter;
        filter.setInputBackgroundImage(background);
        filter.setInputImage(result);
        filter.setInputMask({mask});
        filter.setOutputPixelFormat(outputPixelFormat());
        result = filter.outputImage();
    };
    if (const MTIImage gradient = scene ? getGradientMask() : MTIImage()) {
        MTISaturationFilter desaturate;
        desaturate.setSaturation(0);
        desaturate.setInputImage(result);
        desaturate.setOutputPixelFormat(outputPixelFormat());
        result = desaturate.outputImage();
        blend(fittedScene(scene, size), gradient);
    }
    if (maskImage() && backgroundImage_) blend(backgroundImage_.resize(size), maskImage());
    return result;
}

}  // namespace qv
