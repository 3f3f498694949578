#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIBaseLineMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Glitch/QVAIRGBFilter.h"

namespace qv {

extern const QVFilterClass QVAIHSVColorLineFilterClass;

/// A broad line around the subject, parted into copies of one colour each that swing around it; where they
/// meet they are the line's colour again. Two copies, red and cyan, below a strength of a half, three in red,
/// green and blue from there on. They swing by 2 % of the subject's width at a strength of a half, and by
/// half of that more or less at 1 and 0.
class QVAIHSVColorLineFilter : public QVAIBaseLineMTIFilter {
  public:
    explicit QVAIHSVColorLineFilter(const QVFilterClass& filterClass = QVAIHSVColorLineFilterClass);

    /// White.
    std::vector<UIColor> defaultColors() const override { return {UIColor::whiteColor()}; }

    /// The outline as a line of 10/512 of the frame's longer side.
    MTIImage contourUIImage() const;
    /// A fifth of the width of the subject's box in the mask, in pixels of the mask, to a frame's width in
    /// its own; 0 without a mask in memory.
    float getLineWidth() const;
    /// The smallest rectangle that holds all bytes of the mask above 10; `CGRectZero` when there are none.
    static CGRect getMinRectFromMask(const PixelBuffer& mask);

  protected:
    MTIImage imageWithLine() override;

  private:
    MTIBlendFilter normalBlendFilter_;
    MTIBlendWithMaskFilter maskBlendFilter_;
    QVAIRGBFilter repetitionRGBFilter_;
};

}  // namespace qv
