#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVKaleidoscopeRotateFilter.h"

namespace qv {

extern const QVFilterClass QVKaleidoscopeChangeFilterClass;

/// A turning kaleidoscope opens over the picture and closes over the next one.
class QVKaleidoscopeChangeFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVKaleidoscopeChangeFilter(const QVFilterClass& filterClass = QVKaleidoscopeChangeFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// "progress" (eased in two halves; it reaches 0.5 and 1 early, and is 1 at the very middle).
    MTIParameters parameters() const override;
    MTIImage outputImage() override;
    /// The kaleidoscope behind the opening; set anew for each frame.
    const QVKaleidoscopeRotateFilter& kaleidoscopeMTIFilter() const { return kaleidoscopeMTIFilter_; }

  private:
    QVKaleidoscopeRotateFilter kaleidoscopeMTIFilter_;
};

}  // namespace qv
