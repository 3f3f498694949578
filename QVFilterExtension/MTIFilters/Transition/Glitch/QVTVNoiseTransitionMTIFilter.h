#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVTVNoiseTransitionMTIFilterClass;

/// A television set that loses one station and finds the other: snow, rolling, tearing lines, smeared colour.
class QVTVNoiseTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVTVNoiseTransitionMTIFilter(
        const QVFilterClass& filterClass = QVTVNoiseTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// "progress" (linear), "start", "duration", "ratio", "inputSize" (pixels of the outgoing frame).
    MTIParameters parameters() const override;
};

}  // namespace qv
