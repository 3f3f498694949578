#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFilmTransitionAssistFilterClass;

/// One pass over the outgoing frame, as the film transitions chain them. The incoming frame and the progress
/// do not count.
class QVFilmTransitionAssistFilter : public QVTransitionMTIFilter {
  public:
    explicit QVFilmTransitionAssistFilter(
        const QVFilterClass& filterClass = QVFilmTransitionAssistFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Empty, unless a subclass has a value to hand on.
    MTIParameters parameters() const override { return {}; }
    MTIImage outputImage() override;
};

}  // namespace qv
