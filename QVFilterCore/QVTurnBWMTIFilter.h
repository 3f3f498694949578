#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVTurnBWMTIFilterClass;

/// Turns the picture to black and white: every colour to the grey of its BT.709 luma.
class QVTurnBWMTIFilter : public QVMTIOneInputFilter {
  public:
    explicit QVTurnBWMTIFilter(const QVFilterClass& filterClass = QVTurnBWMTIFilterClass)
        : QVMTIOneInputFilter(filterClass) {}

    /// 0 returns the input itself, 1 is fully grey.
    float strength() const { return strength_; }
    void setStrength(float strength) { strength_ = strength; }

    MTIImage outputImage() override;

  private:
    MTISaturationFilter saturationFilter_;
    float strength_ = 1;
};

}  // namespace qv
