#pragma once

namespace qv {

/// Settings of the simple adjustments. At 0, where all of them start, none changes the picture.
class QVAdjustValue {
  public:
    /// −1 cool .. 1 warm.
    float warmth() const { return warmth_; }
    void setWarmth(float warmth) { warmth_ = warmth; }
    /// −1 dark .. 1 bright; black and white stay.
    float brightness() const { return brightness_; }
    void setBrightness(float brightness) { brightness_ = brightness; }
    /// 0 .. 1; read by the adjust group.
    float sharpen() const { return sharpen_; }
    void setSharpen(float sharpen) { sharpen_ = sharpen; }

  private:
    float warmth_ = 0, brightness_ = 0, sharpen_ = 0;
};

}  // namespace qv
