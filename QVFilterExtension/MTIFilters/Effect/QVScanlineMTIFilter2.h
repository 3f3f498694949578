#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVScanlineMTIFilter2Class;

/// The line patterns of `QVScanlineMTIFilter` as an effect of its own.
class QVScanlineMTIFilter2 : public QVEffectMTIFilter {
  public:
    explicit QVScanlineMTIFilter2(const QVFilterClass& filterClass = QVScanlineMTIFilter2Class);

    /// Sets the level, 0 or 1, and `value`; `effectValue` itself keeps its value. See `scanlineSetting`.
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
