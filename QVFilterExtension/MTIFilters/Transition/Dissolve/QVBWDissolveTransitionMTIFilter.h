#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBWDissolveTransitionMTIFilterClass;

/// The incoming clip comes in as a grey picture of high contrast, where it is darker than the outgoing one,
/// like a print in black ink over it; in the last three tenths the outgoing clip goes and the colour comes.
class QVBWDissolveTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVBWDissolveTransitionMTIFilter(
        const QVFilterClass& filterClass = QVBWDissolveTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Of the grey, as `QVTurnBWMTIFilter::contrast`.
    static constexpr float kContrast = 0.9f;

    MTIImage outputImage() override;
};

}  // namespace qv
