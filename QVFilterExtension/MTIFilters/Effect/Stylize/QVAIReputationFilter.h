#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIReputationFilterClass;

/// The picture repeated along a line: four cards in a row, each behind the one before, 0.87 times as large,
/// fainter and colder, over a dark enlargement. The first has 1 / (1 + 1.4 d) of the frame's size at the
/// distance d. The strength is the direction of the row: a full turn anticlockwise from the right. A distance
/// of 0 leaves the frame as it is.
class QVAIReputationFilter : public QVEffectMTIFilter {
  public:
    explicit QVAIReputationFilter(const QVFilterClass& filterClass = QVAIReputationFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// Distance of two repetitions, half shorter sides of the frame.
    double distanceValue() const { return distanceValue_; }
    void setDistanceValue(double distance) { distanceValue_ = distance; }

    /// Tells that the picture is cut out and has no cards, so that its corners need not be looked at.
    void setCutOut(bool cutOut) { cutOut_ = cutOut; }

    /// "angleValue" (turns), "distanceValue", "cutOut" (0 or 1).
    MTIParameters parameters() const override;

  private:
    double distanceValue_ = 0.3;
    bool cutOut_ = false;
};

}  // namespace qv
