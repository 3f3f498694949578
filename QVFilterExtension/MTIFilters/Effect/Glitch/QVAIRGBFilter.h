#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIRGBFilterClass;

/// The picture taken apart into copies of one colour each, which swing around it; together they are white.
/// They shine over what is darker than they are; where they agree, the picture keeps its drawing.
/// The strength is how far they swing, 0.025 to 0.075 of the shorter side at full strength; 0 leaves the
/// frame as it is.
class QVAIRGBFilter : public QVEffectMTIFilter {
  public:
    explicit QVAIRGBFilter(const QVFilterClass& filterClass = QVAIRGBFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// Number of copies.
    int filterNumber() const { return filterNumber_; }
    void setFilterNumber(int count) { filterNumber_ = count; }

    /// "filterNum", "changeFrequency" (that is `iTime`), "distanceValue".
    MTIParameters parameters() const override;

  private:
    int filterNumber_ = 4;
};

}  // namespace qv
