#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIEdgeSpiritFilter.h"

namespace qv {

extern const QVFilterClass QVAIWaferflashFilterClass;

/// Thin round wafers that come off the subject's outline, tumble and flash whenever they face the viewer, and
/// drift up and away: up to 260 at once at a strength of 1, 2.2 to 6 % of the frame's shorter side wide,
/// for 1.6 seconds each. None at 0.
class QVAIWaferflashFilter : public QVAIEdgeSpiritFilter {
  public:
    explicit QVAIWaferflashFilter(const QVFilterClass& filterClass = QVAIWaferflashFilterClass);

    /// Gold, rose, mint and sky; wafers take turns.
    std::vector<UIColor> defaultColors() const override;
    std::vector<QVEdgeSpirit> edgeSpiritParam() const override;

  private:
    SpiritParam::Texture wafer_;
};

}  // namespace qv
