#pragma once

#include "QVFilterExtension/MTIFilters/Effect/Film/FilmEffectGroup.h"

namespace qv {

extern const QVFilterClass QVFujiFilmEffectGroupMTIFilterClass;

/// A fine-grained colour negative, scanned: soft contrast, cool shadows, creamy lights, gentle greens and
/// clear skin, with a red halo where strong light has passed the film and been thrown back by its base. It
/// breathes: the exposure drifts by up to 1.5 %, and now and then a grain of dust lies on it.
///
/// The strength turns the table's look up from a half to all of it, and halo (up to 40 % of white), grain and
/// the fall of light towards the corners with it. The halo is a Gaussian of a 70th of the shorter side.
class QVFujiFilmEffectGroupMTIFilter : public FilmEffectGroup {
  public:
    explicit QVFujiFilmEffectGroupMTIFilter(
        const QVFilterClass& filterClass = QVFujiFilmEffectGroupMTIFilterClass);

    MTIParameters parameters() const override;
    std::vector<SpiritParam> params() const override;
    MTIImage outputImage() override;

  private:
    std::vector<std::string> dirts_;
    MTIGaussianBlurFilter haloFilter_;
};

}  // namespace qv
