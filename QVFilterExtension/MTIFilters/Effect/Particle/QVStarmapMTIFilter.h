#pragma once

#include "QVFilterExtension/MTIFilters/Effect/Particle/SpriteScatterEffect.h"

namespace qv {

extern const QVFilterClass QVStarmapMTIFilterClass;

/// A flight through a star field: stars run outward from the frame's centre, growing and brightening, and
/// start there again. More and faster ones with the strength; none before it has been set.
class QVStarmapMTIFilter : public SpriteScatterEffect {
  public:
    explicit QVStarmapMTIFilter(const QVFilterClass& filterClass = QVStarmapMTIFilterClass);

    /// Derives the number of stars and their speed, which rises steeply above a strength of a half.
    void setEffectValue(float value) override;

    /// Number of stars; 0 before the strength has been set.
    std::int64_t starCount() const { return starCount_; }
    /// Half-widths of the frame a second; a star goes at 0.1 to 1.1 of it, the large ones fastest.
    float maxMovementSpeed() const { return maxMovementSpeed_; }

  protected:
    std::vector<SpiritParam> sprites(float aspect) const override;

  private:
    std::int64_t starCount_ = 0;
    float maxMovementSpeed_ = 0;
};

}  // namespace qv
