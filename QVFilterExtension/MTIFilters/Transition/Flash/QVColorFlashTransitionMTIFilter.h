#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVColorFlashTransitionMTIFilterClass;

/// Warm, magenta and cyan light leaks in, sweeps over the frame and takes the outgoing clip with it.
class QVColorFlashTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVColorFlashTransitionMTIFilter(
        const QVFilterClass& filterClass = QVColorFlashTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Linear: the light has its own timing.
    float newProgress() const override { return progress(); }
};

}  // namespace qv
