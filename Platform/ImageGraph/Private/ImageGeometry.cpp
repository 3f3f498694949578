#include "Platform/ImageGraph/Private/ImageGeometry.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "Platform/ImageGraph/Private/StockPass.h"

namespace qv {

namespace {

/// Bilinear samples a side that a pixel of a reduced image takes; few choices, since each is a pipeline of
/// its own.
constexpr std::array<int, 5> kSampleCounts{2, 3, 4, 6, 8};
/// Samples further apart than this, in pixels, would weigh the pixels between them visibly unevenly.
constexpr double kSampleSpacing = 1.25;
constexpr double kMostPixels = kSampleCounts.back() * kSampleSpacing;

/// Samples a side for a pixel that covers `ratio` pixels.
int sampleCount(double ratio) {
    if (ratio <= 2) return 1;
    const auto enough =
        std::ranges::find_if(kSampleCounts, [&](int n) { return n * kSampleSpacing >= ratio; });
    return enough == kSampleCounts.end() ? kSampleCounts.back() : *enough;
}

}  // namespace

MTIImage resizedImage(const MTIImage& image, CGSize size, MTIPixelFormat pixelFormat) {
    const CGSize from = image.size();
    const CGSize between{std::max(size.width, std::ceil(from.width / kMostPixels)),
                         std::max(size.height, std::ceil(from.height / kMostPixels))};
    if (between != size) return resizedImage(resizedImage(image, between, pixelFormat), size, pixelFormat);
    return imageOfStockPass(
        {.function = "MTIResize",
         .inputs = {image},
         .parameters = {{"across", sampleCount(from.width / size.width)},
                        {"down", sampleCount(from.height / size.height)}},
         .size = size,
         .pixelFormat = pixelFormat,
         .description = {"resize", {{"size", fmt::format("{} x {}", int(size.width), int(size.height))}}}});
}

MTIImage movedImage(const ImageMove& move) {
    const CGAffineTransform& t = move.toInput;
    const CGSize in = move.image.size(), out = move.outputSize;
    // Pixels of the image per pixel of the output, along the image's axes.
    const double acrossStep = std::hypot(t.a, t.c), downStep = std::hypot(t.b, t.d);
    if (std::max(acrossStep, downStep) > 2) {
        // Bilinear sampling would skip pixels along an axis that shrinks so much.
        const auto shrunk = [](double side, double step) {
            return step > 2 ? std::max(1.0, std::round(side * 2 / step)) : side;
        };
        const CGSize smaller{shrunk(in.width, acrossStep), shrunk(in.height, downStep)};
        const CGAffineTransform shrink =
            CGAffineTransformMakeScale(smaller.width / in.width, smaller.height / in.height);
        ImageMove rest = move;
        rest.image = resizedImage(move.image, smaller, move.image.node()->pixelFormat);
        rest.toInput = CGAffineTransformConcat(t, shrink);
        if (smaller != in) return movedImage(rest);
    }
    // In texture space: (0,0) top left, (1,1) bottom right. Rows of pixels run down while y runs up.
    const float a = float(t.a * out.width / in.width), b = float(-t.b * out.width / in.height);
    const float c = float(-t.c * out.height / in.width), d = float(t.d * out.height / in.height);
    const double centerX = t.tx / in.width + 0.5, centerY = 0.5 - t.ty / in.height;
    return imageOfStockPass(
        {.function = "MTITransform",
         .inputs = {move.image},
         .parameters = {{"matrix", MTIVector{a, b, c, d}},
                        {"offset", MTIVector{float(centerX - 0.5 * (double(a) + c)),
                                             float(centerY - 0.5 * (double(b) + d))}},
                        {"edge", MTIVector{float(in.width / acrossStep), float(in.height / downStep)}}},
         .size = out,
         .pixelFormat = move.pixelFormat,
         .description = move.description});
}

}  // namespace qv
