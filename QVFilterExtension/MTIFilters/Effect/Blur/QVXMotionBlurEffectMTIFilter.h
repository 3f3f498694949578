#pragma once

#include "QVFilterExtension/MTIFilters/Effect/Blur/QVMotionBlurEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVXMotionBlurEffectMTIFilterClass;

/// Two diagonal smears crossed into an X, over the sharp picture. `blurAngle` and `scale` have no effect.
class QVXMotionBlurEffectMTIFilter : public QVMotionBlurEffectMTIFilter {
  public:
    explicit QVXMotionBlurEffectMTIFilter(
        const QVFilterClass& filterClass = QVXMotionBlurEffectMTIFilterClass)
        : QVMotionBlurEffectMTIFilter(filterClass) {}

    /// Keeps the value and derives `opacity`.
    void setEffectValue(float value) override;
    /// 48/750 of the input's width at every strength.
    double blurSize() const override;

    MTIImage outputImage() override;
};

}  // namespace qv
