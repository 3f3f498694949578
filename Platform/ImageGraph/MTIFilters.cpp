#include "Platform/ImageGraph/MTIFilters.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/Private/ImageGeometry.h"
#include "Platform/ImageGraph/Private/StockPass.h"

namespace qv {

namespace {

/// One number that a filter is set to.
struct Setting {
    std::string_view kind;  ///< of the filter
    std::string_view name;  ///< of the setting
    float value;
    float neutral;  ///< leaves the image as it is
};

/// A pass over `input` with one uniform; the input itself when the setting is neutral or no number.
MTIImage adjusted(const MTIImage& input, const Setting& setting, std::string_view function,
                  std::string_view uniform, float uniformValue, MTIPixelFormat pixelFormat) {
    if (!input || !std::isfinite(setting.value) || setting.value == setting.neutral) return input;
    return imageOfStockPass(
        {.function = function,
         .inputs = {input},
         .parameters = {{std::string(uniform), uniformValue}},
         .size = input.size(),
         .pixelFormat = pixelFormat,
         .description = {std::string(setting.kind), {{std::string(setting.name), listed(setting.value)}}}});
}

constexpr std::array<std::string_view, kBlendModeCount> kBlendModeNames{
    "Normal",     "Multiply",   "Screen",    "Overlay",    "Darken",     "Lighten",
    "ColorDodge", "ColorBurn",  "HardLight", "SoftLight",  "Difference", "Exclusion",
    "Hue",        "Saturation", "Color",     "Luminosity", "Add",        "Subtract",
};

/// Whether a place is a corner of pixels that an image, or one beside it, may have.
bool isPixel(CGPoint place) {
    const auto isWhole = [](double value) {
        return value == std::round(value) && std::abs(value) <= 2 * kMaximumImageSide;
    };
    return isWhole(place.x) && isWhole(place.y);
}

constexpr std::array<std::string_view, 4> kComponentNames{"red", "green", "blue", "alpha"};

}  // namespace

MTIImage MTIOpacityFilter::outputImage() const {
    const float opacity = std::clamp(opacity_, 0.0f, 1.0f);
    return adjusted(inputImage_, {"opacity", "opacity", opacity, 1}, "MTIOpacity", "opacity", opacity,
                    outputPixelFormat_);
}

MTIImage MTIExposureFilter::outputImage() const {
    constexpr float kMostStops = 64;  // all black or all white long before; keeps the gain finite
    return adjusted(inputImage_, {"exposure", "exposure", exposure_, 0}, "MTIExposure", "gain",
                    std::exp2(std::clamp(exposure_, -kMostStops, kMostStops)), outputPixelFormat_);
}

MTIImage MTIBrightnessFilter::outputImage() const {
    const float brightness = std::clamp(brightness_, -1.0f, 1.0f);
    return adjusted(inputImage_, {"brightness", "brightness", brightness, 0}, "MTIBrightness", "brightness",
                    brightness, outputPixelFormat_);
}

MTIImage MTISaturationFilter::outputImage() const {
    const float saturation = saturation_ < 0 ? 0 : saturation_;
    return adjusted(inputImage_, {"saturation", "saturation", saturation, 1}, "MTISaturation", "saturation",
                    saturation, outputPixelFormat_);
}

MTIImage MTIGaussianBlurFilter::outputImage() const {
    if (!inputImage_ || !std::isfinite(radius_) || radius_ <= 0) return inputImage_;
    auto node = std::make_shared<ImageNode>();
    node->operation = GaussianBlurPass{radius_};
    node->inputs = {inputImage_};
    node->width = inputImage_.node()->width;
    node->height = inputImage_.node()->height;
    node->pixelFormat = outputPixelFormat_;
    node->stock = {"gaussianBlur", {{"radius", listed(radius_)}}};
    return MTIImage(std::move(node));
}

MTICropRegion MTICropRegionMake(double x, double y, double width, double height) {
    return {CGRectMake(x, y, width, height), false};
}

MTICropRegion MTICropRegionMakeFractional(double x, double y, double width, double height) {
    return {CGRectMake(x, y, width, height), true};
}

MTIImage MTICropFilter::outputImage() const {
    if (!inputImage_) return {};
    const CGSize in = inputImage_.size();
    CGRect region = region_.bounds;
    if (region_.fractional) {
        region = CGRectMake(region.origin.x * in.width, region.origin.y * in.height,
                            region.size.width * in.width, region.size.height * in.height);
    }
    const CGSize size{std::round(region.size.width * double(scale_)),
                      std::round(region.size.height * double(scale_))};
    const bool placed = std::isfinite(region.origin.x) && std::isfinite(region.origin.y);
    if (!placed || !isImageSide(size.width) || !isImageSide(size.height)) return {};
    if (region == inputImage_.extent() && size == in) return inputImage_;

    const std::string bounds = fmt::format("{:.6g} {:.6g} {:.6g} {:.6g}", region.origin.x, region.origin.y,
                                           region.size.width, region.size.height);
    const StockDescription description{"crop", {{"region", bounds}, {"scale", listed(scale_)}}};
    if (size == region.size && isPixel(region.origin)) {
        return imageOfStockPass(
            {.function = "MTICropPixels",
             .inputs = {inputImage_},
             .parameters = {{"origin", MTIVector{float(region.origin.x), float(region.origin.y)}}},
             .size = size,
             .pixelFormat = outputPixelFormat_,
             .description = description});
    }
    // From the result's centre to the region's, which lies off the input's; y up.
    const CGAffineTransform toInput{
        region.size.width / size.width, 0, 0, region.size.height / size.height, region.midX() - in.width / 2,
        in.height / 2 - region.midY()};
    return movedImage({.image = inputImage_,
                       .toInput = toInput,
                       .outputSize = size,
                       .pixelFormat = outputPixelFormat_,
                       .description = description});
}

std::string_view blendModeName(MTIBlendMode mode) {
    return kBlendModeNames[std::size_t(mode)];
}

MTIImage MTIBlendFilter::outputImage() const {
    if (!inputImage_ || !background_) return {};
    const float intensity = std::isfinite(intensity_) ? std::clamp(intensity_, 0.0f, 1.0f) : 1.0f;
    const std::string mode(blendModeName(mode_));
    return imageOfStockPass({.function = "MTIBlend" + mode,
                             .inputs = {background_, inputImage_},
                             .parameters = {{"intensity", intensity}},
                             .size = background_.size(),
                             .pixelFormat = outputPixelFormat_,
                             .description = {"blend", {{"mode", mode}, {"intensity", listed(intensity)}}}});
}

MTIImage MTIBlendWithMaskFilter::outputImage() const {
    if (!inputImage_ || !background_ || !mask_.content) return {};
    const bool inverted = mask_.mode == MTIMaskMode::oneMinusMaskValue;
    return imageOfStockPass(
        {.function = "MTIBlendWithMask",
         .inputs = {background_, inputImage_, mask_.content},
         .parameters = {{"component", int(mask_.component)}, {"inverted", inverted ? 1 : 0}},
         .size = background_.size(),
         .pixelFormat = outputPixelFormat_,
         .description = {"blendWithMask",
                         {{"component", std::string(kComponentNames[std::size_t(mask_.component)])},
                          {"mode", inverted ? "oneMinusMaskValue" : "normal"}}}});
}

}  // namespace qv
