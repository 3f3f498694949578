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
/// What a transparent stop counts for the colour next to it, of an opaque one; as in colorArrayFragment.
constexpr float kTransparentShare = 0.15f;

bool isImageSize(CGSize size) {
    const auto isSide = [](double side) { return side >= 1 && side < kMaximumImageSide + 1; };
    return isSide(size.width) && isSide(size.height);
}

MTIVector vectorOf(const QVBezierLineColor& stop) {
    return QVMTIFilter::rgbaVectorFromUIColor(stop.color);
}

/// The ramp's colour at `t`, not premultiplied; the outer stops go on outside.
MTIVector rampColor(const std::vector<QVBezierLineColor>& stops, float t) {
    const auto after = std::ranges::find_if(stops, [t](const auto& stop) { return stop.t > t; });
    if (after == stops.begin()) return vectorOf(stops.front());
    if (after == stops.end()) return vectorOf(stops.back());
    const MTIVector a = vectorOf(after[-1]), b = vectorOf(*after);
    const float share = (t - after[-1].t) / (after->t - after[-1].t);
    const float less = (1 - share) * (a[3] + kTransparentShare), more = share * (b[3] + kTransparentShare);
    const auto at = [&](std::size_t i) { return (a[i] * less + b[i] * more) / (less + more); };
    return {at(0), at(1), at(2), std::lerp(a[3], b[3], share)};
}

MTIImage imageOfRamp(std::vector<QVBezierLineColor> stops) {
    std::ranges::stable_sort(stops, {}, &QVBezierLineColor::t);
    auto pixels = std::make_shared<std::vector<std::uint8_t>>();
    for (int i = 0; i < kRampEntries; ++i) {
        const MTIVector color = rampColor(stops, float(i) / float(kRampEntries - 1));
        for (std::size_t c = 0; c < 4; ++c)
            pixels->push_back(std::uint8_t(std::lround(255 * std::clamp(color[c], 0.0f, 1.0f))));
    }
    return MTIImage::imageWithBitmap({kRampEntries, 1, std::move(pixels)}, MTIAlphaType::nonPremultiplied);
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
    if (image.bitmap().pixels != colorImage_.bitmap().pixels)
        colorTexture_ = MTIImage::imageWithUIImage(image);
    colorImage_ = image;
    colorKernel_.reset();
}

std::vector<QVBezierLineColor::Record> QVBezierLineRender::colArrayData() const {
    std::vector<QVBezierLineColor::Record> records;
    if (!colArray_) return records;
    for (const QVBezierLineColor& stop : *colArray_) records.push_back(stop.bezierLineColor());
    return records;
}

MTIImage QVBezierLineRender::renderBezierWithPointsArray(const QVOutlineSet& pointsArray, CGSize size,
                                                         float lineThickness, CGSize outSize) {
    return renderColorBezierWithBlackWhiteTexure(
        renderBlackWhiteBezierWithPointsArray(pointsArray, size, lineThickness, outSize));
}

MTIImage QVBezierLineRender::renderBlackWhiteBezierWithPointsArray(const QVOutlineSet& pointsArray,
                                                                   CGSize size, float lineThickness,
                                                                   CGSize outSize,
                                                                   MTIPixelFormat format) const {
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
    node->pixelFormat = format;
    return MTIImage(std::move(node));
}

MTIImage QVBezierLineRender::renderColorBezierWithBlackWhiteTexure(const MTIImage& texture) {
    if (!texture || (!colorTexture_ && (!colArray_ || colArray_->empty()))) return {};
    const auto kernel = colorKernel();
    if (!kernel) return {};
    if (kernel->fragmentFunctionDescriptor().name == "colorImageFragment")
        return kernel->applyToInputImages({texture, colorTexture_}, {}, texture.size(),
                                          MTIPixelFormat::unspecified);
    const auto& stops = *colArray_;
    const bool hasEndsAlone = stops.size() == 2 && stops.front().t == 0 && stops.back().t == 1;
    MTIParameters parameters{{"isPicture", hasEndsAlone ? 0 : 1}};
    if (hasEndsAlone) {
        parameters.set("inner", vectorOf(stops.front()));
        parameters.set("outer", vectorOf(stops.back()));
    }
    return kernel->applyToInputImages({texture, hasEndsAlone ? MTIImage() : rampImage()},
                                      std::move(parameters), texture.size(), MTIPixelFormat::unspecified);
}

std::shared_ptr<const MTIRenderPipelineKernel> QVBezierLineRender::colorKernel() {
    const std::string library = QV_DefaultMetalLibraryURLForClass(QVMTIFilterClass);
    if (!colorKernel_ && !library.empty()) {
        colorKernel_ = MTIRenderPipelineKernel::make(
            {colorTexture_ ? "colorImageFragment" : "colorArrayFragment", library});
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
