#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVFishEyeBlurFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVFishEyeMirrorFilter.h"

namespace qv {

extern const QVFilterClass QVFishEyeRollFilterClass;

/// A band of mirrored copies rolls by behind a fisheye lens, ever faster and smaller, and slows down at the
/// next clip.
class QVFishEyeRollFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVFishEyeRollFilter(const QVFilterClass& filterClass = QVFishEyeRollFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// "progress" (eased in two halves).
    MTIParameters parameters() const override;
    MTIImage outputImage() override;
    /// The band of copies, and its smear; set anew for each frame.
    const QVFishEyeMirrorFilter& mirrorFilter() const { return mirrorFilter_; }
    const QVFishEyeBlurFilter& blurFilter() const { return blurFilter_; }

  private:
    QVFishEyeMirrorFilter mirrorFilter_;
    QVFishEyeBlurFilter blurFilter_;
};

}  // namespace qv
