#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVKaleidoscopeRotateFilterClass;

/// A kaleidoscope around the middle of the frame, through which the picture turns.
class QVKaleidoscopeRotateFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVKaleidoscopeRotateFilter(const QVFilterClass& filterClass = QVKaleidoscopeRotateFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// By how much the picture is turned behind the mirrors, radians.
    float rotateAngle() const { return rotateAngle_; }
    void setRotateAngle(float radians) { rotateAngle_ = radians; }
    /// Sectors around the circle, each the reflection of its neighbours; below 1.5 the picture stays as it
    /// is.
    double splitNumber() const { return splitNumber_; }
    void setSplitNumber(double number) { splitNumber_ = number; }

    /// "rotateAngle", "splitNum" (that is `splitNumber`, a double).
    MTIParameters parameters() const override;

  private:
    float rotateAngle_ = 0.6f;
    double splitNumber_ = 16;
};

}  // namespace qv
