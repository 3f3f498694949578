#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAICelebrateFilter.h"

namespace qv {

extern const QVFilterClass QVAIFallingSquareFilterClass;

/// Squares of bright paper tumble down behind the subject, in four layers from far to near; the near ones are
/// large and out of focus. The strength says how many; at 0 there are none. Nil without a frame or a mask.
class QVAIFallingSquareFilter : public QVAICelebrateFilter {
  public:
    explicit QVAIFallingSquareFilter(const QVFilterClass& filterClass = QVAIFallingSquareFilterClass)
        : QVAICelebrateFilter(filterClass) {}

    /// "time", "squareNumber" (the strength).
    MTIParameters parameters() const override { return {{"time", iTime()}, {"squareNumber", effectValue()}}; }
    MTIImage outputImage() override;
};

}  // namespace qv
