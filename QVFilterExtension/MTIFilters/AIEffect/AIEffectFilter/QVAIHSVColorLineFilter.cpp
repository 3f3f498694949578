#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIHSVColorLineFilter.h"

#include <algorithm>
#include <iterator>

namespace qv {

namespace {

constexpr int kLevelCount = 2, kFewestCopies = 2;
constexpr std::uint8_t kFaintest = 10;
constexpr double kWidthShare = 0.2;
/// Of the line width, at a strength of a half.
constexpr double kSwing = 0.1;
/// What QVAIRGBFilter makes of a strength of 1: shorter sides of the frame.
constexpr double kFullSwing = 0.105;

}  // namespace

const QVFilterClass QVAIHSVColorLineFilterClass{
    .name = "QVAIHSVColorLineFilter",
    .superclass = &QVAIBaseLineMTIFilterClass,
    .title = "Rainbow outline",
    .help = "A broad line around the subject parts into colours that swing",
    .tags = {"rgb", "chromatic", "anaglyph", "sticker", "colour split"},
    .factory = makeFilter<QVAIHSVColorLineFilter>,
    .isPhotoTimeConst = false,
    .kind = QVFilterKind::effect,
};

QVAIHSVColorLineFilter::QVAIHSVColorLineFilter(const QVFilterClass& filterClass)
    : QVAIBaseLineMTIFilter(filterClass), normalBlendFilter_(MTIBlendMode::normal) {}

MTIImage QVAIHSVColorLineFilter::contourUIImage() const {
    constexpr double kWidth = 10.0;
    return getUIBezierPathImageWithPath(contourPath(), kWidth, lineColor());
}

CGRect QVAIHSVColorLineFilter::getMinRectFromMask(const PixelBuffer& mask) {
    int left = mask.width(), right = -1, top = mask.height(), bottom = -1;
    const auto isSubject = [](std::uint8_t value) { return value > kFaintest; };
    for (int y = 0; y < mask.height(); ++y) {
        const std::uint8_t* row = mask.plane(0).data + std::size_t(y) * mask.plane(0).rowBytes;
        const std::uint8_t* end = row + mask.width();
        const std::uint8_t* first = std::find_if(row, end, isSubject);
        if (first == end) continue;
        const auto last = std::find_if(std::reverse_iterator(end), std::reverse_iterator(first), isSubject);
        left = std::min(left, int(first - row));
        right = std::max(right, int(last.base() - row) - 1);
        top = std::min(top, y);
        bottom = y;
    }
    return right < 0 ? CGRectZero : CGRectMake(left, top, right - left + 1, bottom - top + 1);
}

float QVAIHSVColorLineFilter::getLineWidth() const {
    if (!maskPixelBuffer() || !inputImage()) return 0;
    return float(getMinRectFromMask(maskPixelBuffer()).size.width * kWidthShare / inputImage().size().width);
}

MTIImage QVAIHSVColorLineFilter::imageWithLine() {
    const MTIImage line = contourUIImage();
    if (!line) return {};
    const CGSize size = inputImage().size();
    // The line width counts the mask's pixels as the frame's; here it is a share of the width that both have.
    const double width = getLineWidth() * size.width / maskPixelBuffer().width();
    const double swing = width * kSwing * size.width / std::min(size.width, size.height);
    repetitionRGBFilter_.setInputImage(line);
    repetitionRGBFilter_.setITime(iTime());
    repetitionRGBFilter_.setFilterNumber(kFewestCopies +
                                         std::clamp(int(effectValue() * kLevelCount), 0, kLevelCount - 1));
    repetitionRGBFilter_.setEffectValue(
        float(std::clamp(swing / kFullSwing * (0.5 + effectValue()), 0.0, 1.0)));

    maskBlendFilter_.setInputImage(inputImage());
    maskBlendFilter_.setInputMask({maskImage()});
    maskBlendFilter_.setInputBackgroundImage(MTIImage::initWithColor({}, false, size));
    normalBlendFilter_.setInputImage(maskBlendFilter_.outputImage());
    normalBlendFilter_.setInputBackgroundImage(over(inputImage(), repetitionRGBFilter_.outputImage()));
    normalBlendFilter_.setOutputPixelFormat(outputPixelFormat());
    return normalBlendFilter_.outputImage();
}

}  // namespace qv
