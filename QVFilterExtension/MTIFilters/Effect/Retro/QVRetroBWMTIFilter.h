#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVSpiritFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroFramFlashFilter.h"

namespace qv {

extern const QVFilterClass QVRetroBWMTIFilterClass;

/// A silent film: silver greys through a soft-focus lens, an oval of light in the gate, white dust and
/// scratches of a worn negative, and warm light that floods in over an edge as on the end of a reel.
///
/// - Greys as of film that hardly sees red: 0.25 red, 0.5 green, 0.25 blue; a third of their blurred copy
///   (a 45th of the frame's shorter side) is mixed in, and its lights are screened over.
/// - Dust: up to 9 specks of 3 to 14 hundredths of the shorter side, other ones 18 times a second; up to 3
///   scratches for 0.9 s each.
/// - The edge flash is lightened over the picture with 0.7 of its light in the third of all seconds
///   that draws one, rising over 0.15 s and gone at the second's end; on a photo with 0.5.
/// - Strength, 0..1, takes the colour out (gone from a half on), and adds wear and flicker.
class QVRetroBWMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVRetroBWMTIFilter(const QVFilterClass& filterClass = QVRetroBWMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    MTIImage outputImage() override;

  private:
    /// The film in a moment's light.
    MTIImage lit(const MTIImage& film);

    QVRetroFramFlashFilter flashFilter_;
    QVSpiritFilter spiritFilter_;
    MTIBlendFilter lightenBlendFilter_{MTIBlendMode::lighten};
    MTIGaussianBlurFilter blurFilter_;
};

}  // namespace qv
