#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIRGBMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIRGBDispersionFilterClass;

/// The subject on a white page as if through a prism: its inks part in three directions and leave a spectrum
/// on the way. At a strength of 1 they lie a twelfth of the frame's shorter side apart from where they
/// belong, at 0 they are in register.
class QVAIRGBDispersionFilter : public QVAIRGBMTIFilter {
  public:
    explicit QVAIRGBDispersionFilter(const QVFilterClass& filterClass = QVAIRGBDispersionFilterClass)
        : QVAIRGBMTIFilter(filterClass) {}

    /// "seperateDistance", that is the strength.
    MTIParameters parameters() const override;

  protected:
    bool pageIsSRGB() const override { return true; }
};

}  // namespace qv
