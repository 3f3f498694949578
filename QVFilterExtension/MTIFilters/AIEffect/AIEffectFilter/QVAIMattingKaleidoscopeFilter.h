#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMattingCopyFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Mirror/QVSpliteKaleidoscopeMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIMattingKaleidoscopeFilterClass;

/// The subject in front of the frame in a kaleidoscope, whose sectors grow in number with the strength.
class QVAIMattingKaleidoscopeFilter : public QVAIMattingCopyFilter {
  public:
    explicit QVAIMattingKaleidoscopeFilter(
        const QVFilterClass& filterClass = QVAIMattingKaleidoscopeFilterClass)
        : QVAIMattingCopyFilter(filterClass) {}

    MTIImage outputImage() override;

  private:
    QVSpliteKaleidoscopeMTIFilter kaleidoscopeMTIFilter_;
};

}  // namespace qv
