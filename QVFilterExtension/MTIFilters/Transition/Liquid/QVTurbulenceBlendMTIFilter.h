#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVTurbulenceBlendMTIFilterClass;

/// A dissolve in which the brighter clip comes through first, strongest in the middle.
class QVTurbulenceBlendMTIFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVTurbulenceBlendMTIFilter(const QVFilterClass& filterClass = QVTurbulenceBlendMTIFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// "progress" (linear), "alphaChange" (0 to 1 and back, a double).
    MTIParameters parameters() const override;
};

}  // namespace qv
