#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAICopySplitFilterClass;

/// Small copies of the frame around a large one in its middle: two each way at a strength of 0, twelve at 1,
/// and all sizes between. The large one has 0.54 of the frame's size, a white border of 4 units of 1/1080 of
/// the shorter side, and a shadow; the copies have half of their colour and 0.62 of their light.
class QVAICopySplitFilter : public QVEffectMTIFilter {
  public:
    explicit QVAICopySplitFilter(const QVFilterClass& filterClass = QVAICopySplitFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// "splitNumber": copies along each side, those that the edge cuts counted in part.
    MTIParameters parameters() const override;
};

}  // namespace qv
