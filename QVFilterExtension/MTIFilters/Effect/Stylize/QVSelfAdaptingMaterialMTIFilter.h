#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSelfAdaptingMaterialMTIFilterClass;

/// The picture embossed in a material: a picture of the material is fitted to the frame's shape, bends with
/// the shapes that the frame's luminance draws, and takes its light from there. A strength of 0 leaves the
/// frame as it is.
///
/// - The material covers the frame at its own proportions, its middle on the frame's.
/// - It is displaced by 0.1 of the slope of the luminance over 4 units of 1/1080 of the shorter side, and by
/// 0.03
///   from black to white, shorter sides each; it wanders on a circle of 0.006 in 8 seconds.
/// - Its light is 0.16 + 1.1 of the luminance, hardened by half of a smooth step. A lamp that goes around the
/// picture
///   in 8 seconds strikes highlights off the slopes.
/// - Of it, s (1.5 − 0.5 s) lies over the frame at the strength s; warm tones, such as those of skin, keep up
/// to 60 %
///   (1 − s²) of that for themselves.
class QVSelfAdaptingMaterialMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVSelfAdaptingMaterialMTIFilter(
        const QVFilterClass& filterClass = QVSelfAdaptingMaterialMTIFilterClass);

    /// Takes a material of the bundle: 0 holographic foil, 1 gold leaf, 2 marble; or 3, that of the
    /// host, foil without one. Other levels are ignored.
    void setLevel(std::int64_t level) override;

    /// A material of the host's, of any size, for level 3.
    const MTIImage& materialImage() const { return materialImage_; }
    void setMaterialImage(MTIImage image) { materialImage_ = std::move(image); }

    /// "effectValue", "turn" (of the lamp, turns).
    MTIParameters parameters() const override;
    /// Nil without the frame, or without the material in the bundle.
    MTIImage outputImage() override;

  private:
    MTIImage materialImage_;
};

}  // namespace qv
