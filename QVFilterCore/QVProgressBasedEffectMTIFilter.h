#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVProgressBasedEffectMTIFilterClass;

/// An effect that knows its clip: `startTime` and `endTime` in seconds on the scale of `iTime`.
class QVProgressBasedEffectMTIFilter : public QVEffectMTIFilter {
  public:
    explicit QVProgressBasedEffectMTIFilter(
        const QVFilterClass& filterClass = QVProgressBasedEffectMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// Start and end of the clip, seconds.
    double startTime() const { return startTime_; }
    void setStartTime(double seconds) { startTime_ = seconds; }
    double endTime() const { return endTime_; }
    void setEndTime(double seconds) { endTime_ = seconds; }

    /// Position of `iTime` between start and end, clamped to 0..1; 0 for a clip without length.
    virtual float progress() const;

    /// The effect's parameters and "progress".
    MTIParameters parameters() const override;

  private:
    double startTime_ = 0, endTime_ = 1;
};

}  // namespace qv
