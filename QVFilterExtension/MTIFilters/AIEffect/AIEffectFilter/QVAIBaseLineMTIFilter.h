#pragma once

#include "QVFilterCore/QVAIEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIBaseLineMTIFilterClass;

/// What the effects share that draw a line along the subject's outline, behind the subject. The outline is
/// that of the mask in memory; it is fitted into the frame, not stretched, and widths are counted in 512ths
/// of the frame's longer side. Without a mask picture the result is nil; without a mask in memory, or a
/// subject in it, it is the frame.
class QVAIBaseLineMTIFilter : public QVAIEffectMTIFilter {
  public:
    explicit QVAIBaseLineMTIFilter(const QVFilterClass& filterClass = QVAIBaseLineMTIFilterClass)
        : QVAIEffectMTIFilter(filterClass) {}

    /// The outline in pixels of the mask's picture, smoothed and led out of the frame where it runs on its
    /// border. `ratio` is how coarse it is: its radius in longer sides of the mask. Empty without a subject.
    UIBezierPath getBezierPathWithRadiusRatio(float ratio) const;
    /// The outline at a ratio of 1/128.
    UIBezierPath contourPath() const;
    /// A path of the mask's picture, drawn as a line `width` 512ths of the frame's longer side wide into an
    /// image of the frame's size; nil for an empty path.
    MTIImage getUIBezierPathImageWithPath(UIBezierPath path, double width, const UIColor& color) const;

    MTIImage outputImage() override;

  protected:
    /// The frame with what the effect draws; nil when there is no line.
    virtual MTIImage imageWithLine() { return {}; }

    /// A layer between what lies behind the subject and the subject itself, which is taken from `image`; by
    /// the effect's mask, or the red of another one.
    MTIImage behindSubject(const MTIImage& image, const MTIImage& layer) const {
        return behindSubject(image, layer, maskImage());
    }
    MTIImage behindSubject(const MTIImage& image, const MTIImage& layer, const MTIImage& mask) const;
    /// One image over another.
    MTIImage over(const MTIImage& background, const MTIImage& image) const;
};

}  // namespace qv
