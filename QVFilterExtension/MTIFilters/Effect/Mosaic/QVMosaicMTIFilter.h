#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVMosaicMTIFilterClass;

/// Square blocks of one colour. A strength of 0 gives the largest blocks, 1 the smallest.
class QVMosaicMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVMosaicMTIFilter(const QVFilterClass& filterClass = QVMosaicMTIFilterClass);

    /// Derives `factor`; `effectValue` itself keeps its value.
    void setEffectValue(float value) override { factor_ = 100 - 84 * double(value); }

    /// Side of a block in 1/1080 of the frame's shorter side, so that every resolution looks alike.
    double factor() const { return factor_; }
    void setFactor(double factor) { factor_ = factor; }

    /// "factor".
    MTIParameters parameters() const override;

  private:
    double factor_;
};

}  // namespace qv
