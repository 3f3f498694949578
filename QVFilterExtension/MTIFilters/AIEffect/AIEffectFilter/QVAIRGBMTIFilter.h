#pragma once

#include "QVFilterCore/QVAIEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIRGBMTIFilterClass;

/// Base of the effects that print the subject on a white page with its colours out of register. The kernel
/// gets the subject on the page, and the page alone. Nil without a mask.
class QVAIRGBMTIFilter : public QVAIEffectMTIFilter {
  public:
    explicit QVAIRGBMTIFilter(const QVFilterClass& filterClass = QVAIRGBMTIFilterClass)
        : QVAIEffectMTIFilter(filterClass) {}

    MTIImage outputImage() override;

  protected:
    /// How the page's white is declared.
    virtual bool pageIsSRGB() const { return false; }
};

}  // namespace qv
