#pragma once

#include <optional>
#include <vector>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"
#include "QVFilterCore/QVSpiritFilter.h"

namespace qv {

extern const QVFilterClass QVCameraRECFilterClass;

/// A camcorder's viewfinder at the start of a recording: the picture leaps closer, out of focus, while the
/// corner brackets part and close, then snaps back and stays sharp under "REC" and a blinking red dot.
///
/// Times are steps of the 61 that a clip has, lengths are points of the viewfinder: a 375th of the frame's
/// shorter side, 1.3 times as large. Strength, 0..1, sets how far out of focus the picture goes and how fast
/// the dot blinks: every 2 s, 1 s, 0.5 s at strengths 0, 0.5, 1. On a photo it is on. Layers whose asset is
/// missing are left out.
class QVCameraRECFilter : public QVProgressBasedEffectMTIFilter {
  public:
    explicit QVCameraRECFilter(const QVFilterClass& filterClass = QVCameraRECFilterClass)
        : QVProgressBasedEffectMTIFilter(filterClass) {}

    /// Drops the caption and the dots when the size changes.
    void setInputImage(MTIImage image) override;

    /// A round dot of 22 points in the middle of a canvas of twice that; nil where that has no pixels.
    UIImage getPointWithColor(const UIColor& color) const;
    /// The dots as textures, kept for the size; nil where they have no pixels.
    const SpiritParam::Texture& redSpotTexture();
    const SpiritParam::Texture& whiteSpotTexture();
    /// A layer of the frame's size with the caption, kept for the size.
    const MTIImage& constantImage();
    /// A layer of the frame's size with the four brackets as they stand now; nil without their asset.
    MTIImage getCenterImage();
    /// The enlargement about the frame's middle: 1 at rest, 1.5 in between.
    CGAffineTransform getZoomTransformWithProgress(double progress) const;
    /// The red dot beside the caption and the white one in the middle, in sprite space.
    std::vector<SpiritParam> spiritParams();

    MTIImage outputImage() override;

  private:
    SpiritParam::Texture spotTexture(const UIColor& color) const;

    MTIImage constantImage_;
    SpiritParam::Texture redSpotTexture_, whiteSpotTexture_;
    QVSpiritFilter spiritFilter_;
    MTIBlendFilter blendFilter_{MTIBlendMode::normal};
    MTIGaussianBlurFilter blurFilter_;
    /// The brackets rest for most of a clip: those drawn last, and how far apart they were.
    MTIImage centerImage_;
    std::optional<double> centerDistance_;
};

}  // namespace qv
