#pragma once

#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Blur/QVSelectiveBlurMTIFilter.h"

namespace qv {

extern const QVFilterClass QVCameraCircleBlurFilterClass;

/// A slow push towards the middle, which stays sharp in a circle while the rest goes out of focus, and a
/// quick return to the whole, sharp picture. Strength, 0..1, is that of the blur: a 48th of the frame's
/// shorter side at 1, none at 0. It ends 35 of the clip's 61 steps in.
class QVCameraCircleBlurFilter : public QVProgressBasedEffectMTIFilter {
  public:
    explicit QVCameraCircleBlurFilter(const QVFilterClass& filterClass = QVCameraCircleBlurFilterClass);

    /// The enlargement about the frame's middle: 1 at rest, up to 1.5.
    CGAffineTransform getZoomTransformWithProgress(double progress) const;

    MTIImage outputImage() override;

  private:
    QVSelectiveBlurMTIFilter blurFilter_;
};

}  // namespace qv
