#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVZoomSliceTransitionMTIFilterClass;

/// Strips of the picture zoom one after the other and change to the incoming clip at their fastest.
class QVZoomSliceTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVZoomSliceTransitionMTIFilter(
        const QVFilterClass& filterClass = QVZoomSliceTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Which of the ways named in the class record; another value means the first.
    int type() const { return type_; }
    void setType(int type) { type_ = type; }

    /// `progress` on the cubic Bézier with the control points (0.5, 0) and (0, 1).
    float newProgress() const override;
    /// "progress" (eased), "start", "duration", "type".
    MTIParameters parameters() const override;

  private:
    int type_ = 0;
};

}  // namespace qv
