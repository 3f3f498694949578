#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIGhostFilter.h"
#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMattingCopyFilter.h"

namespace qv {

extern const QVFilterClass QVAIMattingGhostFilterClass;

/// The ghost of the subject leaves it, over the frame. The strength is how far.
class QVAIMattingGhostFilter : public QVAIMattingCopyFilter {
  public:
    explicit QVAIMattingGhostFilter(const QVFilterClass& filterClass = QVAIMattingGhostFilterClass)
        : QVAIMattingCopyFilter(filterClass) {
        // The ghost stays behind the face that it left.
        ghostFilter_.setInFront(0.15);
    }

    MTIImage outputImage() override;

  private:
    QVAIGhostFilter ghostFilter_;
};

}  // namespace qv
