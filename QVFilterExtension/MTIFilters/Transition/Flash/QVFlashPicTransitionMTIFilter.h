#pragma once

#include <cstdint>

#include "Platform/Drawing/UIImage.h"
#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFlashPicTransitionMTIFilterClass;

/// A cut in the middle under flickering light: a picture of light, warped, is screened over the clip on and
/// off, ever more often towards the cut, and around the cut the picture itself flares up. The same progress
/// of the same span flickers alike.
class QVFlashPicTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    /// With the light that comes with the library.
    explicit QVFlashPicTransitionMTIFilter(
        const QVFilterClass& filterClass = QVFlashPicTransitionMTIFilterClass);
    /// With light of the host's own, on black.
    explicit QVFlashPicTransitionMTIFilter(
        const UIImage& image, const QVFilterClass& filterClass = QVFlashPicTransitionMTIFilterClass);

    /// The light; without one the cut only flares.
    const MTIImage& srcLightPic() const { return srcLightPic_; }
    void setSrcLightPic(MTIImage image) { srcLightPic_ = std::move(image); }

    /// A random number 0..2³¹−1 of a moment and the span: `t` is the progress, and other values of `off` give
    /// other numbers.
    std::int32_t gRandonm(double t, std::int64_t off) const;

    /// Derives the three values below, so the span has to be set before.
    void setProgress(float progress) override;

    /// How much of the light shows, 0..1.
    double alpha() const { return alpha_; }
    void setAlpha(double alpha) { alpha_ = alpha; }
    /// Stops by which the picture flares up.
    double brightness() const { return brightness_; }
    void setBrightness(double stops) { brightness_ = stops; }
    /// Seconds; the state of the warp, another one every frame.
    double time() const { return time_; }
    void setTime(double seconds) { time_ = seconds; }

    /// Shows the outgoing clip up to the middle and including it, the incoming one after it; nil when that
    /// one is nil.
    MTIImage outputImage() override;

  private:
    MTIImage srcLightPic_;
    double alpha_ = 0, brightness_ = 0, time_ = 0;
};

}  // namespace qv
