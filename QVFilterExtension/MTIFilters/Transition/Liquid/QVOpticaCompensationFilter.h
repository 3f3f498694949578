#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVOpticaCompensationFilterClass;

/// A punch through a lens: the picture swells towards the viewer, and behind it the next one springs from
/// far away into its place.
class QVOpticaCompensationFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVOpticaCompensationFilter(const QVFilterClass& filterClass = QVOpticaCompensationFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// "progress" (linear), "transitionRhythm" (a double: 0 to 1 up to the middle, 0.5 to 1 from it on).
    MTIParameters parameters() const override;
};

}  // namespace qv
