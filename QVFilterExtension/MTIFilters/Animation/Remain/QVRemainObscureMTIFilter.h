#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBlurClassFilter.h"

namespace qv {

extern const QVFilterClass QVRemainObscureMTIFilterClass;

/// The picture clears up out of a Gaussian blur of 25/720 of the frame's shorter side, or blurs away.
class QVRemainObscureMTIFilter : public QVBlurClassFilter {
  public:
    explicit QVRemainObscureMTIFilter(const QVFilterClass& filterClass = QVRemainObscureMTIFilterClass)
        : QVBlurClassFilter(filterClass) {}

    /// As it was left by the last `outputImage`.
    const MTIGaussianBlurFilter& gaussFilter() const { return gaussFilter_; }

    MTIImage outputImage() override;

  private:
    MTIGaussianBlurFilter gaussFilter_;
};

}  // namespace qv
