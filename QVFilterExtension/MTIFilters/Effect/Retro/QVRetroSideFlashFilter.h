#pragma once

#include <cstdint>

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRetroSideFlashFilterClass;

/// A glow that jumps about at the left edge, as light through a camera's back: strength, 0..1, sets how
/// often, from every 10 frames of 30 a second to every one. With `mixColor` two colours flash up in a short
/// burst every three seconds.
///
/// The place changes in frames that the period divides and stays between them, so a jump in time shows the
/// right place from the next change on; `settle` sets it right at once.
class QVRetroSideFlashFilter : public QVEffectMTIFilter {
  public:
    explicit QVRetroSideFlashFilter(const QVFilterClass& filterClass = QVRetroSideFlashFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// Whether there are bursts of two colours.
    bool mixColor() const { return mixColor_; }
    void setMixColor(bool mix) { mixColor_ = mix; }
    /// How far the glow reaches into the frame, in widths of it, and how far down it lies, in heights; both 0
    /// before the first frame.
    double randomX() const { return flash_.x; }
    double randomY() const { return flash_.y; }
    /// 0: no burst; 1 and 2: its two phases.
    std::int32_t sideFlashColor() const { return flash_.colorType; }

    /// Sets the place as if all frames before this one had been asked for in their order.
    void settle();

    /// "randomX", "randomY", "mixColor" and "colorType", all chosen anew.
    MTIParameters parameters() const override;

  private:
    /// Frames between two places, at least 1.
    std::int64_t period() const;
    void drawPlace(std::int64_t frame) const;

    struct Flash {
        double x = 0, y = 0;
        std::int32_t colorType = 0;
    };
    bool mixColor_ = false;
    mutable Flash flash_;
};

}  // namespace qv
