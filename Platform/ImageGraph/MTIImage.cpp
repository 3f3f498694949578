#include "Platform/ImageGraph/MTIImage.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/Planner.h"
#include "Platform/ImageGraph/Private/ImageGeometry.h"
#include "Platform/ImageGraph/Private/StockPass.h"
#include "Platform/Media/ImageFile.h"

namespace qv {

namespace {

template <typename Source>
MTIImage imageOfSource(Source source, int width, int height, MTIAlphaType alphaType) {
    auto node = std::make_shared<ImageNode>();
    node->operation = std::move(source);
    node->width = width;
    node->height = height;
    node->alphaType = alphaType;
    return MTIImage(std::move(node));
}

/// A bitmap as premultiplied pixels, whatever its alpha was.
Bitmap premultipliedBitmap(const Bitmap& bitmap, MTIAlphaType alphaType) {
    if (alphaType != MTIAlphaType::nonPremultiplied && alphaType != MTIAlphaType::alphaIsOne) return bitmap;
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(*bitmap.pixels);
    if (alphaType == MTIAlphaType::nonPremultiplied) {
        premultiply(pixels->data(), pixels->size() / 4);
    } else {
        for (std::size_t i = 3; i < pixels->size(); i += 4) (*pixels)[i] = 255;
    }
    return {bitmap.width, bitmap.height, std::move(pixels)};
}

bool isFinite(const CGAffineTransform& t) {
    return std::ranges::all_of(std::array{t.a, t.b, t.c, t.d, t.tx, t.ty},
                               [](double v) { return std::isfinite(v); });
}

constexpr std::string_view kAlphaTypeKind = "alphaType";

}  // namespace

MTIImage MTIImage::imageWithUIImage(const UIImage& image, MTIAlphaType alphaType, std::string name) {
    return imageWithBitmap(image.bitmap(), alphaType, std::move(name));
}

MTIImage MTIImage::imageWithBitmap(const Bitmap& bitmap, MTIAlphaType alphaType, std::string name) {
    if (!bitmap || !isImageSide(bitmap.width) || !isImageSide(bitmap.height)) return {};
    return imageOfSource(BitmapSource{premultipliedBitmap(bitmap, alphaType), std::move(name)}, bitmap.width,
                         bitmap.height, alphaType);
}

MTIImage MTIImage::imageWithPixelBuffer(const PixelBuffer& buffer, MTIAlphaType alphaType) {
    if (!buffer) return {};
    return imageOfSource(PixelBufferSource{buffer}, buffer.width(), buffer.height(), alphaType);
}

MTIImage MTIImage::imageWithVulkanImage(const MTIVulkanImage& image, MTIAlphaType alphaType) {
    const bool readable = image.layout == kVulkanLayoutGeneral || image.layout == kVulkanLayoutShaderReadOnly;
    if (!image.image || !readable || !textureFormatOfVulkan(image.format) || !isImageSide(image.width) ||
        !isImageSide(image.height)) {
        return {};
    }
    return imageOfSource(VulkanImageSource{image}, image.width, image.height, MTIAlphaType::premultiplied)
        .imageWithAlphaType(alphaType);
}

MTIImage MTIImage::imageWithContentsOfFile(const std::string& path, MTIAlphaType alphaType) {
    return imageWithBitmap(readImageFile(path), alphaType);
}

MTIImage MTIImage::initWithColor(MTIColor color, bool, CGSize size) {
    if (!isImageSide(size.width) || !isImageSide(size.height)) return {};
    for (float value : {color.red, color.green, color.blue, color.alpha}) {
        if (!std::isfinite(value)) return {};
    }
    return imageOfSource(ColorSource{color}, int(size.width), int(size.height),
                         color.alpha == 1 ? MTIAlphaType::alphaIsOne : MTIAlphaType::premultiplied);
}

CGSize MTIImage::size() const {
    return node_ ? CGSize{double(node_->width), double(node_->height)} : CGSize{};
}

CGRect MTIImage::extent() const {
    return {{0, 0}, size()};
}

MTIAlphaType MTIImage::alphaType() const {
    return node_ ? node_->alphaType : MTIAlphaType::unknown;
}

MTIImage MTIImage::imageByApplyingTransform(const CGAffineTransform& transform) const {
    return imageByApplyingTransform(transform, false);
}

MTIImage MTIImage::imageByApplyingTransform(const CGAffineTransform& transform,
                                            bool minimumEnclosingViewport) const {
    if (!node_ || !isFinite(transform)) return *this;
    CGSize outputSize = size();
    CGPoint center;
    if (minimumEnclosingViewport) {
        const CGSize own = size();
        const CGRect box = CGRectApplyAffineTransform(
            CGRectMake(-own.width / 2, -own.height / 2, own.width, own.height), transform);
        // A turn by a quarter leaves rounding errors that are no pixel.
        constexpr double kRounding = 1e-6;
        outputSize = {std::ceil(box.size.width - kRounding), std::ceil(box.size.height - kRounding)};
        center = {box.midX(), box.midY()};
        if (!isImageSide(outputSize.width) || !isImageSide(outputSize.height)) return {};
    } else if (transform == CGAffineTransformIdentity) {
        return *this;
    }
    const double determinant = transform.a * transform.d - transform.b * transform.c;
    const CGAffineTransform inverse = CGAffineTransformInvert(transform);
    if (determinant == 0 || !isFinite(inverse)) return initWithColor({}, false, outputSize);  // seen edge on

    const std::string numbers = fmt::format("[{}, {}, {}, {}, {}, {}]", transform.a, transform.b, transform.c,
                                            transform.d, transform.tx, transform.ty);
    return movedImage(
        {.image = *this,
         .toInput = CGAffineTransformConcat(CGAffineTransformMakeTranslation(center.x, center.y), inverse),
         .outputSize = outputSize,
         .description = {"transform", {{"transform", numbers}}}});
}

MTIImage MTIImage::resize(CGSize newSize, MTIPixelFormat pixelFormat) const {
    if (!node_ || !isImageSide(newSize.width) || !isImageSide(newSize.height)) return {};
    newSize = {std::floor(newSize.width), std::floor(newSize.height)};
    if (newSize == size()) return *this;
    if (pixelFormat == MTIPixelFormat::unspecified) pixelFormat = node_->pixelFormat;
    return resizedImage(*this, newSize, pixelFormat);
}

MTIImage MTIImage::imageWithAlphaType(MTIAlphaType alphaType) const {
    if (!node_ || alphaType == node_->alphaType) return *this;
    if (const auto* source = std::get_if<PixelBufferSource>(&node_->operation)) {
        return imageWithPixelBuffer(source->buffer, alphaType);
    }
    const MTIImage& original = node_->stock.kind == kAlphaTypeKind ? node_->inputs.front() : *this;
    const bool opaque = alphaType == MTIAlphaType::alphaIsOne;
    if (!opaque && alphaType != MTIAlphaType::nonPremultiplied) return original;
    return imageOfStockPass({.function = opaque ? "MTIOpaque" : "MTIPremultiply",
                             .inputs = {original},
                             .size = size(),
                             .pixelFormat = original.node_->pixelFormat,
                             .alphaType = alphaType,
                             .description = {std::string(kAlphaTypeKind),
                                             {{"alphaType", opaque ? "alphaIsOne" : "nonPremultiplied"}}}});
}

}  // namespace qv
