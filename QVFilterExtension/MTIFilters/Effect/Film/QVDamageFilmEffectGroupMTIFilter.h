#pragma once

#include "QVFilterExtension/MTIFilters/Effect/Film/FilmEffectGroup.h"

namespace qv {

extern const QVFilterClass QVDamageFilmEffectGroupMTIFilterClass;

/// A colour print that has been found after decades: dyes faded to magenta and brown, scratches along the
/// film, burnt and blistered patches, dirt and hairs, and a ragged gate behind which the picture weaves. The
/// strength adds damage of every kind: up to 6 specks, 2 hairs, 5 scratches and 2 burns at a time.
class QVDamageFilmEffectGroupMTIFilter : public FilmEffectGroup {
  public:
    explicit QVDamageFilmEffectGroupMTIFilter(
        const QVFilterClass& filterClass = QVDamageFilmEffectGroupMTIFilterClass);

    std::vector<SpiritParam> params() const override;
    MTIImage outputImage() override;

  private:
    std::vector<std::string> dirts_, hairs_, scratches_, burns_;
    QVEffectMTIFilter wearFilter_;
};

}  // namespace qv
