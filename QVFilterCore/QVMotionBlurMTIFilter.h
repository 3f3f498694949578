#pragma once

#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVMotionBlurMTIFilterClass;

/// Smears the picture along a direction: every pixel becomes the even mean of a line of pixels with its
/// middle there. Beyond the edges the outermost pixels go on.
///
/// A pass takes 8 or 16 taps. A longer line is smeared in several passes, each of which fills the gaps that
/// the one before left between its taps, so that all together are an even comb of taps at most 1.3 pixels
/// apart: one pass up to 10 pixels, two up to 160, three up to 1280.
class QVMotionBlurMTIFilter : public QVMTIOneInputFilter {
  public:
    explicit QVMotionBlurMTIFilter(const QVFilterClass& filterClass = QVMotionBlurMTIFilterClass)
        : QVMTIOneInputFilter(filterClass) {}

    /// Whole length of the smear in pixels; 0 or less returns the input itself.
    double blurSize() const { return blurSize_; }
    void setBlurSize(double pixels) { blurSize_ = pixels; }
    /// Radians, anticlockwise from the horizontal.
    double blurAngle() const { return blurAngle_; }
    void setBlurAngle(double radians) { blurAngle_ = radians; }

    MTIImage outputImage() override;

  private:
    double blurSize_ = 0, blurAngle_ = 0;
};

}  // namespace qv
