#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVWhiteFlashTransitionMTIFilterClass;

/// A flash of white light: the exposure rises until everything is white, and falls on the incoming clip.
class QVWhiteFlashTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVWhiteFlashTransitionMTIFilter(
        const QVFilterClass& filterClass = QVWhiteFlashTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Linear: the light has its own timing.
    float newProgress() const override { return progress(); }
};

}  // namespace qv
