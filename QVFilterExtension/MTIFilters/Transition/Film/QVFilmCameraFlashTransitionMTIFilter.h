#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmRadiusFrameFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionExposureFilter.h"

namespace qv {

extern const QVFilterClass QVFilmCameraFlashTransitionMTIFilterClass;

/// A photographer takes three pictures: the viewfinder comes up over the outgoing clip, and at each flash of
/// `kFlashes` the film in the camera is exposed. The first two pictures are seen in the camera's gate, of the
/// outgoing clip and then of the incoming one, each creeping closer; after the third the viewfinder shows the
/// incoming clip and goes.
///
/// The viewfinder comes between progress 0 and 0.12 and goes from 0.82 to 0.98. A flash adds `kStops` of
/// exposure that fall off over `kGlow` of progress, with their square, and a veil of light from the middle.
/// In the gate the picture grows from `kZoomFrom` to `kZoomTo`.
class QVFilmCameraFlashTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVFilmCameraFlashTransitionMTIFilter(
        const QVFilterClass& filterClass = QVFilmCameraFlashTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    static constexpr float kFlashes[] = {0.24f, 0.48f, 0.72f};  ///< progress
    static constexpr float kStops = 4.5f;                       ///< of exposure
    static constexpr float kGlow = 0.17f;                       ///< progress
    static constexpr float kZoomFrom = 0.04f;                   ///< as `QVFilmRadiusFrameFilter::zoomValue`
    static constexpr float kZoomTo = 0.22f;                     ///< the same

    /// The viewfinder, "transitions_CameraFrame.png", fitted to the outgoing frame; nil without it.
    MTIImage frameImage() const;

    /// What is left of the last flash, 1 to 0.
    float flash() const;
    /// "cover" (of the viewfinder, 0..1), "inset" (of its rectangle, pixels), "flash".
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    QVFilmRadiusFrameFilter radiusFrameFilter_;
    QVFilmTransitionExposureFilter exposureFilter_;
};

}  // namespace qv
