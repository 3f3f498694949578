#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionExposureFilter.h"

namespace qv {

extern const QVFilterClass QVFilmBlurFlashTransitionMTIFilterClass;

/// Through the lens: its barrel closes in and turns, the outgoing clip goes out of focus and blooms into
/// light; out of the light comes the incoming clip, into focus, and the barrel opens.
///
/// All is symmetric about progress 0.5, where the clips change. The barrel comes from `kWideOpening` times
/// its size between 0 and 0.3 and turns by `kTurn` in all. The blur's standard deviation reaches `kBlur`
/// (1/1080 of the shorter side), with the square of the way to the middle from 0.1 on; the exposure reaches
/// `kStops` with its fourth power.
class QVFilmBlurFlashTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVFilmBlurFlashTransitionMTIFilter(
        const QVFilterClass& filterClass = QVFilmBlurFlashTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    static constexpr float kWideOpening = 3.4f;  ///< where nothing of the barrel is seen yet
    static constexpr float kTurn = 1.3f;         ///< radians clockwise
    static constexpr float kBlur = 34;           ///< standard deviation, 1/1080 of the shorter side
    static constexpr float kStops = 5;           ///< of exposure

    /// The barrel, "transitions_flim_lens3.png", for the outgoing frame's shorter side; nil without it.
    MTIImage frameImage() const;

    /// "opening" (scale of the barrel), "turn" (cosine and sine, clockwise), "cover" (of the barrel, 0..1).
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    MTIGaussianBlurFilter blurFilter_;
    QVFilmTransitionExposureFilter exposureFilter_;
};

}  // namespace qv
