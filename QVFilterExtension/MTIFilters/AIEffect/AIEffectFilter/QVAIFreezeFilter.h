#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAICelebrateFilter.h"

namespace qv {

extern const QVFilterClass QVAIFreezeFilterClass;

/// The world freezes over and the subject stays free: cold colours, frost that has grown in from the borders,
/// glints on its crystals and mist that drifts. The strength is how far the frost has come, at 1 half way to
/// the middle. Nil without a frame or a mask.
class QVAIFreezeFilter : public QVAICelebrateFilter {
  public:
    explicit QVAIFreezeFilter(const QVFilterClass& filterClass = QVAIFreezeFilterClass)
        : QVAICelebrateFilter(filterClass) {}

    MTIImage outputImage() override;
};

}  // namespace qv
