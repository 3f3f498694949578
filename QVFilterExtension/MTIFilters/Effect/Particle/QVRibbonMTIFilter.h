#pragma once

#include "QVFilterExtension/MTIFilters/Effect/Particle/SpriteScatterEffect.h"

namespace qv {

extern const QVFilterClass QVRibbonMTIFilterClass;

/// Coloured pieces of ribbon fall and spin like confetti; more, smaller and faster ones with the strength.
class QVRibbonMTIFilter : public SpriteScatterEffect {
  public:
    explicit QVRibbonMTIFilter(const QVFilterClass& filterClass = QVRibbonMTIFilterClass);

    /// The colour of a piece: pastels that lean to red, which may exceed 1.
    static UIColor randomColor(std::int64_t index);

  protected:
    std::vector<SpiritParam> sprites(float aspect) const override;
};

}  // namespace qv
