#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFishEyeMirrorFilterClass;

/// A row of copies of the picture, every other one mirrored, that can be moved along. With one copy and
/// whole even distances it is the picture itself.
class QVFishEyeMirrorFilter : public QVLiquidTransitionMTIFilter {
  public:
    explicit QVFishEyeMirrorFilter(const QVFilterClass& filterClass = QVFishEyeMirrorFilterClass)
        : QVLiquidTransitionMTIFilter(filterClass) {}

    /// Copies along each side of the frame.
    float mirrorNumber() const { return mirrorNumber_; }
    void setMirrorNumber(float number) { mirrorNumber_ = number; }
    /// How far the frame moves over the copies to the right, in widths of a copy.
    float moveDistance() const { return moveDistance_; }
    void setMoveDistance(float distance) { moveDistance_ = distance; }

    /// "mirrorNum" (that is `mirrorNumber`), "distance" (that is `moveDistance`).
    MTIParameters parameters() const override;

  private:
    float mirrorNumber_ = 1, moveDistance_ = 0;
};

}  // namespace qv
