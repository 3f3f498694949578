#pragma once

#include "QVFilterCore/QVAdjustMTIFilter.h"
#include "QVFilterCore/QVAdjustToolValue.h"
#include "QVFilterCore/QVUnSharpMaskMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAdjustGroupMTIFilterClass;

/// Tone adjustment: warmth and brightness, a luminance curve, and sharpening, in this order. What is at its
/// neutral value costs nothing; with all of it neutral the result is the input itself.
///
/// The curve changes the BT.709 luma and keeps the hue. Colourfulness goes with the luma, up to twice what it
/// was; what would leave 0..1 is drawn towards its grey. The curve is a table of 256 entries of 16 bits,
/// baked once per setting. Sharpening is an unsharp mask of 1.2 pixels of a frame whose shorter side is 1080,
/// whatever the frame's size; a `sharpen` of 1 adds the detail once again.
class QVAdjustGroupMTIFilter : public QVMTIOneInputFilter {
  public:
    /// A filter with these settings.
    explicit QVAdjustGroupMTIFilter(const QVAdjustToolValue& value,
                                    const QVFilterClass& filterClass = QVAdjustGroupMTIFilterClass)
        : QVMTIOneInputFilter(filterClass), adjustToolValue_(value) {}
    explicit QVAdjustGroupMTIFilter(const QVFilterClass& filterClass = QVAdjustGroupMTIFilterClass)
        : QVAdjustGroupMTIFilter(QVAdjustToolValue::defaultValue(), filterClass) {}

    /// The settings, which may change from frame to frame.
    const QVAdjustToolValue& adjustToolValue() const { return adjustToolValue_; }
    void setAdjustToolValue(const QVAdjustToolValue& value) { adjustToolValue_ = value; }

    MTIImage outputImage() override;

  private:
    const MTIImage& curveTable();

    QVAdjustToolValue adjustToolValue_;
    QVAdjustMTIFilter adjustFilter_;
    QVUnSharpMaskMTIFilter sharpenFilter_;
    MTIImage curveTable_;
    PGCurve curveOfTable_;
};

}  // namespace qv
