#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVGlassBlurMTIFilterClass;

/// The picture behind frosted glass, which scatters it over up to 65/1080 of the frame's shorter side. A
/// strength of 0 leaves the frame as it is.
class QVGlassBlurMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVGlassBlurMTIFilter(const QVFilterClass& filterClass = QVGlassBlurMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// "filterMixDistance", in 1/1080 of the frame's shorter side.
    MTIParameters parameters() const override;
};

}  // namespace qv
