#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVCenterMagnifyMTIFilterClass;

/// A large lens before the frame. It shows what is at `magnifyCenter` (2 + `magnificationNum`) / 3 times as
/// large, the farther away the less, and nothing larger at the farthest corner of the frame. Towards the rim
/// it parts the colours and darkens. A magnification of 1 leaves the frame as it is.
class QVCenterMagnifyMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVCenterMagnifyMTIFilter(const QVFilterClass& filterClass = QVCenterMagnifyMTIFilterClass);

    /// Derives `magnificationNum` and resets `magnifyCenter`; `effectValue` itself keeps its value.
    void setEffectValue(float value) override;

    /// Power of the glass, times.
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
