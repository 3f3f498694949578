#pragma once

#include "QVFilterCore/QVAIEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIGhostContourFilterClass;

/// Glowing outlines leave the subject one after the other, rise behind it, swell and fade, three at a time;
/// one sets out every second. The strength is how far they go and how bright they are. The first of `colors`
/// is their colour at the subject, the second where they end (the first again, if there is no second); a pale
/// cyan and a violet of its own. Nil without a mask.
class QVAIGhostContourFilter : public QVAIEffectMTIFilter {
  public:
    explicit QVAIGhostContourFilter(const QVFilterClass& filterClass = QVAIGhostContourFilterClass);

    /// Keeps the value and derives `reach` and `glow` from it.
    void setEffectValue(float value) override;

    /// How far an outline swells, of the frame's shorter side.
    double reach() const { return reach_; }
    void setReach(double reach) { reach_ = reach; }
    /// Brightness of the outlines, 0..1.
    double glow() const { return glow_; }
    void setGlow(double glow) { glow_ = glow; }

    /// "iTime", "reach", "glow", "nearColor", "farColor".
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    double reach_, glow_;
};

}  // namespace qv
