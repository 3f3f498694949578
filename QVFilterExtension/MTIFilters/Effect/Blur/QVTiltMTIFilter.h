#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVTiltMTIFilterClass;

/// Blurs the picture but for a sharp horizontal band a fifth of it high, as a tilted lens does. The first of
/// `extractValues`, 0..1, is the strength of the blur; `kDefaultEffectValue` without one.
class QVTiltMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVTiltMTIFilter(const QVFilterClass& filterClass = QVTiltMTIFilterClass);

    /// Keeps the value and derives the band: at 0 along the top of the frame, at 1 along its bottom.
    void setEffectValue(float value) override;

    /// Upper edge of the sharp band, 0 the top of the frame, 1 its bottom.
    double topFocusLevel() const { return topFocusLevel_; }
    void setTopFocusLevel(double level) { topFocusLevel_ = level; }
    /// Lower edge of the sharp band.
    double bottomFocusLevel() const { return bottomFocusLevel_; }
    void setBottomFocusLevel(double level) { bottomFocusLevel_ = level; }

    /// "topFocusLevel", "bottomFocusLevel" and "focusFallOffRate", over which the blur sets in.
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    double topFocusLevel_, bottomFocusLevel_;
};

}  // namespace qv
