#include "QVFilterExtension/MTIFilters/Effect/Film/FilmEffectGroup.h"

#include <algorithm>
#include <cmath>

#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

namespace {

/// Fits the asset into the frame, then gives it the frame's shape: its corners stay, its edges repeat.
UIImage bordered(const UIImage& asset, CGSize size) {
    const CGSize own = asset.size();
    const double ratio = std::max(own.width / size.width, own.height / size.height);
    const UIImage fitted = scale(asset, 1 / ratio);
    const double cap = std::round(fitted.size().width / 3);
    return scaleToSize(fitted.resizableImageWithCapInsets({cap, cap, cap, cap}, UIImage::ResizingMode::tile),
                       size);
}

}  // namespace

FilmEffectGroup::FilmEffectGroup(const QVFilterClass& filterClass, QVAssetCache& assets,
                                 const std::string& lookupName)
    : QVEffectMTIFilter(filterClass), assets_(assets) {
    lookupFilter_.setInputColorLookupTable(assets.mtiImageNamed(lookupName));
}

SpiritParam::Texture FilmEffectGroup::textureNamed(const std::string& name) const {
    return assets_.textureNamed(name);
}

MTIImage FilmEffectGroup::grained(const MTIImage& picture, double opacity) {
    noisyFilter_.setInputImage(picture);
    noisyFilter_.setITime(iTime());
    noisyFilter_.setOpacity(float(opacity));
    noisyBlendFilter_.setInputBackgroundImage(picture);
    noisyBlendFilter_.setInputImage(noisyFilter_.outputImage());
    return noisyBlendFilter_.outputImage();
}

MTIImage FilmEffectGroup::graded(const MTIImage& picture) {
    lookupFilter_.setInputImage(picture);
    return lookupFilter_.outputImage();
}

MTIImage FilmEffectGroup::dirtied(const MTIImage& picture) {
    spiritFilter_.setInputImage(picture);
    spiritFilter_.setParams(params());
    return spiritFilter_.outputImage();
}

MTIImage FilmEffectGroup::framed(const MTIImage& picture, const MTIImage& frame) {
    if (!frame) return picture;
    frameBlendFilter_.setInputBackgroundImage(picture);
    frameBlendFilter_.setInputImage(frame);
    return frameBlendFilter_.outputImage();
}

MTIImage FilmEffectGroup::fittedFrame(const std::string& name) const {
    if (!inputImage()) return {};
    return assets_.fittedImage(name, inputImage().size(), bordered, !isPhoto());
}

double FilmEffectGroup::heightPerWidth() const {
    const CGSize size = inputImage().size();
    return size.width > 0 ? size.height / size.width : 0;
}

FilmSpriteKind FilmEffectGroup::scratchesAlongFilm(std::span<const std::string> names, int count,
                                                   double visibleShare, double alpha) const {
    // The pictures are 16 times as high as wide: this much of 1080 is half a scratch as high as a square
    // frame.
    constexpr double kLeast = 34, kSpan = 60;
    return {names, count, visibleShare, kSpan, kLeast, heightPerWidth(), alpha, true};
}

std::vector<SpiritParam> FilmEffectGroup::sprites(std::span<const FilmSpriteKind> kinds, double time,
                                                  bool isStill) const {
    return filmSprites(kinds, time, heightPerWidth(), isStill,
                       [this](const std::string& name) { return textureNamed(name); });
}

}  // namespace qv
