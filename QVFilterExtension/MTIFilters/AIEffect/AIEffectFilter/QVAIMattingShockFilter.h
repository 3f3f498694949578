#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMattingCopyFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Motion/QVAIShockFilter.h"

namespace qv {

extern const QVFilterClass QVAIMattingShockFilterClass;

/// Translucent copies of the subject punch towards the viewer, over the frame. The strength chooses their
/// number, 2, 4 or 6; the first of `extractValues` (0..1; 0 without) sets the pace.
class QVAIMattingShockFilter : public QVAIMattingCopyFilter {
  public:
    explicit QVAIMattingShockFilter(const QVFilterClass& filterClass = QVAIMattingShockFilterClass)
        : QVAIMattingCopyFilter(filterClass) {}

    MTIImage outputImage() override;

  private:
    QVAIShockFilter shockFilter_;
};

}  // namespace qv
