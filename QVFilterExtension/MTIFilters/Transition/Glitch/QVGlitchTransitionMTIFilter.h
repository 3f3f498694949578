#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVGlitchTransitionMTIFilterClass;

/// A broken digital signal: blocks and slices are displaced, colours part, and blocks of the incoming clip
/// burst in, in about fourteen steps a second of the timeline. Still at both ends.
class QVGlitchTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVGlitchTransitionMTIFilter(const QVFilterClass& filterClass = QVGlitchTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// "progress" (linear), "start", "duration", "ratio", "inputSize" (pixels of the outgoing frame).
    MTIParameters parameters() const override;
};

}  // namespace qv
