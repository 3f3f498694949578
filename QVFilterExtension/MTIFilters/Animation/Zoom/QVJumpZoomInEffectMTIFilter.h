#pragma once

#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSlowZoomInEffectMTIFilterClass;
extern const QVFilterClass QVJumpZoomInEffectMTIFilterClass;

/// A jump cut to where the slow zoom in ends.
class QVJumpZoomInEffectMTIFilter : public QVProgressBasedEffectMTIFilter {
  public:
    explicit QVJumpZoomInEffectMTIFilter(const QVFilterClass& filterClass = QVJumpZoomInEffectMTIFilterClass)
        : QVProgressBasedEffectMTIFilter(filterClass) {}

    /// 1 at all times.
    float progress() const override { return 1; }
};

}  // namespace qv
