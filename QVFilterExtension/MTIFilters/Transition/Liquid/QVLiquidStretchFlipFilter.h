#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVLiquidStretchFlipFilterClass;

/// The picture mirrored left to right.
class QVLiquidStretchFlipFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVLiquidStretchFlipFilter(const QVFilterClass& filterClass = QVLiquidStretchFlipFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// None.
    MTIParameters parameters() const override { return {}; }
};

}  // namespace qv
