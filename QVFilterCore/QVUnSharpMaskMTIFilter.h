#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVUnSharpMaskMTIFilterClass;

/// Sharpens: adds the difference between the picture and its Gaussian blur. Flat areas and alpha stay as they
/// are.
class QVUnSharpMaskMTIFilter : public QVMTIOneInputFilter {
  public:
    explicit QVUnSharpMaskMTIFilter(const QVFilterClass& filterClass = QVUnSharpMaskMTIFilterClass)
        : QVMTIOneInputFilter(filterClass) {
        setRadius(2);
    }

    /// Factor of the difference; 0 returns the input itself.
    float intensity() const { return intensity_; }
    void setIntensity(float intensity) { intensity_ = intensity; }
    /// Standard deviation of the blur, pixels; 0 returns the input itself.
    float radius() const { return blurFilter_.radius(); }
    void setRadius(float pixels) { blurFilter_.setRadius(pixels); }

    MTIParameters parameters() const override { return {{"intensity", intensity_}}; }
    MTIImage outputImage() override;

  private:
    MTIGaussianBlurFilter blurFilter_;
    float intensity_ = 0.5f;
};

}  // namespace qv
