#pragma once

#include <vector>

#include "Platform/Drawing/UIBezierPath.h"
#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIEffectMTIFilterClass;

/// An effect that knows the subject: a mask that is white where the subject is.
class QVAIEffectMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVAIEffectMTIFilter(const QVFilterClass& filterClass = QVAIEffectMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// White (red is read) where the subject is; stretched over the input. Nil: no subject is known.
    const MTIImage& maskImage() const { return maskImage_; }
    void setMaskImage(MTIImage image) { maskImage_ = std::move(image); }
    /// The same mask in memory, one byte a pixel; may be absent.
    const PixelBuffer& maskPixelBuffer() const { return maskPixelBuffer_; }
    void setMaskPixelBuffer(PixelBuffer buffer) { maskPixelBuffer_ = std::move(buffer); }
    /// From mask space to the frame's orientation.
    const CGAffineTransform& extraTransform() const { return extraTransform_; }
    void setExtraTransform(const CGAffineTransform& transform) { extraTransform_ = transform; }
    /// Size of the clip's own frames, pixels: what the mask was made from.
    CGSize inputImageOriginalSize() const { return inputImageOriginalSize_; }
    void setInputImageOriginalSize(CGSize size) { inputImageOriginalSize_ = size; }
    /// The user's colours; empty takes the class's own.
    const std::vector<UIColor>& colors() const { return colors_; }
    void setColors(std::vector<UIColor> colors) { colors_ = std::move(colors); }
    /// What the class takes where the user gives none; may be empty.
    virtual std::vector<UIColor> defaultColors() const { return {}; }
    /// The first of `colors`, else of the class's own, else white.
    UIColor lineColor() const;

    /// From pixels of the mask in memory to those of its picture after `extraTransform`, which has grown or
    /// shrunk to hold all of it; y down. The identity without a mask in memory.
    CGAffineTransform maskTransform() const;
    /// The size of that picture, whole pixels; zero without a mask in memory.
    CGSize transformedMaskSize() const;
    /// A path moved by `maskTransform`.
    UIBezierPath getExtraTransformPath(UIBezierPath path) const;

  private:
    MTIImage maskImage_;
    PixelBuffer maskPixelBuffer_;
    CGAffineTransform extraTransform_;
    CGSize inputImageOriginalSize_;
    std::vector<UIColor> colors_;
};

}  // namespace qv
