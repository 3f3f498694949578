#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSplitChangeFilterClass;

/// The whole frame in a grid of four to twelve small frames each way, more with more strength, parted by thin
/// white lines.
class QVSplitChangeFilter : public QVEffectMTIFilter {
  public:
    explicit QVSplitChangeFilter(const QVFilterClass& filterClass = QVSplitChangeFilterClass);

    /// Keeps the value and derives `sliceNumber`.
    void setEffectValue(float value) override;
    /// There are no presets: every level is ignored.
    void setLevel(std::int64_t) override {}

    /// Number of small frames along each side.
    int sliceNumber() const { return sliceNumber_; }
    void setSliceNumber(int count) { sliceNumber_ = count; }

    /// "splitNumber", "splitDirection" (both).
    MTIParameters parameters() const override;

  private:
    int sliceNumber_;
};

}  // namespace qv
