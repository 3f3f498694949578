#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIEdgeSpiritFilter.h"

namespace qv {

extern const QVFilterClass QVAIEdgeFlashFilterClass;

/// Two sparks that chase each other around the subject, once in 3 seconds, and leave its edge glittering
/// behind them: up to 520 glints at a strength of 1, which go out over a quarter of the way. None at 0.
class QVAIEdgeFlashFilter : public QVAIEdgeSpiritFilter {
  public:
    explicit QVAIEdgeFlashFilter(const QVFilterClass& filterClass = QVAIEdgeFlashFilterClass);

    /// White hot, then gold.
    std::vector<UIColor> defaultColors() const override;
    std::vector<QVEdgeSpirit> edgeSpiritParam() const override;

  private:
    SpiritParam::Texture star_, glint_;
};

}  // namespace qv
