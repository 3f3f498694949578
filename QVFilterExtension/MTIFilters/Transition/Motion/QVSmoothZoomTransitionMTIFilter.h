#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSmoothZoomTransitionMTIFilterClass;

/// One zoom through both clips, which change at its fastest; what lies outside a frame is its mirror image.
class QVSmoothZoomTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVSmoothZoomTransitionMTIFilter(
        const QVFilterClass& filterClass = QVSmoothZoomTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Which of the ways named in the class record; another value means the first.
    int type() const { return type_; }
    void setType(int type) { type_ = type; }

    /// "progress" (by `easeInOutHeavy`), "type", "ratio".
    MTIParameters parameters() const override;

  private:
    int type_ = 0;
};

}  // namespace qv
