#pragma once

#include "QVFilterExtension/MTIFilters/Effect/Film/FilmEffectGroup.h"
#include "QVFilterExtension/MTIFilters/Effect/Film/QVVhsMTIFilter.h"

namespace qv {

extern const QVFilterClass QVVhsFilmEffectGroupMTIFilterClass;

/// A home video played from a worn cassette, with what the recorder shows over it: "PLAY" with its triangle,
/// "TBC" in its box, the date and time of the recording and the tape's counter.
///
/// The tape's noise is another one 15 times a second. In periods of 1.5 seconds, of which a tenth at strength
/// 0 and two thirds at 1 are troubled, a band of bad tracking, a dropout or a tear rolls through the picture.
/// On a photo all of it stands still, at a moment that depends on the strength.
class QVVhsFilmEffectGroupMTIFilter : public FilmEffectGroup {
  public:
    explicit QVVhsFilmEffectGroupMTIFilter(
        const QVFilterClass& filterClass = QVVhsFilmEffectGroupMTIFilterClass);

    /// When the recording starts, seconds since 1970-01-01 00:00 on the clock that is shown. At first the
    /// afternoon of a Saturday, 12 October 1991, 1:20; never the machine's own time.
    double date() const { return date_; }
    void setDate(double seconds) { date_ = seconds; }

    /// The texts as they are shown at the time: "OCT 12 SAT", "PM 01:20", and hours, minutes, seconds and
    /// tenths of the tape.
    std::string dateText() const;
    std::string timeText() const;
    std::string counter() const;

    /// Tears and bleeds the picture.
    QVVhsMTIFilter& vhsFilter() { return vhsFilter_; }
    /// What the tape does to the picture at the moment, as `vhsFilter` reads it; nil without its asset.
    MTIImage tapeImage() const;

    /// The recorder's display.
    std::vector<SpiritParam> params() const override;
    MTIImage outputImage() override;

  private:
    double date_ = 687273600;
    QVVhsMTIFilter vhsFilter_;
};

}  // namespace qv
