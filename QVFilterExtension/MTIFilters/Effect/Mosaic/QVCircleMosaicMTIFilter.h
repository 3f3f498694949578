#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVCircleMosaicMTIFilterClass;

/// Round dots of one colour each on a darker ground. A strength of 0 gives the largest dots, 1 the smallest.
class QVCircleMosaicMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVCircleMosaicMTIFilter(const QVFilterClass& filterClass = QVCircleMosaicMTIFilterClass);

    /// Derives `factor`; `effectValue` itself keeps its value.
    void setEffectValue(float value) override { factor_ = 36 - 20 * double(value); }

    /// Distance of two dots in 1/1080 of the frame's shorter side, so that every resolution looks alike.
    double factor() const { return factor_; }
    void setFactor(double factor) { factor_ = factor; }

    /// "factor".
    MTIParameters parameters() const override;

  private:
    double factor_;
};

}  // namespace qv
