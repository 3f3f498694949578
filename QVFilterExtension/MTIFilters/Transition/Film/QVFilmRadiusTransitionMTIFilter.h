#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmBoxBlurFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionAssistFilter.h"

namespace qv {

extern const QVFilterClass QVFilmRadiusTransitionMTIFilterClass;
extern const QVFilterClass QVFilmTransitionRadiusBlackFrameFilterClass;

/// A splice that jams in the projector's gate: light flares over the cut, the film jumps aside, blurred, and
/// settles with two small overshoots.
class QVFilmRadiusTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVFilmRadiusTransitionMTIFilter(
        const QVFilterClass& filterClass = QVFilmRadiusTransitionMTIFilterClass);

    /// The edges of a strip of film around a transparent gate, fitted to the outgoing frame; nil without a
    /// frame or without the asset. For hosts that frame the clips; it is not part of `outputImage`.
    MTIImage frameImage() const;
    /// For laying `frameImage` over a picture; no part of `outputImage` either.
    MTIBlendFilter& frameBlendFilter() { return frameBlendFilter_; }

    /// "progress" (linear).
    MTIParameters parameters() const override { return {{"progress", progress()}}; }
    /// Where the film stands in the gate, pixels: aside from just after 0.52 until 0.68.
    CGAffineTransform getTranslationTransformWithProgress(double progress) const;
    MTIImage outputImage() override;

  private:
    MTIBlendFilter frameBlendFilter_{MTIBlendMode::normal};
    QVFilmBoxBlurFilter blurMTIFilter_;
    QVFilmTransitionAssistFilter radiusBlackFrameFilter_{QVFilmTransitionRadiusBlackFrameFilterClass};
};

}  // namespace qv
