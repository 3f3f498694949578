#pragma once

#include <vector>

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

/// One step of an animation: where it ends as a fraction of the whole, and the control points of the cubic
/// Bézier that eases the motion within it.
struct StepParaValue {
    double end, x1, y1, x2, y2;
    bool operator==(const StepParaValue&) const = default;
};

constexpr StepParaValue StepPara(double end, double x1, double y1, double x2, double y2) {
    return {end, x1, y1, x2, y2};
}

extern const QVFilterClass QVStepsAnimFilterClass;

/// An animation in eased steps over the clip's span.
class QVStepsAnimFilter : public QVEffectMTIFilter {
  public:
    explicit QVStepsAnimFilter(const QVFilterClass& filterClass = QVStepsAnimFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    const std::vector<StepParaValue>& stepParas() const { return steps_; }
    /// Steps in increasing order of their ends, the last at 1.
    void setStepParas(std::vector<StepParaValue> steps) { steps_ = std::move(steps); }

    double startTime() const { return startTime_; }
    void setStartTime(double seconds) { startTime_ = seconds; }
    double endTime() const { return endTime_; }
    void setEndTime(double seconds) { endTime_ = seconds; }

    /// The effect's parameters, "progress" (0..1 of the animation), "step" (index of the step it is in) and
    /// "stepProgress" (eased, 0..1 within that step).
    MTIParameters parameters() const override;

  private:
    std::vector<StepParaValue> steps_;
    double startTime_ = 0, endTime_ = 1;
};

}  // namespace qv
