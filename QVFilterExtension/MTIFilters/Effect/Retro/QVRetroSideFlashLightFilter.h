#pragma once

#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVRetroSideFlashLightFilterClass;

/// Warm light along both sides of the frame, brighter in soft patches as it falls through a film's
/// perforation.
class QVRetroSideFlashLightFilter : public QVMTIOneInputFilter {
  public:
    explicit QVRetroSideFlashLightFilter(const QVFilterClass& filterClass = QVRetroSideFlashLightFilterClass)
        : QVMTIOneInputFilter(filterClass) {}

    /// 0 shows the input, 1 all of the light.
    float strength() const { return strength_; }
    void setStrength(float strength) { strength_ = strength; }

    /// "strength".
    MTIParameters parameters() const override { return {{"strength", strength_}}; }

  private:
    float strength_ = 1.0f;
};

}  // namespace qv
