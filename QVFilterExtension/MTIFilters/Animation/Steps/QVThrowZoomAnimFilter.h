#pragma once

#include "QVFilterCore/QVStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVThrowZoomAnimFilterClass;

/// The picture is thrown in from the lower left, bounces about its place until it lies still, and is zoomed
/// into, ever faster, at the end.
class QVThrowZoomAnimFilter : public QVStepsAnimFilter {
  public:
    explicit QVThrowZoomAnimFilter(const QVFilterClass& filterClass = QVThrowZoomAnimFilterClass);
};

}  // namespace qv
