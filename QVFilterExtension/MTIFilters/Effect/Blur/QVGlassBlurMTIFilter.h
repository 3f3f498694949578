#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVGlassBlurMTIFilterClass;

/// The picture behind reeded glass. Ribs 54/1080 of the frame's shorter side wide are lenses that spread what
/// is behind them, at their edges by 1.15 of up to 65/1080, and scatter it over a quarter of that. Window
/// light lies along their edges. A strength of 0 leaves the frame as it is.
class QVGlassBlurMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVGlassBlurMTIFilter(const QVFilterClass& filterClass = QVGlassBlurMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// "filterMixDistance", in 1/1080 of the frame's shorter side.
    MTIParameters parameters() const override;
};

}  // namespace qv
