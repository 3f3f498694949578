#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSplitNineFilterClass;

/// Three by three small frames, parted by white lines. The strength changes nothing.
class QVSplitNineFilter : public QVEffectMTIFilter {
  public:
    explicit QVSplitNineFilter(const QVFilterClass& filterClass = QVSplitNineFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// There are no presets: every level is ignored.
    void setLevel(std::int64_t) override {}

    /// "splitNumber", "splitDirection" (both).
    MTIParameters parameters() const override;
};

}  // namespace qv
