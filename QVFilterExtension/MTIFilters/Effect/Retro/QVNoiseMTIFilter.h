#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVNoiseMTIFilterClass;

/// A sensor pushed to its limit at night: coarse grain, blotches of false colour in the shadows, faint bands
/// across, and blacks that will not be black. The noise is a picture of the bundle, "filter_noise.png", laid
/// elsewhere 24 times a second. A strength of 0 leaves the frame as it is; without the picture there is no
/// output.
///
/// - A grain is 2 units of 1/1080 of the shorter side, a blotch 14; at full strength they reach ±0.26 and
/// ±0.31 in the
///   shadows and a quarter of that in the lights.
/// - A row of bands is 24 units high and ±0.05 bright; black is lifted to 0.09, and 30 % of the colour goes.
class QVNoiseMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVNoiseMTIFilter(const QVFilterClass& filterClass = QVNoiseMTIFilterClass);

    /// "effectValue", "draw" (number of the noise's place).
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    MTIImage noiseImage_;
};

}  // namespace qv
