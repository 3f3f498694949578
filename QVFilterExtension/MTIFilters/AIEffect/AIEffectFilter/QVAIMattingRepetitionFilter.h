#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMattingCopyFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Stylize/QVAIReputationFilter.h"

namespace qv {

extern const QVFilterClass QVAIMattingRepetitionFilterClass;

/// The subject repeated along a line, over the frame. The strength is the direction of the line, a full turn;
/// the first of `extractValues` (0..1; 0.3 without) the distance of two repetitions.
class QVAIMattingRepetitionFilter : public QVAIMattingCopyFilter {
  public:
    explicit QVAIMattingRepetitionFilter(const QVFilterClass& filterClass = QVAIMattingRepetitionFilterClass)
        : QVAIMattingCopyFilter(filterClass) {}

    MTIImage outputImage() override;

  private:
    QVAIReputationFilter reputationFilter_;
};

}  // namespace qv
