#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace qv::assets {

inline constexpr int kSceneWidth = 1280, kSceneHeight = 720, kSceneFramesPerSecond = 15;

/// Opaque RGBA8 rows without padding.
using SceneFrame = std::vector<std::uint8_t>;

/// A clip that runs in a loop: after the last frame the first follows without a seam.
struct SceneClip {
    int frames;
    std::function<SceneFrame(int index)> draw;
};

/// Dunes in the low sun, over which the wind drives sand.
SceneClip blownSand();
/// The front of a house at night, past which the view rises; lights go on and off.
SceneClip nightFacade();

}  // namespace qv::assets
