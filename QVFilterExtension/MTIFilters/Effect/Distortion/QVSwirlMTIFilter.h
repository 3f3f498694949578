#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSwirlMTIFilterClass;

/// A whirl around the middle of the frame that fades towards its edges.
class QVSwirlMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVSwirlMTIFilter(const QVFilterClass& filterClass = QVSwirlMTIFilterClass);

    /// Keeps the value and derives `angle`.
    void setEffectValue(float value) override;

    /// How far the very middle is turned, turns.
    double angle() const { return angle_; }
    void setAngle(double turns) { angle_ = turns; }

    /// "angle".
    MTIParameters parameters() const override;

  private:
    double angle_;
};

}  // namespace qv
