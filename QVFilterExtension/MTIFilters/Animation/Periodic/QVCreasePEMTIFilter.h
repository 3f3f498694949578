#pragma once

#include "QVFilterCore/QVPeriodicEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVCreasePEMTIFilterClass;

/// On the beat the picture crumples like the sheet of paper that it is printed on, at other folds each time,
/// and is smoothed again. Between beats the output is the input itself.
class QVCreasePEMTIFilter : public QVPeriodicEffectMTIFilter {
  public:
    explicit QVCreasePEMTIFilter(const QVFilterClass& filterClass = QVCreasePEMTIFilterClass);

    /// Slopes and wear of crumpled paper, opaque; nil when the asset is missing.
    const MTIImage& noiseImage() const { return noiseImage_; }
    MTIImage outputImage() override;

  private:
    MTIImage noiseImage_;
};

}  // namespace qv
