#pragma once

#include "QVFilterCore/QVAdjustValue.h"
#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVAdjustMTIFilterClass;

/// Warmth and brightness.
///
/// Warmth scales red up and blue down, or the reverse, with factors that leave the luma of greys alone: ±1 is
/// about the step between daylight and a bulb. Brightness moves the middle tones by b/(b + (1 − b)·k) with k
/// = 4^−brightness, which keeps black, white and the order between them: +1 lifts middle grey to 0.8, −1
/// lowers it to 0.2. With both at 0 the result is the input itself.
class QVAdjustMTIFilter : public QVMTIOneInputFilter {
  public:
    /// A filter with these settings.
    explicit QVAdjustMTIFilter(const QVAdjustValue& value,
                               const QVFilterClass& filterClass = QVAdjustMTIFilterClass)
        : QVMTIOneInputFilter(filterClass), adjustValue_(value) {}
    explicit QVAdjustMTIFilter(const QVFilterClass& filterClass = QVAdjustMTIFilterClass)
        : QVAdjustMTIFilter(QVAdjustValue(), filterClass) {}

    /// The settings; `sharpen` is not read.
    const QVAdjustValue& adjustValue() const { return adjustValue_; }
    void setAdjustValue(const QVAdjustValue& value) { adjustValue_ = value; }

    /// −1 cool .. 1 warm.
    float warmth() const { return adjustValue_.warmth(); }
    void setWarmth(float warmth) { adjustValue_.setWarmth(warmth); }
    /// −1 dark .. 1 bright.
    float brightness() const { return adjustValue_.brightness(); }
    void setBrightness(float brightness) { adjustValue_.setBrightness(brightness); }

    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    QVAdjustValue adjustValue_;
};

}  // namespace qv
