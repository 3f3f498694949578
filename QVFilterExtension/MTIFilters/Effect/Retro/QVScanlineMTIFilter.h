#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVScanlineMTIFilterClass;

/// The lines of a television tube: dark lines at level 0, lines and coloured stripes at level 1. Lines are
/// 1/108 of the frame's shorter side apart, in whole pixels; lights cover a third of the dark between them,
/// and the corners are darker.
class QVScanlineMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVScanlineMTIFilter(const QVFilterClass& filterClass = QVScanlineMTIFilterClass);

    /// Sets the level, 0 or 1, and `value`; `effectValue` itself keeps its value. The patterns share the
    /// range, which begins a quarter into the first pattern and wraps round: 0..0.25 is the upper half of
    /// pattern 0, 0.25..0.75 all of pattern 1, 0.75..1 the lower half of pattern 0.
    void setEffectValue(float value) override;

    /// Strength of the pattern, 0..1.
    double value() const { return value_; }
    void setValue(double strength) { value_ = strength; }

    /// "level", "effectValue" (that is `value`).
    MTIParameters parameters() const override;

  private:
    double value_;
};

}  // namespace qv
