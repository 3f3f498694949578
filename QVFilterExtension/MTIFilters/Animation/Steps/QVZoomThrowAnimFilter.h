#pragma once

#include "QVFilterCore/QVStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVZoomThrowAnimFilterClass;

/// The picture comes from close up, bounces in and out until it has its size, lies still, and is thrown past
/// the viewer to the upper right, ever faster, at the end.
class QVZoomThrowAnimFilter : public QVStepsAnimFilter {
  public:
    explicit QVZoomThrowAnimFilter(const QVFilterClass& filterClass = QVZoomThrowAnimFilterClass);
};

}  // namespace qv
