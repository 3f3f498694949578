#pragma once

#include "QVFilterCore/QVStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVTwoStepsAnimFilterClass;

/// Out to an extreme in the first half, back in the second: it leaves with a kick, slows down to a rest at
/// the extreme, and comes back faster and faster, as a stone that is thrown upwards. Starts and ends on the
/// picture as it is, so that the clip may go on.
///
/// The class itself leans into the frame; its subclasses move in their own ways with the same two steps.
class QVTwoStepsAnimFilter : public QVStepsAnimFilter {
  public:
    explicit QVTwoStepsAnimFilter(const QVFilterClass& filterClass = QVTwoStepsAnimFilterClass);
};

}  // namespace qv
