#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmBoxBlurFilter.h"

namespace qv {

extern const QVFilterClass QVFilmHorizontalTransitionMTIFilterClass;

/// A strip of still film on a light table. The view draws back until the frame lies in its film, the strip is
/// pulled to the left by a hand, past frames of both clips, rests at the incoming one, and the view closes
/// in.
///
/// The view draws back from progress 0 to 0.3, to `kFarScale` and a lean of `kLean`, while the film around
/// the frame comes in from `kWideOpening` times its size; from 0.7 to 1 it closes in the same way. The strip
/// goes `kFrames` frames from 0.28 to 0.66, smeared by the box blur at `kSmear` from 0.36 to 0.58, and
/// settles by 0.02 and −0.01 of a frame up to 0.7 and 0.74.
class QVFilmHorizontalTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVFilmHorizontalTransitionMTIFilter(
        const QVFilterClass& filterClass = QVFilmHorizontalTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    static constexpr float kFarScale = 0.74f;    ///< of the strip in the middle, to the frame
    static constexpr float kLean = 0.085f;       ///< of the strip in the middle, radians clockwise
    static constexpr float kWideOpening = 1.8f;  ///< where no film is seen yet
    static constexpr float kFrames = 3;          ///< odd: the outgoing clip alternates with the incoming one
    static constexpr float kSmear = 0.5f;        ///< of the box blur

    /// The strip's film, "transitions_flim_02_word.png", fitted to the outgoing frame; nil without it.
    MTIImage frameImage() const;

    /// How many frames have been pulled through.
    float travel() const;
    /// "travel", "grow" (scale of the strip), "turn" (cosine and sine of its lean), "opening", "cover" (of
    /// the film, 0..1), "fast" (whether it will be smeared).
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    QVFilmBoxBlurFilter blurMTIFilter_;
};

}  // namespace qv
