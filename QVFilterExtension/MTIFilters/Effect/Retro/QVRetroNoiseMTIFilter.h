#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVSpiritFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroFramFlashFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroSideFlashFilter.h"

namespace qv {

extern const QVFilterClass QVRetroNoiseMTIFilterClass;

/// Pushed film, developed in the wrong bath: steep contrast, turquoise shadows and yellow lights, coarse
/// coloured grain, stains of the developer, dirt, and flashes of two colours.
///
/// - Grain of two sizes, 2.2 and 5 pixels of a frame whose shorter side is 1080, other one 24 times a second.
/// - Up to 4 stains, 0.5 to 1.1 of the shorter side wide, for 1.3 s each; up to 6 spots of dirt, other ones
/// 12
///   times a second.
/// - The edge flash is screened over with 0.4 of its light, fading within each second that draws one (a
///   quarter); the side flash with its bursts of two colours is lightened over with 0.9 in each burst and
///   0.35 otherwise.
/// - Strength, 0..1, sets the share of the colours and flashes, from 0.35 to 1, and adds grain, stains and
///   dirt.
class QVRetroNoiseMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVRetroNoiseMTIFilter(const QVFilterClass& filterClass = QVRetroNoiseMTIFilterClass);

    MTIImage outputImage() override;

  private:
    QVRetroFramFlashFilter flashFilter_;
    QVRetroSideFlashFilter sideFlashFilter_;
    QVSpiritFilter spiritFilter_;
    MTIBlendFilter normalBlendFilter_{MTIBlendMode::normal}, screenBlendFilter_{MTIBlendMode::screen},
        lightenBlendFilter_{MTIBlendMode::lighten};
};

}  // namespace qv
