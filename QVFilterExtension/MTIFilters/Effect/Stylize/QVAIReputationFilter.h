#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIReputationFilterClass;

/// The picture repeated along a line, each repetition fainter than the one before. The strength is the
/// direction of the line: a full turn anticlockwise from the right.
class QVAIReputationFilter : public QVEffectMTIFilter {
  public:
    explicit QVAIReputationFilter(const QVFilterClass& filterClass = QVAIReputationFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// Distance of two repetitions, half shorter sides of the frame.
    double distanceValue() const { return distanceValue_; }
    void setDistanceValue(double distance) { distanceValue_ = distance; }

    /// "angleValue" (turns), "distanceValue".
    MTIParameters parameters() const override;

  private:
    double distanceValue_ = 0.3;
};

}  // namespace qv
