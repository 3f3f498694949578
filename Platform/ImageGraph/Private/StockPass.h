#pragma once

#include <string_view>
#include <vector>

#include "Platform/ImageGraph/ImageNode.h"

namespace qv {

/// What a stock filter asks for: one pass of a function of the platform's own library.
struct StockPass {
    std::string_view function{};
    std::vector<MTIImage> inputs{};
    MTIParameters parameters{};
    CGSize size{};  ///< whole pixels
    MTIPixelFormat pixelFormat = MTIPixelFormat::unspecified;
    MTIAlphaType alphaType = MTIAlphaType::premultiplied;
    StockDescription description{};
};

/// The image of the pass; nil when a side is outside 1..kMaximumImageSide or the function is missing.
MTIImage imageOfStockPass(StockPass pass);

/// A number as listings show it.
std::string listed(double value);

/// True for a side that an image can have.
bool isImageSide(double side);

}  // namespace qv
