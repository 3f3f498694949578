#pragma once

#include "QVFilterCore/QVAIEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAINeonFilterClass;

/// A neon tube around the subject: a white core in a glow of the line's colour, behind the subject. The
/// tube's sizes are counted in 512ths of the mask's longer side: a glow of a line 10 wide, blurred by 3; a
/// core 6 wide, in pixels of the frame. Without a mask or a subject the result is the frame.
class QVAINeonFilter : public QVAIEffectMTIFilter {
  public:
    explicit QVAINeonFilter(const QVFilterClass& filterClass = QVAINeonFilterClass)
        : QVAIEffectMTIFilter(filterClass) {}

    /// Pink.
    std::vector<UIColor> defaultColors() const override { return {{1, 0, 0.9882352941176471}}; }

    /// The outline in pixels of the mask's picture, with a radius of 8/512 of the mask's longer side. Empty
    /// without a subject.
    UIBezierPath contourPath() const;
    /// The outline fitted into `size` pixels, drawn as a line of `lineWidth` of them; nil without an outline.
    MTIImage contourUIImage(const UIColor& color, CGSize size, double lineWidth) const;
    /// The tube, of the frame's size; nil without an outline.
    MTIImage contourLineImage() const;

    MTIImage outputImage() override;
};

}  // namespace qv
