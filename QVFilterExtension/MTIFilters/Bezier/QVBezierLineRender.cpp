#include "QVFilterExtension/MTIFilters/Bezier/QVBezierLineRender.h"

#include <algorithm>
#include <cmath>

#include "Platform/ImageGraph/ImageNode.h"
#include "QVFilterCore/QVMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Bezier/BezierLinesData.h"

namespace qv {

namespace {

/// Entries of a ramp as a picture: those between two stops differ by less than a code.
constexpr int kRampEntries = 256;

bool isImageSize(CGSize size) {
    const auto isSide = [](double side) { return side >= 1 && side < kMaximumImageSide + 1; };
    return isSide(size.width) && isSide(size.height);
}

MTIColor premultiplied(const QVBezierLineColor& stop) {
    const auto [color, t, padding] = stop.bezierLineColor();
    return {color[0] * color[3], color[1] * color[3], color[2] * color[3], color[3]};
}

/// The ramp's premultiplied colour at `t`; the outer stops go on outside.
MTIColor rampColor(const std::vector<QVBezierLineColor>& stops, float t) {
    const auto after = std::ranges::find_if(stops, [t](const auto& stop) { return stop.t > t; });
    if (after == stops.begin()) return premultiplied(stops.front());
    if (after == stops.end()) return premultiplied(stops.back());
    const MTIColor a = premultiplied(after[-1]), b = premultiplied(*after);
    const float share = (t - after[-1].t) / (after->t - after[-1].t);
    return {std::lerp(a.red, b.red, share), std::lerp(a.green, b.green, share), std::lerp(a.blue, b.blue, share),
            std::lerp(a.alpha, b.alpha, share)};
}

MTIImage imageOfRamp(std::vector<QVBezierLineColor> stops) {
    std::ranges::stable_sort(stops, {}, &QVBezierLineColor::t);
    auto pixels = std::make_shared<std::vector<std::uint8_t>>();
    for (int i = 0; i < kRampEntries; ++i) {
        const MTIColor color = rampColor(stops, float(i) / float(kRampEntries - 1));
        for (float component : {color.red, color.green, color.blue, color.alpha})
            pixels->push_back(std::uint8_t(std::lround(255 * std::clamp(component, 0.0f, 1.0f))));
    }
    return MTIImage::imageWithBitmap({kRampEntries, 1, std::move(pixels)});
}

}  // namespace

QVBezierLineRender::QVBezierLineRender()
    : colArray_{{QVBezierLineColorMake(UIColor::whiteColor(), 0.0f),
                 QVBezierLineColorMake(UIColor::blackColor(), 1.0f)}} {}

void QVBezierLineRender::setColArray(std::optional<std::vector<QVBezierLineColor>> stops) {
    colArray_ = std::move(stops);
    if (!colArray_) return;
    setColorImage({});
    colorKernel_.reset();
}

void QVBezierLineRender::setColorImage(const UIImage& image) {
    if (!image) {
        colorImage_ = {};
        colorTexture_ = {};
        return;
    }
    if (image.bitmap().pixels != colorImage_.bitmap().pixels) colorTexture_ = MTIImage::imageWithUIImage(image);
    colorImage_ = image;
    colorKernel_.reset();
}

std::vector<QVBezierLineColor::Record> QVBezierLineRender::colArrayData() const {
    std::vector<QVBezierLineColor::Record> records;
    if (!colArray_) return records;
    for (const QVBezierLineColor& stop : *colArray_) records.push_back(stop.bezierLineColor());
    return records;
}

MTIImage QVBezierLineRender::renderBezierWithPointsArray(const QVOutlineSet& pointsArray,
                                                         CGSize size, float lineThickness, CGSize outSize) {
    return renderColorBezierWithBlackWhiteTexure(
        renderBlackWhiteBezierWithPointsArray(pointsArray, size, lineThickness, outSize));
}

MTIImage QVBezierLineRender::renderBlackWhiteBezierWithPointsArray(
    const QVOutlineSet& pointsArray, CGSize size, float lineThickness, CGSize outSize) const {
    std::vector<LineSegment> segments = BezierLinesDataWithPointsArray(pointsArray);
    if (segments.empty() || !isImageSize(outSize)) return {};
    LinePass pass(std::move(segments), lineThickness, size, elementsPerInstance_,
                  int(std::min<std::size_t>(sampleCount_, 64)));
    pass.contours = contours_;
    for (const auto& [color, t, padding] : colArrayData())
        pass.stops.push_back({{color[0], color[1], color[2], color[3]}, t});
    auto node = std::make_shared<ImageNode>();
    node->operation = std::move(pass);
    node->width = int(outSize.width);
    node->height = int(outSize.height);
    return MTIImage(std::move(node));
}

MTIImage QVBezierLineRender::renderColorBezierWithBlackWhiteTexure(const MTIImage& texture) {
    if (!texture || (!colorTexture_ && (!colArray_ || colArray_->empty()))) return {};
    const auto kernel = colorKernel();
    if (!kernel) return {};
    const bool drawsPicture = kernel->fragmentFunctionDescriptor().name == "colorImageFragment";
    return kernel->applyToInputImages({texture, drawsPicture ? colorTexture_ : rampImage()}, {}, texture.size(),
                                      MTIPixelFormat::unspecified);
}

std::shared_ptr<const MTIRenderPipelineKernel> QVBezierLineRender::colorKernel() {
    if (!colorKernel_) {
        colorKernel_ = MTIRenderPipelineKernel::make({colorTexture_ ? "colorImageFragment" : "colorArrayFragment",
                                                      QV_DefaultMetalLibraryURLForClass(QVMTIFilterClass)});
    }
    return colorKernel_;
}

const MTIImage& QVBezierLineRender::rampImage() {
    if (!rampImage_ || rampStops_ != *colArray_) {
        rampImage_ = imageOfRamp(*colArray_);
        rampStops_ = *colArray_;
    }
    return rampImage_;
}

}  // namespace qv
