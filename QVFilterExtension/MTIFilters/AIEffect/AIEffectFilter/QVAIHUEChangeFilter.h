#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAICelebrateFilter.h"

namespace qv {

extern const QVFilterClass QVAIHUEChangeFilterClass;

/// The world turns through the colour wheel, a glow parts it from the subject, who keeps its colours. The
/// strength is how far the hues turn; a fifth of a turn more at one corner than at the other makes the world
/// iridescent, and greys take on a tint. Nil without a frame or a mask.
class QVAIHUEChangeFilter : public QVAICelebrateFilter {
  public:
    explicit QVAIHUEChangeFilter(const QVFilterClass& filterClass = QVAIHUEChangeFilterClass)
        : QVAICelebrateFilter(filterClass) {}

    /// "progress", the strength.
    MTIParameters parameters() const override { return {{"progress", effectValue()}}; }
    MTIImage outputImage() override;
};

}  // namespace qv
