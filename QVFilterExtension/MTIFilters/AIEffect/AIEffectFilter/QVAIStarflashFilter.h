#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIEdgeSpiritFilter.h"

namespace qv {

extern const QVFilterClass QVAIStarflashFilterClass;

/// Sparkles of four points that flash up along the subject's outline, turn a little and go out: up to 110 at
/// once at a strength of 1, 6 to 18 % of the frame's shorter side high, for 0.9 seconds each. None at 0.
class QVAIStarflashFilter : public QVAIEdgeSpiritFilter {
  public:
    explicit QVAIStarflashFilter(const QVFilterClass& filterClass = QVAIStarflashFilterClass);

    /// White, gold and rose; sparkles take turns.
    std::vector<UIColor> defaultColors() const override;
    std::vector<QVEdgeSpirit> edgeSpiritParam() const override;

  private:
    SpiritParam::Texture star_;
};

}  // namespace qv
