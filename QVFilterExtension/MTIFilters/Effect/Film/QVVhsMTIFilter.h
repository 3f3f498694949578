#pragma once

#include "QVFilterCore/QVMTITwoInputFilter.h"

namespace qv {

extern const QVFilterClass QVVhsMTIFilterClass;

/// A picture off a video cassette. The first image is the picture, the second is what the tape does to it, of
/// any size; without one the tape is new:
///
/// - red: noise of the brightness about 0.25, up to 2.4 times as far as it is off that;
/// - green: how far a line is thrown sideways, 0.5 being not at all, 0 and 1 an eighth of the frame's width;
/// - blue: how much of the colour is lost.
///
/// Without anything on the tape, brightness is soft and rings by 1/480 of the frame's shorter side, and
/// colour bleeds to the right over 1/40 of it. The lowest 1.4 % of the lines are those at which the heads
/// switch: bent, and full of the tape's noise.
class QVVhsMTIFilter : public QVMTITwoInputFilter {
  public:
    explicit QVVhsMTIFilter(const QVFilterClass& filterClass = QVVhsMTIFilterClass)
        : QVMTITwoInputFilter(filterClass) {}

    /// Strength of all of it, 0..1; 0 leaves the picture.
    float effectValue() const { return effectValue_; }
    void setEffectValue(float value) { effectValue_ = value; }

    MTIParameters parameters() const override { return {{"effectValue", effectValue_}}; }
    MTIImage outputImage() override;

  private:
    float effectValue_ = 0.5f;
};

}  // namespace qv
