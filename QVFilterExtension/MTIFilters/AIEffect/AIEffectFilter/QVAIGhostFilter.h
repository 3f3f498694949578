#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIGhostFilterClass;

/// The soul leaves the picture: a pale, cold, wavering double hovers above it, with echoes on the way, while
/// the picture itself pales. A picture with transparency, as a cut-out subject, has a ghost of its shape.
class QVAIGhostFilter : public QVEffectMTIFilter {
  public:
    explicit QVAIGhostFilter(const QVFilterClass& filterClass = QVAIGhostFilterClass);

    /// Keeps the value and derives `distance` and `presence` from it; at 0 there is no ghost.
    void setEffectValue(float value) override;

    /// How far the ghost hovers from the picture, of the frame's shorter side.
    double distance() const { return distance_; }
    void setDistance(double distance) { distance_ = distance; }
    /// How much there is of the ghost, 0..1.
    double presence() const { return presence_; }
    void setPresence(double presence) { presence_ = presence; }

    /// Share of the ghost's light that falls in front of the picture, 0..1: where that is opaque, no other is
    /// seen.
    double inFront() const { return inFront_; }
    void setInFront(double share) { inFront_ = share; }

    /// "iTime" (place in the movement), "distance", "presence", "inFront".
    MTIParameters parameters() const override;

  private:
    double distance_, presence_, inFront_ = 0.6;
};

}  // namespace qv
