#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVTurbulenceTransitionMTIFilterClass;

/// The two clips dissolve while currents of a turbulent liquid tear the picture apart and settle again.
/// Transitions of the same duration have the same currents.
class QVTurbulenceTransitionMTIFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVTurbulenceTransitionMTIFilter(
        const QVFilterClass& filterClass = QVTurbulenceTransitionMTIFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// "progress" (eased in two halves), "iTime" (ten times the linear progress, a double), "randomMaxWarp"
    /// (a random number 0..214.7 that depends on the value of `timeRange`'s duration alone).
    MTIParameters parameters() const override;
    MTIImage outputImage() override;
};

}  // namespace qv
