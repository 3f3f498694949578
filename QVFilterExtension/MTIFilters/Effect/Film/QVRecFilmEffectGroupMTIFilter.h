#pragma once

#include "QVFilterExtension/MTIFilters/Effect/Film/FilmEffectGroup.h"

namespace qv {

extern const QVFilterClass QVRecFilmEffectGroupMTIFilterClass;

/// The viewfinder of a small camcorder: its display over its picture. In the corners brackets; within them,
/// clockwise from the top left, the battery, a blinking dot beside the running counter, the time code of the
/// clip, and the badge "AUTO" with the gain, "3dB".
///
/// The picture is a sensor's: edges sharpened along the lines by up to 0.9 of the detail, colours smeared
/// over 1/180 of the shorter side, deep blacks, lights that clip, and noise of up to 5 %. All of it goes with
/// the strength; the display does not. The counter goes on with the clip, the dot is on for 0.6 of every 1.2
/// seconds, on a photo always.
class QVRecFilmEffectGroupMTIFilter : public FilmEffectGroup {
  public:
    explicit QVRecFilmEffectGroupMTIFilter(
        const QVFilterClass& filterClass = QVRecFilmEffectGroupMTIFilterClass);

    /// What the counter shows at the clip's start, seconds; 378 at first: "00:06:18".
    double counterStart() const { return counterStart_; }
    void setCounterStart(double seconds) { counterStart_ = seconds; }

    /// The texts as they are shown at the time: the counter, and the clip's time code in tenths of a second.
    std::string counter() const;
    std::string timeCode() const;

    /// The display.
    std::vector<SpiritParam> params() const override;
    MTIImage outputImage() override;

  private:
    double counterStart_ = 378;
};

}  // namespace qv
