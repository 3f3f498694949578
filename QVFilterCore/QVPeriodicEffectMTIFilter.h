#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVPeriodicEffectMTIFilterClass;

/// An effect that beats: at the start of each period it strikes, within two frames or so, dies away softly,
/// and leaves the picture as it is until the next. The first beat is at `iTime` 0; times before it beat as
/// well.
///
/// A host that has music sets `period` to a number of its beats: 60 / tempo seconds each.
class QVPeriodicEffectMTIFilter : public QVEffectMTIFilter {
  public:
    /// How much of a period the beat takes, and how much of the beat passes until it is at its strongest.
    static constexpr double kActiveFraction = 0.6;
    static constexpr double kAttackFraction = 0.12;

    explicit QVPeriodicEffectMTIFilter(const QVFilterClass& filterClass = QVPeriodicEffectMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// Seconds from one beat to the next: by default two beats of music at 120 a minute.
    double period() const { return period_; }
    void setPeriod(double seconds) { period_ = seconds; }

    /// Whether the beat is on at `seconds`. Never, for a time that is not finite or a period that is not
    /// positive.
    virtual bool isEffectWithTime(double seconds) const;

    /// Strength of the beat, 0..1, at `progress` through it (0..1): up with a kick, over the top and down
    /// without one.
    static double pulse(double progress);

    /// The effect's parameters and
    /// - "progress": 0..1 through the beat while it is on, 0 while it rests;
    /// - "pulse": strength of the beat, 0..1, 0 at rest;
    /// - "pulseMotion": how much "pulse" changes while a shutter is open, 0 at both ends of the beat;
    /// - "beat": number of the beat, wrapped at 4096 and never negative, for what differs from beat to beat.
    MTIParameters parameters() const override;

  private:
    double period_ = 1;
};

}  // namespace qv
