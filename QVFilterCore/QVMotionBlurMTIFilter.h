#pragma once

#include <memory>
#include <vector>

#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVMotionBlurMTIFilterClass;

/// Smears the picture along a direction: every pixel becomes the even mean of a line of pixels with its
/// middle there. Beyond the edges the outermost pixels go on.
///
/// A line of up to 18 pixels along an axis or a diagonal, or 10 pixels in any other direction, takes one
/// pass. A longer one takes three, up to 288 pixels, and four beyond; the longer it is, the less they cost:
/// the picture is gathered in rows along the line, reduced lengthwise to at most 18 columns to a line,
/// blurred there and spread out again. So it stays sharp across the line, and the ends of the smear run out
/// over a sixth of its length instead of being cut.
class QVMotionBlurMTIFilter : public QVMTIOneInputFilter {
  public:
    explicit QVMotionBlurMTIFilter(const QVFilterClass& filterClass = QVMotionBlurMTIFilterClass)
        : QVMTIOneInputFilter(filterClass) {}

    /// Whole length of the smear in pixels; 0 or less returns the input itself, or its lights.
    double blurSize() const { return blurSize_; }
    void setBlurSize(double pixels) { blurSize_ = pixels; }
    /// Radians, anticlockwise from the horizontal.
    double blurAngle() const { return blurAngle_; }
    void setBlurAngle(double radians) { blurAngle_ = radians; }

    /// Whether lights alone are smeared: a pixel counts by 1.2 luma², at most 1, and leaves black otherwise;
    /// where the smear is brighter than that makes the pixel below it, it is 2.8 times as much brighter. So
    /// lights streak, and other tones that it is screened over stay about as they are. Short lines off the
    /// grid do not streak. False at first.
    bool lightsOnly() const { return lightsOnly_; }
    void setLightsOnly(bool lightsOnly) { lightsOnly_ = lightsOnly; }

    MTIImage outputImage() override;

  private:
    struct Line;
    /// A pass over `images`; for lights alone when the last of them is the input.
    MTIImage applied(std::shared_ptr<const MTIRenderPipelineKernel> kernel, std::vector<MTIImage> images,
                     CGSize size, MTIParameters parameters) const;
    MTIImage sampled() const;
    MTIImage smearedByColumns(const Line& line) const;

    double blurSize_ = 0, blurAngle_ = 0;
    bool lightsOnly_ = false;
};

}  // namespace qv
