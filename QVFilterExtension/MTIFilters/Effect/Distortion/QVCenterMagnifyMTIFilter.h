#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVCenterMagnifyMTIFilterClass;

/// A lens over the whole frame: strongest at `magnifyCenter`, fading to nothing on a circle around it. A
/// magnification of 1 leaves the frame as it is.
class QVCenterMagnifyMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVCenterMagnifyMTIFilter(const QVFilterClass& filterClass = QVCenterMagnifyMTIFilterClass);

    /// Derives `magnificationNum` and resets `magnifyCenter`; `effectValue` itself keeps its value.
    void setEffectValue(float value) override;

    /// Magnification at the centre of the lens, times.
    double magnificationNum() const { return magnificationNum_; }
    void setMagnificationNum(double times) { magnificationNum_ = times; }
    /// Centre of the lens, counted from the middle of the frame in half frames, x right, y up.
    const MTIVector& magnifyCenter() const { return magnifyCenter_; }
    void setMagnifyCenter(MTIVector center) { magnifyCenter_ = center; }

    /// "magnificationNum", "centerPoint".
    MTIParameters parameters() const override;

  private:
    double magnificationNum_;
    MTIVector magnifyCenter_;
};

}  // namespace qv
