#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"
#include "QVFilterCore/QVSpiritFilter.h"

namespace qv {

extern const QVFilterClass QVRetroVHSMTIFilterClass;

/// A tape in picture search: bars of noise climb through the picture, which is bent at each of them; colours
/// run to the right, edges ring, the foot of the picture is torn where the heads change.
///
/// - 2 to 4 bars by the strength e, 0.022 to 0.048 of the frame's height to each side, that climb one frame
/// in 2.6 s and
///   bend lines by up to 26 + 40 e pixels (of a frame whose shorter side is 1080, as below).
/// - Colour is 4 to 36 pixels late and as wide; the last 18 pixels belong to the changing heads.
/// - 2 to 12 dropouts at once (for 0.05 s each), anywhere.
class QVRetroVHSMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVRetroVHSMTIFilter(const QVFilterClass& filterClass = QVRetroVHSMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    MTIImage outputImage() override;

  private:
    QVSpiritFilter spiritFilter_;
};

}  // namespace qv
