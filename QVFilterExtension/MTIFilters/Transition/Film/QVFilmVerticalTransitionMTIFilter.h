#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionMotionBlurFilter.h"

namespace qv {

extern const QVFilterClass QVFilmVerticalTransitionMTIFilterClass;

/// A cine projector that loses its loop: the film slips down a part of a frame and is caught, again and
/// farther, then runs through in streaks and comes to a stop, a little too far, at the incoming clip.
///
/// The film's edges close in from `kWideOpening` times their size between progress 0 and 0.12 and open from
/// 0.84 on. Each of `kSlips` lets go at its moment and falls back to where it is caught, in 1/16 of progress.
/// From 0.42 to 0.7 the film runs `kFrames` frames, smeared by up to `kStreak` (1/1080 of the shorter side)
/// at its fastest, and settles in two swings of `kSwing` of a frame. The lamp flickers by `kFlicker` in
/// 60ths.
class QVFilmVerticalTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVFilmVerticalTransitionMTIFilter(
        const QVFilterClass& filterClass = QVFilmVerticalTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// The film goes down `reach` of a frame at the moment `begin`, and is caught `rest` below its place.
    struct Slip {
        float begin, reach, rest;  ///< progress; frames
    };
    /// One after the other.
    static constexpr Slip kSlips[] = {{0.14f, 0.12f, 0}, {0.22f, 0.3f, 0.04f}, {0.32f, 0.55f, -0.06f}};
    static constexpr float kWideOpening = 1.5f;  ///< where no film is seen yet
    static constexpr float kFrames = 5;          ///< odd: the outgoing clip alternates with the incoming one
    static constexpr float kStreak = 260;        ///< half of the longest smear
    static constexpr float kSwing = 0.07f;       ///< of the stop
    static constexpr float kFlicker = 0.2f;      ///< darkest of the lamp

    /// The film's edges, "transitions_film_frame_01.png", fitted to the outgoing frame; nil without it.
    MTIImage frameImage() const;

    /// How many frames have run down.
    float travel() const;
    /// "travel", "opening", "cover" (of the film, 0..1), "lamp" (0..1).
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    QVFilmTransitionMotionBlurFilter motionBlurFilter_;
};

}  // namespace qv
