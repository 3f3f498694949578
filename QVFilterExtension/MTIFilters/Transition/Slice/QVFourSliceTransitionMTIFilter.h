#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFourSliceTransitionMTIFilterClass;

/// Four quarters, each a window: the outgoing clip leaves it and the incoming one follows, in each quarter
/// another way, like the sails of a windmill.
class QVFourSliceTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVFourSliceTransitionMTIFilter(
        const QVFilterClass& filterClass = QVFourSliceTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// `progress` unchanged; the shader eases each quarter by itself.
    float newProgress() const override { return progress(); }
};

}  // namespace qv
