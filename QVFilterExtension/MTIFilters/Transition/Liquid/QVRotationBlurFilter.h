#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRotationBlurFilterClass;

/// A blur around the middle of the frame, as of a picture that spins: none at the ends of the transition,
/// strongest in the middle.
class QVRotationBlurFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVRotationBlurFilter(const QVFilterClass& filterClass = QVRotationBlurFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// "progress" (linear).
    MTIParameters parameters() const override { return {{"progress", progress()}}; }
};

}  // namespace qv
