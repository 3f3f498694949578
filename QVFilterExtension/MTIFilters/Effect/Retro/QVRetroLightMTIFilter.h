#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroSideFlashFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroSideFlashLightFilter.h"

namespace qv {

extern const QVFilterClass QVRetroLightMTIFilterClass;

/// A summer on small-gauge film: golden, faded at both ends of the scale, with layers of light that wander
/// through the picture, glows that jump about at its side and light through the perforation.
///
/// - Two lights on black, "retroLight1.png" for 3.1 s and "retroLight2.png" for 2.3 s each time, take turns:
///   each time mirrored, shifted by up to 0.14 of the frame and drifting by 0.3 of it as drawn, up to 0.65 +
///   0.4 e strong (e is the strength), faded in and out.
/// - The side flash has 0.45 of the strength, and is lightened over the picture with up to 0.85 of its light
/// in
///   slots of 1.7 s, half of which have one; the side light flickers 12 times a second between 0.1 and
///   0.25 + 0.5 e.
/// - Strength also sets the share of the grading, from 0.4 to 1.
class QVRetroLightMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVRetroLightMTIFilter(const QVFilterClass& filterClass = QVRetroLightMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// The effect's parameters, and "firstLight" and "secondLight": shift to the right and down, strength,
    /// and 1, or −1 where it is mirrored.
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    QVRetroSideFlashFilter sideFlashFilter_;
    QVRetroSideFlashLightFilter sideFlashLightFilter_;
    MTIBlendFilter normalBlendFilter_{MTIBlendMode::normal}, lightenBlendFilter_{MTIBlendMode::lighten};
};

}  // namespace qv
