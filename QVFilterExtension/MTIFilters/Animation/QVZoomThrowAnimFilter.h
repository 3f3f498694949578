#pragma once

#include "QVFilterCore/QVStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVZoomThrowAnimFilterClass;

/// The picture comes from far within, bounces in and out until it has its size, lies still, and is thrown out
/// of the frame to the upper right, ever faster, at the end.
class QVZoomThrowAnimFilter : public QVStepsAnimFilter {
  public:
    explicit QVZoomThrowAnimFilter(const QVFilterClass& filterClass = QVZoomThrowAnimFilterClass);
};

}  // namespace qv
