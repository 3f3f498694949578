#pragma once

#include <vector>

#include "QVFilterCore/QVEffectMTIFilter.h"
#include "QVFilterCore/QVSpiritFilter.h"

namespace qv {

extern const QVFilterClass QVRetroRECMTIFilterClass;

/// The monitor of a studio camera with picture tubes: colours that do not quite meet, lines, cool blacks, the
/// tube's round corners, and lines of red light around the picture that pulse while the camera is on air. A
/// blue line runs down where the monitor's picture and the camera's drift past each other.
///
/// - Red and blue lie up to 5 e and 3.5 e pixels (of a frame whose shorter side is 1080; e is the strength)
///   beside green, and breathe by half of that; there are 270 lines to the shorter side.
/// - Red lines 60/1080 of the shorter side inside the frame; they pulse every 1.6 s between 0.35 and 1 and
///   are steady on a photo. The blue one takes 3.7 s from top to bottom. Up to 5 fine streaks for 0.08 s
///   each.
class QVRetroRECMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVRetroRECMTIFilter(const QVFilterClass& filterClass = QVRetroRECMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// The lines and streaks, in sprite space.
    std::vector<SpiritParam> spiritParams() const;

    MTIImage outputImage() override;

  private:
    QVSpiritFilter spiritFilter_;
};

}  // namespace qv
