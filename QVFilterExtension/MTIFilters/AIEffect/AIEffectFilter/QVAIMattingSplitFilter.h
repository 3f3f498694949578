#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMattingCopyFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Split/QVAICopySplitFilter.h"

namespace qv {

extern const QVFilterClass QVAIMattingSplitFilterClass;

/// The subject in front of the frame in small copies, whose number grows with the strength.
class QVAIMattingSplitFilter : public QVAIMattingCopyFilter {
  public:
    explicit QVAIMattingSplitFilter(const QVFilterClass& filterClass = QVAIMattingSplitFilterClass)
        : QVAIMattingCopyFilter(filterClass) {}

    MTIImage outputImage() override;

  private:
    QVAICopySplitFilter splitFilter_;
};

}  // namespace qv
