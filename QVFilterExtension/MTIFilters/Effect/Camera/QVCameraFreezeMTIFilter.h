#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVCameraFreezeMTIFilterClass;

/// A shot is taken: a flash, and the picture shrinks and tilts as a print over its own blurred copy, rests,
/// and returns. Strength, 0..1, sets how long the print stays.
///
/// With a quarter `a` of what `durationProgress` leaves of the clip, the print leaves between a and 2a, at
/// 0.7 of its size and 6 degrees anticlockwise, and returns between 1 − 2a and 1 − a. It has a white border
/// 34/1080 of the frame's shorter side wide and a soft shadow around it; the flash lasts from a − 0.02, is
/// brightest at a and gone at 2a.
class QVCameraFreezeMTIFilter : public QVProgressBasedEffectMTIFilter {
  public:
    explicit QVCameraFreezeMTIFilter(const QVFilterClass& filterClass = QVCameraFreezeMTIFilterClass)
        : QVProgressBasedEffectMTIFilter(filterClass) {}

    /// What lay behind and in front in the last frame that was asked for.
    const MTIImage& backGroundImage() const { return backGroundImage_; }
    const MTIImage& freezeImage() const { return freezeImage_; }
    /// Share of the clip that is not motion at its ends, 0.17 at strength 0 and 0.5 at 1; of the last frame.
    double durationProgress() const { return durationProgress_; }

    /// A frame for the print and what blends it: kept for a host, drawn by none.
    const MTIImage& frameImage() const { return frameImage_; }
    void setFrameImage(MTIImage image) { frameImage_ = std::move(image); }
    MTIBlendFilter& frameBlendFilter() { return frameBlendFilter_; }

    /// How the print lies, by `durationProgress` and the clip's progress: its size, its tilt, and both.
    CGAffineTransform getZoomTransformWithProgress(double progress) const;
    CGAffineTransform getRotateTransformWithProgress(double progress) const;
    CGAffineTransform getTransformWithProgress(double progress) const;

    /// "progress" and "durationProgress".
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    /// 0 in place, 1 as a print: leaving less returning.
    double lift(double progress) const;

    MTIImage backGroundImage_, freezeImage_, frameImage_;
    MTIGaussianBlurFilter blurFilter_;
    MTIBlendFilter blendFilter_{MTIBlendMode::normal}, frameBlendFilter_{MTIBlendMode::normal};
    double durationProgress_ = 0;
};

}  // namespace qv
