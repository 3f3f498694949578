#pragma once

#include <vector>

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

/// One step of an animation: where it ends as a fraction of the whole, and the control points of the cubic
/// Bézier that eases the motion within it.
struct StepParaValue {
    /// `end` in 0..1; the control points as in `QV_CubicBezier`.
    double end, x1, y1, x2, y2;
    bool operator==(const StepParaValue&) const = default;
};

/// A step from its numbers.
constexpr StepParaValue StepPara(double end, double x1, double y1, double x2, double y2) {
    return {end, x1, y1, x2, y2};
}

/// Where and how the picture lies in its frame; the default is as it is.
struct StepPose {
    double x = 0, y = 0;  ///< shift to the right and downwards, widths and heights of the frame
    double scale = 1;     ///< 1 fills the frame
    double angle = 0;     ///< turns, clockwise
};

extern const QVFilterClass QVStepsAnimFilterClass;

/// An animation in eased steps over the span from `startTime` to `endTime`, still before and after it.
class QVStepsAnimFilter : public QVEffectMTIFilter {
  public:
    explicit QVStepsAnimFilter(const QVFilterClass& filterClass = QVStepsAnimFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// The steps that it moves in.
    const std::vector<StepParaValue>& stepParas() const { return steps_; }
    /// Steps in increasing order of their ends, the last at 1.
    void setStepParas(std::vector<StepParaValue> steps) { steps_ = std::move(steps); }

    /// Start and end of the animation, seconds on the scale of `iTime`.
    double startTime() const { return startTime_; }
    void setStartTime(double seconds) { startTime_ = seconds; }
    double endTime() const { return endTime_; }
    void setEndTime(double seconds) { endTime_ = seconds; }

    /// The effect's parameters and
    /// - "progress": 0..1 of the animation;
    /// - "step": index of the step that it is in;
    /// - "stepProgress": 0..1 within that step, eased; beyond it where the easing overshoots;
    /// - "stepMotion": how much "stepProgress" changes while a shutter is open about the moment; it opens
    ///   and closes within the step;
    /// - "poseFrom", "poseTo": the poses (x, y, scale, angle) that the step leads from and to, for a class
    ///   that has them.
    MTIParameters parameters() const override;

  protected:
    /// The pose at the start and that at the end of each step, one more than there are steps, at a strength
    /// of 0.5. A strength of 0 halves what they differ from the picture at rest, 1 adds half as much again.
    void setStepPoses(std::vector<StepPose> poses) { poses_ = std::move(poses); }

  private:
    MTIVector poseVector(std::size_t index) const;

    std::vector<StepParaValue> steps_;
    std::vector<StepPose> poses_;
    double startTime_ = 0, endTime_ = 1;
};

}  // namespace qv
