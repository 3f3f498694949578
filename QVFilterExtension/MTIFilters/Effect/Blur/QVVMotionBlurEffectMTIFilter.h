#pragma once

#include "QVFilterExtension/MTIFilters/Effect/Blur/QVMotionBlurEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVVMotionBlurEffectMTIFilterClass;

/// The smear on the vertical, never smaller than 1.1 times the picture.
class QVVMotionBlurEffectMTIFilter : public QVMotionBlurEffectMTIFilter {
  public:
    explicit QVVMotionBlurEffectMTIFilter(
        const QVFilterClass& filterClass = QVVMotionBlurEffectMTIFilterClass);

    /// Keeps the value and derives `scale` and `opacity`.
    void setEffectValue(float value) override;
};

}  // namespace qv
