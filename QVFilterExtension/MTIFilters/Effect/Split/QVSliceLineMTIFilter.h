#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSliceLineMTIFilterClass;

/// Three blades of light cut the picture; its pieces slip along the cuts, rest, and slide together again. A
/// strength of 0 leaves the frame as it is.
///
/// - A round takes 2.5 seconds. The blades strike at 0.1, 0.35 and 0.6 s, each along another line: 20° to 70°
/// from
///   the horizontal, leaning to the right and to the left in turn, up to 0.16 of the shorter side off the
///   middle.
/// - A blade crosses the frame in 0.08 s; the halves slip by 0.1 to 0.18 of the shorter side at full
/// strength, most of
///   it in the first 0.15 s. From 1.7 to 2.1 s they slide back.
/// - A cut is a line of 10 units of 1/1080 of the shorter side that flashes and fades to a hairline, with a
/// soft
///   shadow on its lower side.
class QVSliceLineMTIFilter : public QVEffectMTIFilter {
  public:
    /// Seconds of a round, and when the blades strike in it.
    static constexpr double kRound = 2.5;
    static constexpr double kStrikes[3] = {0.1, 0.35, 0.6};

    explicit QVSliceLineMTIFilter(const QVFilterClass& filterClass = QVSliceLineMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// Each a value per blade: "slip" (how far apart the halves are, 0..1), "flash" (0..1), "blade" (how far
    /// it has come, 0..1); and "effectValue", "round" (number of the round, which decides where the cuts
    /// lie).
    MTIParameters parameters() const override;
};

}  // namespace qv
