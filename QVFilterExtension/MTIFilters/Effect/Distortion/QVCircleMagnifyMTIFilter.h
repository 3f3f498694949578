#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVCircleMagnifyMTIFilterClass;

/// A round magnifying glass, half as wide as the frame's shorter side, with a rim of coloured metal, 18/1080
/// of the shorter side wide, and a dark handle, 300/1080 long, that points down to the right. It bends most
/// along its rim, and the lamp of the room lies on glass and metal. At a magnification of 1 there is no
/// glass.
class QVCircleMagnifyMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVCircleMagnifyMTIFilter(const QVFilterClass& filterClass = QVCircleMagnifyMTIFilterClass);

    /// Derives `magnificationNum` and resets `magnifyCenter` and
    /// `borderColor`; `effectValue` itself keeps its value.
    void setEffectValue(float value) override;

    /// Magnification of the glass, times.
    double magnificationNum() const { return magnificationNum_; }
    void setMagnificationNum(double times) { magnificationNum_ = times; }
    /// Centre of the glass in the frame, (0,0) top left, (1,1) bottom right.
    const MTIVector& magnifyCenter() const { return magnifyCenter_; }
    void setMagnifyCenter(MTIVector center) { magnifyCenter_ = center; }
    /// Colour of the rim: red, green, blue, 0..1.
    const MTIVector& borderColor() const { return borderColor_; }
    void setBorderColor(MTIVector color) { borderColor_ = color; }

    /// "magnificationNum", "centerPoint", "radius" (half shorter sides of the frame), "borderColor".
    MTIParameters parameters() const override;

  private:
    double magnificationNum_;
    MTIVector magnifyCenter_, borderColor_;
};

}  // namespace qv
