#pragma once

#include <vector>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"
#include "QVFilterCore/QVSpiritFilter.h"

namespace qv {

extern const QVFilterClass QVCameraLightFilterClass;

/// Someone sets a camera's exposure by hand: a tap in the middle brings focus and a yellow square, a sun on a
/// line beside it is drawn up, and the picture floods with light; drawn down, it darkens; let go, all is as
/// before. A needle on a scale below follows. Layers whose asset is missing are left out.
///
/// Times are steps of the 61 that a clip has; lengths are points of the viewfinder: a 375th of the frame's
/// shorter side, 1.3 times as large.
/// - The picture is out of focus by 6/720 of the shorter side until step 3, sharp from 9 on. The square of 80
///   points shrinks on to it from 1.6 times its size in steps 2 to 8 and blinks until 12.
/// - Exposure: up by 0.5 + 1.1 e stops (e is the strength) in steps 13 to 25, down to −0.45 of that in 31 to
///   43, back to 0 in 47 to 54. Above 0 light spills softly over what is bright.
/// - The sun moves by up to 46 points along a line of 150, 64 right of the middle, and turns as it does; the
///   needle moves by up to 60 along a scale of 150, 112 below the middle.
/// - All marks fade in with the square, the sun and the scale in steps 8 to 11, and out in 55 to 59.
class QVCameraLightFilter : public QVProgressBasedEffectMTIFilter {
  public:
    explicit QVCameraLightFilter(const QVFilterClass& filterClass = QVCameraLightFilterClass)
        : QVProgressBasedEffectMTIFilter(filterClass) {}

    /// Stops of exposure at the clip's progress.
    double exposure() const;
    /// A layer of the frame's size with the line that the sun moves along, kept for the size; nil without its
    /// asset.
    MTIImage maskLineImage() const;
    /// Square, sun, scale and needle, in sprite space.
    std::vector<SpiritParam> spiritParams() const;

    /// "exposure" in stops, "lineOpacity", and "topCenter" and "buttomCenter", the ends of the gap that the
    /// sun leaves in the line, in heights of the frame.
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    /// Where the sun is between the ends of its way, −1..1, up.
    double sunPlace() const;

    QVSpiritFilter spiritFilter_;
    MTIGaussianBlurFilter blurFilter_;
};

}  // namespace qv
