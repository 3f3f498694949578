#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVExposureMTIFilterClass;

/// Multiplies the colour by 2^exposure; an exposure of 0 returns the input itself.
class QVExposureMTIFilter : public QVMTIOneInputFilter {
  public:
    explicit QVExposureMTIFilter(const QVFilterClass& filterClass = QVExposureMTIFilterClass)
        : QVMTIOneInputFilter(filterClass) {}

    /// Stops.
    float exposure() const { return exposureFilter_.exposure(); }
    void setExposure(float exposure) { exposureFilter_.setExposure(exposure); }

    MTIImage outputImage() override;

  private:
    MTIExposureFilter exposureFilter_;
};

}  // namespace qv
