#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVGhostMTIFilterClass;

/// The picture's ghost leaves it in the moonlight: a pale copy rises, swells, wavers and dissolves, and
/// before it is gone the next one rises. A strength of 0 leaves the frame as it is.
///
/// - A ghost lives 3.2 seconds; the second is half a life behind the first. Its opacity is 3.2 l (1 − l) of
///   `ghostOpacity` at the share l of its life.
/// - Meanwhile it rises by `ghostDistance` and grows by 30 % about a point a quarter below the middle, and
///   trails three echoes of itself, up to 0.07 of the shorter side long.
/// - It is 60 % colourless, tinted (0.95, 1.12, 1.22).
/// - The scene below loses half of its light and 60 % of its colour at full strength.
class QVGhostMTIFilter : public QVEffectMTIFilter {
  public:
    /// Seconds that a ghost lives.
    static constexpr double kLife = 3.2;

    explicit QVGhostMTIFilter(const QVFilterClass& filterClass = QVGhostMTIFilterClass);

    /// Keeps the value and derives `ghostOpacity` and `ghostDistance`.
    void setEffectValue(float value) override;

    /// Opacity of a ghost at its height, 0..1: the root of the strength.
    double ghostOpacity() const { return ghostOpacity_; }
    /// How far a ghost rises, shorter sides of the frame: 0.1 to 0.3.
    double ghostDistance() const { return ghostDistance_; }

    /// "effectValue", "ghostOpacity", "ghostDistance", "life" (of the first ghost, 0..1).
    MTIParameters parameters() const override;

  private:
    double ghostOpacity_, ghostDistance_;
};

}  // namespace qv
