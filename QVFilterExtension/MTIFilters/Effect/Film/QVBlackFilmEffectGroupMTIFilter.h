#pragma once

#include "Platform/ImageGraph/PassOverlay.h"
#include "QVFilterCore/QVAdjustGroupMTIFilter.h"
#include "QVFilterCore/QVTurnBWMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Film/FilmEffectGroup.h"

namespace qv {

extern const QVFilterClass QVBlackFilmEffectGroupMTIFilterClass;

/// A silver print that has run through many projectors: grain, dark greys, a flickering lamp, dust and hairs
/// that change ten times a second, and a gate that jitters.
///
/// The strength adds grain, wear and dirt: up to 8 specks (4 on a photo), and from a half on a hair. On a
/// photo every reading of the picture moves `iTime` on by 100 seconds at full strength, so that another
/// strength is another layout; whoever sets the time before it reads gets the same picture again.
class QVBlackFilmEffectGroupMTIFilter : public FilmEffectGroup {
  public:
    explicit QVBlackFilmEffectGroupMTIFilter(
        const QVFilterClass& filterClass = QVBlackFilmEffectGroupMTIFilterClass);

    /// Configured, and not part of the picture: the table carries the tones.
    QVTurnBWMTIFilter& bwMTIFilter() { return bwMTIFilter_; }
    QVAdjustGroupMTIFilter& adjustFilter() { return adjustFilter_; }
    /// The silver film over the graded picture.
    QVEffectMTIFilter& filmFilter() { return filmFilter_; }
    /// Moves the border as the gate of a projector does.
    QVEffectMTIFilter& shakeFilter() { return shakeFilter_; }
    /// Lays the border over the picture.
    MTIBlendFilter& blendFilter() { return frameBlendFilter_; }
    /// Lays the grain over the input.
    MTIBlendFilter& overlayBlendFilter() { return noisyBlendFilter_; }

    /// The border for the input's size, unmoved; nil without an input or its asset.
    MTIImage frameImage() const;
    std::vector<SpiritParam> params() const override;
    MTIImage outputImage() override;

  private:
    MTIImage shakenBorder();

    std::vector<std::string> dirts_, hairs_;
    QVTurnBWMTIFilter bwMTIFilter_;
    QVAdjustGroupMTIFilter adjustFilter_;
    QVEffectMTIFilter filmFilter_, shakeFilter_;
    MTIImage shownBorder_;  ///< of which at this strength these parts may show, wherever it is moved to
    float shownShake_ = 0;
    std::vector<PixelRect> shownParts_;
};

}  // namespace qv
