#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidTransitionMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVRotationBlurFilter.h"

namespace qv {

extern const QVFilterClass QVRotationWarpFilterClass;

/// The picture is wound up around its middle, and the next one unwinds.
class QVRotationWarpFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVRotationWarpFilter(const QVFilterClass& filterClass = QVRotationWarpFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// "progress" (linear), "wrapWeight" (0 to 0.5 while winding up, on to 1 while unwinding).
    MTIParameters parameters() const override;
    MTIImage outputImage() override;
    /// Smears the result along its arcs; set anew for each frame.
    const QVRotationBlurFilter& blurFilter() const { return blurFilter_; }

  private:
    QVRotationBlurFilter blurFilter_;
};

}  // namespace qv
