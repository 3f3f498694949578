#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSmoothRadialTransitionMTIFilterClass;

/// One swing through both clips about a point beyond the frame, like a door or a pendulum; they change at its
/// fastest. What lies outside a frame is its mirror image.
class QVSmoothRadialTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVSmoothRadialTransitionMTIFilter(
        const QVFilterClass& filterClass = QVSmoothRadialTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Which of the ways named in the class record; another value means the first.
    int direction() const { return direction_; }
    void setDirection(int direction) { direction_ = direction; }

    /// "progress" (by `easeInOutHeavy`), "direction".
    MTIParameters parameters() const override;

  private:
    int direction_ = 0;
};

}  // namespace qv
