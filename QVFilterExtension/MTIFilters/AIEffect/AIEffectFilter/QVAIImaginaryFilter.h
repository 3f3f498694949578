#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIBaseLineMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIImaginaryFilterClass;

/// A plain line around the subject, as of a sticker.
class QVAIImaginaryFilter : public QVAIBaseLineMTIFilter {
  public:
    explicit QVAIImaginaryFilter(const QVFilterClass& filterClass = QVAIImaginaryFilterClass)
        : QVAIBaseLineMTIFilter(filterClass) {}

    /// White.
    std::vector<UIColor> defaultColors() const override { return {UIColor::whiteColor()}; }

    /// The outline as a line of 4/512 of the frame's longer side.
    MTIImage contourUIImage() const;

  protected:
    MTIImage imageWithLine() override;
};

}  // namespace qv
