#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFishEyeLensFilterClass;

/// A glass ball with coloured rims grows out of the middle of the frame; the next clip is seen through it.
class QVFishEyeLensFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVFishEyeLensFilter(const QVFilterClass& filterClass = QVFishEyeLensFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// "progress" (0 to 0.3 in the first quarter, then on to 1), "rgbWeight" (0 to 1 in the first quarter,
    /// then back to 0).
    MTIParameters parameters() const override;
};

}  // namespace qv
