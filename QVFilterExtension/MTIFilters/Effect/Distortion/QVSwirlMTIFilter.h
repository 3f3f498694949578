#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSwirlMTIFilterClass;

/// A whirlpool around the middle of the frame, of a radius of 0.34 of width and height together: the closer
/// to the middle, the farther it is turned. It smears along its way, and light and shadow lie on three arms.
class QVSwirlMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVSwirlMTIFilter(const QVFilterClass& filterClass = QVSwirlMTIFilterClass);

    /// Keeps the value and derives `angle`.
    void setEffectValue(float value) override;

    /// How far the picture is turned a third of the way from the middle to the rim, turns; the very middle
    /// turns 2.25 times as far.
    double angle() const { return angle_; }
    void setAngle(double turns) { angle_ = turns; }

    /// "angle".
    MTIParameters parameters() const override;

  private:
    double angle_;
};

}  // namespace qv
