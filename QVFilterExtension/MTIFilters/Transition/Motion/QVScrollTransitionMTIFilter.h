#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVScrollTransitionMTIFilterClass;

/// The clips are pushed through the frame like a strip of film; the rolls pass mirror images of both on the
/// way.
class QVScrollTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVScrollTransitionMTIFilter(const QVFilterClass& filterClass = QVScrollTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Which of the ways named in the class record; another value means the first.
    int scrollType() const { return scrollType_; }
    void setScrollType(int scrollType) { scrollType_ = scrollType; }

    /// "progress" (eased), "start", "duration", "ratio", "scrollType", "inputSize" (of the outgoing frame,
    /// pixels).
    MTIParameters parameters() const override;

  private:
    int scrollType_ = 0;
};

}  // namespace qv
