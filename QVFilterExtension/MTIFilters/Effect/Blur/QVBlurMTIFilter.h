#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBlurMTIFilterClass;

/// The whole picture out of focus, as a fast lens draws it: lights open into discs, and the focus breathes.
///
/// - The disc's radius is 0.045 of the frame's shorter side times the strength; 0 leaves the frame as it is.
/// - Every 4 seconds the focus comes back: the disc shrinks to 0.3 of that and opens again. It is widest at
/// time
///   0. As with a real lens the view narrows with it, by up to 3 % times the strength.
/// - Lights weigh more than what is around them: 0.05 + 4 luma⁶ of a pixel.
/// - The disc is gathered at half size: 19 taps on two rings, each of them the mean of 7 around it.
class QVBlurMTIFilter : public QVEffectMTIFilter {
  public:
    /// Seconds from one opening of the disc to the next.
    static constexpr double kPeriod = 4;

    explicit QVBlurMTIFilter(const QVFilterClass& filterClass = QVBlurMTIFilterClass);

    /// Keeps the value and derives `discRadius`.
    void setEffectValue(float value) override;

    /// The widest disc's radius, shorter sides of the frame.
    double discRadius() const { return discRadius_; }
    /// How far the lens is out of focus at a time, 0.3..1.
    static double defocus(double seconds);

    MTIImage outputImage() override;

  private:
    double discRadius_;
};

}  // namespace qv
