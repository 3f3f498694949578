#pragma once

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
    /// How much of the way from the luma, 0, to a print in black ink, 1: a grey of 0.16 or less is black
    /// then, 0.7 or more is white.
    float contrast() const { return contrast_; }
    void setContrast(float contrast) { contrast_ = contrast; }

    /// "strength", "contrast".
    MTIParameters parameters() const override;

    MTIImage outputImage() override;

  private:
    float strength_ = 1, contrast_ = 0;
};

}  // namespace qv
