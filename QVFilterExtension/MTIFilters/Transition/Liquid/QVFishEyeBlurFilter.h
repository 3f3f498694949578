#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFishEyeBlurFilterClass;

/// A blur sideways and out of the middle of the frame, as of a picture that rolls by behind a lens: none at
/// the ends of the transition, strongest in the middle.
class QVFishEyeBlurFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVFishEyeBlurFilter(const QVFilterClass& filterClass = QVFishEyeBlurFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// "progress" (linear).
    MTIParameters parameters() const override { return {{"progress", progress()}}; }
};

}  // namespace qv
