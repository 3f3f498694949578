#include "QVFilterCore/QVAIEffectMTIFilter.h"

#include <cmath>

namespace qv {

namespace {
using Effect = QVAIEffectMTIFilter;

/// By how much a side may exceed a whole number and still be that number.
constexpr double kRounding = 1e-6;
}  // namespace

const QVFilterClass QVAIEffectMTIFilterClass{
    .name = "QVAIEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Subject effect",
    .help = "An effect that knows the subject by a mask",
    .factory = makeFilter<QVAIEffectMTIFilter>,
    .category = QVFilterCategory::subject,
    .inputs = {{kInputImage,
                qvInput<&Effect::setMaskImage>({.name = "maskImage",
                                                .role = QVInputRole::mask,
                                                .help = "white where the subject is",
                                                .isRequired = false}),
                qvInput<&Effect::setMaskPixelBuffer>({.name = "maskPixelBuffer",
                                                      .role = QVInputRole::mask,
                                                      .help = "the same mask in memory, a byte a pixel",
                                                      .isRequired = false})}},
    .properties =
        {
            qvProperty<&Effect::extraTransform, &Effect::setExtraTransform>({
                .name = "extraTransform",
                .title = "Mask transform",
                .help = "from mask space to the frame",
                .driver = QVPropertyDriver::host,
            }),
            qvProperty<&Effect::inputImageOriginalSize, &Effect::setInputImageOriginalSize>(
                {.name = "inputImageOriginalSize",
                 .help = "size of the clip's own frames, from which the mask was made",
                 .maximum = kMaximumImageSide,
                 .unit = QVUnit::pixels,
                 .driver = QVPropertyDriver::host}),
            qvProperty<&Effect::colors, &Effect::setColors>({
                .name = "colors",
                .title = "Colours",
                .help = "colours of the effect, its own when empty",
            }),
        },
};

UIColor QVAIEffectMTIFilter::lineColor() const {
    if (!colors_.empty()) return colors_.front();
    const std::vector<UIColor> own = defaultColors();
    return own.empty() ? UIColor::whiteColor() : own.front();
}

CGAffineTransform QVAIEffectMTIFilter::maskTransform() const {
    if (!maskPixelBuffer_ || extraTransform_ == CGAffineTransformIdentity) return {};
    const CGRect mask = CGRectMake(0, 0, maskPixelBuffer_.width(), maskPixelBuffer_.height());
    // Images are transformed about their middle, with y up.
    const CGAffineTransform moved =
        CGAffineTransformConcat({1, 0, 0, -1, -mask.midX(), mask.midY()}, extraTransform_);
    const CGRect box = CGRectApplyAffineTransform(mask, moved);
    return CGAffineTransformConcat(moved, {1, 0, 0, -1, -box.minX(), box.maxY()});
}

CGSize QVAIEffectMTIFilter::transformedMaskSize() const {
    if (!maskPixelBuffer_) return {};
    const CGRect mask = CGRectMake(0, 0, maskPixelBuffer_.width(), maskPixelBuffer_.height());
    const CGSize size = CGRectApplyAffineTransform(mask, maskTransform()).size;
    return {std::ceil(size.width - kRounding), std::ceil(size.height - kRounding)};
}

UIBezierPath QVAIEffectMTIFilter::getExtraTransformPath(UIBezierPath path) const {
    path.applyTransform(maskTransform());
    return path;
}

}  // namespace qv
