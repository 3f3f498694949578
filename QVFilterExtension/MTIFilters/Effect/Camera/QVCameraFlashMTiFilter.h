#pragma once

#include <string>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"
#include "QVFilterCore/QVTurnBWMTIFilter.h"

namespace qv {

extern const QVFilterClass QVCameraFlashMTiFilterClass;

/// Through a still camera's finder: the picture, black and white, comes into focus; the marks blink red
/// twice, the mirror swings up, the flash fires, and the picture is there in colour.
///
/// The picture is sharp from half of the clip on and colourful after 0.63 of it. Strength, 0..1, sets how far
/// out of focus it starts: 5 to 20 pixels of a frame whose shorter side is 720. The mirror darkens the finder
/// around 0.575; the flash rises from 0.60, is white at 0.63 and has faded at 0.88. The marks are left out
/// when their asset is missing.
class QVCameraFlashMTiFilter : public QVProgressBasedEffectMTIFilter {
  public:
    explicit QVCameraFlashMTiFilter(const QVFilterClass& filterClass = QVCameraFlashMTiFilterClass)
        : QVProgressBasedEffectMTIFilter(filterClass) {}

    /// An asset of marks about the middle of a layer of the frame's size, kept for the size; nil without it.
    MTIImage getImageWithImageName(const std::string& fileName) const;
    MTIImage centerBlackImage() const;
    MTIImage centerRedImage() const;

    /// "progress".
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    QVTurnBWMTIFilter bwFilter_;
    MTIGaussianBlurFilter blurFilter_;
    MTIBlendFilter blendFilter_{MTIBlendMode::normal};
};

}  // namespace qv
