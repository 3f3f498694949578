#pragma once

#include <memory>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVEffectMTIFilter.h"
#include "QVFilterCore/QVMotionBlurMTIFilter.h"

namespace qv {

extern const QVFilterClass QVMotionBlurEffectMTIFilterClass;

/// A smear along a direction, slightly enlarged, screened over the sharp picture, and all of it a little
/// darker. It is a smear of the lights alone (`QVMotionBlurMTIFilter::lightsOnly`), so that these streak and
/// the other tones come out as they were. The smear lies on the horizontal.
///
/// Until `setEffectValue` is called, `scale` and `opacity` have values of their own that belong to no
/// strength.
class QVMotionBlurEffectMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVMotionBlurEffectMTIFilter(const QVFilterClass& filterClass = QVMotionBlurEffectMTIFilterClass);

    /// Keeps the value and derives `scale` and `opacity`: below `kDefaultEffectValue` the smear is larger
    /// than the picture and faint, from there on it has the picture's size and is opaque.
    void setEffectValue(float value) override;

    /// Whole length of the smear in pixels: 48/750 of the input's width at full strength.
    virtual double blurSize() const;
    /// Direction of the smear, radians anticlockwise from the horizontal.
    double blurAngle() const { return blurAngle_; }
    void setBlurAngle(double radians) { blurAngle_ = radians; }
    /// Enlargement of the smear.
    double scale() const { return scale_; }
    void setScale(double scale) { scale_ = scale; }
    /// Opacity of the smear, 0..1.
    double opacity() const { return opacity_; }
    void setOpacity(double opacity) { opacity_ = opacity; }

    /// The parts, as they were left by the last `outputImage`.
    const QVMotionBlurMTIFilter& blurFilter() const { return blurFilter_; }
    const MTIBlendFilter& blendFilter() const { return blendFilter_; }
    const MTIOpacityFilter& opacityFilter() const { return opacityFilter_; }
    /// Made anew for each frame; nil before the first.
    const std::shared_ptr<const MTIExposureFilter>& exposureFilter() const { return exposureFilter_; }

    MTIImage outputImage() override;

  protected:
    /// The smear at an angle, over the picture's own size.
    MTIImage smear(double angle);
    /// The image at an opacity.
    MTIImage faded(MTIImage image, double opacity);
    /// The smear screened over the picture, darkened.
    MTIImage screened(MTIImage smear);

  private:
    QVMotionBlurMTIFilter blurFilter_;
    MTIBlendFilter blendFilter_{MTIBlendMode::screen};
    MTIOpacityFilter opacityFilter_;
    std::shared_ptr<const MTIExposureFilter> exposureFilter_;
    double blurAngle_ = 0;
    double scale_ = 1.3;
    double opacity_ = 1.0;
};

}  // namespace qv
