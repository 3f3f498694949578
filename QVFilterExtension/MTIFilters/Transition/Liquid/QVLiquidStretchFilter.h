#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVFishEyeMirrorFilter.h"

namespace qv {

extern const QVFilterClass QVLiquidStretchFilterClass;

/// The picture is pulled to one side like a viscous liquid, its mirrored surroundings following, and its
/// colours part; the next clip flows in behind it.
class QVLiquidStretchFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVLiquidStretchFilter(const QVFilterClass& filterClass = QVLiquidStretchFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// "progress" (linear), "RGBSeperate" (0 to 1 and back).
    MTIParameters parameters() const override;
    MTIImage outputImage() override;
    /// Lays mirror images around the picture; set anew for each frame.
    const QVFishEyeMirrorFilter& mirrorFilter() const { return mirrorFilter_; }

  private:
    QVFishEyeMirrorFilter mirrorFilter_;
};

}  // namespace qv
