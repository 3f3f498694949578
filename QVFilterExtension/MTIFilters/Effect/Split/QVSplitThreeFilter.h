#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSplitThreeFilterClass;

/// Three strips across the longer side tell the shot from far to near: 1.08, 1.35 and 1.8 times as large, the
/// last 15 % more at full strength, all about a point where faces are: 0.42 of the height from the top, 0.33
/// in upright frames. The outer strips are coloured cold and warm. The strips drift against each other, by up
/// to 0.014 of the frame in six seconds, and are parted by lines of 8 units of 1/1080 of the shorter side.
/// The strength is how far the shots differ; at 0 all are the first.
class QVSplitThreeFilter : public QVEffectMTIFilter {
  public:
    explicit QVSplitThreeFilter(const QVFilterClass& filterClass = QVSplitThreeFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// "effectValue", "drift" (−1..1).
    MTIParameters parameters() const override;
};

}  // namespace qv
