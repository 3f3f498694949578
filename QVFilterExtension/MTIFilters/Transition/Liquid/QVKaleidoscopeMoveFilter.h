#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVKaleidoscopeMoveFilterClass;

/// The picture folds into a kaleidoscope that glides by with parted colours, and unfolds as the next clip.
class QVKaleidoscopeMoveFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVKaleidoscopeMoveFilter(const QVFilterClass& filterClass = QVKaleidoscopeMoveFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// "progress" (eased in two halves), "rgbWeight" (0 to 1 and back).
    MTIParameters parameters() const override;
};

}  // namespace qv
