#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIBaseLineMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIDoubleLineMTIFilterClass;

/// A strong line close around the subject, and a fine one around that, which follows it less closely.
class QVAIDoubleLineMTIFilter : public QVAIBaseLineMTIFilter {
  public:
    explicit QVAIDoubleLineMTIFilter(const QVFilterClass& filterClass = QVAIDoubleLineMTIFilterClass)
        : QVAIBaseLineMTIFilter(filterClass) {}

    /// White.
    std::vector<UIColor> defaultColors() const override { return {UIColor::whiteColor()}; }

    /// The strong line, 6/512 of the frame's longer side, of an outline with a radius of 1/64.
    MTIImage innerLineImage() const;
    /// The fine line, 2/512, of an outline with a radius of 17/512.
    MTIImage outSideLineImage() const;

  protected:
    MTIImage imageWithLine() override;
};

}  // namespace qv
