#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFullMirrorMTIFilterClass;

/// The whole frame, small, among its mirror images: two by two (level 0), three by three or four by four.
class QVFullMirrorMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVFullMirrorMTIFilter(const QVFilterClass& filterClass = QVFullMirrorMTIFilterClass);

    /// Takes `factor` from a table of three; other levels are ignored.
    void setLevel(std::int64_t level) override;

    /// Number of reflections along each side: there is one frame more.
    double factor() const { return factor_; }
    void setFactor(double factor) { factor_ = factor; }

    /// "factor".
    MTIParameters parameters() const override;

  private:
    double factor_;
};

}  // namespace qv
