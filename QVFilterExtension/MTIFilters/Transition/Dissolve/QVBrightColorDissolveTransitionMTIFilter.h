#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBrightColorDissolveTransitionMTIFilterClass;

/// A dissolve by addition: the incoming clip's light is added to the outgoing one's, which then goes.
/// Brightest in the middle, where both are at full strength.
class QVBrightColorDissolveTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVBrightColorDissolveTransitionMTIFilter(
        const QVFilterClass& filterClass = QVBrightColorDissolveTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    MTIImage outputImage() override;
};

}  // namespace qv
