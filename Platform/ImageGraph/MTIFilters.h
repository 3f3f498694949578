#pragma once

#include <optional>
#include <string_view>

#include "Platform/ImageGraph/MTIImage.h"

/// The stock filters: small objects that a host or another filter configures and asks for an image. Each output is
/// lazy, has the size of its (background) input unless stated otherwise, and is nil when a required input is nil.
/// Colours are processed gamma encoded. A filter is used by one thread at a time.
namespace qv {

/// Common part of the filters over one image.
class MTIUnaryFilter {
  public:
    /// The picture to work on.
    void setInputImage(MTIImage image) { inputImage_ = std::move(image); }
    const MTIImage& inputImage() const { return inputImage_; }
    /// Format of the result's texture; `unspecified` is the context's working format.
    void setOutputPixelFormat(MTIPixelFormat format) { outputPixelFormat_ = format; }
    MTIPixelFormat outputPixelFormat() const { return outputPixelFormat_; }

  protected:
    ~MTIUnaryFilter() = default;
    /// What the setters were given.
    MTIImage inputImage_;
    MTIPixelFormat outputPixelFormat_ = MTIPixelFormat::unspecified;
};

/// Multiplies alpha (and the premultiplied colour with it) by 0..1. An opacity of 1 returns the input itself.
class MTIOpacityFilter : public MTIUnaryFilter {
  public:
    /// 0..1; 1 at first.
    void setOpacity(float opacity) { opacity_ = opacity; }
    float opacity() const { return opacity_; }
    MTIImage outputImage() const;

  private:
    float opacity_ = 1;
};

/// Multiplies the colour by 2^exposure.
class MTIExposureFilter : public MTIUnaryFilter {
  public:
    /// Stops; 0 at first, which returns the input itself.
    void setExposure(float exposure) { exposure_ = exposure; }
    float exposure() const { return exposure_; }
    MTIImage outputImage() const;

  private:
    float exposure_ = 0;
};

/// Adds −1..1 to the colour.
class MTIBrightnessFilter : public MTIUnaryFilter {
  public:
    /// −1..1; 0 at first, which returns the input itself.
    void setBrightness(float brightness) { brightness_ = brightness; }
    float brightness() const { return brightness_; }
    MTIImage outputImage() const;

  private:
    float brightness_ = 0;
};

/// Moves the colour away from its BT.709 luma: 0 is grey, 1 unchanged, above 1 stronger.
class MTISaturationFilter : public MTIUnaryFilter {
  public:
    /// 0 or more; 1 at first, which returns the input itself.
    void setSaturation(float saturation) { saturation_ = saturation; }
    float saturation() const { return saturation_; }
    MTIImage outputImage() const;

  private:
    float saturation_ = 1;
};

/// Gaussian blur; `radius` is the standard deviation in pixels, edges are clamped. A radius that is not above 0
/// (or not finite) returns the input itself.
class MTIGaussianBlurFilter : public MTIUnaryFilter {
  public:
    /// Standard deviation, pixels; 0 at first.
    void setRadius(float radius) { radius_ = radius; }
    float radius() const { return radius_; }
    MTIImage outputImage() const;

  private:
    float radius_ = 0;
};

/// Part of an image, in pixels or in fractions of its size; origin top left.
struct MTICropRegion {
    CGRect bounds{{0, 0}, {1, 1}};  ///< the region; all of the image at first
    bool fractional = true;         ///< whether `bounds` are fractions of the image's size
};

/// A region in pixels.
MTICropRegion MTICropRegionMake(double x, double y, double width, double height);
/// A region in fractions of the image, 0..1.
MTICropRegion MTICropRegionMakeFractional(double x, double y, double width, double height);

/// Cuts a region out; bilinear, transparent where the region leaves the image. The result's size is the region's times
/// `scale`, rounded to nearest; nil when that is empty.
class MTICropFilter : public MTIUnaryFilter {
  public:
    /// The region to cut out; all of the image at first.
    void setCropRegion(const MTICropRegion& region) { region_ = region; }
    const MTICropRegion& cropRegion() const { return region_; }
    /// How much larger the result is than the region; 1 at first.
    void setScale(float scale) { scale_ = scale; }
    float scale() const { return scale_; }
    MTIImage outputImage() const;

  private:
    MTICropRegion region_;
    float scale_ = 1;
};

/// Blend modes of the W3C Compositing and Blending recommendation, and saturating addition and subtraction.
enum class MTIBlendMode {
    normal, multiply, screen, overlay, darken, lighten, colorDodge, colorBurn, hardLight, softLight, difference,
    exclusion, hue, saturation, color, luminosity, add, subtract,
};
/// Number of blend modes, whose values count from 0.
inline constexpr int kBlendModeCount = 18;

/// "Normal", "ColorDodge", …
std::string_view blendModeName(MTIBlendMode mode);

/// Lays `inputImage` (the source) over `inputBackgroundImage` (the backdrop) in a blend mode with source-over
/// compositing. The result has the backdrop's size; the source is stretched over it.
class MTIBlendFilter : public MTIUnaryFilter {
  public:
    /// A filter for one blend mode.
    explicit MTIBlendFilter(MTIBlendMode mode) : mode_(mode) {}
    /// The mode that it was made for.
    MTIBlendMode blendMode() const { return mode_; }
    /// What lies below, and gives the result its size.
    void setInputBackgroundImage(MTIImage image) { background_ = std::move(image); }
    const MTIImage& inputBackgroundImage() const { return background_; }
    /// 0..1, multiplies the source's alpha.
    void setIntensity(float intensity) { intensity_ = intensity; }
    float intensity() const { return intensity_; }
    MTIImage outputImage() const;

  private:
    MTIBlendMode mode_;
    MTIImage background_;
    float intensity_ = 1;
};

/// Which component of a mask's colour is read.
enum class MTIColorComponent { red = 0, green = 1, blue = 2, alpha = 3 };
/// Whether a mask is read as it is or inverted.
enum class MTIMaskMode { normal = 0, oneMinusMaskValue = 1 };

/// An image read as a mask: one component of its colour, straight or inverted.
struct MTIMask {
    MTIImage content;                                      ///< any size; stretched over the background
    MTIColorComponent component = MTIColorComponent::red;  ///< which of its components counts
    MTIMaskMode mode = MTIMaskMode::normal;                ///< straight or inverted
};

/// Mixes premultiplied `inputImage` over the background where the mask is white, the background where it is black.
/// The result has the background's size. Nil when any of the three is nil.
class MTIBlendWithMaskFilter : public MTIUnaryFilter {
  public:
    /// Shows where the mask is black, and gives the result its size.
    void setInputBackgroundImage(MTIImage image) { background_ = std::move(image); }
    const MTIImage& inputBackgroundImage() const { return background_; }
    /// Where the input shows.
    void setInputMask(MTIMask mask) { mask_ = std::move(mask); }
    const MTIMask& inputMask() const { return mask_; }
    MTIImage outputImage() const;

  private:
    MTIImage background_;
    MTIMask mask_;
};

}  // namespace qv
