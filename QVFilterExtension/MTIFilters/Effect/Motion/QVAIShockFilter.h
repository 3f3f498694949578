#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIShockFilterClass;

/// A beat of punches towards the viewer: translucent copies fly out of the picture and settle back into it.
/// The strength sets the pace, from three beats a second to ten.
class QVAIShockFilter : public QVEffectMTIFilter {
  public:
    explicit QVAIShockFilter(const QVFilterClass& filterClass = QVAIShockFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// Number of copies.
    int filterNumber() const { return filterNumber_; }
    void setFilterNumber(int count) { filterNumber_ = count; }

    /// "amplitude" (1), "period" (place of `iTime` in the beat, 0..1), "filterNumber".
    MTIParameters parameters() const override;

  private:
    int filterNumber_ = 4;
};

}  // namespace qv
