#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVPeriodicEffectMTIFilterClass;

/// An effect that beats: in each period it rises and falls once and then rests.
class QVPeriodicEffectMTIFilter : public QVEffectMTIFilter {
  public:
    /// Seconds from one beat to the next, and how much of it the beat takes.
    static constexpr double kPeriod = 1.0;
    static constexpr double kActiveFraction = 0.6;

    explicit QVPeriodicEffectMTIFilter(const QVFilterClass& filterClass = QVPeriodicEffectMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// Whether the beat is on at `seconds`.
    virtual bool isEffectWithTime(double seconds) const;

    /// The effect's parameters and "progress": 0..1 through the beat while it is on, 0 while it rests.
    MTIParameters parameters() const override;
};

}  // namespace qv
