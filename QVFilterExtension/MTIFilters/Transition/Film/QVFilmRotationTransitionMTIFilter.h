#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionRotationBlurFilter.h"

namespace qv {

extern const QVFilterClass QVFilmRotationTransitionMTIFilterClass;

/// A wall of narrow film, its frames in turn those of the two clips, the incoming ones upside down: the view
/// draws back, turns half around while it moves one frame down the film, and closes in on the incoming clip.
///
/// The film around the frame comes in from `kWideOpening` times its size between progress 0 and 0.16, and
/// goes from 0.84 on. The frame shrinks to `kFarScale` at 0.5. The turn goes from 0.12 to 0.88, smeared by
/// the angle that it goes through in `kShutter` of progress.
class QVFilmRotationTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVFilmRotationTransitionMTIFilter(
        const QVFilterClass& filterClass = QVFilmRotationTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    static constexpr float kWideOpening = 1.6f;  ///< where no film is seen yet
    static constexpr float kFarScale = 0.4f;     ///< of a frame in the middle
    static constexpr float kShutter = 0.035f;    ///< progress

    /// The film around a frame, "trans_Film_frame01_2.png", fitted to the outgoing frame; nil without it.
    MTIImage frameImage() const;

    /// "center" (of the view, in frames from the top left of the outgoing one), "grow" (scale of a frame),
    /// "turn" (cosine and sine, clockwise), "opening", "cover" (of the film, 0..1), "fast" (whether it will
    /// be smeared).
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    QVFilmTransitionRotationBlurFilter rotationBlurFilter_;
};

}  // namespace qv
