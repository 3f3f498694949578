#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIRGBMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIRGBCyanSeperateFilterClass;

/// The subject on a white page, printed with two inks out of register: the cyan print lies to one side and is
/// larger, the red one to the other. At a strength of 1 they lie an eighth of the frame's shorter side apart;
/// the first of `extractValues` (0..1; 0.5 without) is how much larger the cyan print becomes, up to half as
/// large again. At a strength of 0 the colours are the subject's own.
class QVAIRGBCyanSeperateFilter : public QVAIRGBMTIFilter {
  public:
    explicit QVAIRGBCyanSeperateFilter(const QVFilterClass& filterClass = QVAIRGBCyanSeperateFilterClass)
        : QVAIRGBMTIFilter(filterClass) {}

    /// "seperateDistance", that is the strength, and "seperateZoomValue".
    MTIParameters parameters() const override;
};

}  // namespace qv
