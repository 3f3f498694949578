#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVMirrorMTIFilterClass;

/// Part of the frame and its reflections. Level 0: the left half; 1: the top left quarter, reflected both
/// ways; 2: five strips side by side, the middle one as it is.
class QVMirrorMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVMirrorMTIFilter(const QVFilterClass& filterClass = QVMirrorMTIFilterClass);

    /// Takes `factor` from a table of three; other levels are ignored.
    void setLevel(std::int64_t level) override;

    /// Number of parts: 2, 4 or 5.
    double factor() const { return factor_; }
    void setFactor(double factor) { factor_ = factor; }

    /// "factor".
    MTIParameters parameters() const override;

  private:
    double factor_;
};

}  // namespace qv
