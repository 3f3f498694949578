#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVInterstellarMTIFilterClass;

/// A flight through space into the picture, which lies at the end of a wormhole: inside its mouth the picture
/// is whole, outside it lies mirrored and stretched in the dark, and stars streak past.
///
/// - The radius of the mouth goes from beyond the frame's corners at strength 0, which leaves the frame as it
/// is, to
///   0.4 of the shorter side at 1, with the root of the strength.
/// - Every 5 seconds the ship surges: the mouth opens by up to 12 %, the picture comes nearer by up to 10 %,
/// streaks
///   are longer; between surges it drifts. The flight repeats then without a jump.
/// - Three layers of 40, 64 and 104 stars fly outward, one to three times the way from the middle in a
/// period.
class QVInterstellarMTIFilter : public QVEffectMTIFilter {
  public:
    /// Seconds from surge to surge.
    static constexpr double kPeriod = 5;

    explicit QVInterstellarMTIFilter(const QVFilterClass& filterClass = QVInterstellarMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// Where the ship is and how it flies.
    struct Flight {
        double way;    ///< 0..1 through a period, faster as the ship surges
        double surge;  ///< 0 drifting, 1 at full speed
    };
    /// At a time; as at time 0 when it is not finite.
    static Flight flightAt(double seconds);

    /// "effectValue", "way", "surge".
    MTIParameters parameters() const override;
};

}  // namespace qv
