#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSliceTransitionMTIFilterClass;

/// Strips of the incoming clip slide over the outgoing one, one after the other.
class QVSliceTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVSliceTransitionMTIFilter(const QVFilterClass& filterClass = QVSliceTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Number of strips; below 1 counts as 1.
    int count() const { return count_; }
    void setCount(int count) { count_ = count; }

    /// How far the cuts lean: pixels sideways for each pixel along the strip, 0 upright, 1 at 45 degrees.
    double slope() const { return slope_; }
    void setSlope(double slope) { slope_ = slope; }

    /// Which of the ways named in the class record; another value means the first.
    int type() const { return type_; }
    void setType(int type) { type_ = type; }

    /// `easeInOutHeavy` of `progress`.
    float newProgress() const override { return easeInOutHeavy(progress()); }
    /// "progress" (eased), "start", "duration", "count", "slope", "type".
    MTIParameters parameters() const override;

  private:
    int count_ = 2;
    double slope_ = 0;
    int type_ = 0;
};

}  // namespace qv
