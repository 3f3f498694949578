#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSplitBlurFilterClass;

/// The frame as a card before its own blurred enlargement: 0.94 of it at strength 0, 0.54 at 1. The card has
/// round corners of 0.05 of its shorter side, a bright hairline and a soft shadow, and floats: every 5
/// seconds up and down by 0.012 of the frame's shorter side. The ground is 1.25 times as large, a quarter
/// darker, and blurred with a standard deviation of 0.03 of the shorter side.
class QVSplitBlurFilter : public QVEffectMTIFilter {
  public:
    explicit QVSplitBlurFilter(const QVFilterClass& filterClass = QVSplitBlurFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// "scale" (of the card), "lift" (shorter sides).
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    MTIGaussianBlurFilter blurFilter_;
};

}  // namespace qv
