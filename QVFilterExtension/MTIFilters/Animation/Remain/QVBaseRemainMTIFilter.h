#pragma once

#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBaseRemainMTIFilterClass;

/// Base of the effects that remain over one end of a clip and leave the rest of it clear. Level 0 holds the
/// effect at the start of the clip and lets it clear towards the end; any other level starts clear and lets
/// the effect come in.
///
/// How long the effect holds and the clear part remains is set by the first of `extractValues`, 0..1, read as
/// a float; without one, or when it is not a number, it is `kDefaultEffectValue`. What else the list holds is
/// ignored.
class QVBaseRemainMTIFilter : public QVProgressBasedEffectMTIFilter {
  public:
    explicit QVBaseRemainMTIFilter(const QVFilterClass& filterClass = QVBaseRemainMTIFilterClass)
        : QVProgressBasedEffectMTIFilter(filterClass) {}

    /// How clear the picture is at `iTime`: 0 the effect in full, 1 the picture itself. Computed on each
    /// read; always a number in 0..1, whatever the times are.
    double mixStrength() const { return getMixStrength(); }
    double getMixStrength() const;

    /// Part of a clip shorter than three seconds after which the mix begins to change.
    virtual double getRateOfChangeWithProgress(float progress) const;
    /// Seconds at the end of a clip of three seconds or more that are clear; a shorter clip has its share of
    /// them.
    virtual double getClearRemainTimeWithProgress(float progress) const;

    /// "filterStrength": the mix strength.
    MTIParameters parameters() const override;
};

}  // namespace qv
