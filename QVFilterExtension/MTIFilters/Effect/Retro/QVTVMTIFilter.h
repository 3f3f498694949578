#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVTVMTIFilterClass;

/// An old television set: it is switched on, changes channels twice and is switched off, every six seconds. A
/// strength of 0 leaves the frame as it is.
///
/// | seconds | what happens |
/// |---|---|
/// | 0..0.15 | a dot of light grows into a line across the tube |
/// | 0.15..0.5 | the line opens into the picture, which flashes and settles until 0.8 |
/// | 2..2.35 | snow and a rolling picture: from the colour channel to the black and white one |
/// | 3.6..3.95 | the same, on to an overdriven colour channel |
/// | 5.35..5.55 | the picture falls into a line |
/// | 5.55..5.85 | the line shrinks to a dot, which goes out |
///
/// The tube bulges by 8 % at full strength, has 240 lines, or one in three rows of small frames, round
/// corners of 0.12 of its shorter side, and dark corners.
class QVTVMTIFilter : public QVEffectMTIFilter {
  public:
    /// Seconds from switching on to switching on.
    static constexpr double kPeriod = 6;

    explicit QVTVMTIFilter(const QVFilterClass& filterClass = QVTVMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// What the set shows.
    struct Programme {
        double width = 1, height = 1;  ///< of the lit part of the tube, shares
        double flash = 0;              ///< 0..1, how much brighter than the picture it is
        double trouble = 0;            ///< 0..1, snow and rolling while channels change
        int channel = 0;               ///< 0 colour, 1 black and white, 2 overdriven
    };
    /// At a time; the full picture of channel 0 when the time is not finite.
    static Programme programmeAt(double seconds);

    /// "effectValue", "opening" (width, height), "flash", "trouble", "channel", "draw" (number of the snow).
    MTIParameters parameters() const override;
};

}  // namespace qv
