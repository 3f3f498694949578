#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRGBMTIFilterClass;

/// Red and blue part from green. Each third of the range of the effect value is a level: to the left and
/// right, round a ring, in torn bands; within it they part farther and farther.
class QVRGBMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVRGBMTIFilter(const QVFilterClass& filterClass = QVRGBMTIFilterClass);

    /// Sets the level, 0 to 2, and `xOff`; `effectValue` itself keeps its value.
    void setEffectValue(float value) override;

    /// How far the colours part, widths of the frame.
    double xOff() const { return xOff_; }
    void setXOff(double widths) { xOff_ = widths; }

    /// The effect's parameters and "xOff".
    MTIParameters parameters() const override;

  private:
    double xOff_;
};

}  // namespace qv
