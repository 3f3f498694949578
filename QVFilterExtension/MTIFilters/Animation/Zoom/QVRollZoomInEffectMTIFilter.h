#pragma once

#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRollZoomInEffectMTIFilterClass;

/// A push into the frame by a camera that rolls. Level 0 rolls the picture clockwise, level 1 anticlockwise;
/// level 2 starts tilted and rolls upright. Strength sets how far it rolls, up to 40 degrees, and how deep
/// the push goes; no corner of the frame is ever uncovered.
class QVRollZoomInEffectMTIFilter : public QVProgressBasedEffectMTIFilter {
  public:
    explicit QVRollZoomInEffectMTIFilter(const QVFilterClass& filterClass = QVRollZoomInEffectMTIFilterClass)
        : QVProgressBasedEffectMTIFilter(filterClass) {}

    /// The clip's progress, eased in and out.
    float progress() const override;
};

}  // namespace qv
