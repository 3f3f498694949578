#pragma once

#include <array>

#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

namespace qv::assets {

/// Where a dancer's joints are: metres, x to the right of the picture, y up from the ground, z towards the
/// camera. Pairs hold the left side of the picture first.
struct Pose {
    Vec3 pelvis, waist, chest, neck, head;
    Vec3 right, forward;          ///< of the chest
    Vec3 headRight, headForward;  ///< of the head
    Vec3 tailRoot, tailMiddle, tailTip;
    std::array<Vec3, 2> shoulders, elbows, wrists, hands, hips, knees, ankles, toes;
};

/// A dance on the beat of 120 a minute that starts again after 6 seconds: steps from side to side, raised
/// arms, a spin.
Pose danceAt(double seconds);

}  // namespace qv::assets
