#pragma once

#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVHueMTIFilterClass;

/// Turns all hues by one angle: red goes to green at 2π/3, to blue at 4π/3. Greys keep their place.
///
/// The colour turns about the grey axis of the RGB cube. With `keepsLuma` it is then shifted along that axis
/// to its own BT.709 luma, so that blues do not turn into glaring yellows; what would leave 0..1 is drawn
/// towards its grey, which keeps hue and luma. Without, pure colours turn into equally pure ones.
class QVHueMTIFilter : public QVMTIOneInputFilter {
  public:
    explicit QVHueMTIFilter(const QVFilterClass& filterClass = QVHueMTIFilterClass)
        : QVMTIOneInputFilter(filterClass) {}

    /// Radians; whole turns return the input itself.
    float hue() const { return hue_; }
    void setHue(float radians) { hue_ = radians; }
    bool keepsLuma() const { return keepsLuma_; }
    void setKeepsLuma(bool keepsLuma) { keepsLuma_ = keepsLuma; }

    /// The rows of the colour matrix.
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    float hue_ = 0;
    bool keepsLuma_ = true;
};

}  // namespace qv
