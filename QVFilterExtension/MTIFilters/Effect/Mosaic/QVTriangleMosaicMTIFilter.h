#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVTriangleMosaicMTIFilterClass;

/// Equilateral triangles of one colour. A strength of 0 gives the largest triangles, 1 the smallest.
class QVTriangleMosaicMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVTriangleMosaicMTIFilter(const QVFilterClass& filterClass = QVTriangleMosaicMTIFilterClass);

    /// Derives `factor`; `effectValue` itself keeps its value.
    void setEffectValue(float value) override { factor_ = 36 - 20 * double(value); }

    /// Height of a triangle in 1/1080 of the frame's shorter side, so that every resolution looks alike.
    double factor() const { return factor_; }
    void setFactor(double factor) { factor_ = factor; }

    /// "factor".
    MTIParameters parameters() const override;

  private:
    double factor_;
};

}  // namespace qv
