#pragma once

#include <algorithm>

#include "QVFilterCore/QVClipTime.h"
#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"
#include "QVFilterExtension/Private/SmoothStep.h"

namespace qv {

/// Where the camera effects are in their clip, 0..1.
inline double cameraProgress(const QVProgressBasedEffectMTIFilter& effect) {
    return clipProgress(effect.iTime(), effect.startTime(), effect.endTime());
}

/// Rises from 0 to 1, softly at both ends, over `steps` of the 61 steps of a clip from the step `from` on.
constexpr double cameraRamp(double progress, double from, double steps) {
    constexpr double kSteps = 61;
    return smoothStep((progress - from / kSteps) / (steps / kSteps));
}

/// The frame's shorter side, pixels.
inline double shorterSide(CGSize frame) {
    return std::min(frame.width, frame.height);
}

/// Pixels of a point of the viewfinder, which is 375 points wide and shown at 1.3 times its size.
inline double viewfinderScale(CGSize frame) {
    return shorterSide(frame) / 375 * 1.3;
}

}  // namespace qv
