#pragma once

#include "QVFilterCore/QVStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVTwoStepsAnimFilterClass;

/// In during the first half, out during the second: the picture arrives at full speed and slows down to a
/// rest in the middle of the clip; then it leaves, faster and faster. Two such clips after one another pass
/// into each other in motion.
///
/// The class itself settles from a close view and leans in again; its subclasses come and go in their own
/// ways with the same two steps.
class QVTwoStepsAnimFilter : public QVStepsAnimFilter {
  public:
    explicit QVTwoStepsAnimFilter(const QVFilterClass& filterClass = QVTwoStepsAnimFilterClass);
};

}  // namespace qv
