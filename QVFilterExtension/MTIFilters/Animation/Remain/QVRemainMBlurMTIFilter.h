#pragma once

#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBlurClassFilter.h"

namespace qv {

extern const QVFilterClass QVRemainMBlurMTIFilterClass;

/// The picture comes to rest out of a sideways smear, or is swept away by it.
class QVRemainMBlurMTIFilter : public QVBlurClassFilter {
  public:
    explicit QVRemainMBlurMTIFilter(const QVFilterClass& filterClass = QVRemainMBlurMTIFilterClass)
        : QVBlurClassFilter(filterClass) {}

    /// "filterMixDistance": length of the smear, in 1/720 of the frame's shorter side; 65 to 0.
    MTIParameters parameters() const override;
};

}  // namespace qv
