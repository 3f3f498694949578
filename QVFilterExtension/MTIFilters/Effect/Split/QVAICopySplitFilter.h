#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAICopySplitFilterClass;

/// Small copies of the frame around one in its middle: two each way at a strength of 0, twelve at 1, and all
/// sizes between.
class QVAICopySplitFilter : public QVEffectMTIFilter {
  public:
    explicit QVAICopySplitFilter(const QVFilterClass& filterClass = QVAICopySplitFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// "splitNumber": copies along each side, those that the edge cuts counted in part.
    MTIParameters parameters() const override;
};

}  // namespace qv
