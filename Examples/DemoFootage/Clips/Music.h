#pragma once

#include "Examples/DemoFootage/Clips/ClipFile.h"

namespace qv::assets {

/// Soft pads, a plucked figure and a low bass at 80 beats a minute; lasts `seconds`.
StereoSound lakeMusic(double seconds);
/// Drums, a driving bass, chords and a lead at 120 beats a minute; the first beat falls on 0.
StereoSound cityMusic(double seconds);

}  // namespace qv::assets
