#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVPaperDivisionFilterClass;

/// A frame torn in two along a line from its top to its bottom: `inputImage1` is the piece on the line's
/// left, whose torn edge lies over `inputImage2` and casts a soft shadow on it. Beyond its points the line
/// goes on straight.
class QVPaperDivisionFilter : public QVTransitionMTIFilter {
  public:
    explicit QVPaperDivisionFilter(const QVFilterClass& filterClass = QVPaperDivisionFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Where the tear begins and ends, fractions of the frame from its top left. Until both are set, and
    /// where they coincide, the line is upright through the first.
    const MTIVector& pointTopVector() const { return pointTopVector_; }
    void setPointTopVector(MTIVector point) { pointTopVector_ = point; }
    const MTIVector& pointBotVector() const { return pointBotVector_; }
    void setPointBotVector(MTIVector point) { pointBotVector_ = point; }

    /// "topPoint", "botPoint".
    MTIParameters parameters() const override;

  private:
    MTIVector pointTopVector_, pointBotVector_;
};

}  // namespace qv
