#pragma once

#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVFilmNoisyMTIFilterClass;

/// Film grain as a layer for its input: greys about the middle one, which an overlay blend over the picture
/// turns into grain that is strongest in the middle tones and leaves black and white alone. The layer covers
/// what the input covers and shows nothing of it; `opacity` is its alpha, and so the strength of the grain.
///
/// Grains are clumps of two sizes with a slight tinge, 1.5 and 3.4 pixels across in a frame whose shorter
/// side is 1080, and in proportion in others; below a pixel they are a pixel across and contrast less, so
/// that a preview looks like the export. A piece of 512×512 pixels is made once for each size of grain; every
/// frame shows another part of it, mirrored or not. They change 24 times a second; the same time always gives
/// the same grain.
class QVFilmNoisyMTIFilter : public QVMTIOneInputFilter {
  public:
    explicit QVFilmNoisyMTIFilter(const QVFilterClass& filterClass = QVFilmNoisyMTIFilterClass)
        : QVMTIOneInputFilter(filterClass) {}

    /// Seconds.
    double iTime() const { return iTime_; }
    void setITime(double seconds) { iTime_ = seconds; }
    /// 0..1.
    float opacity() const { return opacity_; }
    void setOpacity(float opacity) { opacity_ = opacity; }

    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    double iTime_ = 0;
    float opacity_ = 0.25f;
};

}  // namespace qv
