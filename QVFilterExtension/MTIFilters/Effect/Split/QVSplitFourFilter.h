#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSplitFourFilterClass;

/// Two by two small frames, parted by white lines. The strength changes nothing.
class QVSplitFourFilter : public QVEffectMTIFilter {
  public:
    explicit QVSplitFourFilter(const QVFilterClass& filterClass = QVSplitFourFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// There are no presets: every level is ignored.
    void setLevel(std::int64_t) override {}

    /// "splitNumber", "splitDirection" (both).
    MTIParameters parameters() const override;
};

}  // namespace qv
