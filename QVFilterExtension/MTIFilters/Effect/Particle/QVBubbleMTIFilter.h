#pragma once

#include "QVFilterExtension/MTIFilters/Effect/Particle/SpriteScatterEffect.h"

namespace qv {

extern const QVFilterClass QVBubbleMTIFilterClass;

/// Soap bubbles that drift and wobble over the frame, few large ones at strength 0 and many of mixed sizes at
/// 1. They keep moving on photos. No bubble appears before the strength has been set.
class QVBubbleMTIFilter : public SpriteScatterEffect {
  public:
    explicit QVBubbleMTIFilter(const QVFilterClass& filterClass = QVBubbleMTIFilterClass);

    /// Derives the number of bubbles, their size and its spread.
    void setEffectValue(float value) override;

    /// Number of bubbles; 0 before the strength has been set.
    std::int64_t matterCount() const { return matterCount_; }
    /// Mean size and its spread, in fifths of the frame's half width, or of its half height if that is less.
    double baseScale() const { return baseScale_; }
    double offsetScale() const { return offsetScale_; }

  protected:
    std::vector<SpiritParam> sprites(float aspect) const override;

  private:
    std::int64_t matterCount_ = 0;
    double baseScale_ = 0, offsetScale_ = 0;
};

}  // namespace qv
