#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSpliteKaleidoscopeMTIFilterClass;

/// A kaleidoscope: sectors around the middle of the frame, each the reflection of its neighbours. The count
/// of sectors is rounded to a whole number; one sector leaves the frame as it is. All show a wedge of the
/// picture, 1.25 times as large, that begins 0.3 of the shorter side from its middle towards the upper left
/// corner and crosses the middle, where the subject is.
class QVSpliteKaleidoscopeMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVSpliteKaleidoscopeMTIFilter(
        const QVFilterClass& filterClass = QVSpliteKaleidoscopeMTIFilterClass);

    /// Keeps the value and derives `splitNumber`, in single precision.
    void setEffectValue(float value) override;

    /// Number of sectors around the circle.
    double splitNumber() const { return splitNumber_; }
    void setSplitNumber(double count) { splitNumber_ = count; }

    /// "splitNumber".
    MTIParameters parameters() const override;

  private:
    double splitNumber_;
};

}  // namespace qv
