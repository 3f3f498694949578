#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSelectiveBlurMTIFilterClass;

/// Blurs the picture but for a sharp circle in its middle. The first of `extractValues`, 0..1, is the
/// strength of the blur; `kDefaultEffectValue` without one.
class QVSelectiveBlurMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVSelectiveBlurMTIFilter(const QVFilterClass& filterClass = QVSelectiveBlurMTIFilterClass);

    /// Keeps the value and derives `excludeCircleRadius`: the stronger, the smaller the sharp circle.
    void setEffectValue(float value) override;

    /// Where the blur is full, in 5/8 of the frame's diagonal: at 1 the whole frame is sharp, whatever its
    /// shape.
    double excludeCircleRadius() const { return excludeCircleRadius_; }
    void setExcludeCircleRadius(double radius) { excludeCircleRadius_ = radius; }

    /// "excludeCircleRadius", "excludeCirclePoint" (0..1, top left to bottom right) and "excludeBlurSize",
    /// over which the blur sets in.
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    double excludeCircleRadius_;
};

}  // namespace qv
