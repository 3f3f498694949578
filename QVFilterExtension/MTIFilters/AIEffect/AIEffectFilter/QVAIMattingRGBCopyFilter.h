#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMattingCopyFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Glitch/QVAIRGBFilter.h"

namespace qv {

extern const QVFilterClass QVAIMattingRGBCopyFilterClass;

/// Copies of the subject in one colour each swing around it, over the frame. The strength chooses their
/// number, 2, 4 or 6; the first of `extractValues` (0..1; 0.5 without) is how far they swing.
class QVAIMattingRGBCopyFilter : public QVAIMattingCopyFilter {
  public:
    explicit QVAIMattingRGBCopyFilter(const QVFilterClass& filterClass = QVAIMattingRGBCopyFilterClass)
        : QVAIMattingCopyFilter(filterClass) {}

    MTIImage outputImage() override;

  private:
    QVAIRGBFilter repetitionRGBFilter_;
};

}  // namespace qv
