#pragma once

#include "QVFilterExtension/MTIFilters/Effect/Film/FilmEffectGroup.h"

namespace qv {

extern const QVFilterClass QVNoisyFilmEffectGroupMTIFilterClass;

/// Small-gauge film pushed by two stops at night: coarse grain, dye clouds that mottle the shadows, lifted
/// teal blacks under amber lights, a picture that weaves in the gate, hairline scratches and dust.
///
/// With the strength go the grain (an overlay of 16 to 46 %), the clouds (up to 7 % of white, 24 a second),
/// the weave (up to 1/250 of the shorter side), the flicker (up to 5 %) and the dirt.
class QVNoisyFilmEffectGroupMTIFilter : public FilmEffectGroup {
  public:
    explicit QVNoisyFilmEffectGroupMTIFilter(
        const QVFilterClass& filterClass = QVNoisyFilmEffectGroupMTIFilterClass);

    std::vector<SpiritParam> params() const override;
    MTIImage outputImage() override;

  private:
    std::vector<std::string> dirts_, hairs_, scratches_;
};

}  // namespace qv
