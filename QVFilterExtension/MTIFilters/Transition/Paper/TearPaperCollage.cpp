#include "QVFilterExtension/MTIFilters/Transition/Paper/TearPaperCollage.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Platform/Foundation/NSCache.h"
#include "Platform/ImageGraph/SpritePass.h"
#include "QVFilterExtension/MTIFilters/Transition/Paper/QVPaperVideoBlendFilter.h"
#include "QVFilterExtension/Private/FittedImage.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

namespace {

/// Assets are drawn for frames of this width.
constexpr double kReferenceWidth = 1920;

/// Of all stories: their file names differ. Two sizes of the largest story's pieces, and one more story's.
QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache(12);
    return cache;
}

double radians(double degrees) {
    return degrees / 180 * std::numbers::pi;
}

}  // namespace

const QVFilterClass& TearPaperCollage::videoBlendClass() {
    return QVPaperVideoBlendFilterClass;
}

std::size_t TearPaperCollage::phaseOf(std::span<const int> begins) const {
    return std::size_t(
        std::ranges::count_if(begins, [p = double(progress())](int begin) { return p >= begin / 180.0; }));
}

PaperPose TearPaperCollage::fixedTo(const PaperPose& piece, const PaperPose& relative) const {
    const CGSize frame = inputImage1().size();
    const CGPoint at =
        CGPointApplyAffineTransform({relative.x * frame.width, relative.y * frame.height}, placed(piece));
    return {piece.scale * relative.scale, at.x / frame.width, at.y / frame.height,
            piece.angle + relative.angle};
}

CGAffineTransform TearPaperCollage::placed(const PaperPose& pose) const {
    const CGSize frame = inputImage1().size();
    const CGAffineTransform turned =
        CGAffineTransformConcat(CGAffineTransformScale(CGAffineTransformIdentity, pose.scale, pose.scale),
                                CGAffineTransformMakeRotation(radians(pose.angle)));
    return CGAffineTransformConcat(
        turned,
        CGAffineTransformTranslate(CGAffineTransformIdentity, pose.x * frame.width, pose.y * frame.height));
}

MTIImage TearPaperCollage::laid(const MTIImage& below, const MTIImage& piece) {
    normalBlendFilter_.setInputBackgroundImage(below);
    normalBlendFilter_.setInputImage(piece);
    return normalBlendFilter_.outputImage();
}

MTIImage TearPaperCollage::cut(const MTIImage& clip, const PaperPose& clipPose, const MTIImage& size,
                               const PaperPose& pose) {
    videoBlendFilter_.setInputImage1(clip.imageByApplyingTransform(placed(clipPose)));
    videoBlendFilter_.setInputImage2(size.imageByApplyingTransform(placed(pose)));
    return videoBlendFilter_.outputImage();
}

MTIImage TearPaperCollage::fitted(const std::string& fileName,
                                  const std::function<UIImage(const UIImage&, CGSize)>& draw) const {
    return assets().fittedImage(fileName, inputImage1().size(), draw);
}

MTIImage TearPaperCollage::paper(const std::string& fileName) const {
    return fitted(fileName, [this](const UIImage& asset, CGSize) { return drawnInMiddle(asset).canvas; });
}

MTIImage TearPaperCollage::page(const std::string& fileName) const {
    return fitted(fileName, [&](const UIImage&, CGSize) { return getScaleImageWithName(fileName); });
}

double TearPaperCollage::enlargement() const {
    return std::clamp(std::sqrt(16 / (9 * double(ratio()))), 1.0, 1.7);
}

SpiritParam TearPaperCollage::sprite(const PaperPose& pose, double width,
                                     SpiritParam::Texture texture) const {
    const double scale = pose.scale * width;
    const CGAffineTransform turned =
        CGAffineTransformConcat(CGAffineTransformScale(CGAffineTransformIdentity, scale, scale),
                                CGAffineTransformMakeRotation(radians(pose.angle)));
    return SpiritParam::paramWithTrans(
        CGAffineTransformConcat(turned, CGAffineTransformTranslate(CGAffineTransformIdentity, 2 * pose.x,
                                                                   2 * pose.y / double(ratio()))),
        std::move(texture));
}

SpiritParam TearPaperCollage::scrap(const std::string& fileName, const PaperPose& pose) const {
    const auto texture = assets().textureNamed(fileName);
    const double width = texture ? texture->bitmap.width / kReferenceWidth : 0;
    return sprite(pose, width * enlargement(), texture);
}

SpiritParam TearPaperCollage::framing(const std::string& name, const PaperPose& pose) const {
    /// Of the assets: what lies around the window, and its sides.
    constexpr double kMargin = 110, kLong = 960, kShort = 540;
    static auto& textures = *new NSCache<std::string, SpiritParam::Texture>(8);

    const std::string fileName = name + (isUpright() ? "_V.png" : ".png");
    const double shape = double(ratio());
    // The window keeps one of its sides and takes the frame's shape by the other.
    const double width = isUpright() ? kShort : std::min(kLong, kShort * shape), height = width / shape;
    const auto texture = textures.objectForKey(NSStringFromCGSize({width, height}) + fileName, [&] {
        const UIImage asset = qv_imageWithFileName(fileName);
        if (!asset) return SpiritParam::Texture();
        constexpr double kCorner = 2 * kMargin;
        const CGSize own = asset.size();
        return SpiritParam::spiritTextureWithImage(
            fittedByCuts(asset, {width + 2 * kMargin, height + 2 * kMargin}, 1,
                         {kCorner, own.width - kCorner}, {kCorner, own.height - kCorner}),
            fileName);
    });
    return sprite(pose, (width + 2 * kMargin) / width, texture);
}

MTIImage TearPaperCollage::decorated(const MTIImage& below, std::vector<SpiritParam> scraps) {
    spiritFilter_.setInputImage(below);
    spiritFilter_.setParams(std::move(scraps));
    return spiritFilter_.outputImage();
}

}  // namespace qv
